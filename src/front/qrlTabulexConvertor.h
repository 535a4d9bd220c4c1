// CqrlTabulexConvertor: the object that a host creates, and the worker of a session.
//
// The host's object keeps the host's lists and choices and owns one data parser; all
// settings go straight through to the parsers. A session gets an object of its own, a
// worker on a clone of the data parser, which hears the conversion's events on the
// file's worker thread and carries them to the host's thread through a sink window.
// The clone's run holds the worker, the worker holds the clone; the end of the run
// parts them.
//
// Threads: no lock; the host's thread makes all calls. Of a worker the events come on
// the file's thread, or on the host's where the host ends the session, so what both
// touch, the window and the progress box, is guarded.
#pragma once

#include <atomic>
#include <string>
#include <vector>

#include "interfaces/IDataParser.h"
#include "interfaces/IDataParserEvents.h"
#include "interfaces/IProgressBox.h"
#include "interfaces/IQRLGUITweak.h"
#include "interfaces/IRecordParser.h"
#include "interfaces/IqrlTabulexConvertor.h"
#include "module/ComObject.h"
#include "platform/CriticalSection.h"
#include "platform/MessageWindow.h"
#include "platform/values.h"
#include "src/front/qrlHelperStructs.h"
#include "src/values/qrlValueMultiplier.h"

namespace Hesperon::specifics {

class CqrlTabulexConvertor
    : public ComObject<CqrlTabulexConvertor, Dual<IQRL_TabulexConverter::IqrlTabulexConvertor>,
                       Dual<IQRL_TabulexConverter::IDataParserEvents>,
                       Dual<IQRL_TabulexConverter::IQRLGUITweak>>
{
public:
    HRESULT FinalConstruct();
    void FinalRelease();

    // ---- IqrlTabulexConvertor

    HRESULT STDMETHODCALLTYPE DoAnalyse(VARIANT_BOOL* Status, LONG_PTR ParentWindow) override;
    HRESULT STDMETHODCALLTYPE DoConvert(IDispatch* pReceiverSink, LONG_PTR ParentWindow) override;
    HRESULT STDMETHODCALLTYPE DoEnumSymbols(IDispatch* pReceiverSink) override;
    HRESULT STDMETHODCALLTYPE DoConvertPortion(LONG_PTR hWnd, IDispatch* pReceiverSink,
                                               ULONGLONG StartPos, ULONGLONG Count) override;
    HRESULT STDMETHODCALLTYPE InitFieldsInfo() override;
    HRESULT STDMETHODCALLTYPE Unadvise(IDispatch* pReceiverSink) override;
    HRESULT STDMETHODCALLTYPE Clone(IDispatch** newObj) override;
    HRESULT STDMETHODCALLTYPE CheckConverterSettings(LONG_PTR hWnd, IDispatch* pEventSink) override;
    HRESULT STDMETHODCALLTYPE SelectResolution(LONG ResolutionSizeTemplate,
                                               LONG ResolutionTemplate) override;
    HRESULT STDMETHODCALLTYPE AddFieldTemplate(LONG Id, BSTR FieldName) override;
    HRESULT STDMETHODCALLTYPE AddResolutionTemplate(LONG Id, BSTR ResolutionName) override;
    HRESULT STDMETHODCALLTYPE AddTimeZoneTemplate(LONG Id, BSTR TimeZoneName) override;
    HRESULT STDMETHODCALLTYPE GetField(LONG Index, LONG* Id, BSTR* FieldTemplate) override;
    HRESULT STDMETHODCALLTYPE SetField(LONG Index, LONG Id, BSTR FieldTemplate) override;
    HRESULT STDMETHODCALLTYPE get_FieldCount(LONG* pVal) override;
    HRESULT STDMETHODCALLTYPE get_DataParser(IDispatch** pVal) override;
    HRESULT STDMETHODCALLTYPE get_ValidResolution(VARIANT_BOOL* pVal) override;
    HRESULT STDMETHODCALLTYPE get_FileName(BSTR* pVal) override;
    HRESULT STDMETHODCALLTYPE put_FileName(BSTR newVal) override;
    HRESULT STDMETHODCALLTYPE get_Environment(BSTR* pVal) override;
    HRESULT STDMETHODCALLTYPE put_Environment(BSTR newVal) override;
    HRESULT STDMETHODCALLTYPE get_FieldTemplate(LONG* pVal) override;
    HRESULT STDMETHODCALLTYPE put_FieldTemplate(LONG newVal) override;
    HRESULT STDMETHODCALLTYPE get_SymbolName(BSTR* pVal) override;
    HRESULT STDMETHODCALLTYPE put_SymbolName(BSTR newVal) override;
    HRESULT STDMETHODCALLTYPE get_ResolutionTemplate(LONG* pVal) override;
    HRESULT STDMETHODCALLTYPE put_ResolutionTemplate(LONG newVal) override;
    HRESULT STDMETHODCALLTYPE get_ResolutionSizeTemplate(LONG* pVal) override;
    HRESULT STDMETHODCALLTYPE put_ResolutionSizeTemplate(LONG newVal) override;
    HRESULT STDMETHODCALLTYPE get_TimeZoneTemplate(LONG* pVal) override;
    HRESULT STDMETHODCALLTYPE put_TimeZoneTemplate(LONG newVal) override;
    HRESULT STDMETHODCALLTYPE get_StartDateTime(VARIANT* pVal) override;
    HRESULT STDMETHODCALLTYPE put_StartDateTime(VARIANT newVal) override;
    HRESULT STDMETHODCALLTYPE get_EndDateTime(VARIANT* pVal) override;
    HRESULT STDMETHODCALLTYPE put_EndDateTime(VARIANT newVal) override;
    HRESULT STDMETHODCALLTYPE get_PriceMultiplier(BYTE* pVal) override;
    HRESULT STDMETHODCALLTYPE put_PriceMultiplier(BYTE newVal) override;
    HRESULT STDMETHODCALLTYPE get_VolumeMultiplier(BYTE* pVal) override;
    HRESULT STDMETHODCALLTYPE put_VolumeMultiplier(BYTE newVal) override;
    HRESULT STDMETHODCALLTYPE put_Mode(LONG newVal) override;
    HRESULT STDMETHODCALLTYPE ReleaseFile() override;

    // ---- IDataParserEvents, of a worker and of a settings check

    HRESULT STDMETHODCALLTYPE PutRecords(VARIANT vRecords, ULONGLONG nRecCountWithSkeeped) override;
    HRESULT STDMETHODCALLTYPE EndTransaction(VARIANT_BOOL bResult) override;
    HRESULT STDMETHODCALLTYPE OnError(VARIANT Description) override;
    HRESULT STDMETHODCALLTYPE GetResolutionName(LONG Resolution, BSTR* Name) override;
    HRESULT STDMETHODCALLTYPE OnError2(LONG_PTR lptrLineNum, LONG lptrFieldNum,
                                       BSTR bsDescription) override;

    // ---- IQRLGUITweak

    HRESULT STDMETHODCALLTYPE get_MenuStyle(LONG* pVal) override;
    HRESULT STDMETHODCALLTYPE put_MenuStyle(LONG newVal) override;
    HRESULT STDMETHODCALLTYPE get_MenuEffect(LONG* pVal) override;
    HRESULT STDMETHODCALLTYPE put_MenuEffect(LONG newVal) override;
    HRESULT STDMETHODCALLTYPE get_ResourceHandle(LONG_PTR* pVal) override;
    HRESULT STDMETHODCALLTYPE put_ResourceHandle(LONG_PTR newVal) override;
    HRESULT STDMETHODCALLTYPE get_ModelessProgress(VARIANT_BOOL* pVal) override;
    HRESULT STDMETHODCALLTYPE put_ModelessProgress(VARIANT_BOOL newVal) override;

private:
    using IDataParser = IQRL_TabulexConverter::IDataParser;
    using IProgressBox = IQRL_TabulexConverter::IProgressBox;
    using IRecordParser = IQRL_TabulexConverter::IRecordParser;

    // ---- the parsers (qrlTabulexConvertor.cpp)

    HRESULT Construct();
    // Asked for each time, since the data parser's may be replaced; null for none.
    com_ptr<IRecordParser> RecordParser() const;
    HRESULT HandOutMultipliers(IRecordParser& parser);
    HRESULT CopyTo(CqrlTabulexConvertor& clone);
    void CopySettingsTo(CqrlTabulexConvertor& clone) const;
    // Gives the copy a clone of this object's data parser.
    HRESULT CloneParserTo(CqrlTabulexConvertor& clone) const;
    HRESULT MakeProgressBox();
    void AddDefaultTemplates();

    // ---- fields and resolutions (qrlConvertorSettings.cpp)

    HRESULT PublishResolutions();
    // The slot of a host value that is to be chosen with the current size.
    LONG ChosenSlot(LONG nHostValue) const;
    // Takes the name of the resolution that stands in the record parser.
    void TakeResolutionName(IRecordParser& parser);
    HRESULT ReadFieldNames(IRecordParser& parser);
    LONG Name2Type(BSTR bsName) const;
    Bstr Type2Name(LONG nId) const;
    string_view_t TypeNameAt(LONG nPosition) const;

    // ---- sessions (qrlConvertorSessions.cpp)

    struct Session;
    HRESULT BeginSession(IDispatch* pReceiverSink, Session& session) const;
    HRESULT StartConversion(Session& session, BSTR sFileName, LONG_PTR hwndParent);
    HRESULT StartPortion(Session& session, LONG_PTR hWnd, ULONGLONG nStart, ULONGLONG nCount);
    void AbandonSession();

    // ---- events (qrlConvertorEvents.cpp)

    HRESULT ShowProgress(ULONGLONG nRecords);
    com_ptr<IProgressBox> ProgressBox() const;
    void CloseProgressBox();

    com_ptr<IDataParser> m_pDataParser; // a worker's is a clone
    std::atomic<WindowHandle> m_hWndSink = 0;
    CTemplateList m_arFieldTemplates;
    CTemplateList m_arResolutionTemplates; // ids are resolutions, not the host's values
    CTemplateList m_arTimeZoneTemplates;
    string_t m_sFieldTemplate; // names of the current choices
    string_t m_sResolutionTemplate;
    string_t m_sTimeZoneTemplate;
    LONG m_nResolutionSize = 0;
    Variant m_vTypeNames;                 // VT_ARRAY|VT_BSTR, never changes
    std::vector<string_t> m_arFieldNames; // a field each
    std::vector<LONG> m_arFieldTypes;     // host ids, likewise; 0 isn't delivered
    mutable CriticalSection m_boxLock;
    com_ptr<IProgressBox> m_pProgressBox; // guarded by m_boxLock; only in a worker or clone
    string_t m_sFolder;                   // last used in the dialog
    ULONGLONG m_nProcessed = 0;           // records delivered or skipped
    bool m_bNoProgress = false;           // errors go to the sink, not to a box
    bool m_bFileTaken = false;
    com_ptr<CqrlValueMultiplier> m_pPriceMultiplier;
    com_ptr<CqrlValueMultiplier> m_pVolumeMultiplier;
    LONG m_nMode = 0;
    bool m_bCountedByEnumerations = false;
};

} // namespace Hesperon::specifics
