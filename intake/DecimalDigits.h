// DecimalDigits: a number as its digits and the place of its point, which moves without loss.
#pragma once

#include <algorithm>

namespace tabulex::intake {

// Digits are added from the left; more than kMost aren't taken.
struct DecimalDigits
{
    static constexpr int kMost = 64;

    char text[kMost];
    int nCount = 0;
    int nPoint = 0; // digits ahead of it; may lie outside of them
    bool bNegative = false;

    bool Add(char c)
    {
        if (nCount == kMost)
            return false;
        text[nCount++] = c;
        return true;
    }
    // Whether any digit from a place on isn't 0.
    bool HasValue(int nFrom) const
    {
        return std::any_of(text + std::clamp(nFrom, 0, nCount), text + nCount,
                           [](char c) { return c != '0'; });
    }
    char At(int n) const { return n >= 0 && n < nCount ? text[n] : '0'; }

    // As a plain decimal, with all its digits. Moves pOut behind, and needs room for kMost bytes
    // more than the point is moved by.
    void Write(char*& pOut) const;
    // Without a fraction, half of one is rounded away from zero; true if there was one.
    bool WriteWhole(char*& pOut) const;

private:
    char* WriteSign(char* pOut) const;
};

} // namespace tabulex::intake
