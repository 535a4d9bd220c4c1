// CDataParser: one quote file joined to one record parser.
//
// It knows which line of the file is the record at a position, what the first and
// last dates are and in which direction the file runs; it serves parsed records
// by number and runs conversions. What each method does is told in IDataParser.h.
//
// Threads: one recursive lock an object guards all members but those marked
// otherwise. It is held while records are parsed and during OnError2 of a sink, and
// left before PutRecords and EndTransaction. Under it the locks of the record
// parser and of the file handler are taken, never the process-wide proxy lock,
// since a cancelled transaction enters here with that one held. A record parser that
// is going to call its data parser takes this lock before its own (IDataParserLock).
// ProcessRecord runs on the file's worker and reads the members that say where a
// record lies without the lock: they must not be put while a run is on.
#pragma once

#include <atomic>
#include <string>
#include <unordered_map>
#include <vector>

#include "interfaces/IAsyncTransaction.h"
#include "interfaces/IDataParser.h"
#include "interfaces/IDataParserEvents.h"
#include "interfaces/IFileHandlerEvents.h"
#include "interfaces/IReadState.h"
#include "interfaces/IRecordParser.h"
#include "module/ComObject.h"
#include "module/Guarded.h"
#include "platform/CriticalSection.h"
#include "platform/Event.h"
#include "platform/values.h"
#include "src/data/BatchArray.h"
#include "src/data/DateWithStatus.h"
#include "src/data/RecordParserProxy.h"
#include "src/files/IFileHandler.h"
#include "src/files/ILineReader.h"
#include "src/files/Proxies.h"
#include "src/parsing/DataTypes.h"
#include "src/parsing/IDataParserLock.h"

namespace Hesperon::specifics {

class CDataParser : public ComObject<CDataParser, Dual<IQRL_TabulexConverter::IDataParser>,
                                     Dual<IQRL_TabulexConverter::IFileHandlerEvents>,
                                     Dual<IQRL_TabulexConverter::IFileHandlerEvents2>,
                                     IQRL_TabulexConverter::IAsyncTransaction, ISupportErrorInfo,
                                     IDataParserLock, IQRL_TabulexConverter::IReadState>
{
public:
    // Records a batch: a run hands its lines on whenever their count is a multiple.
    static constexpr std::size_t kBatchSize = 1000;

    HRESULT FinalConstruct();
    void FinalRelease();

    // ---- IDataParser

    HRESULT STDMETHODCALLTYPE CheckConverterSettings(LONG_PTR hWnd, IDispatch* pEventSink) override;
    HRESULT STDMETHODCALLTYPE StartEnumSymbols(IDispatch* pEventSink, ULONG_PTR nTranId) override;
    HRESULT STDMETHODCALLTYPE Clone(IDispatch** newObj) override;
    HRESULT STDMETHODCALLTYPE StartConvertPortion(LONG_PTR hWnd, IDispatch* pEventSink,
                                                  ULONGLONG StartPos, ULONGLONG Count,
                                                  ULONG_PTR nTranId) override;
    HRESULT STDMETHODCALLTYPE GetCount(ULONGLONG* nCount, VARIANT_BOOL* bComplete) override;
    HRESULT STDMETHODCALLTYPE ParseRecords(VARIANT* v, ULONG nFrom, ULONG nCount) override;
    HRESULT STDMETHODCALLTYPE RefreshDateInfo(VARIANT_BOOL FindResolution) override;
    HRESULT STDMETHODCALLTYPE InvalidateFileInfo(VARIANT_BOOL Erase) override;
    HRESULT STDMETHODCALLTYPE GetRelativePos(ULONGLONG nPosition, FLOAT* fRelative) override;
    HRESULT STDMETHODCALLTYPE StartConversion(IDispatch* pEventSink, ULONG_PTR nTranId) override;
    HRESULT STDMETHODCALLTYPE AbortConversion() override;
    HRESULT STDMETHODCALLTYPE AddFileEventHandler(IDispatch* pEventHandler) override;
    HRESULT STDMETHODCALLTYPE RemoveFileEventHandler(IDispatch* pEventHandler) override;
    HRESULT STDMETHODCALLTYPE GetMinDateTime(VARIANT* vDate) override;
    HRESULT STDMETHODCALLTYPE GetMaxDateTime(VARIANT* vDate) override;
    HRESULT STDMETHODCALLTYPE get_CurrentRecord(BSTR* pVal) override;
    HRESULT STDMETHODCALLTYPE get_LastRecord(BSTR* pVal) override;
    HRESULT STDMETHODCALLTYPE get_FieldCount(ULONG* pVal) override;
    HRESULT STDMETHODCALLTYPE get_FileName(BSTR* pVal) override;
    HRESULT STDMETHODCALLTYPE put_FileName(BSTR newVal) override;
    HRESULT STDMETHODCALLTYPE get_Position(ULONGLONG* pVal) override;
    HRESULT STDMETHODCALLTYPE put_Position(ULONGLONG newVal) override;
    HRESULT STDMETHODCALLTYPE get_RecordParser(IDispatch** pVal) override;
    HRESULT STDMETHODCALLTYPE put_RecordParser(IDispatch* newVal) override;
    HRESULT STDMETHODCALLTYPE get_HasHeader(VARIANT_BOOL* pVal) override;
    HRESULT STDMETHODCALLTYPE put_HasHeader(VARIANT_BOOL newVal) override;
    HRESULT STDMETHODCALLTYPE get_HeaderOffset(ULONG* pVal) override;
    HRESULT STDMETHODCALLTYPE put_HeaderOffset(ULONG newVal) override;
    HRESULT STDMETHODCALLTYPE get_InvertedDirection(VARIANT_BOOL* pVal) override;
    HRESULT STDMETHODCALLTYPE put_InvertedDirection(VARIANT_BOOL newVal) override;
    HRESULT STDMETHODCALLTYPE get_StartDateTime(VARIANT* pVal) override;
    HRESULT STDMETHODCALLTYPE put_StartDateTime(VARIANT newVal) override;
    HRESULT STDMETHODCALLTYPE get_EndDateTime(VARIANT* pVal) override;
    HRESULT STDMETHODCALLTYPE put_EndDateTime(VARIANT newVal) override;
    HRESULT STDMETHODCALLTYPE get_Locale(ULONG* pVal) override;
    HRESULT STDMETHODCALLTYPE put_Locale(ULONG newVal) override;
    HRESULT STDMETHODCALLTYPE get_AutoDetectCodePage(VARIANT_BOOL* pVal) override;
    HRESULT STDMETHODCALLTYPE put_AutoDetectCodePage(VARIANT_BOOL newVal) override;
    HRESULT STDMETHODCALLTYPE get_DisableErrorNotify(VARIANT_BOOL* pVal) override;
    HRESULT STDMETHODCALLTYPE put_DisableErrorNotify(VARIANT_BOOL newVal) override;
    HRESULT STDMETHODCALLTYPE get_SymbolName(BSTR* pVal) override;
    HRESULT STDMETHODCALLTYPE put_SymbolName(BSTR newVal) override;
    HRESULT STDMETHODCALLTYPE GetApproxCount(ULONGLONG* nCount) override;

    // ---- IFileHandlerEvents, IFileHandlerEvents2

    // Handed on to the registered handlers, without the lock.
    HRESULT STDMETHODCALLTYPE RecordCountChange(ULONGLONG nNewCount,
                                                VARIANT_BOOL bComplete) override;
    HRESULT STDMETHODCALLTYPE PutData(VARIANT vFields, ULONGLONG nFrom, ULONGLONG nCount) override;
    // One step of a run; only nIndex counts. S_FALSE: the run has ended well.
    HRESULT STDMETHODCALLTYPE ProcessRecord(ULONGLONG nIndex, BSTR bsRecord,
                                            VARIANT_BOOL bComplete) override;
    HRESULT STDMETHODCALLTYPE get_StartPosition(ULONGLONG* pVal) override;

    // ---- IAsyncTransaction, ISupportErrorInfo

    HRESULT STDMETHODCALLTYPE Cancel() override { return AbortConversion(); }
    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID riid) override;

    // ---- IDataParserLock

    void STDMETHODCALLTYPE EnterParser() override { m_lock.lock(); }
    void STDMETHODCALLTYPE LeaveParser() override { m_lock.unlock(); }

    // ---- IReadState

    HRESULT STDMETHODCALLTYPE GetReadState(IQRL_TabulexConverter::ReadState* pState) override;

private:
    friend class CRecordBatch;          // parses the lines of a run
    friend struct DataParserTestAccess; // lets tests put a file of their own under it

    using IDataParserEvents = IQRL_TabulexConverter::IDataParserEvents;
    using IFileHandlerEvents = IQRL_TabulexConverter::IFileHandlerEvents;
    using IRecordParser = IQRL_TabulexConverter::IRecordParser;

    // What the file handler holds instead of this object. The links are cut under
    // the proxy lock: do so without the object's lock.
    struct FileProxies
    {
        com_ptr<CFileHandlerEventsProxy> pFileEvents;
        com_ptr<CRecordParserProxy> pRecordParser;

        HRESULT Create();
        void Detach();
    };

    // How a batch or a run went.
    struct Outcome
    {
        HRESULT hr;
        bool bSinkKnows; // the sink has ended the run itself: no EndTransaction
    };

    // What a step of the run needs, held by the worker from step to step.
    struct Run
    {
        com_ptr<IDataParserEvents> pEvents;
        com_ptr<ILineReader> pLines;
        com_ptr<IRecordParser> pRecordParser;

        bool IsComplete() const { return pEvents && pLines && pRecordParser; }
    };

    // Runs a call under the lock and without exceptions.
    template <class Call>
    HRESULT Locked(Call call)
    {
        return Guarded([&] {
            LockGuard lock(m_lock);
            return call();
        });
    }

    // ---- the record parser (DataParser.cpp)

    HRESULT CreateRecordParser();
    // Takes this object, or the one it was cloned from, out of the record parser.
    void UnlinkRecordParser();
    HRESULT BindRecordParser(IDispatch* pParser);
    HRESULT CopyTo(CDataParser& clone);

    // ---- delivered columns (DataParserFields.cpp)

    // Type id of an internal type name, -1 for none.
    LONG Name2Type(BSTR bsName) const;
    // Fills m_arFieldIndices with the fields that have a type.
    HRESULT InitFieldsInfo();
    HRESULT FillRecordBlock(SAFEARRAY* pArray, ULONG nFrom, ULONG nCount, ULONG nFields);

    // ---- the file; these throw what the file handler throws (DataParserFile.cpp)

    ULONGLONG Key() const { return reinterpret_cast<std::uintptr_t>(this); }
    ULONGLONG LineOf(ULONGLONG nPosition) const
    {
        return m_bInvertedDirection ? m_nTotalRecords - nPosition - 1
                                    : m_nHeaderOffset + nPosition + m_bHasHeader;
    }
    com_ptr<IFileHandler> FileHandler();
    HRESULT OpenFile(string_view_t sName);
    bool IsBoundTo(string_view_t sName);
    void RebindFile(const com_ptr<IFileHandler>& pHandler);
    HRESULT RenewProxies();
    void CloseFile();
    // Takes the layout of the file for unknown.
    void ForgetLayout();
    void QueueCountEvents();
    void DetectCodePage();
    std::string SampleBytes();
    HRESULT SetPosition(ULONGLONG nPosition);
    HRESULT SetInverted(bool bInverted);
    HRESULT ReadCurrent(BSTR* pRecord);
    HRESULT ReadLast(BSTR* pRecord);

    // ---- dates; these throw as well (DataParserDates.cpp)

    HRESULT MinDateTime(VARIANT* pDate);
    HRESULT MaxDateTime(VARIANT* pDate);
    HRESULT ParsedDateTime(BSTR bsRecord, VARIANT* pDate);
    void RefreshDateRange();
    void TakeDateRange(const SDateWithStatus& first, const SDateWithStatus& last);
    void InferResolution();
    // Stores the date, clamped to the range of the file.
    HRESULT StoreDate(const VARIANT& value, SDateWithStatus& date);
    void RestartLayout();
    void TakeWholeDateRange();

    // ---- runs (RecordPipeline.cpp)

    HRESULT StartWholeFile(IDispatch* pEventSink, ULONG_PTR nTranId);
    HRESULT StartPortion(LONG_PTR hWnd, IDispatch* pEventSink, ULONGLONG StartPos, ULONGLONG Count,
                         ULONG_PTR nTranId);
    HRESULT PreparePortion(const com_ptr<IDataParserEvents>& pEvents, ULONGLONG StartPos,
                           ULONGLONG Count);
    static void TellNoFile(IDataParserEvents& events);
    bool StartsBehindEnd(ULONGLONG StartPos);
    HRESULT ResetRun();
    HRESULT QueueRun(ULONG_PTR nTranId);
    void RegisterTransaction(ULONG_PTR nTranId);
    void UnregisterTransaction();
    void PutSink(com_ptr<IDataParserEvents> pEvents);
    com_ptr<IDataParserEvents> TakeSink();
    bool RefreshRun();
    HRESULT ReadLine(ULONGLONG nIndex);
    bool IsLastPosition(ULONGLONG nIndex) const;
    Outcome LastStep(ULONGLONG nIndex);
    HRESULT EndRun(Outcome outcome);
    // Parses the gathered lines, of which the last is the record at nLast, and
    // delivers those that pass; empties m_sTempRecords.
    Outcome InternalProcessRecords(ULONGLONG nLast, IRecordParser* pRecordParser,
                                   IDataParserEvents* pHost);

    // ---- enumerations of symbols (DataParserSymbols.cpp)

    // kNoField where the file has no symbols.
    ULONG FindSymbolField();

    // ---- settings check (SettingsCheck.cpp)

    HRESULT CheckSettings(LONG_PTR hWnd, IDispatch* pEventSink);
    // The names in quotes, separated by commas.
    string_t LackedFieldList();
    string_t DuplicatedField();

    // ---- members

    CriticalSection m_lock;
    com_ptr<IRecordParser> m_pRecordParser;
    com_ptr<IFileHandler> m_pFileHandler; // null while no file is set
    // A handler that was removed leaves its key with a null value.
    std::unordered_map<IDispatch*, com_ptr<IFileHandlerEvents>> m_mapFileEventHandlers;
    ULONGLONG m_nPosition = 0;
    Bstr m_sSymbolName;                              // null or empty: no filter
    ULONG m_nLocale = 1252;                          // code page number
    std::atomic<bool> m_bAutoDetectCodePage = false; // no lock
    LONG m_bHasHeader = 0;                           // 0 or 1
    ULONG m_nHeaderOffset = 0;                       // lines before the data or the header
    bool m_bInvertedDirection = false;
    ULONGLONG m_nTotalRecords = 0; // lines of the file, read when the direction is inverted
    com_ptr<IDataParserEvents> m_pDataParserEvents; // null unless a run is on
    CLineBuffer m_sTempRecords;                     // lines of the batch; the worker's
    CBatchArray m_batchArray;                       // the worker's
    Variant m_vTypeNames;                           // VT_ARRAY|VT_BSTR, never changes
    std::vector<ULONG> m_arFieldIndices;            // field of each delivered column
    SDateWithStatus m_dtStart, m_dtEnd;             // range of a conversion, inclusive
    SDateWithStatus m_dtLast;                       // last record that passed the order check
    bool m_bPortion = false;
    ULONGLONG m_nPortionStart = 0, m_nPortionCount = 0;
    ULONGLONG m_nLastSymbolHash = 0;                 // all ones before the first record
    ULONG m_nSymbolField = 0;                        // kNoField: the file has no symbols
    std::atomic<bool> m_bDisableErrorNotify = false; // no lock
    Event m_hAbortEvent{Event::Kind::AutoReset};     // no lock
    FileProxies m_proxies;

    // The record parser's uncounted link points at this object, or, in a clone, at
    // the object that is kept here for as long as the link stands.
    com_ptr<CDataParser> m_pLinkOwner;
    bool m_bCountedInPool = false;
    std::atomic<int> m_nRegistrations = 0; // entries of this object among the transactions
    Run m_run;                             // the worker's; no lock
    // Set under the lock whenever a member that m_run copies has changed.
    std::atomic<bool> m_bRunStale = true;
};

} // namespace Hesperon::specifics
