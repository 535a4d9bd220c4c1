// What the tool asks of the system's files beyond the standard library. Paths are UTF-8.
#pragma once

#include <cstdio>
#include <string>

namespace tabulex {

enum class FileMode
{
    Read,
    Append
};

// Null on a failure, with the reason in errno. Bytes are read and written unchanged.
std::FILE* OpenFile(const std::string& path, FileMode mode);

// Whether a path leads to the regular file that the program has open as a stream.
bool IsFileOfStream(int nStream, const std::string& path);

// Whether both are the same name to the system.
bool AreSameName(const std::string& a, const std::string& b);

// The system's words for one of its own error numbers.
std::string SystemErrorText(int nError);

} // namespace tabulex
