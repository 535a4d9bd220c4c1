// Records are made one after the other in a buffer that is written piece by piece. A file that
// runs backwards is made as a whole, and its lines are written from the last one on.

#include "bench/versus/QuoteFiles.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <random>
#include <stdexcept>
#include <string_view>

#include <fmt/format.h>

#include "bench/versus/QuoteLayouts.h"

namespace bench {
namespace {

constexpr const char* kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                   "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

const QuoteLayout& LayoutOf(const std::string& sName)
{
    const auto layouts = QuoteLayouts();
    const auto found = std::ranges::find(layouts, sName, &QuoteLayout::szName);
    if (found == layouts.end())
        throw std::runtime_error("there is no layout " + sName);
    return *found;
}

// When a record is.
class Moment
{
public:
    explicit Moment(QuoteClock clock) : m_clock(clock) {}

    std::chrono::year_month_day Day() const { return m_day; }
    unsigned Milliseconds() const { return m_nMilliseconds; }

    void Advance(std::mt19937& random)
    {
        m_nMilliseconds += Step(random);
        if (m_nMilliseconds < kClose)
            return;
        ++m_day;
        m_nMilliseconds = kOpen;
    }

private:
    static constexpr unsigned kMinute = 60'000;
    static constexpr unsigned kOpen = (9 * 60 + 30) * kMinute;
    static constexpr unsigned kClose = 16 * 60 * kMinute;

    unsigned Step(std::mt19937& random) const
    {
        constexpr unsigned kTicks[] = {0, 5, 250, 3000};
        return m_clock == QuoteClock::Ticks     ? kTicks[random() % std::size(kTicks)]
               : m_clock == QuoteClock::Minutes ? kMinute
                                                : kClose;
    }

    QuoteClock m_clock;
    std::chrono::sys_days m_day = std::chrono::year(1990) / 1 / 3;
    unsigned m_nMilliseconds = kOpen;
};

// Prices of a bar, in units of the last decimal.
struct Bar
{
    long nOpen, nHigh, nLow, nClose, nVolume;
};

Bar NextBar(std::mt19937& random, long nOpen)
{
    constexpr long kLeast = 5'000;
    Bar bar{};
    bar.nOpen = nOpen;
    bar.nClose = std::max(kLeast, nOpen + static_cast<long>(random() % 101) - 50);
    bar.nHigh = std::max(nOpen, bar.nClose) + static_cast<long>(random() % 50);
    bar.nLow = std::min(nOpen, bar.nClose) - static_cast<long>(random() % 50);
    bar.nVolume = static_cast<long>(100 + random() % 100'000);
    return bar;
}

// The records of a file, one after the other.
class QuoteFile
{
public:
    QuoteFile(const QuoteLayout& layout, std::uint64_t nRows)
        : m_layout(layout), m_nOfSymbol(RowsOfSymbol(layout, nRows)), m_moment(layout.clock)
    {
        m_nLastSymbol = nRows - std::min(nRows, m_nOfSymbol);
    }

    void AppendRecord(std::string& sText)
    {
        if (m_layout.nRowsOfSymbol && m_nRow % m_nOfSymbol == 0 && m_nRow <= m_nLastSymbol) {
            m_moment = Moment(m_layout.clock);
            m_sSymbol = m_layout.szSymbol + Letters(m_nRow / m_nOfSymbol);
        }
        ++m_nRow;
        const Bar bar = NextBar(m_random, m_nPrice);
        m_nPrice = bar.nClose;
        Append(sText, bar);
        m_moment.Advance(m_random);
    }

private:
    // The last symbol has what is left over as well, so that the last line is the latest one: a
    // run ends at the moment of that.
    static std::uint64_t RowsOfSymbol(const QuoteLayout& layout, std::uint64_t nRows)
    {
        if (nRows < 2 * layout.nRowsOfSymbol || layout.nRowsOfSymbol == 0)
            return nRows;
        return nRows / (nRows / layout.nRowsOfSymbol);
    }

    static std::string Letters(std::uint64_t n)
    {
        return {static_cast<char>('A' + n / 676 % 26), static_cast<char>('A' + n / 26 % 26),
                static_cast<char>('A' + n % 26)};
    }

    std::string Price(long n) const
    {
        const long nScale = m_layout.nDecimals == 2 ? 100 : 100'000;
        return fmt::format("{}{}{:0{}}", n / nScale, m_layout.cMark, n % nScale,
                           m_layout.nDecimals);
    }

    void Append(std::string& sText, const Bar& bar) const
    {
        const std::chrono::year_month_day day = m_moment.Day();
        const int nYear = static_cast<int>(day.year());
        const auto nMonth = static_cast<unsigned>(day.month());
        const unsigned nSeconds = m_moment.Milliseconds() / 1000;
        const unsigned nHour = nSeconds / 3600;
        fmt::format_to(
            std::back_inserter(sText), fmt::runtime(m_layout.szRow), fmt::arg("symbol", m_sSymbol),
            fmt::arg("Y", nYear), fmt::arg("M", nMonth),
            fmt::arg("D", static_cast<unsigned>(day.day())), fmt::arg("Mon", kMonths[nMonth - 1]),
            fmt::arg("y", nYear % 100), fmt::arg("h", nHour),
            fmt::arg("h12", (nHour + 11) % 12 + 1), fmt::arg("half", nHour < 12 ? "AM" : "PM"),
            fmt::arg("m", nSeconds / 60 % 60), fmt::arg("s", nSeconds % 60),
            fmt::arg("f", m_moment.Milliseconds() % 1000), fmt::arg("open", Price(bar.nOpen)),
            fmt::arg("high", Price(bar.nHigh)), fmt::arg("low", Price(bar.nLow)),
            fmt::arg("close", Price(bar.nClose)), fmt::arg("volume", bar.nVolume));
    }

    const QuoteLayout& m_layout;
    std::uint64_t m_nOfSymbol;   // rows
    std::uint64_t m_nLastSymbol; // no symbol begins after this row
    std::mt19937 m_random{1};
    Moment m_moment;
    std::string m_sSymbol;
    std::uint64_t m_nRow = 0;
    long m_nPrice = 100'000;
};

// A file that is written, in its form.
class Output
{
public:
    Output(const std::string& sPath, QuoteForm form) : m_file(std::fopen(sPath.c_str(), "wb"))
    {
        if (!m_file)
            throw std::runtime_error("can't write " + sPath);
        m_bTwoByte = form == QuoteForm::TwoByte;
        if (m_bTwoByte)
            Write("\xFF\xFE", 2);
    }

    void Put(std::string_view sText)
    {
        if (!m_bTwoByte)
            return Write(sText.data(), sText.size());
        m_sWide.assign(2 * sText.size(), '\0');
        for (std::size_t i = 0; i < sText.size(); ++i)
            m_sWide[2 * i] = sText[i];
        Write(m_sWide.data(), m_sWide.size());
    }

    void PutBackwards(std::string_view sLines)
    {
        while (!sLines.empty()) {
            const std::size_t nEnd = sLines.find_last_of('\n', sLines.size() - 2);
            const std::size_t nBegin = nEnd == std::string_view::npos ? 0 : nEnd + 1;
            Put(sLines.substr(nBegin));
            sLines = sLines.substr(0, nBegin);
        }
    }

    void Close()
    {
        if (std::fclose(m_file.release()) != 0)
            throw std::runtime_error("the disk is full");
    }

private:
    struct CloseFile
    {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    void Write(const char* p, std::size_t n)
    {
        if (std::fwrite(p, 1, n, m_file.get()) != n)
            throw std::runtime_error("the disk is full");
    }

    std::unique_ptr<std::FILE, CloseFile> m_file;
    bool m_bTwoByte = false;
    std::string m_sWide;
};

} // namespace

std::vector<std::string> QuoteFileLayouts()
{
    std::vector<std::string> names;
    for (const QuoteLayout& layout : QuoteLayouts())
        names.emplace_back(layout.szName);
    return names;
}

void WriteQuoteFile(const std::string& sLayout, std::uint64_t nRows, const std::string& sPath)
{
    constexpr std::size_t kPiece = 1 << 20;
    const QuoteLayout& layout = LayoutOf(sLayout);
    QuoteFile records(layout, nRows);
    Output output(sPath, layout.form);
    output.Put(layout.szHeader);
    std::string sText;
    for (std::uint64_t i = 0; i < nRows; ++i) {
        records.AppendRecord(sText);
        if (layout.form != QuoteForm::Descending && sText.size() >= kPiece) {
            output.Put(sText);
            sText.clear();
        }
    }
    if (layout.form == QuoteForm::Descending)
        output.PutBackwards(sText);
    else
        output.Put(sText);
    output.Close();
}

} // namespace bench
