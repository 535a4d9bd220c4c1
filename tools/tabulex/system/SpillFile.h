// SpillFile: a temporary file: for an input that can't be opened as it stands, and for what is
// written only when all is well.
//
// Only its owner can open it, and nothing of it is left when the process ends, however that
// comes: it has no name, or deletes itself. Used by one thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tabulex {

class SpillFile
{
public:
    // In the folder of TMPDIR, or the system's for temporary files. Throws Fault.
    SpillFile();
    ~SpillFile();
    SpillFile(const SpillFile&) = delete;
    SpillFile& operator=(const SpillFile&) = delete;

    // Adds to the end, at once. Throws Fault for a disk that is full.
    void Write(std::string_view bytes);
    // The same, and throws after an interrupt: for work that nothing else would stop.
    void WriteUnlessInterrupted(std::string_view bytes);

    // The name by which this process can open the file while the object lives.
    const std::string& Path() const { return m_sPath; }

private:
    std::string m_sFolder;
    std::string m_sPath;
    std::intptr_t m_handle = -1;
    std::uint64_t m_nSize = 0;
};

} // namespace tabulex
