// A divider, a sign between digits, and a mark that another one follows within a number weigh
// something each, and a line has the sum of these weights. A usual line has a usual sum. The
// weights are chosen so that one kind doesn't make up for another. A line without any weight is
// blank, or text that is bad anyway.

#include "tools/tabulex/account/LineSums.h"

#include <algorithm>
#include <bit>

namespace tabulex {

namespace {

using Mask = std::uint64_t;
using Windows = std::span<const LineMarks::Masks>;

constexpr std::size_t kDividerWeight = 1, kSignWeight = 17, kMarkWeight = 31;

struct Weights
{
    explicit Weights(const LineMarks::Masks& at)
        : dividers(at[Dividers]), signs(at[Signs] & at[Digits] << 1 & at[Digits] >> 1)
    {
        // With up to three digits to the next mark.
        const Mask third = at[Digits] >> 3 & at[Marks] >> 4;
        const Mask second = at[Digits] >> 2 & (at[Marks] >> 3 | third);
        marks = at[Marks] & at[Digits] >> 1 & (at[Marks] >> 2 | second);
    }

    [[gnu::always_inline]] std::size_t Sum(Mask places) const
    {
        const auto count = [=](Mask kind) {
            return static_cast<std::size_t>(std::popcount(kind & places));
        };
        const std::size_t nSum = count(dividers) * kDividerWeight;
        if ((signs | marks) == 0) // as in all windows of many a file
            return nSum;
        return nSum + count(signs) * kSignWeight + count(marks) * kMarkWeight;
    }

    Mask dividers, signs, marks;
};

// Sums of lines that go on from window to window.
struct Sums
{
    std::size_t nUsual;
    std::size_t nSum;
    bool bOdd;
};

[[gnu::always_inline]] inline void Take(const LineMarks::Masks& window, Mask places, Sums& sums)
{
    const Weights weights(window);
    Mask rest = places, ends = window[LineEnds] & places;
    do {
        const Mask line = rest & (ends ^ (ends - 1)); // all of the rest where none ends
        const bool bEnd = ends != 0;
        sums.nSum += weights.Sum(line);
        sums.bOdd |= bEnd & (sums.nSum != sums.nUsual) & (sums.nSum != 0);
        sums.nSum = bEnd ? 0 : sums.nSum;
        rest &= ~line;
        ends &= ends - 1;
    } while (ends);
    sums.nSum += weights.Sum(rest);
}

[[gnu::always_inline]] inline Sums TakeAll(Windows windows, Mask places, Sums sums)
{
    for (const LineMarks::Masks& window : windows)
        Take(window, places, sums);
    return sums;
}

#if defined(__x86_64__)
[[gnu::target("popcnt")]] Sums TakeWide(Windows windows, Mask places, Sums sums)
{
    return TakeAll(windows, places, sums);
}
#endif

} // namespace

void LineSums::Expect(const UsualLine& line)
{
    m_nUsual = line.nDividers * kDividerWeight;
    const LineMarks marks = MarksOf(line);
    std::string text = std::string(kBefore, '\n') + line.sTexts;
    text.append(kWindowBytes, '\n');
    for (std::size_t i = 0; i < line.sTexts.size(); i += kPlaces) {
        LineMarks::Masks window;
        marks.Find(&text[i], kPlaces, {&window, 1});
        window[Dividers] = 0;
        m_nUsual += Weights(window).Sum(FirstPlaces(kPlaces));
    }
}

bool LineSums::HasOddLine(Windows windows, Mask places)
{
    Sums sums{m_nUsual, m_nSum, false};
#if defined(__x86_64__)
    static const bool bWide = __builtin_cpu_supports("popcnt");
    sums = bWide ? TakeWide(windows, places, sums) : TakeAll(windows, places, sums);
#else
    sums = TakeAll(windows, places, sums);
#endif
    m_nSum = sums.nSum;
    return sums.bOdd;
}

} // namespace tabulex
