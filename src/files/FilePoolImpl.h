// CFilePool: the one object of the process that src/files/FilePool.h stands for. Its two sides:
//
//   files    which name has which handler, and which names are being opened;
//            guarded by m_filesLock (FilePool.cpp)
//   threads  the worker threads and what waits for one; guarded by m_threadsLock
//            (FilePoolThreads.cpp)
//
// Neither lock is held while the other is taken, while a file is opened, or while
// a reference is let go of.
//
//   Invariants of the files' side
//   1. A handler in m_handlers exists: its last Release takes the name out before
//      it deletes. It may already refuse references; it is then about to leave.
//   2. A name in m_openings is in the hands of one caller of InternalAttachFile. The
//      worker of that opening takes it out when it registers, with a reference for
//      the caller; so the caller gets its handler whatever others do meanwhile.
//
//   Invariants of the threads' side
//   3. m_nFree threads wait for a request or are on their way to.
//   4. m_threads, m_stopping and m_retired hold all threads that aren't joined yet. A
//      thread that calls ShutdownThreads itself is in m_retired from then on, and is
//      joined by the next shutdown or request.
#pragma once

#include <deque>
#include <list>
#include <map>

#include "platform/threads/Mutex.h"
#include "platform/threads/WorkerThread.h"
#include "src/files/FileHandler.h"

namespace Hesperon::specifics {

class CFilePool
{
public:
    // Made at first use and never destroyed, since consumers and threads may outlive
    // static objects; at the end of the process its threads are ended.
    static CFilePool& Instance();

    com_ptr<IFileHandler> InternalAttachFile(string_view_t sName) noexcept;

    // Called by a worker, with its proxy unreferenced.
    void AddFileHandler(const string_t& sName, IFileHandler* pHandler) noexcept;
    // Forgets the name, whichever handler has it by now.
    void RemoveFileHandler(string_view_t sName);
    // Closes the file under the handlers that live.
    void CloseFileHandle(string_view_t sName);

    // Returns when a thread has taken the request; false, and the request is gone,
    // where no thread can be started. Waits for a shutdown that is under way.
    bool QueueRequest(std::unique_ptr<SOpenRequest> request);

    void AddParser() { ++m_nRefs; }
    void ReleaseParser();

    // Ends all threads and waits for them, but for the calling one. A worker ends when
    // the last reference to its file's proxy goes. Does nothing while a parser lives.
    void ShutdownThreads();

    // Ends all workers, whoever holds their files.
    void EndOfProcess();

    std::size_t ThreadCount(); // threads that haven't been joined

private:
    CFilePool() = default;

    // ---- files

    struct Opening
    {
        com_ptr<IFileHandler> pHandler;
        bool bDone = false;
    };
    // Names compare exactly.
    template <class Value>
    using NameMap = std::map<string_t, Value, std::less<>>;
    using FilesLock = std::unique_lock<Mutex>;

    com_ptr<IFileHandler> AttachOrOpen(const string_t& sName);
    com_ptr<IFileHandler> FindHandler(FilesLock& lock, const string_t& sName);
    com_ptr<IFileHandler> OpenHandler(FilesLock& lock, const string_t& sName);
    std::shared_ptr<SharedFile> StartHandler(const string_t& sName);
    void NoteFile(const string_t& sName, std::shared_ptr<SharedFile> pFile) noexcept;
    void FinishOpening(const string_t& sName, IFileHandler* pHandler);
    void AbandonOpening(const string_t& sName);

    Mutex m_filesLock; // guards the three maps
    Condition m_filesChanged;
    NameMap<IFileHandler*> m_handlers; // not counted
    NameMap<std::shared_ptr<SharedFile>> m_fileHandles;
    NameMap<Opening*> m_openings; // on their callers' stacks

    // ---- threads

    struct PoolThread
    {
        WorkerThread worker;
        std::shared_ptr<CFileHandler> pHandler; // that it runs
        bool bRetired = false;                  // ends when its handler does
        bool bEnded = false;                    // touches nothing any more
    };
    using ThreadList = std::list<PoolThread>;
    struct QueuedRequest
    {
        ULONGLONG nTicket; // rising
        std::unique_ptr<SOpenRequest> request;
        std::shared_ptr<CFileHandler> pHandler; // to run it
    };
    using ThreadsLock = std::unique_lock<Mutex>;

    void ThreadMain(PoolThread& self);
    void RunRequest(ThreadsLock& lock, PoolThread& self);
    void WaitUntilTaken(ThreadsLock& lock, ULONGLONG nTicket);
    void StartThread();
    bool IsPoolThread() const;
    static void JoinEnded(ThreadList& threads);
    bool BeginShutdown(ThreadsLock& lock, bool bWhateverLives);
    void JoinStopping(ThreadsLock& lock);
    void Shutdown(bool bWhateverLives);

    Mutex m_threadsLock; // guards what follows
    Condition m_threadsChanged;
    bool m_bShutdown = false;   // under way
    std::size_t m_nThreads = 0; // started since the last shutdown
    std::size_t m_nFree = 0;
    ThreadList m_threads;
    ThreadList m_stopping;             // being joined by a shutdown
    ThreadList m_retired;              // left by a shutdown of their own
    std::deque<QueuedRequest> m_queue; // first in, first out
    ULONGLONG m_nLastTicket = 0;
    std::atomic<LONG> m_nRefs = 0; // data parsers alive
};

} // namespace Hesperon::specifics
