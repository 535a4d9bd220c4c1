#include "bench/versus/HandWrittenReaders.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <stdexcept>

#include "bench/versus/RowWalks.h"

namespace bench {
namespace {

// ---- cells at their places

int Digit(const char* p)
{
    return *p - '0';
}

int TwoDigits(const char* p)
{
    return Digit(p) * 10 + Digit(p + 1);
}

int FourDigits(const char* p)
{
    return TwoDigits(p) * 100 + TwoDigits(p + 2);
}

// Days since 1970; a year starts in March, so that the day of a leap year is the last one.
int DayOf(int nYear, int nMonth, int nDay)
{
    nYear -= nMonth <= 2;
    const int nEra = nYear / 400;
    const int nYearOfEra = nYear - nEra * 400;
    const int nDayOfYear = (153 * (nMonth + (nMonth > 2 ? -3 : 9)) + 2) / 5 + nDay - 1;
    const int nDayOfEra = nYearOfEra * 365 + nYearOfEra / 4 - nYearOfEra / 100 + nDayOfYear;
    return nEra * 146097 + nDayOfEra - 719468;
}

// 01/03/2000
int MonthFirst(const char* p)
{
    return DayOf(FourDigits(p + 6), TwoDigits(p), TwoDigits(p + 3));
}

// 03-Jan-2000
int MonthNamed(const char* p)
{
    constexpr const char* kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                       "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    int nMonth = 0;
    while (std::memcmp(kMonths[nMonth], p + 3, 3) != 0 && nMonth < 11)
        ++nMonth;
    return DayOf(FourDigits(p + 7), nMonth + 1, TwoDigits(p));
}

// 09:30
int MinuteOf(const char* p)
{
    return TwoDigits(p) * 60 + TwoDigits(p + 3);
}

// 01/03/2000,09:30
double MomentOf(const char* p)
{
    return MonthFirst(p) + MinuteOf(p + 11) / 1440.0;
}

// 01/03/2000,09:30:00.125
double TickMomentOf(const char* p)
{
    const int nSecond = MinuteOf(p + 11) * 60 + TwoDigits(p + 17);
    const int nThousandths = Digit(p + 20) * 100 + TwoDigits(p + 21);
    return MonthFirst(p) + (nSecond * 1000 + nThousandths) / 86'400'000.0;
}

// ---- columns of a batch

constexpr std::size_t kRows = 1000;

// The moment, nPrices prices and the volume of each row, and a symbol where the layout has one.
template <std::size_t nPrices, bool bSymbols = false>
class Columns
{
public:
    // The cells from p on are the prices, then the volume.
    void Add(double fMoment, const char* p, const char* end)
    {
        m_moments[m_nIn] = fMoment;
        for (auto& prices : m_prices)
            p = std::from_chars(p, end, prices[m_nIn]).ptr + 1;
        std::from_chars(p, end, m_volumes[m_nIn]);
        if (++m_nIn == kRows)
            Sum();
    }
    // To be called ahead of Add.
    void SetSymbol(const char* p, const char* end) { m_symbols[m_nIn].assign(p, end); }

    HandReading Result()
    {
        Sum();
        return m_result;
    }

private:
    void Sum()
    {
        for (std::size_t i = 0; i < m_nIn; ++i) {
            double fRow = m_moments[i] + static_cast<double>(m_volumes[i]);
            for (const auto& prices : m_prices)
                fRow += prices[i];
            if constexpr (bSymbols)
                fRow += static_cast<double>(m_symbols[i].size());
            m_result.fSum += fRow;
        }
        m_result.nRows += m_nIn;
        m_nIn = 0;
    }

    std::array<double, kRows> m_moments;
    std::array<std::array<double, kRows>, nPrices> m_prices;
    std::array<std::int64_t, kRows> m_volumes;
    std::vector<std::string> m_symbols = std::vector<std::string>(bSymbols ? kRows : 0);
    std::size_t m_nIn = 0;
    HandReading m_result;
};

// ---- layouts

// How long date and time are, with the comma after them.
constexpr std::size_t kMinuteStamp = sizeof "01/03/2000,09:30";
constexpr std::size_t kTickStamp = sizeof "01/03/2000,09:30:00.125";
constexpr std::size_t kNamedDate = sizeof "03-Jan-2000";

constexpr std::size_t kPricesOfBar = 4;

// A minute bar, by any of the walks.
template <auto walk>
HandReading ReadMinutes(const std::string& sPath)
{
    Columns<kPricesOfBar> columns;
    walk(sPath,
         [&](const char* p, const char* end) { columns.Add(MomentOf(p), p + kMinuteStamp, end); });
    return columns.Result();
}

HandReading ReadTicks(const std::string& sPath)
{
    Columns<1> columns;
    WalkBytes(sPath, [&](const char* p, const char* end) {
        columns.Add(TickMomentOf(p), p + kTickStamp, end);
    });
    return columns.Result();
}

// A symbol, then a stamp of nStamp characters with its comma, then a bar.
template <std::size_t nStamp, class MomentAt>
HandReading ReadSymbols(const std::string& sPath, MomentAt momentAt)
{
    Columns<kPricesOfBar, true> columns;
    WalkBytes(sPath, [&](const char* p, const char* end) {
        const char* const comma = std::find(p, end, ',');
        columns.SetSymbol(p, comma);
        columns.Add(momentAt(comma + 1), comma + 1 + nStamp, end);
    });
    return columns.Result();
}

struct Reader
{
    const char* szLayout;
    HandReading (*pfnRead)(const std::string& sPath);
};

constexpr auto kForwards = [](const std::string& sPath, auto onRow) { WalkBytes(sPath, onRow); };
constexpr auto kBackwards = [](const std::string& sPath, auto onRow) {
    WalkBackwards(sPath, onRow);
};
constexpr auto kTwoByte = [](const std::string& sPath, auto onRow) { WalkTwoByte(sPath, onRow); };

constexpr Reader kReaders[] = {
    {"minutes", ReadMinutes<kForwards>},
    {"ticks", ReadTicks},
    {"days", [](const std::string& s) { return ReadSymbols<kNamedDate>(s, MonthNamed); }},
    {"symbols", [](const std::string& s) { return ReadSymbols<kMinuteStamp>(s, MomentOf); }},
    {"descending", ReadMinutes<kBackwards>},
    {"two-byte", ReadMinutes<kTwoByte>},
};

} // namespace

std::vector<std::string> HandReadLayouts()
{
    std::vector<std::string> names;
    for (const Reader& reader : kReaders)
        names.emplace_back(reader.szLayout);
    return names;
}

HandReading ReadByHand(const std::string& sLayout, const std::string& sPath)
{
    const auto* const found = std::ranges::find(kReaders, sLayout, &Reader::szLayout);
    if (found == std::end(kReaders))
        throw std::runtime_error("there is no reader for " + sLayout);
    return found->pfnRead(sPath);
}

} // namespace bench
