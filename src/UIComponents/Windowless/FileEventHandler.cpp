#include "src/UIComponents/Windowless/FileEventHandler.h"

#include <mutex>

#include "module/Guarded.h"

namespace Hesperon::specifics {

void CFileEventHandler::PointAt(notify::IFileEventSink* pSink)
{
    const std::lock_guard lock(m_lock);
    m_pSink = pSink;
}

HRESULT CFileEventHandler::RecordCountChange(ULONGLONG, VARIANT_BOOL)
{
    return Guarded([&] {
        const std::lock_guard lock(m_lock);
        if (m_pSink)
            m_pSink->OnRecordCountChanged();
        return S_OK;
    });
}

} // namespace Hesperon::specifics
