// TemporaryFile: a file with a given content, removed by the destructor.
#pragma once

#include <string>
#include <string_view>

namespace tabulex {

class TemporaryFile
{
public:
    // Throws Fault if it can't be written.
    explicit TemporaryFile(std::string_view content);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    const std::string& Path() const { return m_sPath; }

private:
    std::string m_sPath;
};

} // namespace tabulex
