// A plain implementation of the template language, one character at a time, that the
// compiled matcher is compared with. It is slow and shares nothing with the matcher.
#pragma once

#include <map>
#include <optional>
#include <string>

#include "platform/component.h"

struct PlainField
{
    PlainField(unsigned uiType, string_t sTemplate);

    // True if the text is taken and its values are in range.
    bool Parse(string_t sText);
    // False for a time at hour 24, which is valid only together with a date.
    bool HasValue() const;
    // Days since 1899-12-30 or fraction of a day; for numbers the number.
    double Value() const;

    unsigned uiType;
    string_t sTemplate;
    std::map<OLECHAR, LONGLONG> vars; // of Date, Time and whole numbers
    double price = 0;

private:
    bool EvaluateText(string_t sText);
    bool EvaluateTemplate(string_t sText);
    bool EvaluatePrice(string_t sText);
    bool EvaluateWhole(const string_t& sText);
    bool Loop(string_t sPattern, string_t sText);
    bool MatchChunk(const string_t& sChunk, const string_t& sText);
    bool ConvertRun(OLECHAR letter, const string_t& sRun);
    bool IsInRange() const;
    LONGLONG Get(OLECHAR letter) const;
    LONGLONG Hour() const;

    string_t m_sPmWord;
};

bool PlainCouldTake(unsigned uiType, string_t sTemplate, string_t sText);
