#include "tools/tabulex/HelpText.h"

#include <string>

namespace tabulex {

namespace {

constexpr std::size_t kOptionColumn = 34;

constexpr const char* kExitStatuses = "Exit status:\n"
                                      "  0    done; a conversion was committed\n"
                                      "  1    the data or the settings stand against it\n"
                                      "  2    wrong usage\n"
                                      "  3    a file can't be opened, read or written\n"
                                      "  130  interrupted";

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

    // The value's name alone: the type and defaults stand in the description.
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
    app.footer(kExitStatuses);
    app.get_help_ptr()->group("General");
}

} // namespace tabulex
