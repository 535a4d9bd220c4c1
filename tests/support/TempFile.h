// A name in the system's temporary folder that no other file has. The file goes with the
// object. What can't be written is an exception.
#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <ios>
#include <random>
#include <string>

#include "platform/File.h"

class TempFile
{
public:
    // There is no file of that name yet.
    TempFile()
        : m_path(std::filesystem::temp_directory_path() /
                 ("tabulex-test-" + std::to_string(ProgramNumber()) + "-" +
                  std::to_string(NextNumber()) + ".txt"))
    {}
    explicit TempFile(const std::string& bytes) : TempFile() { Write(bytes); }
    ~TempFile()
    {
        std::error_code ignored;
        std::filesystem::remove(m_path, ignored);
    }
    TempFile(const TempFile&) = delete;
    TempFile& operator=(const TempFile&) = delete;

    void Write(const std::string& bytes) const { Put(bytes, std::ios::trunc); }
    void Append(const std::string& bytes) const { Put(bytes, std::ios::app); }
    void Truncate(std::uintmax_t nSize) const { std::filesystem::resize_file(m_path, nSize); }
    // Changes bytes in place.
    void Patch(std::uint64_t nOffset, const std::string& bytes) const
    {
        std::fstream stream(m_path, std::ios::binary | std::ios::in | std::ios::out);
        stream.exceptions(std::ios::failbit | std::ios::badbit);
        stream.seekp(static_cast<std::streamoff>(nOffset));
        stream << bytes;
    }

    string_t Name() const { return PathFromBytes(Bytes()); }
    std::string Bytes() const { return m_path.generic_string(); }

private:
    void Put(const std::string& bytes, std::ios::openmode mode) const
    {
        std::ofstream stream(m_path, std::ios::binary | mode);
        stream.exceptions(std::ios::failbit | std::ios::badbit);
        stream << bytes;
        stream.close();
    }

    // Keeps the files of programs that run at the same time apart.
    static unsigned ProgramNumber()
    {
        static const unsigned n = std::random_device()();
        return n;
    }
    static unsigned NextNumber()
    {
        static std::atomic<unsigned> n = 0;
        return ++n;
    }

    std::filesystem::path m_path;
};
