// CCallBack: a function as a dispatch object, for properties that take one to call.
//
// It is called for any dispid and flags, without arguments, and always succeeds; without a
// function nothing happens. Safe from any thread: the function runs on the caller's, outside of
// the lock, so a function that was taken away may still be running.
#pragma once

#include <functional>

#include "module/ComObject.h"
#include "platform/threads/CriticalSection.h"

namespace Hesperon::specifics::UILayer {

class CCallBack final : public ComObject<CCallBack, IDispatch>
{
public:
    using Function = std::function<void()>;

    // An empty one takes the function away.
    void SetFunction(Function function);

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* pctinfo) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT iTInfo, LCID lcid, ITypeInfo** ppTInfo) override;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID riid, LPOLESTR* rgszNames, UINT cNames,
                                            LCID lcid, DISPID* rgDispId) override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID dispIdMember, REFIID riid, LCID lcid, WORD wFlags,
                                     DISPPARAMS* pDispParams, VARIANT* pVarResult,
                                     EXCEPINFO* pExcepInfo, UINT* puArgErr) override;

private:
    CriticalSection m_lock;
    Function m_fnCall; // guarded by m_lock
};

} // namespace Hesperon::specifics::UILayer
