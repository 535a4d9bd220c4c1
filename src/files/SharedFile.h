// SharedFile: one open file that several owners hold, and that any of them may
// close while the others still use it.
//
// Reads after Close() fail; they never reach a file that the system has opened
// under the same handle since. Safe from any thread: a lock of its own, under
// which nothing else is taken, is held for the length of a read. Reads are by
// whole pages, so the lock costs nothing that counts. Virtual, so that a test can
// make pages up.
#pragma once

#include "interfaces/IReadState.h"
#include "platform/File.h"

#include "platform/threads/Mutex.h"

namespace Hesperon::specifics {

struct FailedRead
{
    IQRL_TabulexConverter::ReadFault kind = IQRL_TabulexConverter::ReadFaultNone;
    std::uint64_t nPosition = 0; // the first byte that couldn't be read
};

class SharedFile
{
public:
    explicit SharedFile(File file) : m_file(std::move(file)) {}
    virtual ~SharedFile() = default;
    SharedFile(const SharedFile&) = delete;
    SharedFile& operator=(const SharedFile&) = delete;

    virtual bool IsOpen() const
    {
        std::lock_guard lock(m_lock);
        return m_file.IsOpen();
    }

    virtual void Close()
    {
        std::lock_guard lock(m_lock);
        m_file.Close();
    }

    // Size in bytes now; empty for a closed file and where the system gives none.
    virtual std::optional<std::uint64_t> Size() const
    {
        std::lock_guard lock(m_lock);
        return m_file.IsOpen() ? m_file.Size() : std::nullopt;
    }

    // True if all of `count` bytes at `offset` were read. What a failed read leaves in
    // the buffer is unspecified.
    virtual bool Read(std::uint64_t offset, void* buffer, std::size_t count) const
    {
        using namespace IQRL_TabulexConverter;
        std::lock_guard lock(m_lock);
        if (!m_file.IsOpen())
            return false;
        const auto nRead = m_file.ReadAt(offset, buffer, count);
        if (nRead == count)
            return true;
        m_lastFault = {nRead ? ReadFaultCut : ReadFaultSystem, offset + nRead.value_or(0)};
        return false;
    }

    // Of the last read that failed; a closed file's reads don't count.
    FailedRead LastFault() const
    {
        std::lock_guard lock(m_lock);
        return m_lastFault;
    }

private:
    mutable Mutex m_lock; // guards what follows
    File m_file;
    mutable FailedRead m_lastFault;
};

} // namespace Hesperon::specifics
