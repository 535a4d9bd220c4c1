// The text is cut into numbers, words and signs. A date is three parts or one run of digits at its
// beginning, a clock what follows, an offset or a zone the rest. Which part is the day is asked of
// the calendar for each order; whatever the calendar admits is a reading.
#include "advice/forms/MomentForms.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <string>

#include "advice/forms/MomentTokens.h"
#include "advice/forms/MonthNames.h"

namespace tabulex::advice {

namespace {

using intake::ClockForm;
using intake::DateForm;
using Kind = MomentToken::Kind;

constexpr std::int64_t kSecond = 1000000000;
constexpr std::int64_t kDaySeconds = 86400;
constexpr std::string_view kZoneWords =
    " z utc gmt est edt cst cdt pst pdt mst mdt cet cest bst wet west eet eest msk ist jst kst hkt "
    "sgt aest aedt nzst nzdt ";

struct DateOrderRow
{
    DateForm form;
    int nYear, nMonth, nDay; // places of the parts
};

constexpr DateOrderRow kOrders[] = {{DateForm::YearMonthDay, 0, 1, 2},
                                    {DateForm::DayMonthYear, 2, 1, 0},
                                    {DateForm::MonthDayYear, 2, 0, 1},
                                    {DateForm::YearDayMonth, 0, 2, 1}};

struct EpochRow
{
    DateForm form;
    int nDigitsFrom, nDigitsTo;
    std::int64_t nPerSecond;
};

constexpr EpochRow kEpochs[] = {{DateForm::EpochSeconds, 9, 10, 1},
                                {DateForm::EpochMilliseconds, 12, 13, 1000},
                                {DateForm::EpochMicroseconds, 15, 16, 1000000},
                                {DateForm::EpochNanoseconds, 18, 19, 1000000000}};

struct Part
{
    int nValue = 0;
    int nDigits = 0; // 0 for the name of a month
};

using Parts = std::array<Part, 3>;

std::string Small(std::string_view word)
{
    std::string small(word);
    for (char& c : small)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c | 0x20);
    return small;
}

int WholeYear(const Part& year)
{
    return year.nDigits > 2 ? year.nValue : year.nValue + (year.nValue < 50 ? 2000 : 1900);
}

// Empty where the calendar has no such day, or nobody wrote quotes then.
std::optional<MomentRead> DayOf(const Parts& parts, const DateOrderRow& order)
{
    const auto part = [&](int n) { return parts[static_cast<std::size_t>(n)]; };
    const Part year = part(order.nYear), month = part(order.nMonth), day = part(order.nDay);
    if ((year.nDigits != 4 && year.nDigits != 2) || month.nDigits > 2 || day.nDigits > 2 ||
        day.nDigits == 0)
        return std::nullopt;
    const std::chrono::year_month_day date{std::chrono::year{WholeYear(year)},
                                           std::chrono::month{static_cast<unsigned>(month.nValue)},
                                           std::chrono::day{static_cast<unsigned>(day.nValue)}};
    if (!date.ok() || WholeYear(year) < 1800 || WholeYear(year) > 2100)
        return std::nullopt;
    MomentRead read;
    read.nDay = std::chrono::sys_days{date}.time_since_epoch().count();
    read.bShortYear = year.nDigits == 2;
    return read;
}

// Reads one text; each step takes tokens off the front.
class Reader
{
public:
    explicit Reader(std::string_view text) : m_tokens(text) { SkipWeekday(); }

    std::vector<MomentReading> All();

private:
    const MomentToken& Next(std::size_t n = 0) const { return m_tokens.At(m_nAt + n); }
    bool IsSign(char c, std::size_t n = 0) const { return Next(n).cSign == c; }
    bool IsNumber(int nFrom, int nTo, std::size_t n = 0) const
    {
        return Next(n).kind == Kind::Number && Next(n).nDigits >= nFrom && Next(n).nDigits <= nTo;
    }
    bool AtEnd() const { return Next().kind == Kind::End; }
    bool TakeSign(char c)
    {
        if (!IsSign(c))
            return false;
        ++m_nAt;
        return true;
    }

    void SkipWeekday();
    bool TakePart(Part& part);
    bool TakeParting(char& c);
    bool TakeThreeParts(std::vector<MomentReading>& dates);
    bool TakeDigits(std::vector<MomentReading>& dates);
    bool TakeMonth(std::vector<MomentReading>& dates);
    bool TakeLongDigits(std::vector<MomentReading>& moments) const;
    bool TakeEpoch(std::vector<MomentReading>& dates);
    void TakeJoint();
    bool TakeClock(MomentReading& clock);
    bool TakeWrittenClock(MomentReading& clock);
    bool TakeCompactClock(std::vector<MomentReading>& clocks);
    bool TakeFraction(std::int64_t& nNanoseconds);
    bool TakeHalf(std::int64_t& nHour);
    bool TakeOffset();
    std::vector<MomentReading> Clocks();
    std::vector<MomentReading> Dated();

    MomentTokens m_tokens;
    std::size_t m_nAt = 0;
    bool m_bOffset = false;
};

void Reader::SkipWeekday()
{
    if (Next().kind != Kind::Word || !IsWeekday(Next().sWord) || MonthOf(Next().sWord) != 0)
        return;
    ++m_nAt;
    while (IsSign(',') || IsSign('.') || IsSign(' '))
        ++m_nAt;
}

bool Reader::TakePart(Part& part)
{
    const MomentToken& token = Next();
    if (token.kind == Kind::Number && token.nDigits <= 4)
        part = {static_cast<int>(token.nValue), token.nDigits};
    else if (token.kind == Kind::Word && MonthOf(token.sWord) != 0)
        part = {MonthOf(token.sWord), 0};
    else
        return false;
    ++m_nAt;
    return true;
}

// What parts a date: one sign, with a blank behind at most, or nothing beside a name.
bool Reader::TakeParting(char& c)
{
    c = 0;
    for (const char cSign : {'-', '/', '.', '_', ',', ' '})
        if (TakeSign(cSign)) {
            c = cSign;
            break;
        }
    if (c != 0 && c != ' ')
        TakeSign(' ');
    if (c == ' ' && TakeSign(','))
        TakeSign(' ');
    return c != 0;
}

bool Reader::TakeThreeParts(std::vector<MomentReading>& dates)
{
    const std::size_t nFrom = m_nAt;
    Parts parts;
    char cFirst = 0, cSecond = 0;
    bool bTaken = TakePart(parts[0]);
    const bool bParted = bTaken && TakeParting(cFirst);
    bTaken = bTaken && TakePart(parts[1]);
    const bool bPartedAgain = bTaken && TakeParting(cSecond);
    bTaken = bTaken && TakePart(parts[2]);
    const auto nNames = std::ranges::count(parts, 0, &Part::nDigits);
    const bool bSame = bParted && bPartedAgain && cFirst == cSecond && cFirst != ',';
    if (!bTaken || nNames > 1 || (nNames == 0 && !bSame)) {
        m_nAt = nFrom;
        return false;
    }
    for (const DateOrderRow& order : kOrders) {
        if (nNames == 1 && parts[static_cast<std::size_t>(order.nMonth)].nDigits != 0)
            continue;
        if (order.form == DateForm::YearDayMonth && nNames == 0)
            continue; // nobody writes it
        if (nNames == 1 && order.nYear == 0 && parts[0].nDigits <= 2)
            continue; // beside a name a short number is the day
        if (const auto read = DayOf(parts, order))
            dates.push_back({{order.form, ClockForm::None}, *read});
    }
    if (dates.empty())
        m_nAt = nFrom;
    return !dates.empty();
}

// Eight digits or six.
bool Reader::TakeDigits(std::vector<MomentReading>& dates)
{
    const MomentToken token = Next();
    if (token.kind != Kind::Number || (token.nDigits != 8 && token.nDigits != 6))
        return false;
    const int nYear = token.nDigits - 4;
    for (const DateOrderRow& order : kOrders) {
        if (order.form == DateForm::YearDayMonth)
            continue;
        Parts parts;
        std::uint64_t nRest = token.nValue;
        for (int i = 2; i >= 0; --i) {
            const int nDigits = i == order.nYear ? nYear : 2;
            const std::uint64_t nUnit = nDigits == 4 ? 10000 : 100;
            parts[static_cast<std::size_t>(i)] = {static_cast<int>(nRest % nUnit), nDigits};
            nRest /= nUnit;
        }
        const auto read = DayOf(parts, order);
        if (read && (nYear == 2 || read->nDay > -25567 - 366 * 100))
            dates.push_back({{order.form, ClockForm::None}, *read});
    }
    if (!dates.empty())
        ++m_nAt;
    return !dates.empty();
}

// A month and its year, either first; its first day is meant. A point would be that of a number.
bool Reader::TakeMonth(std::vector<MomentReading>& dates)
{
    Parts parts;
    char cParting = 0;
    if (!TakePart(parts[0]))
        return false;
    TakeParting(cParting);
    if (cParting == '.' || cParting == ',' || !TakePart(parts[1]) || !AtEnd())
        return false;
    const bool bYearFirst = parts[0].nDigits == 4;
    const bool bName = parts[0].nDigits == 0 || parts[1].nDigits == 0;
    const std::size_t nYear = bYearFirst ? 0 : 1;
    if ((!bName && (parts[nYear].nDigits != 4 || cParting == ' ')) || parts[nYear].nDigits == 0)
        return false;
    parts[2] = {1, 1};
    const DateOrderRow order{bYearFirst ? DateForm::YearMonth : DateForm::MonthYear,
                             static_cast<int>(nYear), static_cast<int>(1 - nYear), 2};
    if (const auto read = DayOf(parts, order))
        dates.push_back({{order.form, ClockForm::None}, *read});
    return !dates.empty();
}

// A date and a clock in one run of fourteen digits or twelve.
bool Reader::TakeLongDigits(std::vector<MomentReading>& moments) const
{
    const MomentToken token = Next();
    if (token.kind != Kind::Number || (token.nDigits != 14 && token.nDigits != 12))
        return false;
    const std::uint64_t nUnit = token.nDigits == 14 ? 1000000 : 10000;
    const auto nClock = static_cast<std::int64_t>(token.nValue % nUnit * (1000000 / nUnit));
    const auto nDate = static_cast<int>(token.nValue / nUnit);
    const Parts parts{Part{nDate / 10000, 4}, Part{nDate / 100 % 100, 2}, Part{nDate % 100, 2}};
    auto read = DayOf(parts, kOrders[0]);
    const std::int64_t nHour = nClock / 10000, nMinute = nClock / 100 % 100;
    if (!read || nHour > 23 || nMinute > 59 || nClock % 100 > 59)
        return false;
    read->nNanoseconds = ((nHour * 60 + nMinute) * 60 + nClock % 100) * kSecond;
    moments.push_back({{DateForm::YearMonthDay, ClockForm::Any}, *read});
    return true;
}

bool Reader::TakeEpoch(std::vector<MomentReading>& dates)
{
    for (const EpochRow& row : kEpochs) {
        if (!IsNumber(row.nDigitsFrom, row.nDigitsTo) ||
            (Next().nDigits == row.nDigitsFrom && Next().nValue == 0))
            continue;
        const auto nValue = static_cast<std::int64_t>(Next().nValue);
        ++m_nAt;
        std::int64_t nFraction = 0;
        if (TakeSign('.') && !TakeFraction(nFraction))
            return false;
        const std::int64_t nSeconds = nValue / row.nPerSecond;
        MomentRead read;
        read.nDay = nSeconds / kDaySeconds;
        read.nNanoseconds = (nSeconds % kDaySeconds) * kSecond +
                            (nValue % row.nPerSecond) * (kSecond / row.nPerSecond) +
                            (row.nPerSecond == 1 ? nFraction : 0);
        dates.push_back({{row.form, ClockForm::Any}, read});
        return AtEnd();
    }
    return false;
}

// What stands between a date and a clock.
void Reader::TakeJoint()
{
    if (Next().kind == Kind::Word && Small(Next().sWord) == "t")
        ++m_nAt;
    else
        while (IsSign(' ') || IsSign(',') || IsSign('_') || IsSign('-') || IsSign(':') ||
               IsSign(';'))
            ++m_nAt;
    if (Next().kind == Kind::Word && IsWeekday(Next().sWord)) {
        ++m_nAt;
        TakeSign(' ');
    }
}

// Digits of a fraction of a second.
bool Reader::TakeFraction(std::int64_t& nNanoseconds)
{
    if (!IsNumber(1, 18))
        return false;
    auto nValue = static_cast<std::int64_t>(Next().nValue);
    for (int n = Next().nDigits; n < 9; ++n)
        nValue *= 10;
    for (int n = Next().nDigits; n > 9; --n)
        nValue /= 10;
    nNanoseconds = nValue;
    ++m_nAt;
    return true;
}

// AM and PM; the hour counts on.
bool Reader::TakeHalf(std::int64_t& nHour)
{
    std::size_t n = 0;
    if (IsSign(' ') || IsSign('-'))
        ++n;
    if (Next(n).kind != Kind::Word)
        return false;
    std::string word = Small(Next(n).sWord);
    if (word.size() == 1 && IsSign('.', n + 1) && Next(n + 2).kind == Kind::Word) {
        word += Small(Next(n + 2).sWord);
        n += IsSign('.', n + 3) ? 3 : 2;
    }
    if ((word != "am" && word != "pm") || nHour > 12)
        return false;
    m_nAt += n + 1;
    nHour = nHour % 12 + (word == "pm" ? 12 : 0);
    return true;
}

bool Reader::TakeWrittenClock(MomentReading& clock)
{
    if (!IsNumber(1, 2))
        return false;
    auto nHour = static_cast<std::int64_t>(Next().nValue);
    std::int64_t nMinute = 0, nSecond = 0, nNanoseconds = 0;
    ++m_nAt;
    const bool bMinutes = IsSign(':') && IsNumber(1, 2, 1);
    if (bMinutes) {
        nMinute = static_cast<std::int64_t>(Next(1).nValue);
        m_nAt += 2;
        if (IsSign(':') && IsNumber(1, 2, 1)) {
            nSecond = static_cast<std::int64_t>(Next(1).nValue);
            m_nAt += 2;
            if ((IsSign('.') || IsSign(',') || IsSign(':')) && IsNumber(1, 9, 1)) {
                ++m_nAt;
                TakeFraction(nNanoseconds);
            }
        } else {
            TakeSign(':'); // behind a counting word
        }
    }
    const bool bHalf = TakeHalf(nHour);
    if ((!bMinutes && !bHalf) || nHour > 24 || nMinute > 59 || nSecond > 60)
        return false;
    clock.form.clock = ClockForm::Any;
    clock.read.nNanoseconds = ((nHour * 60 + nMinute) * 60 + nSecond) * kSecond + nNanoseconds;
    return true;
}

// All ways to read a run of digits as a clock; forms that nobody writes so aren't among them.
bool Reader::TakeCompactClock(std::vector<MomentReading>& clocks)
{
    if (!IsNumber(1, 9))
        return false;
    const auto nValue = static_cast<std::int64_t>(Next().nValue);
    const int nDigits = Next().nDigits;
    const auto add = [&](ClockForm form, std::int64_t nHms, std::int64_t nMilliseconds) {
        const std::int64_t nHour = nHms / 10000, nMinute = nHms / 100 % 100, nSecond = nHms % 100;
        if (nHour > 23 || nMinute > 59 || nSecond > 59)
            return;
        MomentReading clock;
        clock.form.clock = form;
        clock.read.nNanoseconds =
            ((nHour * 60 + nMinute) * 60 + nSecond) * kSecond + nMilliseconds * 1000000;
        clocks.push_back(clock);
    };
    const auto ofDay = [&](ClockForm form, std::int64_t nPerSecond) {
        if (nValue >= kDaySeconds * nPerSecond)
            return;
        MomentReading clock;
        clock.form.clock = form;
        clock.read.nNanoseconds = nValue * (kSecond / nPerSecond);
        clocks.push_back(clock);
    };
    if (nDigits <= 6)
        add(ClockForm::HoursMinutesSeconds, nValue, 0);
    if (nDigits <= 4)
        add(ClockForm::HoursMinutes, nValue * 100, 0);
    add(ClockForm::HoursMinutesMilliseconds, nValue / 1000, nValue % 1000);
    if (nDigits <= 5)
        ofDay(ClockForm::SecondsOfDay, 1);
    if (nDigits <= 8)
        ofDay(ClockForm::MillisecondsOfDay, 1000);
    ++m_nAt;
    return !clocks.empty();
}

bool Reader::TakeOffset()
{
    const std::size_t nFrom = m_nAt;
    TakeSign(' ');
    if (Next().kind == Kind::Word &&
        kZoneWords.find(' ' + Small(Next().sWord) + ' ') != std::string_view::npos) {
        ++m_nAt;
        m_bOffset = true;
    }
    if ((IsSign('+') || IsSign('-')) && (IsNumber(2, 2, 1) || IsNumber(4, 4, 1))) {
        m_nAt += 2;
        if (IsSign(':') && IsNumber(2, 2, 1))
            m_nAt += 2;
        m_bOffset = true;
    }
    if (!m_bOffset)
        m_nAt = nFrom;
    TakeSign(' ');
    return AtEnd();
}

// The rest of the text as a clock; nothing where it is none.
std::vector<MomentReading> Reader::Clocks()
{
    const std::size_t nFrom = m_nAt;
    std::vector<MomentReading> clocks(1);
    if (TakeWrittenClock(clocks.front()) && TakeOffset()) {
        clocks.front().read.bOffset = m_bOffset;
        return clocks;
    }
    clocks.clear();
    m_nAt = nFrom;
    if (TakeCompactClock(clocks) && TakeOffset())
        return clocks;
    return {};
}

// A date at the beginning, with what follows it.
std::vector<MomentReading> Reader::Dated()
{
    std::vector<MomentReading> dates;
    const std::size_t nFrom = m_nAt;
    if (TakeMonth(dates) || TakeLongDigits(dates))
        return dates;
    m_nAt = nFrom;
    if (!TakeThreeParts(dates) && !TakeDigits(dates))
        return {};
    TakeJoint();
    if (AtEnd() || TakeOffset())
        return dates;
    std::vector<MomentReading> both;
    for (const MomentReading& clock : Clocks())
        for (MomentReading date : dates) {
            date.form.clock = clock.form.clock;
            date.read.nNanoseconds = clock.read.nNanoseconds;
            date.read.bOffset = clock.read.bOffset;
            both.push_back(date);
        }
    return both;
}

// Digits alone may be a date, seconds since 1970, or a time of day.
std::vector<MomentReading> Reader::All()
{
    if (!m_tokens.IsWhole())
        return {};
    const std::size_t nFrom = m_nAt;
    std::vector<MomentReading> readings = Dated();
    m_nAt = nFrom;
    const bool bDigits = Next().kind == Kind::Number;
    if (!readings.empty() && !(bDigits && Next(1).kind == Kind::End))
        return readings;
    std::vector<MomentReading> epochs;
    if (bDigits && TakeEpoch(epochs))
        readings.insert(readings.end(), epochs.begin(), epochs.end());
    m_nAt = nFrom;
    const auto clocks = Clocks();
    readings.insert(readings.end(), clocks.begin(), clocks.end());
    return readings;
}

} // namespace

std::vector<MomentReading> ReadingsOfMoment(std::string_view cell)
{
    if (cell.empty() || cell.size() > 64 ||
        cell.find_first_of("0123456789") == std::string_view::npos)
        return {};
    return Reader(cell).All();
}

std::optional<MomentRead> ReadMoment(std::string_view cell, const MomentForm& form)
{
    for (const MomentReading& reading : ReadingsOfMoment(cell))
        if (reading.form == form)
            return reading.read;
    return std::nullopt;
}

bool IsEpoch(DateForm date)
{
    return date >= DateForm::EpochSeconds && date <= DateForm::EpochNanoseconds;
}

} // namespace tabulex::advice
