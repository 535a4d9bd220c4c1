#include "bench/MinuteBars.h"

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <random>
#include <stdexcept>

#include <fmt/format.h>

namespace {

std::uint64_t g_nRows = 5'000'000;

struct CloseFile
{
    void operator()(std::FILE* file) const { std::fclose(file); }
};

class MinuteBarsFile
{
public:
    MinuteBarsFile()
        : m_sPath((std::filesystem::temp_directory_path() / "tabulex-minute-bars.csv").string())
    {
        const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(m_sPath.c_str(), "wb"));
        if (!file)
            throw std::runtime_error("can't write " + m_sPath);
        Write(file.get());
    }
    ~MinuteBarsFile() { std::filesystem::remove(m_sPath); }

    const std::string& Path() const { return m_sPath; }

private:
    // A session of 390 minutes a day, every day of the calendar from 2000-01-03 on.
    static constexpr unsigned kMinutesPerSession = 390;
    static constexpr unsigned kFirstMinute = 9 * 60 + 30;

    static void Write(std::FILE* file)
    {
        std::fputs("Date,Time,Open,High,Low,Close,Volume\n", file);
        std::mt19937 random(1);
        std::chrono::sys_days day = std::chrono::year(2000) / 1 / 3;
        long nPrice = 100'000; // cents
        std::string sDay;
        for (std::uint64_t i = 0; i < g_nRows; ++i) {
            const unsigned nMinute = i % kMinutesPerSession;
            if (nMinute == 0) {
                const std::chrono::year_month_day ymd = day++;
                sDay = fmt::format("{:02}/{:02}/{:04}", unsigned(ymd.month()), unsigned(ymd.day()),
                                   int(ymd.year()));
            }
            WriteBar(file, random, sDay, kFirstMinute + nMinute, nPrice);
        }
    }

    static void WriteBar(std::FILE* file, std::mt19937& random, const std::string& sDay,
                         unsigned nMinute, long& nPrice)
    {
        const long nOpen = nPrice;
        const long nClose = std::max(5'000L, nOpen + long(random() % 101) - 50);
        const long nHigh = std::max(nOpen, nClose) + long(random() % 50);
        const long nLow = std::min(nOpen, nClose) - long(random() % 50);
        nPrice = nClose;
        fmt::print(file, "{},{:02}:{:02},{}.{:02},{}.{:02},{}.{:02},{}.{:02},{}\n", sDay,
                   nMinute / 60, nMinute % 60, nOpen / 100, nOpen % 100, nHigh / 100, nHigh % 100,
                   nLow / 100, nLow % 100, nClose / 100, nClose % 100, 100 + random() % 100'000);
    }

    std::string m_sPath;
};

const MinuteBarsFile& File()
{
    static const MinuteBarsFile file;
    return file;
}

} // namespace

const std::string& MinuteBarsPath()
{
    return File().Path();
}

std::uint64_t MinuteBarsRows()
{
    return g_nRows;
}

std::uint64_t MinuteBarsBytes()
{
    return std::filesystem::file_size(MinuteBarsPath());
}

void SetMinuteBarsRows(std::uint64_t nRows)
{
    g_nRows = nRows;
}
