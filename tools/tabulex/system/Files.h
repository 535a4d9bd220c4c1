// What the tool asks of the system's files beyond the standard library. Paths are UTF-8.
#pragma once

#include <cstdio>
#include <string>

namespace tabulex {

enum class FileMode
{
    Read,
    Write,    // anew
    WriteNew, // refused where the name is taken
    Append
};

// Null where that fails: errno tells why. Bytes go through as they are.
std::FILE* OpenFile(const std::string& path, FileMode mode);

// Whether what stands under a name is written as it stands there, and no file that another
// one can take the place of.
bool IsWrittenDirectly(const std::string& path);

// The errno of a write that has just failed; EPIPE where nobody reads the pipe any more.
int WriteError(std::FILE* file);

// Gives a file the permissions of another one, where a folder doesn't give them to both.
void CopyPermissions(const std::string& from, const std::string& to);

// Whether the system takes both for the same name.
bool AreSameName(const std::string& a, const std::string& b);

// The system's words for one of its own error numbers.
std::string SystemErrorText(int nError);

} // namespace tabulex
