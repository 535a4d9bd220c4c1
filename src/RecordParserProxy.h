// CRecordParserProxy: a record parser for a file's worker to hold. It passes calls
// on to the parser behind it for as long as the data parser lets it.
//
// The link is guarded by the process-wide proxy lock (Proxies.h), which is left
// before a call is passed on. Calls on a cut proxy give S_OK and write nothing, so
// that callers find their results unset.
#pragma once

#include "interfaces/IRecordParser.h"
#include "module/ComObject.h"

namespace Hesperon::specifics {

class CRecordParserProxy
    : public ComObject<CRecordParserProxy, Dual<IQRL_TabulexConverter::IRecordParser>>
{
public:
    // The target isn't counted: cut the link with Detach() before it goes.
    void Attach(IQRL_TabulexConverter::IRecordParser* pTarget);
    void Detach();

    // ---- passed on

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

    // ---- not offered: E_NOTIMPL

    HRESULT STDMETHODCALLTYPE Reset() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE FindResolution(BSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE RecalcResolutionSize() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE IsHeader(BSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeNames(VARIANT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetFieldValue(VARIANT*, ULONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetResolutionTemplates(VARIANT, VARIANT) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetFieldError(BSTR*, ULONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTemplates(VARIANT*, BSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetTemplates(VARIANT, BSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetFieldName(BSTR*, ULONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetFieldName(ULONG, BSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetFieldTemplate(BSTR*, ULONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetFieldTemplate(BSTR, ULONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_FieldCount(ULONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_CurrentDateTime(VARIANT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_DataParser(IDispatch**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_DataParser(IDispatch*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_EventHandler(IDispatch**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_EventHandler(IDispatch*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Environment(BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_Environment(BSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Resolution(LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_Resolution(LONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_ResolutionSize(LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_ResolutionSize(LONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_LinesToSkip(ULONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_LinesToSkip(ULONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeNamesLocalized(VARIANT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetFieldNameLocalized(BSTR*, ULONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTemplateItemCount(BSTR, LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTemplateItem(BSTR, LONG, BSTR*, LONG*) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE RecreateFealds() override { return E_NOTIMPL; }

private:
    com_ptr<IQRL_TabulexConverter::IRecordParser> Target();
    template <class Call>
    HRESULT Forward(Call call);

    IQRL_TabulexConverter::IRecordParser* m_pTarget = nullptr; // guarded by ProxyLock
};

} // namespace Hesperon::specifics
