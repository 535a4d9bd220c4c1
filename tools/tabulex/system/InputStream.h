// InputStream: the bytes of a file, a pipe or standard input, from where it stands to its end.
//
// A pipe is waited for; an interrupt ends the wait, and the process where nothing puts
// interrupts off. Used by one thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace tabulex {

enum class InputPlace
{
    File,   // regular, and nothing of it has been read yet
    Folder, // can't be read
    Stream  // what can be read once only, and the rest of a file
};

class InputStream
{
public:
    // "-" is standard input. Throws Fault where the name can't be opened, with the system's
    // reason alone.
    explicit InputStream(const std::string& name);
    ~InputStream();
    InputStream(const InputStream&) = delete;
    InputStream& operator=(const InputStream&) = delete;

    InputPlace Place() const { return m_place; }
    // The name by which a File can be opened again.
    const std::string& Path() const { return m_sPath; }

    // Fills the buffer; less than all of it comes only at the end. Throws Fault for a read
    // that fails, and after an interrupt.
    std::size_t Read(std::span<char> buffer);

private:
    std::string m_sPath;
    InputPlace m_place = InputPlace::Stream;
    std::intptr_t m_handle = -1;
};

} // namespace tabulex
