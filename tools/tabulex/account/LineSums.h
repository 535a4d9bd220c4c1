// LineSums: whether each line has as many dividers, and dashes and marks within numbers, as the
// lines of its file usually have.
//
// A date may have a dash between digits and a price may not, and bytes alone don't tell one from
// the other; but a line with one too many shows.
#pragma once

#include <string>

#include "platform/component.h"
#include "tools/tabulex/account/SuspectMarks.h"

namespace tabulex {

struct UsualLine
{
    std::string sDividers;     // of the fields; empty where any number of them may stand together
    std::size_t nDividers = 0; // so many of them in a line
    bool bCommaDivides = true;
    std::string sTexts; // cells of a line that are no numbers, each behind a line end
};

class LineSums
{
public:
    static constexpr std::size_t kBefore = 1; // bytes that are read ahead of those handed in
    static constexpr std::size_t kAfter = 4;  // and behind them

    void Expect(const UsualLine& line);
    const std::string& Dividers() const { return m_sDividers; }
    // What parts a number beside the point; the point itself where a comma divides fields.
    char Comma() const { return m_cComma; }

    // The next bytes. Whether one of the lines that end in them is odd.
    bool HasOddLine(const char* bytes, std::size_t n);

private:
    ByteBlock WeightsAt(const char* p) const;
    void Weigh(const char* bytes, std::size_t n, unsigned char* weights) const;
    bool TakeWord(const unsigned char* weights, std::size_t n);

    std::string m_sDividers;
    char m_cComma = '.';
    std::size_t m_nUsual = 0; // sum of a line
    std::size_t m_nSum = 0;   // since the last line end
};

} // namespace tabulex
