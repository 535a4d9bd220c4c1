#include "intake/DecimalDigits.h"

#include <cstring>

namespace tabulex::intake {

char* DecimalDigits::WriteSign(char* pOut) const
{
    if (bNegative && HasValue(0))
        *pOut++ = '-';
    return pOut;
}

void DecimalDigits::Write(char*& pOut) const
{
    char* p = WriteSign(pOut);
    int n = std::min(nPoint, 0);
    while (n < nPoint - 1 && At(n) == '0')
        ++n;
    if (nPoint <= 0)
        *p++ = '0';
    for (; n < nPoint; ++n)
        *p++ = At(n);
    if (nPoint < nCount)
        *p++ = '.';
    for (n = nPoint; n < nCount; ++n)
        *p++ = At(n);
    pOut = p;
}

bool DecimalDigits::WriteWhole(char*& pOut) const
{
    char* const pBegin = WriteSign(pOut);
    char* p = pBegin;
    *p++ = '0'; // for a carry
    int n = 0;
    while (n < nPoint && At(n) == '0')
        ++n;
    for (; n < nPoint; ++n)
        *p++ = At(n);
    if (At(nPoint) >= '5') {
        char* pUp = p - 1;
        for (; *pUp == '9'; --pUp)
            *pUp = '0';
        ++*pUp;
    }
    if (*pBegin == '0' && p - pBegin > 1) {
        std::memmove(pBegin, pBegin + 1, static_cast<std::size_t>(p - pBegin - 1));
        --p;
    }
    pOut = p;
    return HasValue(nPoint);
}

} // namespace tabulex::intake
