// A new folder in the system's temporary folder. It goes with the object, and so does what
// is in it.
#pragma once

#include <filesystem>
#include <random>
#include <string>

class TempFolder
{
public:
    TempFolder()
    {
        std::random_device random;
        do
            m_path = std::filesystem::temp_directory_path() /
                     ("tabulex-test-" + std::to_string(random()));
        while (!std::filesystem::create_directory(m_path));
    }
    ~TempFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::filesystem::path& Path() const { return m_path; }

private:
    std::filesystem::path m_path;
};
