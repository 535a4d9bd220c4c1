// What the tool asks of the system's files beyond the standard library. Paths are UTF-8.
#pragma once

#include <cstdio>
#include <string>

namespace tabulex {

enum class FileMode
{
    Read,
    Write,    // anew
    WriteNew, // refused if the name is taken
    Append
};

// Null on a failure, with the reason in errno. Bytes are read and written unchanged.
std::FILE* OpenFile(const std::string& path, FileMode mode);

// Whether a name stands for something that is written directly, such as a device or a pipe,
// and not for a file that another one can replace.
bool IsWrittenDirectly(const std::string& path);

// The errno of a write that has just failed; EPIPE where nobody reads the pipe any more.
int WriteError(std::FILE* file);

// Gives a file the permissions of another one. Does nothing on systems where a file has
// those of its folder.
void CopyPermissions(const std::string& from, const std::string& to);

// Whether both are the same name to the system.
bool AreSameName(const std::string& a, const std::string& b);

// The system's words for one of its own error numbers.
std::string SystemErrorText(int nError);

} // namespace tabulex
