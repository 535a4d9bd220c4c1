#include "src/front/qrlDataParserEventsProxy.h"

#include "src/front/qrlSinkWindow.h"

namespace Hesperon::specifics {

// A cancelled enumeration ends without a word, and must not leave its window behind.
// Whoever releases last may not wait for the host's thread.
void CqrlDataParserEventsProxy::FinalRelease()
{
    PostWindowMessage(m_hWnd, WM_SINK_RELEASE, 0, 0);
}

HRESULT CqrlDataParserEventsProxy::PutRecords(VARIANT vRecords, ULONGLONG)
{
    return static_cast<HRESULT>(
        SendWindowMessage(m_hWnd, WM_SINK_DATA, reinterpret_cast<ULONG_PTR>(&vRecords), 0));
}

HRESULT CqrlDataParserEventsProxy::EndTransaction(VARIANT_BOOL bResult)
{
    SendWindowMessage(m_hWnd, WM_SINK_END, bResult != VARIANT_FALSE, 0);
    return S_OK;
}

} // namespace Hesperon::specifics
