#include "src/data/FileProxies.h"

namespace Hesperon::specifics {

HRESULT SFileProxies::Create()
{
    const HRESULT hr = CreateObject(pFileEvents);
    return SUCCEEDED(hr) ? CreateObject(pRecordParser) : hr;
}

void SFileProxies::Detach()
{
    if (pFileEvents)
        pFileEvents->Detach();
    if (pRecordParser)
        pRecordParser->Detach();
    *this = {};
}

} // namespace Hesperon::specifics
