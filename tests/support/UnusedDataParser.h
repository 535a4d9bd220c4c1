// A base for fakes of IDataParser: every operation answers E_NOTIMPL.
#pragma once

#include "interfaces/IDataParser.h"
#include "module/ComObject.h"

template <class Derived>
class UnusedDataParser : public ComObject<Derived, Dual<IQRL_TabulexConverter::IDataParser>>
{
public:
    HRESULT STDMETHODCALLTYPE CheckConverterSettings(LONG_PTR, IDispatch*) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE StartEnumSymbols(IDispatch*, ULONG_PTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Clone(IDispatch**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE StartConvertPortion(LONG_PTR, IDispatch*, ULONGLONG, ULONGLONG,
                                                  ULONG_PTR) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetCount(ULONGLONG*, VARIANT_BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE ParseRecords(VARIANT*, ULONG, ULONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE RefreshDateInfo(VARIANT_BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE InvalidateFileInfo(VARIANT_BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetRelativePos(ULONGLONG, FLOAT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE StartConversion(IDispatch*, ULONG_PTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE AbortConversion() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE AddFileEventHandler(IDispatch*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE RemoveFileEventHandler(IDispatch*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetMinDateTime(VARIANT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetMaxDateTime(VARIANT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_CurrentRecord(BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_LastRecord(BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_FieldCount(ULONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_FileName(BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_FileName(BSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Position(ULONGLONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_Position(ULONGLONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_RecordParser(IDispatch**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_RecordParser(IDispatch*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_HasHeader(VARIANT_BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_HasHeader(VARIANT_BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_HeaderOffset(ULONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_HeaderOffset(ULONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_InvertedDirection(VARIANT_BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_InvertedDirection(VARIANT_BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_StartDateTime(VARIANT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_StartDateTime(VARIANT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_EndDateTime(VARIANT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_EndDateTime(VARIANT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Locale(ULONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_Locale(ULONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_AutoDetectCodePage(VARIANT_BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_AutoDetectCodePage(VARIANT_BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_DisableErrorNotify(VARIANT_BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_DisableErrorNotify(VARIANT_BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_SymbolName(BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_SymbolName(BSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetApproxCount(ULONGLONG*) override { return E_NOTIMPL; }
};
