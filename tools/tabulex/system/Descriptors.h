// Writing by descriptor: whole texts, whatever interrupts the system's calls.
#pragma once

#include <string>
#include <string_view>

namespace tabulex {

// Opens a device, a pipe or a folder's name for writing only; nothing is made. A pipe that nobody
// reads is waited for, until Interrupted(). -1 on a failure, with the reason in errno.
int OpenDevice(const std::string& path);

// A descriptor of its own for what another one leads to. -1 as above.
int CopyOf(int nFile);

// All of the text, though it may take several calls and the reader may be slow. False on a
// failure, with the reason in errno: EPIPE where nobody reads the pipe any more.
bool WriteAll(int nFile, std::string_view text);

// False if the system reports only here that something wasn't written.
bool CloseFile(int nFile);

// Whether it leads to a terminal.
bool IsTerminal(int nFile);

} // namespace tabulex
