// CqrlTabulexConvertor: the object that a host creates, and the worker of a session.
//
// The host's object keeps the host's lists and choices and owns one data parser; all other
// settings go straight through to the parsers. A session gets an object of its own, a
// worker with a copy of the settings and a clone of the data parser. It gets the events of
// the run on the file's worker thread, and its ConversionSession carries them to the
// host's thread. The clone's run holds the worker and the worker holds the clone; the end
// of the run parts them.
//
// Threads: the host's thread makes all calls but the events. There is no lock here.
#pragma once

#include "interfaces/IDataParser.h"
#include "interfaces/IDataParserEvents.h"
#include "interfaces/IQRLGUITweak.h"
#include "interfaces/IRecordParser.h"
#include "interfaces/IqrlTabulexConvertor.h"
#include "module/ComObject.h"
#include "module/OpenQuestion.h"
#include "src/front/ConversionSession.h"
#include "src/front/ConvertorSettings.h"
#include "src/values/qrlValueMultiplier.h"

namespace Hesperon::specifics {

class CqrlTabulexConvertor
    : public ComObject<CqrlTabulexConvertor, Dual<IQRL_TabulexConverter::IqrlTabulexConvertor>,
                       Dual<IQRL_TabulexConverter::IDataParserEvents>,
                       Dual<IQRL_TabulexConverter::IQRLGUITweak>, IOpenQuestion>
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

    // ---- IDataParserEvents: of a worker's run, and of a check while one is under way

    HRESULT STDMETHODCALLTYPE PutRecords(VARIANT vRecords, ULONGLONG nRecCountWithSkeeped) override;
    HRESULT STDMETHODCALLTYPE EndTransaction(VARIANT_BOOL bResult) override;
    HRESULT STDMETHODCALLTYPE OnError(VARIANT Description) override;
    HRESULT STDMETHODCALLTYPE GetResolutionName(LONG Resolution, BSTR* Name) override;
    HRESULT STDMETHODCALLTYPE OnError2(LONG_PTR lptrLineNum, LONG lptrFieldNum,
                                       BSTR bsDescription) override;

    // ---- IOpenQuestion

    void STDMETHODCALLTYPE EndQuestions() override { m_session.EndQuestions(); }

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
    using IRecordParser = IQRL_TabulexConverter::IRecordParser;

    // ---- the parsers (qrlTabulexConvertor.cpp)

    HRESULT Construct();
    // Asked for each time, since a host may replace it in the data parser; null for none.
    com_ptr<IRecordParser> RecordParser() const;
    HRESULT HandOutMultipliers(IRecordParser& parser);
    HRESULT CopyTo(CqrlTabulexConvertor& clone);
    void CopySettingsTo(CqrlTabulexConvertor& clone) const;
    // Gives the copy a clone of this object's data parser.
    HRESULT CloneParserTo(CqrlTabulexConvertor& clone) const;

    // ---- fields and resolutions (qrlConvertorSettings.cpp)

    HRESULT PublishResolutions();
    // Chooses the resolution that stands in the record parser.
    void TakeResolution(IRecordParser& parser);
    HRESULT ReadFields(IRecordParser& parser);

    // ---- sessions (qrlConvertorSessions.cpp)

    template <class Start>
    static HRESULT RunSession(IDispatch* pReceiverSink, Start start);
    HRESULT StartConversion(CqrlTabulexConvertor& worker, ULONG_PTR nTransaction, BSTR sFileName,
                            LONG_PTR hwndParent) const;
    // What answers the events: the check that is under way, else the object's own session.
    ConversionSession& Session() { return m_pCheck ? *m_pCheck : m_session; }

    com_ptr<IDataParser> m_pDataParser; // a worker's is a clone
    ConvertorSettings m_settings;
    HostTypeNames m_typeNames;
    ConversionSession m_session{m_pDataParser, m_settings};
    ConversionSession* m_pCheck = nullptr; // of the check that is under way
    com_ptr<CqrlValueMultiplier> m_pPriceMultiplier;
    com_ptr<CqrlValueMultiplier> m_pVolumeMultiplier;
    LONG m_nMode = 0; // for the import dialog
    bool m_bFileTaken = false;
    bool m_bCountedByEnumerations = false;
};

} // namespace Hesperon::specifics
