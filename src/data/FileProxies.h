// FileProxies: what the worker of a file holds instead of a data parser and its record parser.
//
// The links back are cut under the proxy lock: do so without the parser's lock. The struct
// itself is guarded by its owner.
#pragma once

#include "src/data/RecordParserProxy.h"
#include "src/files/Proxies.h"

namespace Hesperon::specifics {

struct FileProxies
{
    com_ptr<CFileHandlerEventsProxy> pFileEvents;
    com_ptr<CRecordParserProxy> pRecordParser;

    HRESULT Create();
    // Cuts both links and lets go of the proxies.
    void Detach();
};

} // namespace Hesperon::specifics
