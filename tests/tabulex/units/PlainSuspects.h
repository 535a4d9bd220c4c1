// PlainSuspects: the rules of SuspectBytes written down place by place over a whole text. It is
// slow, and it is what the fast one is judged by.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "tools/tabulex/account/LineMarks.h"

class PlainSuspects
{
public:
    // The last line gets an end.
    PlainSuspects(const std::string& text, const tabulex::UsualLine& line)
        : m_text(std::string(kMargin, '\n') + text + "\n" + std::string(kMargin, '\n')),
          m_line(line), m_suspect(text.size() + 1)
    {
        std::size_t nSum = 0;
        const std::size_t nUsual = UsualSum();
        for (std::size_t i = 0; i < m_suspect.size(); ++i) {
            m_nAt = i + kMargin;
            m_suspect[i] = IsSuspect();
            nSum += Weight();
            if (At(0) != '\n' && At(0) != '\r')
                continue;
            m_suspect[i] = m_suspect[i] || (nSum != 0 && nSum != nUsual);
            nSum = 0;
        }
    }

    // Whether a place is suspect; a line by its end. One more than the text has bytes.
    const std::vector<bool>& Suspects() const { return m_suspect; }

private:
    static constexpr std::size_t kMargin = 8;

    char At(int n) const { return m_text[m_nAt + static_cast<std::size_t>(n)]; }
    bool IsDigit(int n) const { return At(n) >= '0' && At(n) <= '9'; }
    bool IsLetter(int n) const
    {
        return (At(n) >= 'a' && At(n) <= 'z') || (At(n) >= 'A' && At(n) <= 'Z') || At(n) & 0x80;
    }
    bool IsComma(int n) const { return At(n) == ',' && !m_line.bCommaDivides; }
    bool IsMark(int n) const { return At(n) == '.' || IsComma(n); }
    bool IsDivider() const { return m_line.sDividers.find(At(0)) != std::string::npos; }

    bool IsSuspect() const
    {
        const char c = At(0);
        if (c == '"' || c == '\'' || c == '(' || c == ')' || c == '[' || c == ']')
            return true;
        if (c == '+' && !IsDigit(1) && At(1) != '.')
            return true;
        if (c == '-' && !IsDigit(1) && At(1) != '.' && !IsLetter(1))
            return true;
        if (IsMark(0) && !IsDigit(-1) && !IsDigit(1) && !IsLetter(-1))
            return true;
        if (IsComma(0) && At(1) == '0' && At(2) == '0' && At(3) == '0')
            return true;
        if (IsDivider() && (At(1) == c || (At(1) == ' ' && At(2) == c)))
            return true;
        return IsOddFraction();
    }

    bool IsOddFraction() const
    {
        if (At(-3) != ':' || !IsDigit(-1) || !IsDigit(1))
            return false;
        if (At(0) == '.')
            return !IsDigit(2) || !IsDigit(3) || IsDigit(4);
        return IsComma(0) || At(0) == '-' || (At(0) == ':' && At(-6) == ':');
    }

    std::size_t Weight() const
    {
        if (IsDivider())
            return 1;
        if (At(0) == '-' || At(0) == '+')
            return IsDigit(-1) && IsDigit(1) ? 17 : 0;
        for (int n = 1; IsMark(0) && n <= 3 && IsDigit(n); ++n)
            if (IsMark(n + 1))
                return 31;
        return 0;
    }

    std::size_t UsualSum()
    {
        const std::string text =
            std::string(kMargin, '\n') + m_line.sTexts + std::string(kMargin, '\n');
        const std::string all = std::exchange(m_text, text);
        const std::string dividers = std::exchange(m_line.sDividers, std::string());
        std::size_t nSum = m_line.nDividers;
        for (m_nAt = kMargin; m_nAt < text.size() - kMargin; ++m_nAt)
            nSum += Weight();
        m_text = all;
        m_line.sDividers = dividers;
        return nSum;
    }

    std::string m_text;
    tabulex::UsualLine m_line;
    std::size_t m_nAt = 0;
    std::vector<bool> m_suspect; // by place
};
