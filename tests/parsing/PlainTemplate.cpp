#include "tests/parsing/PlainTemplate.h"

#include <chrono>
#include <cstdlib>

namespace {

const string_t kDigits = OLESTR("0123456789");

bool OneOf(OLECHAR c, const string_t& set)
{
    return set.find(c) != set.npos;
}

bool AllOf(const string_t& s, const string_t& set)
{
    return s.find_first_not_of(set) == s.npos;
}

bool Divider(OLECHAR c)
{
    return OneOf(static_cast<OLECHAR>(c & 0xFF), OLESTR(":/\\.,=|-_ "));
}

void CutTail(string_t& s)
{
    std::size_t first = 0;
    while (first < s.size() && Divider(s[first]))
        ++first;
    if (first == s.size())
        return;
    std::size_t last = s.size() - 1;
    while (last > first && Divider(s[last]))
        --last;
    s.resize(last + 1);
}

OLECHAR Lower(OLECHAR c)
{
    return c >= OLESTR('A') && c <= OLESTR('Z') ? static_cast<OLECHAR>(c + 32) : c;
}

string_t Lower(string_t s)
{
    for (OLECHAR& c : s)
        c = Lower(c);
    return s;
}

std::string Narrow(const string_t& s)
{
    return std::string(s.begin(), s.end());
}

LONGLONG Integer(const string_t& s)
{
    return std::strtoll(Narrow(s).c_str(), nullptr, 10);
}

std::uint32_t Hash(const string_t& s)
{
    std::uint32_t h = 0;
    for (OLECHAR c : s)
        h = h * 33 + c;
    return h;
}

// 1 to 12, 0 for no month.
int MonthNumber(const string_t& s)
{
    const string_t names[] = {OLESTR("jan"), OLESTR("feb"), OLESTR("mar"), OLESTR("apr"),
                              OLESTR("may"), OLESTR("jun"), OLESTR("jul"), OLESTR("aug"),
                              OLESTR("sep"), OLESTR("oct"), OLESTR("nov"), OLESTR("dec")};
    for (int i = 0; i < 12; ++i)
        if (Hash(names[i]) == Hash(Lower(s)))
            return i + 1;
    return 0;
}

bool StarsAreWellPlaced(const string_t& sChunk)
{
    for (std::size_t i = 0; i < sChunk.size(); ++i)
        if (sChunk[i] == OLESTR('*') && i != 0 && i != sChunk.size() - 1)
            return false;
    return !(sChunk.front() == OLESTR('*') && sChunk.back() == OLESTR('*'));
}

// A position that walks a text in either direction.
struct Cursor
{
    Cursor(const string_t& s, bool bBackward)
        : text(s), step(bBackward ? -1 : 1), at(bBackward ? static_cast<long>(s.size()) - 1 : 0)
    {}
    bool AtEnd() const { return at < 0 || at >= static_cast<long>(text.size()); }
    bool AtLast() const { return at + step < 0 || at + step >= static_cast<long>(text.size()); }
    OLECHAR operator*() const { return text[static_cast<std::size_t>(at)]; }
    void operator++() { at += step; }

    const string_t& text;
    long step;
    long at;
};

bool DryChunk(unsigned uiType, const string_t& sChunk, string_t sText)
{
    if (!sText.empty() && OneOf(sText[0], OLESTR("-+")))
        sText.erase(0, 1);
    if (sChunk.empty() || sText.empty() || !StarsAreWellPlaced(sChunk))
        return false;
    const bool bStar = OneOf(OLESTR('*'), sChunk);
    if (bStar ? sText.size() < sChunk.size() - 1 : sText.size() != sChunk.size())
        return false;
    const bool bBackward = sChunk[0] == OLESTR('*');
    Cursor t(sChunk, bBackward), x(sText, bBackward);
    for (;;) {
        if (t.AtEnd())
            return true;
        const OLECHAR c = *t;
        if (c == OLESTR('?')) {
            if (t.AtLast())
                return true;
            if (x.AtEnd())
                return false;
            ++t;
            ++x;
            continue;
        }
        while (!t.AtEnd() && !x.AtEnd()) {
            if (uiType == 1 && *t != OLESTR('m') && !OneOf(*x, kDigits))
                return false;
            ++x;
            if (*t != OLESTR('*'))
                ++t;
            if (t.AtEnd())
                break;
            if (*t == OLESTR('?')) {
                ++t;
                if (!x.AtEnd())
                    ++x;
            } else if (*t != c && *t != OLESTR('*'))
                break;
        }
        if (t.AtEnd() || *t == c || *t == OLESTR('*'))
            return true;
    }
}

} // namespace

PlainField::PlainField(unsigned type, string_t sText)
    : uiType(type), sTemplate(Lower(std::move(sText)))
{
    const string_t sPattern = sTemplate.substr(0, sTemplate.find(OLESTR('@')));
    const string_t letters = uiType == 1   ? OLESTR("dmy")
                             : uiType == 2 ? OLESTR("fhmst")
                                           : OLESTR("");
    for (OLECHAR letter : letters)
        if (OneOf(letter, sPattern))
            vars[letter] = 0;
    if (uiType >= 8 && uiType <= 17)
        vars[OLESTR('i')] = 0;
}

bool PlainField::Parse(string_t sText)
{
    return EvaluateText(std::move(sText)) && IsInRange();
}

bool PlainField::EvaluateText(string_t sText)
{
    if (uiType == 1 || uiType == 2)
        return EvaluateTemplate(std::move(sText));
    if (uiType >= 3 && uiType <= 7)
        return EvaluatePrice(std::move(sText));
    return uiType >= 8 && uiType <= 17 && EvaluateWhole(sText);
}

bool PlainField::EvaluatePrice(string_t sText)
{
    if (!AllOf(sText, OLESTR("0123456789.,-+")))
        return false;
    const std::size_t comma = sText.find(OLESTR(','));
    if (comma != sText.npos)
        sText[comma] = OLESTR('.');
    price = std::strtod(Narrow(sText).c_str(), nullptr);
    return true;
}

bool PlainField::EvaluateWhole(const string_t& sText)
{
    if (!AllOf(sText, OLESTR("0123456789.,-+")))
        return false;
    std::size_t mark = sText.find(OLESTR('.'));
    if (mark == sText.npos)
        mark = sText.find(OLESTR(','));
    if (mark != sText.npos && !AllOf(sText.substr(mark + 1), OLESTR("0")))
        return false;
    vars[OLESTR('i')] = Integer(sText);
    return true;
}

bool PlainField::EvaluateTemplate(string_t sText)
{
    if (vars.empty())
        return false;
    CutTail(sText);
    for (auto& [letter, value] : vars)
        value = 0;
    string_t sPattern = sTemplate;
    const std::size_t at = sPattern.find(OLESTR('@'));
    m_sPmWord.clear();
    if (at != sPattern.npos) {
        m_sPmWord = sPattern.substr(at + 1);
        sPattern.resize(at);
    }
    if (uiType == 1)
        CutTail(sPattern);
    if (vars.count(OLESTR('s'))) {
        if (!sText.empty() && sText[0] == OLESTR('-')) {
            sText.erase(0, 1);
            vars[OLESTR('s')] = 1;
        }
        if (!sText.empty() && sText[0] == OLESTR('+'))
            sText.erase(0, 1);
    }
    if (!Loop(sPattern, sText))
        return false;
    if (uiType == 1 && vars.count(OLESTR('y'))) {
        LONGLONG& y = vars[OLESTR('y')];
        if (y < 50)
            y += 2000;
        else if (y <= 199)
            y += 1900;
    }
    return true;
}

bool PlainField::Loop(string_t sPattern, string_t sText)
{
    while (!sPattern.empty() && !sText.empty()) {
        std::size_t cut = 0;
        while (cut < sPattern.size() && !Divider(sPattern[cut]))
            ++cut;
        if (cut == sPattern.size())
            return MatchChunk(sPattern, sText);
        const std::size_t found = sText.find(sPattern[cut]);
        if (found == sText.npos || !MatchChunk(sPattern.substr(0, cut), sText.substr(0, found)))
            return false;
        sPattern.erase(0, cut + 1);
        sText.erase(0, found + 1);
    }
    return true;
}

bool PlainField::MatchChunk(const string_t& sChunk, const string_t& sText)
{
    if (sChunk.empty() || sText.empty() || !StarsAreWellPlaced(sChunk))
        return false;
    if (!OneOf(OLESTR('*'), sChunk) && sText.size() != sChunk.size())
        return false;
    const bool bBackward = sChunk[0] == OLESTR('*');
    Cursor t(sChunk, bBackward), x(sText, bBackward);
    for (;;) {
        if (t.AtEnd())
            return true;
        const OLECHAR c = *t;
        if (c == OLESTR('?')) {
            if (t.AtLast())
                return true;
            if (x.AtEnd())
                return false;
            ++t;
            ++x;
            continue;
        }
        if (!vars.count(c))
            return false;
        string_t sRun;
        while (!t.AtEnd() && !x.AtEnd()) {
            if (uiType == 1 && *t != OLESTR('m') && !OneOf(*x, kDigits))
                return false;
            sRun.insert(bBackward ? 0 : sRun.size(), 1, *x);
            ++x;
            if (*t != OLESTR('*'))
                ++t;
            if (t.AtEnd())
                break;
            if (*t == OLESTR('?')) {
                ++t;
                if (!x.AtEnd())
                    ++x;
            } else if (*t != c && *t != OLESTR('*'))
                break;
        }
        if (!ConvertRun(c, sRun))
            return false;
        if (t.AtEnd() || *t == c || *t == OLESTR('*'))
            return true;
    }
}

bool PlainField::ConvertRun(OLECHAR letter, const string_t& sRun)
{
    LONGLONG& variable = vars[letter];
    if (letter == OLESTR('t') && uiType == 2) {
        if (!m_sPmWord.empty() && Lower(m_sPmWord) == Lower(sRun))
            variable = 1;
        return true;
    }
    LONGLONG value = 0;
    if (AllOf(sRun, OLESTR("0123456789-+")))
        value = Integer(sRun);
    else {
        value = MonthNumber(sRun);
        if (value == 0)
            return false;
    }
    variable =
        static_cast<LONGLONG>(static_cast<ULONGLONG>(variable) + static_cast<ULONGLONG>(value));
    return true;
}

LONGLONG PlainField::Get(OLECHAR letter) const
{
    const auto at = vars.find(letter);
    return at == vars.end() ? 0 : at->second;
}

LONGLONG PlainField::Hour() const
{
    LONGLONG h = Get(OLESTR('h'));
    if (vars.count(OLESTR('t'))) {
        if (Get(OLESTR('t')) == 1 && h < 12)
            h += 12;
        else if (Get(OLESTR('t')) == 0 && h >= 12)
            h -= 12;
    }
    return h;
}

bool PlainField::IsInRange() const
{
    if (uiType == 1) {
        const LONGLONG lengths[] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
        const LONGLONG y = Get(OLESTR('y')), m = Get(OLESTR('m')), d = Get(OLESTR('d'));
        if (!vars.count(OLESTR('y')) || !vars.count(OLESTR('m')))
            return false;
        if (!((y >= 0 && y <= 199) || (y >= 1900 && y <= 2099)) || m < 1 || m > 12)
            return false;
        return !vars.count(OLESTR('d')) || (d >= 1 && d <= lengths[m - 1]);
    }
    if (uiType == 2) {
        if (!vars.count(OLESTR('h')) || Hour() < 0 || Hour() > 24)
            return false;
        if (!vars.count(OLESTR('m')) || Get(OLESTR('m')) < 0 || Get(OLESTR('m')) > 59)
            return false;
        return !vars.count(OLESTR('s')) || (Get(OLESTR('s')) >= 0 && Get(OLESTR('s')) <= 59);
    }
    return true;
}

bool PlainField::HasValue() const
{
    return uiType != 2 || Hour() != 24;
}

double PlainField::Value() const
{
    using namespace std::chrono;
    if (uiType == 1) {
        const sys_days first =
            year(static_cast<int>(Get(OLESTR('y')))) / static_cast<int>(Get(OLESTR('m'))) / 1;
        const sys_days zero = 1899y / December / 30;
        return static_cast<double>((first - zero).count() + Get(OLESTR('d')) - 1);
    }
    if (uiType == 2) {
        LONGLONG f = Get(OLESTR('f'));
        f = f > 999 ? 999 : f < 0 ? 0 : f;
        const LONGLONG ms = ((Hour() * 60 + Get(OLESTR('m'))) * 60 + Get(OLESTR('s'))) * 1000 + f;
        return static_cast<double>(ms) / 86400000.0;
    }
    return uiType <= 7 ? price : static_cast<double>(Get(OLESTR('i')));
}

bool PlainCouldTake(unsigned uiType, string_t sTemplate, string_t sText)
{
    string_t sPattern = sTemplate.substr(0, sTemplate.find(OLESTR('@')));
    while (!sPattern.empty() && !sText.empty()) {
        std::size_t cut = 0;
        while (cut < sPattern.size() && !Divider(sPattern[cut]))
            ++cut;
        if (cut == sPattern.size())
            return DryChunk(uiType, sPattern, sText);
        const std::size_t found = sText.find(sPattern[cut]);
        if (found == sText.npos ||
            !DryChunk(uiType, sPattern.substr(0, cut), sText.substr(0, found)))
            return false;
        sPattern.erase(0, cut + 1);
        sText.erase(0, found + 1);
    }
    return true;
}
