// StagedFile: a file that is made beside its target under a name of its own, and takes
// the target's place when it is complete.
//
// Nobody sees it under the target's name before Publish; without one nothing is left
// behind. Not synchronised.
#pragma once

#include <cstdio>
#include <string>
#include <system_error>

namespace tabulex {

// The file that a path leads to in the end, whether it exists or not: a link is kept, and
// its target is written.
std::string TargetOf(const std::string& path);

class StagedFile
{
public:
    StagedFile() = default;
    ~StagedFile() { Remove(); }
    StagedFile(const StagedFile&) = delete;
    StagedFile& operator=(const StagedFile&) = delete;

    // Makes an empty file beside `target`, with the permissions of the file that is there.
    // The caller closes the stream. Null on a failure, with the reason in errno.
    std::FILE* Create(const std::string& target);
    // Renames the file, which must be closed by then, to the target. After a failure it is
    // still there.
    std::error_code Publish();
    // Safe after Publish.
    void Remove();

    // Empty when there is none, also after Publish.
    const std::string& Name() const { return m_sName; }

private:
    std::string m_sTarget;
    std::string m_sName;
};

} // namespace tabulex
