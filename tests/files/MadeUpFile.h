// A file whose pages the test makes up: of any size, with a note of each read, and with
// reads that fail where the test wants them to. For one thread.
#pragma once

#include <algorithm>
#include <cstring>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "src/files/SharedFile.h"

namespace files_test {

class MadeUpFile : public Hesperon::specifics::SharedFile
{
public:
    using Fill = std::function<void(std::uint64_t nOffset, char* pBytes, std::size_t nCount)>;

    MadeUpFile(std::uint64_t nSize, Fill fill)
        : SharedFile(File()), m_nSize(nSize), m_fill(std::move(fill))
    {}
    explicit MadeUpFile(const std::string& bytes)
        : MadeUpFile(bytes.size(), [bytes](std::uint64_t nOffset, char* p, std::size_t nCount) {
              std::memcpy(p, bytes.data() + nOffset, nCount);
          })
    {}

    bool IsOpen() const override { return true; }
    void Close() override {}
    std::optional<std::uint64_t> Size() const override { return m_nSize; }
    bool Read(std::uint64_t nOffset, void* buffer, std::size_t nCount) const override
    {
        m_reads.push_back(nOffset);
        if (m_nGoodReads && (*m_nGoodReads)-- == 0) {
            m_nGoodReads.reset();
            return false;
        }
        if (nOffset + nCount > m_nSize)
            return false;
        m_fill(nOffset, static_cast<char*>(buffer), nCount);
        return true;
    }

    // Lets n reads pass and fails the one after them; those after that pass again.
    void FailAfter(std::size_t n) { m_nGoodReads = n; }
    bool HasFailed() const { return !m_nGoodReads; }
    // Offsets of the reads since the last call.
    std::vector<std::uint64_t> TakeReads() { return std::exchange(m_reads, {}); }

private:
    std::uint64_t m_nSize;
    Fill m_fill;
    mutable std::vector<std::uint64_t> m_reads;
    mutable std::optional<std::size_t> m_nGoodReads; // empty: no failure is due
};

} // namespace files_test
