// A report library that refuses everything except the question IS CLEAN.

#include "diagnostics/IReportRoot.h"

namespace {

using namespace FaultmereUtil;

// Lives as long as the library, so its references aren't counted.
class Root final : public IReportRoot
{
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE Command(LPCOLESTR szCommand, IReportBag*, IReportBag**) override
    {
        return string_view_t(szCommand) == OLESTR("IS CLEAN") ? S_FALSE : E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Fallback(LPCOLESTR) override { return E_NOTIMPL; }
};

} // namespace

extern "C" TABULEX_API HRESULT STDMETHODCALLTYPE FM_InitObject(IReportRoot** ppRoot)
{
    static Root root;
    *ppRoot = &root;
    return S_OK;
}
