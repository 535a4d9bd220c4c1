// QuoteFile: a file of quotes for the length of a test.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include <unistd.h>

class QuoteFile
{
public:
    explicit QuoteFile(const std::string& sText)
    {
        const auto* test = testing::UnitTest::GetInstance()->current_test_info();
        static int nFile = 0;
        m_path = std::filesystem::temp_directory_path() /
                 (std::string("facade-") + test->name() + "-" + std::to_string(getpid()) + "-" +
                  std::to_string(++nFile) + ".csv");
        std::ofstream(m_path, std::ios::binary) << sText;
    }
    ~QuoteFile() { std::filesystem::remove(m_path); }
    QuoteFile(const QuoteFile&) = delete;
    QuoteFile& operator=(const QuoteFile&) = delete;

    std::string Name() const { return m_path.string(); }
    void Append(const std::string& sText) const
    {
        std::ofstream(m_path, std::ios::binary | std::ios::app) << sText;
    }
    void Cut(std::uintmax_t nSize) const { std::filesystem::resize_file(m_path, nSize); }

private:
    std::filesystem::path m_path;
};

// Days from 2003-01-01 on; the close of each is its number from 0, the volume ten times that.
inline std::string DayLines(int nFirst, int nCount, const std::string& sSymbol = {})
{
    std::string text;
    for (int i = nFirst; i < nFirst + nCount; ++i) {
        const std::chrono::year_month_day day(
            std::chrono::sys_days(std::chrono::year(2003) / 1 / 1) + std::chrono::days(i));
        char line[96];
        std::snprintf(line, sizeof line, "%s%s%04d-%02u-%02u,%d,%d.5,%d,%d,%d\n", sSymbol.c_str(),
                      sSymbol.empty() ? "" : ",", int(day.year()), unsigned(day.month()),
                      unsigned(day.day()), i, i, i, i, 10 * i);
        text += line;
    }
    return text;
}

// A header and minutes from 2003-01-01 on.
inline std::string MinuteLines(int nCount)
{
    std::string text = "Date,Time,Open,High,Low,Close,Volume\n";
    for (int i = 0; i < nCount; ++i) {
        const std::chrono::year_month_day day(
            std::chrono::sys_days(std::chrono::year(2003) / 1 / 1) + std::chrono::days(i / 1440));
        char line[96];
        std::snprintf(line, sizeof line, "%04d-%02u-%02u,%02d:%02d,1,3,1,2,%d\n", int(day.year()),
                      unsigned(day.month()), unsigned(day.day()), i / 60 % 24, i % 60, i);
        text += line;
    }
    return text;
}

inline constexpr const char* kDayHeader = "Date,Open,High,Low,Close,Volume\n";
inline constexpr const char* kSymbolHeader = "Symbol,Date,Open,High,Low,Close,Volume\n";
