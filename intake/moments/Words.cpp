// English comes first, then the languages that quote files come in. A name that means one month in
// one language and another month elsewhere is none, unless it is English or its language is given.

#include "intake/moments/Words.h"

#include <algorithm>
#include <span>

namespace tabulex::intake {

namespace {

constexpr const char* kLanguages[] = {"de", "fr", "es", "it", "pt", "nl", "pl", "ru", "cs", "sk",
                                      "hu", "ro", "sv", "da", "nb", "fi", "tr", "el", "uk", "bg",
                                      "hr", "sl", "lt", "lv", "et", "id", "vi", "ja", "zh", "ko"};

struct FixedWord
{
    const char* pszName; // small letters
    Word word;
};

constexpr FixedWord kFixedWords[] = {{"am", {WordKind::Morning}},   {"a", {WordKind::Morning}},
                                     {"pm", {WordKind::Afternoon}}, {"p", {WordKind::Afternoon}},
                                     {"上午", {WordKind::Morning}}, {"下午", {WordKind::Afternoon}},
                                     {"午前", {WordKind::Morning}}, {"午後", {WordKind::Afternoon}},
                                     {"오전", {WordKind::Morning}}, {"오후", {WordKind::Afternoon}},
                                     {"z", {WordKind::Utc}},        {"utc", {WordKind::Utc}},
                                     {"gmt", {WordKind::Utc}},      {"sept", {WordKind::Month, 9}},
                                     {"mrz", {WordKind::Month, 3}}, {"jän", {WordKind::Month, 1}},
                                     {"tues", {WordKind::Weekday}}, {"wednes", {WordKind::Weekday}},
                                     {"thur", {WordKind::Weekday}}, {"thurs", {WordKind::Weekday}}};

// Of clocks; whose offset isn't known, as several places use one.
constexpr const char* kZones[] = {"est", "edt",  "cst", "cdt", "mst", "mdt", "pst", "pdt",  "et",
                                  "ct",  "pt",   "cet", "bst", "wet", "eet", "msk", "cest", "west",
                                  "ist", "eest", "jst", "kst", "hkt", "sgt", "brt", "aest", "aedt"};

// Stand between the parts of a date or a time.
constexpr const char* kFillers[] = {"st",  "nd", "rd", "th", "of", "the", "at", "de", "del", "um",
                                    "uhr", "t",  "г",  "º",  "年", "月",  "日", "년", "월",  "일"};

constexpr const char* kMonths[] = {"january",   "february", "march",    "april",
                                   "may",       "june",     "july",     "august",
                                   "september", "october",  "november", "december"};
constexpr const char* kWeekdays[] = {"monday", "tuesday",  "wednesday", "thursday",
                                     "friday", "saturday", "sunday"};
constexpr std::size_t kEnglishAbbreviation = 3;

constexpr std::size_t kMostBytes = 40;

bool IsAsciiLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool IsBeyondAscii(char c)
{
    return (static_cast<unsigned char>(c) & 0x80) != 0;
}

bool IsLetter(char c)
{
    return IsAsciiLetter(c) || IsBeyondAscii(c);
}

// Not a byte that goes on with a character.
bool IsCharacterStart(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
}

void AddEnglish(NameMap& names, std::string_view name, Word word)
{
    names.emplace(name, word);
    names.emplace(name.substr(0, kEnglishAbbreviation), word);
}

NameMap MakeEnglish()
{
    NameMap names;
    for (std::size_t n = 0; n < std::size(kMonths); ++n)
        AddEnglish(names, kMonths[n], {WordKind::Month, static_cast<std::uint8_t>(n + 1)});
    for (const char* pszName : kWeekdays)
        AddEnglish(names, pszName, {WordKind::Weekday});
    for (const FixedWord& fixed : kFixedWords)
        names.emplace(fixed.pszName, fixed.word);
    for (const char* pszName : kZones)
        names.emplace(pszName, Word{WordKind::Zone});
    for (const char* pszName : kFillers)
        names.emplace(pszName, Word{WordKind::Filler});
    return names;
}

const NameMap& English()
{
    static const NameMap s_names = MakeEnglish();
    return s_names;
}

// Small letters where they are ASCII, and no point at the end. Empty for a name with anything
// but letters, as the months of some languages are numbers.
std::string Plain(std::string_view name)
{
    while (name.ends_with('.'))
        name.remove_suffix(1);
    if (name.size() > kMostBytes || !std::ranges::all_of(name, IsLetter))
        return {};
    std::string plain(name);
    for (char& c : plain)
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
    return plain;
}

constexpr std::uint8_t kSeveralMonths = 0;

// A day of one language may be the month of another, and is read as that.
void AddName(NameMap& names, const LanguageName& name)
{
    const std::string plain = Plain(name.sName);
    if (plain.empty())
        return;
    const auto [at, bNew] = names.emplace(plain, name.word);
    Word& word = at->second;
    if (bNew || word == name.word)
        return;
    if (word.kind != name.word.kind)
        word = word.kind == WordKind::Month ? word : name.word;
    else if (word.kind == WordKind::Month)
        word.nValue = kSeveralMonths;
}

NameMap MakeNames(std::span<const char* const> languages)
{
    NameMap names;
    for (const char* pszLanguage : languages)
        for (const LanguageName& name : NamesOf(pszLanguage))
            AddName(names, name);
    std::erase_if(names, [](const auto& entry) {
        return entry.second.kind == WordKind::Month && entry.second.nValue == kSeveralMonths;
    });
    return names;
}

const NameMap& AllLanguages()
{
    static const NameMap s_names = MakeNames(kLanguages);
    return s_names;
}

} // namespace

const NameMap& Words::Names() const
{
    if (m_sLanguage.empty())
        return AllLanguages();
    const char* pszLanguage = m_sLanguage.c_str();
    if (m_names.empty())
        m_names = MakeNames({&pszLanguage, 1});
    return m_names;
}

// A language that is given goes ahead of English.
const Word* Words::Lookup(std::string_view name) const
{
    if (!m_sLanguage.empty())
        if (const auto at = Names().find(name); at != Names().end())
            return &at->second;
    if (const auto at = English().find(name); at != English().end())
        return &at->second;
    if (const auto at = Names().find(name); at != Names().end())
        return &at->second;
    return nullptr;
}

const Word* Words::Find(std::string_view text, std::size_t& nSize) const
{
    char name[kMostBytes];
    nSize = 0;
    while (nSize < text.size() && IsLetter(text[nSize])) {
        const char c = text[nSize];
        if (nSize < kMostBytes)
            name[nSize] = c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
        ++nSize;
    }
    const std::size_t nRun = nSize;
    if (nRun == 0 || nRun > kMostBytes)
        return nullptr;
    while (nSize > 0) {
        if (const Word* pWord = Lookup({name, nSize}))
            return pWord;
        if (!IsBeyondAscii(name[0]))
            break;
        while (--nSize > 0 && !IsCharacterStart(text[nSize])) {
        }
    }
    nSize = nRun;
    return nullptr;
}

bool KnowsLanguage(const std::string& language)
{
    return !NamesOf(language).empty();
}

} // namespace tabulex::intake
