// A folder of files that is gone after the test.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "platform/File.h"
#include "tests/support/TempFolder.h"

// Writes bytes at an offset, also far beyond the end; the gap takes no room where the
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
    std::filesystem::path Write(const std::filesystem::path& name, std::string_view bytes,
                                std::ios::openmode mode = std::ios::trunc) const
    {
        std::ofstream out(m_folder / name, std::ios::binary | mode);
        out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        return m_folder / name;
    }

    const TempFolder m_temporary;
    const std::filesystem::path& m_folder = m_temporary.Path();
};
