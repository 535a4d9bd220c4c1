// TestFolder: a folder of a test's own, which goes with the object.
#pragma once

#include <filesystem>
#include <random>
#include <string>

#include "tools/tabulex/system/Paths.h"

class TestFolder
{
public:
    TestFolder()
    {
        std::random_device random;
        do
            m_path = std::filesystem::temp_directory_path() /
                     ("tabulex-test-" + std::to_string(random()));
        while (!std::filesystem::create_directory(m_path));
    }
    ~TestFolder() { std::filesystem::remove_all(m_path); }
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    std::string operator/(const char* pszName) const
    {
        return tabulex::Utf8Of(m_path / tabulex::PathOf(pszName));
    }
    std::size_t Entries() const
    {
        return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(m_path),
                                                      std::filesystem::directory_iterator()));
    }

private:
    std::filesystem::path m_path;
};
