// Words: what stands in dates and times beside digits: names of months and days, marks of the
// halves of a day, and words that mean nothing there.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace tabulex::intake {

enum class WordKind : std::uint8_t
{
    Month, // nValue from 1
    Weekday,
    Morning,
    Afternoon,
    Utc,
    Zone,  // another zone's name
    Filler // "of", the ending of "1st"
};

struct Word
{
    WordKind kind;
    std::uint8_t nValue = 0;

    bool operator==(const Word&) const = default;
};

// Names by their letters, of which A to Z are small.
struct NameHash
{
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const
    {
        return std::hash<std::string_view>()(text);
    }
};
using NameMap = std::unordered_map<std::string, Word, NameHash, std::equal_to<>>;

// English is known at once. Names of other languages are fetched at the first word that isn't
// English, once per process where no language is given. Used by one thread.
class Words
{
public:
    // `language` as in Recipe::sLanguage.
    explicit Words(std::string language) : m_sLanguage(std::move(language)) {}

    // The word that the text begins with, which is the longest run of letters; beyond ASCII a
    // beginning of the run will do, as nothing parts words there. Null for one that isn't known.
    // nSize is set to the word's size, or that of the run.
    const Word* Find(std::string_view text, std::size_t& nSize) const;

private:
    const Word* Lookup(std::string_view name) const;
    const NameMap& Names() const;

    std::string m_sLanguage;
    mutable NameMap m_names; // of the language; filled when it is needed
};

bool KnowsLanguage(const std::string& language);

// ---- what the system knows of a language, in a source of its own per system

struct LanguageName
{
    std::string sName; // UTF-8; comes several times, for small letters and capitals
    Word word;         // Month or Weekday
};

// Empty for a language that isn't known.
std::vector<LanguageName> NamesOf(const std::string& language);

} // namespace tabulex::intake
