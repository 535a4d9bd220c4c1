// What is put into a property like onchange: it counts its calls.
#pragma once

#include <functional>

#include "module/ComObject.h"

namespace dialog_test {

class ChangeCounter final : public ComObject<ChangeCounter, IDispatch>
{
public:
    int m_nCalls = 0;
    DISPID m_nId = -1;
    WORD m_nFlags = 0;
    LCID m_nLocale = 0;
    UINT m_nArguments = 99;
    std::function<void()> m_onCall;

    VARIANT AsVariant()
    {
        VARIANT v{};
        v.vt = VT_DISPATCH;
        v.pdispVal = this;
        return v;
    }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID dispIdMember, REFIID, LCID lcid, WORD wFlags,
                                     DISPPARAMS* pDispParams, VARIANT*, EXCEPINFO*, UINT*) override
    {
        ++m_nCalls;
        m_nId = dispIdMember;
        m_nFlags = wFlags;
        m_nLocale = lcid;
        m_nArguments = pDispParams->cArgs + pDispParams->cNamedArgs;
        if (const auto onCall = m_onCall)
            onCall();
        return S_OK;
    }
};

} // namespace dialog_test
