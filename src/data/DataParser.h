// CDataParser: one quote file joined to one record parser.
//
// It knows which line of the file is the record at a position, what the first and last dates
// are and in which direction the file runs. It gives out parsed records by number, and starts
// conversions (run/ConversionRun.h). IDataParser.h says what each operation does.
//
// Threads: safe from any thread. One recursive lock an object guards all members but those
// marked otherwise. It is held while records are parsed and during OnError2 of a sink, and left
// before PutRecords and EndTransaction. Under it the locks of the record parser and of the file
// handler are taken, never the process-wide proxy lock, since a cancelled transaction enters
// here with that one held. A record parser that is going to call its data parser takes this
// lock before its own (IDataParserLock).
#pragma once

#include <atomic>

#include "interfaces/IAsyncTransaction.h"
#include "interfaces/IDataParser.h"
#include "interfaces/IDataParserEvents.h"
#include "interfaces/IFileHandlerEvents.h"
#include "interfaces/IReadState.h"
#include "interfaces/IRecordParser.h"
#include "module/ComObject.h"
#include "module/Guarded.h"
#include "platform/threads/CriticalSection.h"
#include "platform/values.h"
#include "src/data/DateWithStatus.h"
#include "src/data/FileListeners.h"
#include "src/data/FileProxies.h"
#include "src/data/LineRule.h"
#include "src/data/run/ConversionRun.h"
#include "src/files/IFileConsumer.h"
#include "src/files/IFileHandler.h"
#include "src/parsing/IDataParserLock.h"
#include "src/parsing/ILastRecordHead.h"

namespace Hesperon::specifics {

// How much of the last record is read.
enum class Extent
{
    Whole,
    Head // what a record parser looks at
};

class CDataParser : public ComObject<CDataParser, Dual<IQRL_TabulexConverter::IDataParser>,
                                     Dual<IQRL_TabulexConverter::IFileHandlerEvents>,
                                     Dual<IQRL_TabulexConverter::IFileHandlerEvents2>,
                                     IQRL_TabulexConverter::IAsyncTransaction, ISupportErrorInfo,
                                     IDataParserLock, IQRL_TabulexConverter::IReadState,
                                     ILastRecordHead, ICountHearer, IRecordSteps>,
                    private ConversionRun::IOwner
{
public:
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

    // ---- IFileHandlerEvents, IFileHandlerEvents2, ICountHearer, IRecordSteps

    HRESULT STDMETHODCALLTYPE RecordCountChange(ULONGLONG nNewCount,
                                                VARIANT_BOOL bComplete) override;
    HRESULT STDMETHODCALLTYPE PutData(VARIANT, ULONGLONG, ULONGLONG) override { return S_OK; }
    // One step of a run; only nIndex counts. S_FALSE: the run has ended well.
    HRESULT STDMETHODCALLTYPE ProcessRecord(ULONGLONG nIndex, BSTR, VARIANT_BOOL) override;
    HRESULT STDMETHODCALLTYPE get_StartPosition(ULONGLONG* pVal) override;
    bool STDMETHODCALLTYPE HearsCounts() override;
    HRESULT STDMETHODCALLTYPE ProcessRecords(ULONGLONG nIndex, ULONGLONG nMost,
                                             ULONGLONG& nTaken) override;

    // ---- IAsyncTransaction, ISupportErrorInfo, IDataParserLock, IReadState, ILastRecordHead

    HRESULT STDMETHODCALLTYPE Cancel() override { return AbortConversion(); }
    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID riid) override;
    void STDMETHODCALLTYPE EnterParser() override { m_lock.lock(); }
    void STDMETHODCALLTYPE LeaveParser() override { m_lock.unlock(); }
    HRESULT STDMETHODCALLTYPE GetReadState(IQRL_TabulexConverter::ReadState* pState) override;
    HRESULT STDMETHODCALLTYPE get_LastRecordHead(BSTR* pVal) override;

private:
    friend struct DataParserTestAccess; // lets tests put a file of their own under it

    using IDataParserEvents = IQRL_TabulexConverter::IDataParserEvents;
    using IRecordParser = IQRL_TabulexConverter::IRecordParser;
    // Runs a call under the lock and without exceptions.
    template <class Call>
    HRESULT Locked(Call call);

    // ---- the record parser, copies (DataParser.cpp)

    void UnlinkRecordParser();
    HRESULT BindRecordParser(IDispatch* pParser);
    HRESULT CopyTo(CDataParser& clone);

    // ---- the file; these throw what the file handler throws (DataParserFile.cpp)

    ULONGLONG Key() const { return reinterpret_cast<std::uintptr_t>(this); }
    com_ptr<IFileHandler> FileHandler();
    HRESULT OpenFile(string_view_t sName);
    void RebindFile(const com_ptr<IFileHandler>& pHandler);
    HRESULT RenewProxies();
    void CloseFile();
    void ForgetLayout();
    void QueueCountEvents();
    HRESULT SetPosition(ULONGLONG nPosition);
    HRESULT SetInverted(bool bInverted);
    HRESULT ReadCurrent(BSTR* pRecord);
    HRESULT ReadLast(Extent extent, BSTR* pRecord);

    // ---- dates; these throw as well (DataParserDates.cpp)

    HRESULT MinDateTime(VARIANT* pDate);
    HRESULT MaxDateTime(VARIANT* pDate);
    void RefreshDateRange();
    void TakeDateRange(const DateWithStatus& first, const DateWithStatus& last);
    void InferResolution();
    HRESULT StoreDate(const VARIANT& value, DateWithStatus& date);
    void RestartLayout();

    // ---- runs and enumerations of symbols (DataParserRuns.cpp)

    HRESULT StartWholeFile(IDispatch* pEventSink, ULONG_PTR nTranId);
    HRESULT StartPortion(LONG_PTR hWnd, IDispatch* pEventSink, const RunPortion& portion,
                         ULONG_PTR nTranId);
    bool StartsPastEnd(ULONGLONG StartPos);
    HRESULT BeginRun(const com_ptr<IDataParserEvents>& pEvents, const RunPortion* pPortion);
    HRESULT QueueRun(ULONG_PTR nTranId);
    ULONG FindSymbolField();
    com_ptr<IFileHandler> RunFile() override { return m_pFileHandler; }
    com_ptr<IRecordParser> RunRecordParser() override { return m_pRecordParser; }

    CriticalSection m_lock;
    com_ptr<IRecordParser> m_pRecordParser;
    com_ptr<IFileHandler> m_pFileHandler; // null while no file is set
    FileListeners m_listeners;            // no lock
    ULONGLONG m_nPosition = 0;
    Bstr m_sSymbolName;     // null or empty: no filter
    ULONG m_nLocale = 1252; // code page number
    LineRule m_lines;
    ULONG m_nSymbolField = 0;          // kNoField: the file has no symbols
    Variant m_vTypeNames;              // VT_ARRAY|VT_BSTR, never changes
    DateWithStatus m_dtStart, m_dtEnd; // range of a conversion, inclusive
    std::atomic<bool> m_bAutoDetectCodePage = false, m_bDisableErrorNotify = false; // no lock
    FileProxies m_proxies;
    ConversionRun m_run{*this, *this, m_lock, m_bDisableErrorNotify}; // has rules of its own
    com_ptr<CDataParser> m_pLinkOwner; // of a clone: what the record parser's link points to
    bool m_bCountedInPool = false;
};

template <class Call>
HRESULT CDataParser::Locked(Call call)
{
    return Guarded([&] {
        LockGuard lock(m_lock);
        return call();
    });
}

} // namespace Hesperon::specifics
