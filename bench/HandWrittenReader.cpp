#include "bench/HandWrittenReader.h"

#include <charconv>
#include <cstring>
#include <memory>
#include <stdexcept>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::size_t kChunk = 1 << 18;

int TwoDigits(const char* p)
{
    return (p[0] - '0') * 10 + (p[1] - '0');
}

template <class Number>
const char* ReadNumber(const char* p, const char* end, std::vector<Number>& column)
{
    Number value{};
    const auto [next, error] = std::from_chars(p, end, value);
    if (error != std::errc())
        throw std::runtime_error("bad number");
    column.push_back(value);
    return next + 1; // after the comma
}

void ReadRow(const char* p, const char* end, PlainColumns& columns)
{
    if (end - p < 17 || p[10] != ',' || p[16] != ',')
        throw std::runtime_error("bad row");
    const int nYear = TwoDigits(p + 6) * 100 + TwoDigits(p + 8);
    columns.days.push_back(nYear * 10000 + TwoDigits(p) * 100 + TwoDigits(p + 3));
    columns.minutes.push_back(TwoDigits(p + 11) * 60 + TwoDigits(p + 14));
    p += 17;
    p = ReadNumber(p, end, columns.open);
    p = ReadNumber(p, end, columns.high);
    p = ReadNumber(p, end, columns.low);
    p = ReadNumber(p, end, columns.close);
    ReadNumber(p, end, columns.volume);
}

} // namespace

PlainColumns ReadMinuteBars(const std::string& sPath)
{
    PlainColumns columns;
    const int file = ::open(sPath.c_str(), O_RDONLY);
    if (file < 0)
        throw std::runtime_error("can't open " + sPath);
    const std::unique_ptr<char[]> buffer(new char[2 * kChunk]);
    std::size_t nKept = 0; // bytes of a row whose end isn't read yet
    bool bHeader = true;
    ssize_t nRead = 0;
    while ((nRead = ::read(file, buffer.get() + nKept, kChunk)) > 0) {
        const char* p = buffer.get();
        const char* end = p + nKept + nRead;
        while (const char* eol = static_cast<const char*>(std::memchr(p, '\n', end - p))) {
            if (!bHeader)
                ReadRow(p, eol, columns);
            bHeader = false;
            p = eol + 1;
        }
        nKept = end - p;
        std::memmove(buffer.get(), p, nKept);
    }
    ::close(file);
    return columns;
}
