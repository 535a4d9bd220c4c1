// CFakeRecordParser: a record parser that parses nothing, for a data parser that only
// reads lines. The operations that a data parser calls while it reads lines succeed and
// write nothing; all others answer E_NOTIMPL. It has no state, so it is safe from any thread.
#pragma once

#include "src/data/UnofferedRecordParser.h"

namespace Hesperon::specifics {

class CFakeRecordParser final : public UnofferedRecordParser<CFakeRecordParser>
{
public:
    HRESULT STDMETHODCALLTYPE Clone(IDispatch** newObj) override;

    HRESULT STDMETHODCALLTYPE Parse(BSTR) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Reset() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE FindResolution(BSTR) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE IsValidResolution() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetFieldError(BSTR*, ULONG) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE put_DataParser(IDispatch*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE get_PriceMultiplier(IDispatch**) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE put_PriceMultiplier(IDispatch*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE get_VolumeMultiplier(IDispatch**) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE put_VolumeMultiplier(IDispatch*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE get_UseBarsEndTime(VARIANT_BOOL*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE put_UseBarsEndTime(VARIANT_BOOL) override { return S_OK; }
};

} // namespace Hesperon::specifics
