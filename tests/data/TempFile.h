// A file in the system's temporary folder, gone with the object.
#pragma once

#include <atomic>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "platform/File.h"

class TempFile
{
public:
    explicit TempFile(const std::string& sContent = "")
        : m_path(std::filesystem::temp_directory_path() /
                 ("tabulex_data_" + std::to_string(ProgramNumber()) + "_" +
                  std::to_string(NextNumber())))
    {
        Write(sContent);
    }
    ~TempFile()
    {
        std::error_code ignored;
        std::filesystem::remove(m_path, ignored);
    }
    TempFile(const TempFile&) = delete;
    TempFile& operator=(const TempFile&) = delete;

    void Write(const std::string& sContent) { std::ofstream(m_path, std::ios::binary) << sContent; }
    void Truncate(std::uintmax_t nSize) { std::filesystem::resize_file(m_path, nSize); }

    string_t Name() const { return PathFromBytes(m_path.string()); }

private:
    // Keeps the files of programs that run at the same time apart.
    static unsigned ProgramNumber()
    {
        static const unsigned n = std::random_device()();
        return n;
    }
    static int NextNumber()
    {
        static std::atomic<int> n = 0;
        return ++n;
    }

    std::filesystem::path m_path;
};
