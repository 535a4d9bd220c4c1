#include "src/data/FileProxies.h"

namespace Hesperon::specifics {

HRESULT FileProxies::Create()
{
    const HRESULT hr = CreateObject(pFileEvents);
    return SUCCEEDED(hr) ? CreateObject(pRecordParser) : hr;
}

void FileProxies::Detach()
{
    if (pFileEvents)
        pFileEvents->Detach();
    if (pRecordParser)
        pRecordParser->Detach();
    *this = {};
}

} // namespace Hesperon::specifics
