// A heading is cut into words, also where a capital follows a small letter, and looked up as a
// whole. Unknown, it loses the words that say nothing and is looked up again; then the one word
// counts that is known, unless another makes something else of it.
#include "advice/headings/HeadingWords.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>

#include "advice/headings/HeadingTable.h"
#include "advice/headings/Utf8.h"
#include "interfaces/FieldsAndResolutions.h"

namespace tabulex {

using namespace IQRL_TabulexConverter;

namespace {

constexpr unsigned Bit(unsigned uiType)
{
    return 1u << uiType;
}

struct MeaningRow
{
    Meaning meaning;
    unsigned uiType;   // the one that is meant
    unsigned uiOthers; // bits of those that do as well
};

constexpr MeaningRow kMeanings[] = {
    {Meaning::Symbol, TypeSymbol, 0},
    {Meaning::Date, TypeDate, 0},
    {Meaning::Time, TypeTime, Bit(TypeDate)},
    {Meaning::Moment, TypeDate, Bit(TypeTime)},
    {Meaning::Open, TypeOpen, 0},
    {Meaning::High, TypeHigh, 0},
    {Meaning::Low, TypeLow, 0},
    {Meaning::Close, TypeClose, Bit(TypePrice)},
    {Meaning::Price, TypeClose, Bit(TypePrice)},
    {Meaning::Volume, TypeVolume, Bit(TypeTotalVolume)},
    {Meaning::UpVolume, TypeUpVolume, 0},
    {Meaning::DownVolume, TypeDownVolume, 0},
    {Meaning::UnchangedVolume, TypeUnchangedVolume, 0},
    {Meaning::TickVolume, TypeTotalTicks, Bit(TypeVolume) | Bit(TypeTotalVolume)},
    {Meaning::UpTicks, TypeUpTicks, 0},
    {Meaning::DownTicks, TypeDownTicks, 0},
    {Meaning::UnchangedTicks, TypeUnchangedTicks, 0},
    {Meaning::Trades, TypeTotalTicks, 0},
    {Meaning::OpenInterest, TypeOpenInterest, 0},
};

const MeaningRow* RowOf(Meaning meaning)
{
    const auto at = std::ranges::find(kMeanings, meaning, &MeaningRow::meaning);
    return at == std::end(kMeanings) ? nullptr : at;
}

template <class Use>
void ForEachWord(std::string_view words, Use use)
{
    while (!words.empty()) {
        const std::size_t nEnd = std::min(words.find(' '), words.size());
        if (nEnd > 0)
            use(words.substr(0, nEnd));
        words.remove_prefix(std::min(nEnd + 1, words.size()));
    }
}

std::set<std::string_view> WordsOf(std::string_view words)
{
    std::set<std::string_view> result;
    ForEachWord(words, [&](std::string_view word) { result.insert(word); });
    return result;
}

// The first row that has a word gives its meaning.
const std::map<std::string_view, Meaning>& KnownWords()
{
    static const auto words = [] {
        std::map<std::string_view, Meaning> result;
        for (const HeadingRow& row : HeadingRows())
            ForEachWord(row.sWords,
                        [&](std::string_view word) { result.emplace(word, row.meaning); });
        return result;
    }();
    return words;
}

Meaning LookUp(const std::string& word)
{
    const auto at = KnownWords().find(word);
    return at == KnownWords().end() ? Meaning::Unknown : at->second;
}

std::string Joined(const std::vector<std::string>& tokens)
{
    std::string result;
    for (const std::string& token : tokens)
        result += token;
    return result;
}

bool IsFiller(const std::string& token)
{
    static const auto words = WordsOf(FillerWords());
    return words.contains(token);
}

bool MakesOther(const std::string& token)
{
    static const auto words = WordsOf(OtherWords());
    return words.contains(token);
}

bool IsPriceOfBar(Meaning meaning)
{
    return meaning >= Meaning::Open && meaning <= Meaning::Close;
}

// What a single known word among others says, as in OpenPx; prices of bars may be those of bid or
// ask.
Meaning MeaningOfParts(const std::vector<std::string>& tokens)
{
    std::optional<Meaning> found;
    bool bOther = false;
    for (const std::string& token : tokens) {
        const Meaning meaning = LookUp(token);
        if (MakesOther(token))
            return Meaning::Other;
        if (meaning == Meaning::Other)
            bOther = true;
        if (meaning == Meaning::Unknown || meaning == Meaning::Other || meaning == found)
            continue;
        if (found && IsPriceOfBar(*found) && meaning == Meaning::Price)
            continue;
        if (found && !(*found == Meaning::Price && IsPriceOfBar(meaning)))
            return Meaning::Unknown;
        found = meaning;
    }
    if (bOther && !(found && IsPriceOfBar(*found)))
        return Meaning::Other;
    return found.value_or(Meaning::Unknown);
}

// Without what stands in brackets, unless that is all.
std::string WithoutBrackets(std::string_view heading)
{
    std::string result;
    int nDepth = 0;
    for (const char c : heading) {
        if (c == '(' || c == '[')
            ++nDepth;
        else if (c == ')' || c == ']')
            nDepth = std::max(0, nDepth - 1);
        else if (nDepth == 0)
            result += c;
    }
    return result.find_first_not_of(" \t\"'") == std::string::npos ? std::string(heading) : result;
}

// ---- letters

struct LetterRow
{
    std::u32string_view sLetters;
    std::string_view sPlain;
};

constexpr LetterRow kLetters[] = {
    {U"àáâãäåāăąÀÁÂÃÄÅĀĂĄ", "a"},
    {U"æÆ", "ae"},
    {U"çćčÇĆČ", "c"},
    {U"ďđĎĐ", "d"},
    {U"èéêëēęěÈÉÊËĒĘĚ", "e"},
    {U"ğĞ", "g"},
    {U"ìíîïīıİÌÍÎÏ", "i"},
    {U"łŁ", "l"},
    {U"ñńňÑŃŇ", "n"},
    {U"òóôõöøőÒÓÔÕÖØŐ", "o"},
    {U"řŘ", "r"},
    {U"śšşŚŠŞșȘ", "s"},
    {U"ßẞ", "ss"},
    {U"ťţțŤŢȚ", "t"},
    {U"ùúûüūůűÙÚÛÜŮŰ", "u"},
    {U"ýÿÝ", "y"},
    {U"źżžŹŻŽ", "z"},
};

char32_t WithoutWidth(char32_t c)
{
    return c >= 0xFF01 && c <= 0xFF5E ? static_cast<char32_t>(c - 0xFEE0) : c;
}

std::string_view PlainLetter(char32_t c)
{
    for (const LetterRow& row : kLetters)
        if (row.sLetters.find(c) != std::u32string_view::npos)
            return row.sPlain;
    return {};
}

char32_t SmallCyrillic(char32_t c)
{
    if (c == 0x401 || c == 0x451)
        return 0x435;
    return c >= 0x410 && c <= 0x42F ? static_cast<char32_t>(c + 0x20) : c;
}

bool IsAsciiLetter(char32_t c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// What isn't a letter parts words: ASCII but its letters, and the signs of other writings.
bool PartsWords(char32_t c)
{
    return (c < 0x80 && !IsAsciiLetter(c)) || (c >= 0x80 && c <= 0xBF) || c == 0xD7 || c == 0xF7 ||
           (c >= 0x2000 && c <= 0x206F) || (c >= 0x3000 && c <= 0x303F) || c >= 0xFE00;
}

void AppendSmall(std::string& out, char32_t c)
{
    const std::string_view plain = c < 0x80 ? std::string_view() : PlainLetter(c);
    if (c < 0x80) {
        out += static_cast<char>(c | 0x20);
    } else if (!plain.empty()) {
        out += plain;
    } else if (c < 0x300 || c > 0x36F) { // marks that stand by themselves are left out
        AppendCharacter(out, SmallCyrillic(c));
    }
}

} // namespace

std::vector<std::string> HeadingTokens(std::string_view heading)
{
    std::vector<std::string> tokens;
    std::string token;
    char32_t before = 0;
    const auto end = [&] {
        if (!token.empty())
            tokens.push_back(std::move(token));
        token.clear();
    };
    while (!heading.empty()) {
        const char32_t c = WithoutWidth(TakeCharacter(heading));
        if (PartsWords(c) || (c >= 'A' && c <= 'Z' && before >= 'a' && before <= 'z'))
            end();
        if (!PartsWords(c))
            AppendSmall(token, c);
        before = c;
    }
    end();
    return tokens;
}

Meaning MeaningOf(std::string_view heading)
{
    std::vector<std::string> tokens = HeadingTokens(WithoutBrackets(heading));
    if (const Meaning whole = LookUp(Joined(tokens)); whole != Meaning::Unknown)
        return whole;
    if (std::ranges::any_of(tokens, MakesOther))
        return Meaning::Other;
    std::erase_if(tokens, IsFiller);
    if (const Meaning rest = LookUp(Joined(tokens)); rest != Meaning::Unknown)
        return rest;
    return MeaningOfParts(tokens);
}

unsigned DistanceOf(std::string_view heading)
{
    constexpr unsigned kOtherWords = 1000, kAdjusted = 2000;
    const auto tokens = HeadingTokens(WithoutBrackets(heading));
    const std::string whole = Joined(tokens);
    const Meaning meaning = LookUp(whole);
    unsigned nPlace = 0, nFound = kOtherWords + static_cast<unsigned>(tokens.size());
    for (const HeadingRow& row : HeadingRows())
        if (row.meaning == meaning)
            ForEachWord(row.sWords, [&](std::string_view word) {
                if (word == whole)
                    nFound = std::min(nFound, nPlace);
                ++nPlace;
            });
    return nFound + (IsAdjusted(heading) ? kAdjusted : 0);
}

bool IsAdjusted(std::string_view heading)
{
    return std::ranges::any_of(HeadingTokens(heading),
                               [](const std::string& token) { return token.starts_with("adj"); });
}

bool Agrees(Meaning meaning, unsigned uiType)
{
    const MeaningRow* row = RowOf(meaning);
    return row && (row->uiType == uiType || (row->uiOthers & Bit(uiType)));
}

unsigned TypeOfMeaning(Meaning meaning)
{
    const MeaningRow* row = RowOf(meaning);
    return row ? row->uiType : kNoType;
}

} // namespace tabulex
