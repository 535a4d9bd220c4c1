// A help text begins with examples and ends with the exit statuses; what lies between is the
// library's. The examples are kept in the formatter, where the completions and the manual find them
// again.

#include "tools/tabulex/options/HelpText.h"

#include <string>

#include <fmt/format.h>

namespace tabulex {

namespace {

constexpr std::size_t kOptionColumn = 34;

constexpr ExitStatusText kExitStatuses[] = {
    {ExitStatus::Done, "done; a conversion was committed"},
    {ExitStatus::Refused, "the data or the settings don't allow it"},
    {ExitStatus::Usage, "wrong usage"},
    {ExitStatus::FileFault, "a file can't be opened, read or written"},
    {ExitStatus::Interrupted, "interrupted"},
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
    explicit ExamplesFirst(std::string examples) : m_sExamples(std::move(examples))
    {
        column_width(kOptionColumn);
        label("SUBCOMMAND", "COMMAND");
        label("Positionals", "Arguments");
    }

    std::string make_description(const CLI::App* app) const override
    {
        return "Examples:\n" + m_sExamples + "\n\n" + app->get_description() + "\n\n";
    }

    const std::string& Examples() const { return m_sExamples; }

    // The value's name alone; the description has the type and the default.
    std::string make_option_opts(const CLI::Option* option) const override
    {
        const std::string type = option->get_type_name();
        return type.empty() ? "" : " " + type;
    }

private:
    std::string m_sExamples;
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
