#include "LocalRPC/ActiveObject.h"

#include "LocalRPC/AO_ThreadTransport.h"
#include "LocalRPC/AO_WndMsgPumpTransport.h"

namespace LocalRPC {

CActiveObject_base::CActiveObject_base(std::unique_ptr<details::IAOTransport> pTransport)
    : m_pTransport(std::move(pTransport))
{}

CActiveObject_base::~CActiveObject_base() = default;

void CActiveObject_base::Start()
{
    Transport().Start();
}

bool CActiveObject_base::Post(const TaskPtr& task)
{
    return Transport().PostTask(task);
}

bool CActiveObject_base::Stop(bool bClear, unsigned long nTimeout)
{
    return Transport().StopEx(bClear, nTimeout, true);
}

details::IAOTransport& CActiveObject_base::Transport() const
{
    if (!m_pTransport)
        throw local_rpc_exception("object wasn't initialized!");
    return *m_pTransport;
}

CActiveObject_thread::CActiveObject_thread()
    : CActiveObject_base(std::make_unique<details::CThread>())
{}

CActiveObject_WndMsg::CActiveObject_WndMsg()
    : CActiveObject_base(std::make_unique<details::CWndMsgPump>())
{}

CTerminate_Local_RPC_Proxy::~CTerminate_Local_RPC_Proxy()
{
    Stop(true, kNoTimeLimit);
}

} // namespace LocalRPC
