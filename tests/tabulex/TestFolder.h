// TestFolder: a folder of a test's own, which goes with the object.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

class TestFolder
{
public:
    TestFolder()
    {
        std::string name =
            (std::filesystem::temp_directory_path() / "tabulex-test-XXXXXX").string();
        m_path = mkdtemp(name.data());
    }
    ~TestFolder() { std::filesystem::remove_all(m_path); }
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    std::string operator/(const char* pszName) const { return (m_path / pszName).string(); }
    std::size_t Entries() const
    {
        return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(m_path),
                                                      std::filesystem::directory_iterator()));
    }

private:
    std::filesystem::path m_path;
};
