#include "tests/tabulex/units/QuoteText.h"

#include <string_view>

namespace {

using namespace std::string_view_literals;

constexpr std::string_view kNoise = ",;:| \t\r\n\n129ab.-+'\"()[]0\0A\xe4"sv;

class QuoteWriter
{
public:
    explicit QuoteWriter(std::mt19937& random) : m_random(random) {}

    // Nothing but noise where nOneIn is 0; else one line in so many is made odd.
    std::string Text(std::size_t nLeast, unsigned nOneIn);

private:
    bool OneIn(unsigned n) { return m_random() % n == 0; }
    template <class Choices>
    auto OneOf(const Choices& choices)
    {
        return choices[m_random() % std::size(choices)];
    }
    std::string Line(std::string_view date, std::string_view time, char cDivider);
    void MakeOdd(std::string& line);

    std::mt19937& m_random;
};

std::string QuoteWriter::Line(std::string_view date, std::string_view time, char cDivider)
{
    std::string line(date);
    for (int i = 0; i < 4; ++i) {
        line += cDivider;
        line += i == 0 ? std::string(time) : std::to_string(m_random() % 2000);
        if (i > 0)
            line += '.' + std::to_string(m_random() % 100);
    }
    return line;
}

void QuoteWriter::MakeOdd(std::string& line)
{
    switch (m_random() % 4) {
    case 0:
        line.insert(m_random() % line.size(), 1, OneOf(kNoise));
        break;
    case 1:
        line[m_random() % line.size()] = OneOf(kNoise);
        break;
    case 2:
        line = std::string(m_random() % 4, OneOf(kNoise));
        break;
    default:
        line += std::string(m_random() % 700, 'x');
    }
}

std::string QuoteWriter::Text(std::size_t nLeast, unsigned nOneIn)
{
    constexpr std::string_view kDates[] = {"01/03/2000", "2000-01-03", "03-Jan-2000", "BRK.A", "A"};
    constexpr std::string_view kTimes[] = {"09:30", "09:30:00", "09:30:00.123", "93000"};
    constexpr std::string_view kEnds[] = {"\n", "\n", "\r\n", "\r"};
    const auto date = OneOf(kDates), time = OneOf(kTimes), end = OneOf(kEnds);
    const char cDivider = OneOf(",;|\t"sv);
    std::string text;
    while (text.size() < nLeast) {
        std::string line = nOneIn ? Line(date, time, cDivider) : std::string(1, OneOf(kNoise));
        if (nOneIn && OneIn(nOneIn))
            MakeOdd(line);
        text += line;
        if (nOneIn)
            text += end;
    }
    return text;
}

} // namespace

std::string RandomQuotes(std::mt19937& random, std::size_t nLeast)
{
    constexpr unsigned kOneIn[] = {0, 4, 30, 30, 1000, 1000};
    std::string text = QuoteWriter(random).Text(nLeast, kOneIn[random() % std::size(kOneIn)]);
    if (random() % 10 == 0)
        text.insert(random() % text.size(), random() % 100, '\0');
    if (random() % 10 == 0) {
        std::string units;
        for (const char c : text)
            units += {c, '\0'};
        text = units;
    }
    return text;
}
