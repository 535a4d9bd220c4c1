// How settings are written for a shell: one option a setting, in the order of the help, without
// those that have the value that the command takes by itself.

#include <algorithm>

#include <fmt/format.h>

#include "intake/RecipeOptions.h"
#include "tools/tabulex/import/SettingsText.h"
#include "tools/tabulex/text/Formats.h"
#include "tools/tabulex/text/ShellWord.h"
#include "tools/tabulex/text/Text.h"

namespace tabulex {

namespace {

// As --dividers reads them: the place of a divider is the number of its bit.
std::string DividerText(LONG nMask)
{
    constexpr std::string_view kMarks[] = {":", " ", ",", ";", "|", "\\t"};
    std::string text;
    for (std::size_t n = 0; n < std::size(kMarks); ++n)
        if (nMask & (1 << n))
            text += kMarks[n];
    return text;
}

std::string OfferText(const ResolutionOffers& offers)
{
    std::string text;
    for (const ResolutionOffer& offer : offers.Offered())
        text += fmt::format("{}{}={}", text.empty() ? "" : ",", offer.nHostId, offer.sName);
    return text;
}

// The list that the command offers without a word.
bool AreDefault(const ResolutionOffers& offers)
{
    return std::ranges::equal(
        offers.Offered(), DefaultResolutions(),
        [](const auto& a, const auto& b) { return a.nHostId == b.nHostId && a.sName == b.sName; });
}

std::string ColumnText(const ColumnSetting& column)
{
    return fmt::format("{}={}{}{}", column.nField + 1, column.sType,
                       column.sTemplate.empty() ? "" : ":", column.sTemplate);
}

// Words of a command line.
class Words
{
public:
    void Add(std::string_view word)
    {
        m_sText += (m_sText.empty() ? "" : " ") + QuoteForShell(word);
    }
    void Add(std::string_view option, std::string_view value)
    {
        Add(option);
        Add(value);
    }
    // A flag has no value.
    void AddOption(std::string_view option, const std::string& value)
    {
        Add(option);
        if (!value.empty())
            Add(value);
    }
    template <class Value>
    void AddNumber(std::string_view option, const std::optional<Value>& value)
    {
        if (value)
            Add(option, std::to_string(*value));
    }
    void AddText(std::string_view option, const std::optional<std::string>& value)
    {
        if (value && !value->empty())
            Add(option, *value);
    }
    void AddDate(std::string_view option, const std::optional<DATE>& value)
    {
        if (value)
            Add(option, DateTimeText(*value));
    }
    const std::string& Text() const { return m_sText; }

private:
    std::string m_sText;
};

// A name that begins with a hyphen would be taken for an option.
std::string FileWord(const std::string& path)
{
    return path.starts_with('-') ? "./" + path : path;
}

} // namespace

std::string ConvertCommandLine(const std::string& path, const intake::Recipe& recipe,
                               const Settings& settings, const GeneralOptions& general,
                               const ResolutionOffers& offers)
{
    Words words;
    words.Add("tabulex");
    words.Add("convert");
    words.Add(FileWord(path));
    for (const auto& [name, value] : intake::OptionsOf(recipe))
        words.AddOption(name, value);
    words.AddText("--environment", settings.sEnvironment);
    words.AddText("--resolution", settings.sResolution);
    words.AddNumber("--size", settings.nSize);
    if (settings.nDividers)
        words.Add("--dividers", DividerText(*settings.nDividers));
    words.AddNumber("--lines-to-skip", settings.nLinesToSkip);
    if (settings.header != HeaderChoice::Auto)
        words.Add("--header", settings.header == HeaderChoice::Yes ? "yes" : "no");
    for (const ColumnSetting& column : settings.columns)
        words.Add("--column", ColumnText(column));
    words.AddNumber("--code-page", settings.nCodePage);
    if (settings.bBarEndTime)
        words.Add("--bar-end-time");
    words.AddText("--price-multiplier", settings.sPriceMultiplier);
    words.AddText("--volume-multiplier", settings.sVolumeMultiplier);
    words.AddDate("--from", settings.dtFrom);
    words.AddDate("--to", settings.dtTo);
    words.AddText("--encoding", general.sEncoding);
    if (!AreDefault(offers))
        words.Add("--offer", OfferText(offers));
    return words.Text();
}

} // namespace tabulex
