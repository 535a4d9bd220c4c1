// A folder of files that is gone after the test.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "platform/File.h"

// Writes bytes at a place, far behind the end too; what lies between takes no room where the
// file system can do that.
void WriteAt(const std::filesystem::path& path, std::uint64_t offset, std::string_view bytes);

inline string_t NameOf(const std::filesystem::path& path)
{
    return PathFromBytes(path.string());
}

inline std::string Read(const File& file, std::uint64_t offset, std::size_t count)
{
    std::string bytes(count, '\0');
    const auto n = file.ReadAt(offset, bytes.data(), count);
    if (!n)
        return "error";
    bytes.resize(*n);
    return bytes;
}

class FileTest : public testing::Test
{
protected:
    FileTest()
    {
        static int nNext = 0;
        const auto now = std::filesystem::file_time_type::clock::now().time_since_epoch().count();
        m_folder = std::filesystem::temp_directory_path() /
                   ("file-test-" + std::to_string(now) + "-" + std::to_string(++nNext));
        std::filesystem::create_directory(m_folder);
    }
    ~FileTest() override { std::filesystem::remove_all(m_folder); }

    std::filesystem::path Write(const std::filesystem::path& name, std::string_view bytes,
                                std::ios::openmode mode = std::ios::trunc) const
    {
        std::ofstream out(m_folder / name, std::ios::binary | mode);
        out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        return m_folder / name;
    }

    std::filesystem::path m_folder;
};
