// StagedFile: a file that is made beside its target under a name of its own, and takes
// the target's place when it is complete.
//
// Nobody sees it under the target's name before Publish, and nobody but its user can open it;
// without one nothing is left behind, and what a killed run has left is taken over by the next.
// Not synchronised.
#pragma once

#include <string>
#include <system_error>

namespace tabulex {

class StagedFile
{
public:
    StagedFile() = default;
    ~StagedFile() { Remove(); }
    StagedFile(const StagedFile&) = delete;
    StagedFile& operator=(const StagedFile&) = delete;

    // Makes an empty file beside `target`, a path without links. False on a failure, with the
    // reason in errno.
    bool Create(const std::string& target);
    // To write it; open until Publish or Remove.
    int Descriptor() const { return m_nFile; }
    // Puts the file in the target's place, on the disk, with the permissions of the file that it
    // replaces; with `bReplace` false there must be none. After a failure it is still there.
    std::error_code Publish(bool bReplace = true);
    // Safe after Publish.
    void Remove();

    // Empty when there is none, also after Publish.
    const std::string& Name() const { return m_sName; }

private:
    std::string m_sTarget;
    std::string m_sName;
    int m_nFile = -1;
};

} // namespace tabulex
