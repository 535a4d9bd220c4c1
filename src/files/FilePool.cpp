// The files' side of CFilePool: which name has which handler.
//
// The first caller of a name puts it among the openings, opens the file without the lock and
// queues a request for a worker; callers that come meanwhile wait. The worker that registers
// hands the caller its handler and puts the name among the handlers.
#include "src/files/FilePool.h"

#include "diagnostics/FaultmereClient.h"
#include "platform/Process.h"
#include "src/files/FilePoolImpl.h"

namespace Hesperon::specifics {

namespace {

// Tries again, since a program that holds the file may be done in a moment. The pause
// grows by kPauseStep and stays below kLastPause.
File OpenPatiently(string_view_t sName)
{
    constexpr std::chrono::milliseconds kPauseStep(10);
    constexpr std::chrono::milliseconds kLastPause(50);
    for (std::chrono::milliseconds pause(0); pause != kLastPause; pause += kPauseStep) {
        int nError = 0;
        File file = File::Open(sName, nError);
        if (file.IsOpen())
            return file;
        std::this_thread::sleep_for(pause);
        FaultmereUtil::Trace("InternalAttachFile: CreateFile failed " + PathToBytes(sName) +
                             " (ErrorCode=" + std::to_string(nError) + ")");
    }
    return {};
}

} // namespace

// Where the system has ended the other threads already, there is nobody to wait for, and any of
// them may have held a lock.
CFilePool& CFilePool::Instance()
{
    static CFilePool& pool = *new CFilePool;
    static const struct AtExit
    {
        ~AtExit()
        {
            if (!OtherThreadsAreGone())
                pool.EndOfProcess();
        }
    } end;
    return pool;
}

com_ptr<IFileHandler> CFilePool::InternalAttachFile(string_view_t sName) noexcept
try {
    return AttachOrOpen(string_t(sName));
} catch (const std::exception&) {
    return {};
}

// Callers of one name wait for each other, so that they share one handler.
com_ptr<IFileHandler> CFilePool::AttachOrOpen(const string_t& sName)
{
    FilesLock lock(m_filesLock);
    if (auto pHandler = FindHandler(lock, sName))
        return pHandler;
    return OpenHandler(lock, sName);
}

// Null where the name is free to be opened. A handler that refuses a reference is about to take its
// name out, and an opening that is under way ends with a handler or without: both are waited for.
com_ptr<IFileHandler> CFilePool::FindHandler(FilesLock& lock, const string_t& sName)
{
    for (;;) {
        const auto it = m_handlers.find(sName);
        if (it != m_handlers.end() && it->second->AddRef() != 0)
            return {attach_ref, it->second};
        if (it == m_handlers.end() && !m_openings.contains(sName))
            return {};
        m_filesChanged.wait(lock);
    }
}

// Opens without the lock: the disk may be slow, and the worker needs the lock to register.
// `opening` stays where it is until its entry is gone, which the worker or this thread takes out.
com_ptr<IFileHandler> CFilePool::OpenHandler(FilesLock& lock, const string_t& sName)
{
    Opening opening;
    m_openings.emplace(sName, &opening);
    lock.unlock();
    auto pFile = StartHandler(sName);
    lock.lock();
    if (pFile) {
        NoteFile(sName, std::move(pFile));
        m_filesChanged.wait(lock, [&] { return opening.bDone; });
    } else {
        m_openings.erase(sName);
        m_filesChanged.notify_all();
    }
    return std::move(opening.pHandler);
}

void CFilePool::NoteFile(const string_t& sName, std::shared_ptr<SharedFile> pFile) noexcept
try {
    m_fileHandles.insert_or_assign(sName, std::move(pFile));
} catch (const std::bad_alloc&) {
    // The file can't be closed by its name then; its worker closes it.
}

// Null where the file can't be opened or gets no worker.
std::shared_ptr<SharedFile> CFilePool::StartHandler(const string_t& sName)
try {
    File file = OpenPatiently(sName);
    if (!file.IsOpen())
        return nullptr;
    auto pFile = std::make_shared<SharedFile>(std::move(file));
    const auto add = [this](const string_t& sFile, IFileHandler* pHandler) {
        AddFileHandler(sFile, pHandler);
    };
    const auto remove = [this](const string_t& sFile, IFileHandler*) { RemoveFileHandler(sFile); };
    auto request = std::make_unique<SOpenRequest>(SOpenRequest{sName, pFile, add, remove});
    if (FaultmereUtil::Assert(QueueRequest(std::move(request)), "0 && \"Can not queue request\""))
        return pFile;
    pFile->Close();
    return nullptr;
} catch (const std::exception&) {
    FaultmereUtil::ReportAssertion("0 && \"Can not queue request\"");
    return nullptr;
}

void CFilePool::AddFileHandler(const string_t& sName, IFileHandler* pHandler) noexcept
{
    std::lock_guard lock(m_filesLock);
    FinishOpening(sName, pHandler);
    try {
        m_handlers.insert_or_assign(sName, pHandler);
    } catch (const std::bad_alloc&) {
        // The caller that opened the file has its handler; others will open the file again.
    }
}

// Takes the first reference to the new proxy, for the caller who waits.
void CFilePool::FinishOpening(const string_t& sName, IFileHandler* pHandler)
{
    const auto it = m_openings.find(sName);
    if (it == m_openings.end())
        return;
    it->second->pHandler = pHandler;
    it->second->bDone = true;
    m_openings.erase(it);
    m_filesChanged.notify_all();
}

// A worker that couldn't register: its caller gets null.
void CFilePool::AbandonOpening(const string_t& sName)
{
    std::lock_guard lock(m_filesLock);
    FinishOpening(sName, nullptr);
}

void CFilePool::RemoveFileHandler(string_view_t sName)
{
    std::lock_guard lock(m_filesLock);
    if (const auto it = m_handlers.find(sName); it != m_handlers.end())
        m_handlers.erase(it);
    if (const auto it = m_fileHandles.find(sName); it != m_fileHandles.end())
        m_fileHandles.erase(it);
    m_filesChanged.notify_all();
}

void CFilePool::CloseFileHandle(string_view_t sName)
{
    std::lock_guard lock(m_filesLock);
    if (const auto it = m_fileHandles.find(sName); it != m_fileHandles.end())
        it->second->Close();
}

// Consumers go with the requests, and may call the pool while they do: the lock is left before.
// The last parser may be among them, and must not wait for workers that are held here.
void CFilePool::EndOfProcess()
{
    ++m_nRefs;
    std::vector<com_ptr<IFileHandler>> handlers;
    {
        std::lock_guard lock(m_filesLock);
        for (const auto& [sName, pHandler] : m_handlers)
            if (pHandler->AddRef() != 0)
                handlers.emplace_back(attach_ref, pHandler);
    }
    for (const auto& pHandler : handlers)
        pHandler->CancelRequests(IFileHandler::kAllKeys);
    handlers.clear();
    --m_nRefs;
    Shutdown(true);
}

// ---- what data parsers use --------------------------------------------------

void FilePool::AddParser()
{
    CFilePool::Instance().AddParser();
}

void FilePool::ReleaseParser()
{
    CFilePool::Instance().ReleaseParser();
}

void FilePool::AwaitThreads()
{
    CFilePool::Instance().ShutdownThreads();
}

com_ptr<IFileHandler> FilePool::AttachFile(string_view_t sName)
{
    return CFilePool::Instance().InternalAttachFile(sName);
}

void FilePool::ReleaseFile(string_view_t sName, bool bClose)
{
    CFilePool& pool = CFilePool::Instance();
    if (bClose)
        pool.CloseFileHandle(sName);
    pool.RemoveFileHandler(sName);
}

} // namespace Hesperon::specifics
