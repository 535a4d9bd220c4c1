#include "src/UIComponents/ConvertDialog/CallBack.h"

#include "module/Guarded.h"

namespace Hesperon::specifics::UILayer {

// The old function is destroyed after the lock is left.
void CCallBack::SetFunction(Function function)
{
    const LockGuard lock(m_lock);
    std::swap(m_fnCall, function);
}

HRESULT CCallBack::GetTypeInfoCount(UINT* pctinfo)
{
    if (!pctinfo)
        return E_POINTER;
    *pctinfo = 0;
    return S_OK;
}

HRESULT CCallBack::GetTypeInfo(UINT, LCID, ITypeInfo** ppTInfo)
{
    if (ppTInfo)
        *ppTInfo = nullptr;
    return DISP_E_BADINDEX;
}

HRESULT CCallBack::GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*)
{
    return DISP_E_UNKNOWNNAME;
}

HRESULT CCallBack::Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*)
{
    return Guarded([&] {
        Function function;
        {
            const LockGuard lock(m_lock);
            function = m_fnCall;
        }
        if (function)
            function();
        return S_OK;
    });
}

} // namespace Hesperon::specifics::UILayer
