// UnofferedRecordParser: a record parser in which every operation answers E_NOTIMPL
// and writes nothing. Classes that offer a few operations derive from it.
#pragma once

#include "interfaces/IRecordParser.h"
#include "module/ComObject.h"

namespace Hesperon::specifics {

template <class Derived>
class UnofferedRecordParser : public ComObject<Derived, Dual<IQRL_TabulexConverter::IRecordParser>>
{
public:
    HRESULT STDMETHODCALLTYPE Parse(BSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Clone(IDispatch**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reset() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE RemoveTemplate(ULONG, BSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE FindResolution(BSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CheckResolution(VARIANT, BSTR*, IDispatch*) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE RecalcResolutionSize() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE IsHeader(BSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE IsValidResolution() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeNames(VARIANT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetFieldValue(VARIANT*, ULONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetResolutionTemplates(VARIANT, VARIANT) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetFieldError(BSTR*, ULONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetFieldText(BSTR, ULONG, BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetFieldIndex(LONG, ULONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTemplates(VARIANT*, BSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetTemplates(VARIANT, BSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetFieldName(BSTR*, ULONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetFieldName(ULONG, BSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetFieldTemplate(BSTR*, ULONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetFieldTemplate(BSTR, ULONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetFieldType(ULONG, LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetFieldType(ULONG, LONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_FieldCount(ULONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_CurrentDateTime(VARIANT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_LackedFields(VARIANT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_DuplicatedField(BSTR*) override { return E_NOTIMPL; }
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
    HRESULT STDMETHODCALLTYPE get_PriceMultiplier(IDispatch**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_PriceMultiplier(IDispatch*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_VolumeMultiplier(IDispatch**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_VolumeMultiplier(IDispatch*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_SmartResolutionEnabled(VARIANT_BOOL*) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE put_SmartResolutionEnabled(VARIANT_BOOL) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE get_FieldDividers(LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_FieldDividers(LONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_UseBarsEndTime(VARIANT_BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_UseBarsEndTime(VARIANT_BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeNamesLocalized(VARIANT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetFieldNameLocalized(BSTR*, ULONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTemplateItemCount(BSTR, LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTemplateItem(BSTR, LONG, BSTR*, LONG*) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE RecreateFealds() override { return E_NOTIMPL; }
};

} // namespace Hesperon::specifics
