// A header's word is compared with each type's name, letter by letter, whatever the order of
// the letters: the score is the number of letters that both have, over the length of the
// longer one. The first of the highest scores wins, but Date takes over from Symbol always,
// so that a word that is like nothing reads as a Date, which the data then refutes.
//
// A field's text is held against the types from the lowest id upward, and against the
// templates of a type in the order of its list; the first that takes it wins. Numbers have
// no templates to walk: their text decides.

#include "src/parsing/detection/FieldGuess.h"

#include <algorithm>

#include <fmt/format.h>

#include "diagnostics/FaultmereClient.h"
#include "src/parsing/TextSets.h"
#include "src/parsing/templates/TemplateDryRun.h"
#include "src/parsing/templates/TextTests.h"

namespace Hesperon::specifics {
namespace {

constexpr std::size_t kMaxCell = 260;

bool IsNameLetter(OLECHAR c)
{
    const unsigned nLow = c & 0xFFu;
    return nLow >= 0x41 && nLow <= 0x7A;
}

string_t NameLetters(string_view_t sCell)
{
    string_t sLetters;
    std::ranges::copy_if(sCell, std::back_inserter(sLetters), IsNameLetter);
    return sLetters;
}

double Score(unsigned uiType, string_view_t sLetters)
{
    const string_view_t sName = TypeName(uiType);
    return static_cast<double>(FindMatchCount(sName, sLetters)) /
           static_cast<double>(std::max(sName.size(), sLetters.size()));
}

WordGuess MostAlike(string_view_t sLetters, const TypeSet& tried)
{
    WordGuess best;
    for (unsigned uiType = 0; uiType < TYPES_COUNT; ++uiType) {
        // Volume is meant where a header says Total Volume.
        if (best.uiType == TypeVolume && sLetters == OLESTR("TotalVolume"))
            break;
        if (tried[uiType])
            continue;
        const double fScore = Score(uiType, sLetters);
        if (fScore > best.fScore || uiType == TypeDate)
            best = {uiType, fScore};
    }
    return best;
}

string_view_t WithoutSign(string_view_t sField)
{
    if (!sField.empty() && (sField[0] == '-' || sField[0] == '+'))
        sField.remove_prefix(1);
    return sField;
}

bool TakesSample(unsigned uiType, string_view_t sTemplate, string_view_t sSample)
{
    if (!CouldTake(uiType, sTemplate, sSample))
        return false;
    CDataField probe;
    probe.SetTypeAndTemplate(uiType, sTemplate);
    probe.ParseField(sSample);
    return probe.IsValid();
}

// A text may hold several samples, one per line; the template must take them all.
bool TakesText(unsigned uiType, string_view_t sTemplate, string_view_t sText)
{
    while (true) {
        const std::size_t nEnd = std::min(sText.find('\n'), sText.size());
        if (!TakesSample(uiType, sTemplate, sText.substr(0, nEnd)))
            return false;
        if (nEnd == sText.size())
            return true;
        sText.remove_prefix(nEnd + 1);
    }
}

TemplateGuess WalkTemplates(const CDataType& type, string_view_t sText,
                            const std::set<int>& excluded)
{
    const auto& templates = type.Templates();
    for (int i = 0; i < static_cast<int>(templates.size()); ++i)
        if (!excluded.contains(i) && TakesText(type.Id(), templates[i].szTemplate, sText))
            return {type.Id(), templates[i].szTemplate, i};
    return {};
}

bool IsNumberType(unsigned uiType)
{
    return IsPriceType(uiType) || IsWholeType(uiType);
}

string_view_t NumberTemplate(unsigned uiType)
{
    return IsPriceType(uiType) ? OLESTR("float") : OLESTR("int");
}

// Numbers have one template, the first of their list.
TemplateGuess NumberGuess(unsigned uiType, bool bTakes, const std::set<int>& excluded)
{
    if (!bTakes || excluded.contains(0))
        return {};
    return {uiType, string_t(NumberTemplate(uiType)), 0};
}

} // namespace

WordGuess GetTypeFromField(string_view_t sCell, const TypeSet& tried)
{
    if (tried.all())
        return {};
    if (sCell.size() >= kMaxCell) {
        FaultmereUtil::Trace(fmt::format("[WARNING] FieldLength {} > MAX_PATH", sCell.size()));
        return {};
    }
    const string_t sLetters = NameLetters(sCell);
    return sLetters.empty() ? WordGuess() : MostAlike(sLetters, tried);
}

TemplateGuess GuessTypeAndTemplate(unsigned uiFrom, string_view_t sField, const TypeTable& types,
                                   const std::set<int>& excluded, const TypeSet& used)
{
    const string_view_t sText = WithoutSign(sField);
    for (auto it = uiFrom == kNoType ? types.begin() : types.lower_bound(uiFrom); it != types.end();
         ++it) {
        const auto& [uiType, type] = *it;
        if (used[uiType])
            continue;
        TemplateGuess guess =
            IsPriceType(uiType)   ? NumberGuess(uiType, IsFloatText(sText), excluded)
            : IsWholeType(uiType) ? NumberGuess(uiType, IsIntegerText(sText, true), excluded)
                                  : WalkTemplates(type, sText, excluded);
        if (!guess.IsEmpty())
            return guess;
    }
    return {};
}

TemplateGuess GuessTemplate(unsigned uiType, string_view_t sField, const TypeTable& types,
                            const std::set<int>& excluded)
{
    const string_view_t sText = WithoutSign(sField);
    if (IsNumberType(uiType)) {
        const bool bTakes = ConsistsOf(sText, IsPriceType(uiType) ? OLESTR("0123456789.-+")
                                                                  : OLESTR("0123456789-+"));
        return NumberGuess(uiType, bTakes, excluded);
    }
    const auto type = types.find(uiType);
    return type == types.end() ? TemplateGuess() : WalkTemplates(type->second, sText, excluded);
}

} // namespace Hesperon::specifics
