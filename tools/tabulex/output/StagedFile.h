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

// What a path leads to in the end, whether it is there or not: a link stays a link,
// and its target is written.
std::string TargetOf(const std::string& path);

class StagedFile
{
public:
    StagedFile() = default;
    ~StagedFile() { Remove(); }
    StagedFile(const StagedFile&) = delete;
    StagedFile& operator=(const StagedFile&) = delete;

    // An empty file beside `target`, which keeps the permissions of what stands there.
    // The stream is the caller's to close. Null where that fails: errno tells why.
    std::FILE* Create(const std::string& target);
    // Renames it to the target. Closed by then; where that fails it is still there.
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
