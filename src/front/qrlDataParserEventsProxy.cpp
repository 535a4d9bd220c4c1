#include "src/front/qrlDataParserEventsProxy.h"

namespace Hesperon::specifics {

HRESULT CqrlDataParserEventsProxy::PutRecords(VARIANT vRecords, ULONGLONG)
{
    return m_link.SendData(vRecords);
}

HRESULT CqrlDataParserEventsProxy::EndTransaction(VARIANT_BOOL bResult)
{
    m_link.End(bResult != VARIANT_FALSE);
    return S_OK;
}

} // namespace Hesperon::specifics
