// CRecordParserProxy: a record parser for a file's worker to hold. It passes calls
// on to its target until the data parser cuts the link.
//
// The link is guarded by the process-wide proxy lock (Proxies.h), which isn't held during a
// call. Calls on a cut proxy give S_OK and write nothing.
#pragma once

#include "src/data/UnofferedRecordParser.h"

namespace Hesperon::specifics {

class CRecordParserProxy : public UnofferedRecordParser<CRecordParserProxy>
{
public:
    // The target isn't counted: cut the link with Detach() before it goes.
    void Attach(IQRL_TabulexConverter::IRecordParser* pTarget);
    void Detach();

    // ---- passed on; the rest isn't offered

    HRESULT STDMETHODCALLTYPE Parse(BSTR bsRecord) override;
    HRESULT STDMETHODCALLTYPE Clone(IDispatch** newObj) override;
    HRESULT STDMETHODCALLTYPE RemoveTemplate(ULONG nField, BSTR Template) override;
    HRESULT STDMETHODCALLTYPE CheckResolution(VARIANT LastDateTime, BSTR* ResolutionError,
                                              IDispatch* pHost) override;
    HRESULT STDMETHODCALLTYPE IsValidResolution() override;
    HRESULT STDMETHODCALLTYPE GetFieldText(BSTR bsRecord, ULONG nField, BSTR* bsField) override;
    HRESULT STDMETHODCALLTYPE GetFieldIndex(LONG DataType, ULONG* Index) override;
    HRESULT STDMETHODCALLTYPE GetFieldType(ULONG nField, LONG* nType) override;
    HRESULT STDMETHODCALLTYPE SetFieldType(ULONG nField, LONG nType) override;
    HRESULT STDMETHODCALLTYPE get_LackedFields(VARIANT* pVal) override;
    HRESULT STDMETHODCALLTYPE get_DuplicatedField(BSTR* pVal) override;
    HRESULT STDMETHODCALLTYPE get_PriceMultiplier(IDispatch** pVal) override;
    HRESULT STDMETHODCALLTYPE put_PriceMultiplier(IDispatch* newVal) override;
    HRESULT STDMETHODCALLTYPE get_VolumeMultiplier(IDispatch** pVal) override;
    HRESULT STDMETHODCALLTYPE put_VolumeMultiplier(IDispatch* newVal) override;
    HRESULT STDMETHODCALLTYPE get_SmartResolutionEnabled(VARIANT_BOOL* pVal) override;
    HRESULT STDMETHODCALLTYPE put_SmartResolutionEnabled(VARIANT_BOOL newVal) override;
    HRESULT STDMETHODCALLTYPE get_FieldDividers(LONG* pVal) override;
    HRESULT STDMETHODCALLTYPE put_FieldDividers(LONG newVal) override;
    HRESULT STDMETHODCALLTYPE get_UseBarsEndTime(VARIANT_BOOL* pVal) override;
    HRESULT STDMETHODCALLTYPE put_UseBarsEndTime(VARIANT_BOOL newVal) override;

private:
    com_ptr<IQRL_TabulexConverter::IRecordParser> Target();
    template <class Call>
    HRESULT Forward(Call call);

    IQRL_TabulexConverter::IRecordParser* m_pTarget = nullptr; // guarded by ProxyLock
};

} // namespace Hesperon::specifics
