// A help text begins with examples and ends with the exit statuses; what lies between is the
// library's. The examples are kept in the formatter, where the completions and the manual find them
// again. Descriptions are wrapped to the terminal, whatever line ends they have been given.

#include "tools/tabulex/options/HelpText.h"

#include <sstream>
#include <string>

#include <fmt/format.h>

#include "tools/tabulex/system/Terminal.h"
#include "tools/tabulex/text/Text.h"

namespace tabulex {

namespace {

constexpr std::size_t kOptionColumn = 34;
constexpr std::size_t kNarrow = 2 * kOptionColumn; // a terminal with less room for descriptions

std::size_t OptionColumn(std::size_t nWidth)
{
    return nWidth < kNarrow ? nWidth / 3 : kOptionColumn;
}

// A word that is too long has a line of its own.
std::string Wrapped(const std::string& text, std::size_t nWidth)
{
    std::istringstream words(text);
    std::string result, word;
    std::size_t nLine = 0;
    while (words >> word) {
        const std::size_t nNeeded = nLine + (nLine > 0) + DisplayWidth(word);
        const bool bFits = nLine == 0 || nNeeded <= nWidth;
        if (!result.empty())
            result += bFits ? ' ' : '\n';
        nLine = bFits ? nNeeded : DisplayWidth(word);
        result += word;
    }
    return result;
}

constexpr ExitStatusText kExitStatuses[] = {
    {ExitStatus::Done, "done; a conversion was committed"},
    {ExitStatus::Refused, "the data or the settings don't allow it"},
    {ExitStatus::Usage, "wrong usage"},
    {ExitStatus::FileFault, "a file can't be opened, read or written"},
    {ExitStatus::Interrupted, "interrupted; 143 if asked to end, 129 if its terminal closed"},
};

std::string Footer()
{
    std::string text = "Exit status:";
    for (const ExitStatusText& row : kExitStatuses)
        text += fmt::format("\n  {:<3}  {}", static_cast<int>(row.status), row.pszMeaning);
    return text;
}

class ExamplesFirst : public CLI::Formatter
{
public:
    // The last column of a terminal stays free, since some go to the next line behind it.
    explicit ExamplesFirst(std::string examples)
        : m_sExamples(std::move(examples)), m_nWidth(TerminalWidth(Stream::Output) - 1)
    {
        column_width(OptionColumn(m_nWidth));
        label("SUBCOMMAND", "COMMAND");
        label("Positionals", "Arguments");
    }

    std::string make_description(const CLI::App* app) const override
    {
        return "Examples:\n" + m_sExamples + "\n\n" + Wrapped(app->get_description(), m_nWidth) +
               "\n\n";
    }

    const std::string& Examples() const { return m_sExamples; }

    // The value's name alone; the description has the type and the default.
    std::string make_option_opts(const CLI::Option* option) const override
    {
        const std::string type = option->get_type_name();
        return type.empty() ? "" : " " + type;
    }

    std::string make_option_desc(const CLI::Option* option) const override
    {
        return Wrapped(option->get_description(), Room());
    }

    std::string make_subcommand(const CLI::App* command) const override
    {
        std::ostringstream text;
        CLI::detail::format_help(text, command->get_display_name(true),
                                 Wrapped(command->get_description(), Room()), column_width_);
        return text.str();
    }

private:
    std::size_t Room() const { return m_nWidth - column_width_; }

    std::string m_sExamples;
    std::size_t m_nWidth; // of a line
};

} // namespace

void SetHelp(CLI::App& app, const char* pszExamples)
{
    app.formatter(std::make_shared<ExamplesFirst>(pszExamples));
    app.footer(Footer());
    app.get_help_ptr()->group("General");
}

std::string ExamplesOf(const CLI::App& app)
{
    const auto formatter = std::dynamic_pointer_cast<ExamplesFirst>(app.get_formatter());
    return formatter ? formatter->Examples() : std::string();
}

std::span<const ExitStatusText> ExitStatusTexts()
{
    return kExitStatuses;
}

} // namespace tabulex
