#include "tools/tabulex/CommandLine.h"

#include <cstdio>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "tools/tabulex/HelpText.h"
#include "tools/tabulex/OptionGroups.h"
#include "tools/tabulex/Suggestion.h"

namespace tabulex {

namespace {

void AddInspect(CLI::App& app, Options& options)
{
    CLI::App& command =
        *app.add_subcommand("inspect", "Show the layout that a file is found to have");
    SetHelp(command, "  tabulex inspect quotes.csv\n  tabulex inspect --json quotes.csv");
    AddFiles(command, options, true);
    command.add_flag("--json", options.bJson, "One JSON object a file");
    command.add_flag("--no-count", options.inspect.bNoCount,
                     "Don't count the records, which reads the whole file");
    AddGeneral(command, options.general);
}

void AddConvert(CLI::App& app, Options& options)
{
    CLI::App& command =
        *app.add_subcommand("convert", "Write the records of a file as CSV or JSON Lines");
    SetHelp(command, "  tabulex convert quotes.txt -o quotes.csv\n"
                     "  tabulex convert quotes.txt --from 2020-01-01 --symbol ABC | head");
    AddFiles(command, options, true);
    AddOutput(command, options.convert);
    AddErrorHandling(command, options.convert);
    AddLayoutSettings(command, options.settings);
    AddImportRange(command, options.settings);
    AddGeneral(command, options.general);
}

void AddPreview(CLI::App& app, Options& options)
{
    CLI::App& command = *app.add_subcommand("preview", "Show decoded records as a table");
    SetHelp(command, "  tabulex preview quotes.csv\n"
                     "  tabulex preview quotes.csv --from 1000 --count 50");
    AddFiles(command, options, false);
    AddRecordRange(command, options.range, "Number of records (default: 20)");
    AddLayoutSettings(command, options.settings);
    AddGeneral(command, options.general);
}

void AddCheck(CLI::App& app, Options& options)
{
    CLI::App& command =
        *app.add_subcommand("check", "Tell whether the settings would be converted");
    SetHelp(command, "  tabulex check quotes.csv\n"
                     "  tabulex check quotes.csv --resolution 'Minutes|5'");
    AddFiles(command, options, true);
    AddLayoutSettings(command, options.settings);
    AddImportRange(command, options.settings);
    AddGeneral(command, options.general);
}

void AddRaw(CLI::App& app, Options& options)
{
    CLI::App& command = *app.add_subcommand("raw", "Show lines as text, by number");
    SetHelp(command, "  tabulex raw quotes.csv --from 1000 --count 3\n"
                     "  tabulex raw quotes.csv --last");
    AddFiles(command, options, false);
    AddRecordRange(command, options.range, "Number of lines (default: all)");
    command.add_flag("--last", options.raw.bLast, "Only the last line");
    command.add_flag("--count-only", options.raw.bCountOnly, "Only the number of lines");
    AddGeneral(command, options.general);
}

void AddTemplate(CLI::App& app, Options& options)
{
    CLI::App& command = *app.add_subcommand("template", "Try a field template on a text");
    SetHelp(command, "  tabulex template Date '*d/*m/*y' 13/02/2003\n"
                     "  tabulex template Time '*h:*mtt@pm' 1:30pm --json");
    command.add_option("TYPE", options.trial.sType, "Field type, such as Date, Time or Open")
        ->required()
        ->type_name("");
    command.add_option("TEMPLATE", options.trial.sTemplate, "Template, such as '*y/*m/*d'")
        ->required()
        ->type_name("");
    command.add_option("TEXT", options.trial.sText, "Text to read")->required()->type_name("");
    command.add_flag("--json", options.bJson, "A JSON object with \"valid\" and \"value\"");
    AddGeneral(command, options.general);
}

// ---- usage errors

std::vector<std::string> CommandNames(const CLI::App& app)
{
    std::vector<std::string> names;
    for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; }))
        names.push_back(command->get_name());
    return names;
}

std::vector<std::string> OptionNames(const CLI::App& app)
{
    std::vector<std::string> names;
    for (const CLI::Option* option : app.get_options())
        for (const std::string& name : option->get_lnames())
            names.push_back("--" + name);
    return names;
}

std::string Unknown(std::string_view kind, const std::string& word,
                    const std::vector<std::string>& known)
{
    const auto near = Suggest(word, known);
    return fmt::format("there is no {} '{}'{}", kind, word,
                       near ? fmt::format("; did you mean '{}'?", *near) : "");
}

// What isn't understood says more than what is missing because of it.
std::string UsageMessage(const CLI::App& app, const CLI::ParseError& fault)
{
    const auto commands = app.get_subcommands();
    const CLI::App& command = commands.empty() ? app : *commands.front();
    for (const std::string& word : app.remaining(true)) {
        if (word.size() > 1 && word[0] == '-')
            return Unknown("option", word.substr(0, word.find('=')), OptionNames(command));
        if (commands.empty())
            return Unknown("command", word, CommandNames(app));
    }
    return fault.what();
}

// Names the help of the command that was meant, where there is one.
ExitStatus TellUsageError(const CLI::App& app, const std::string& message)
{
    const auto commands = app.get_subcommands();
    const std::string name = commands.empty() ? "" : " " + commands.front()->get_name();
    fmt::print(stderr, "tabulex: {}\nTry 'tabulex{} --help'.\n", message, name);
    return ExitStatus::Usage;
}

// Outputs of several files would take each other's place.
std::string ContradictionIn(const Options& options)
{
    const ConversionOptions& conversion = options.convert.conversion;
    if (options.files.size() > 1 && conversion.sOutput != "-")
        return "--output takes the rows of one file, and several are given";
    if (options.files.size() > 1 && !conversion.sRejects.empty())
        return "--rejects takes the lines of one file, and several are given";
    if (conversion.sRejects == "-" ||
        (!conversion.sRejects.empty() && conversion.sRejects == conversion.sOutput))
        return "--rejects needs a file of its own";
    return {};
}

void AddCommands(CLI::App& app, Options& options)
{
    AddInspect(app, options);
    AddConvert(app, options);
    AddPreview(app, options);
    AddCheck(app, options);
    AddRaw(app, options);
    AddTemplate(app, options);
    app.require_subcommand(1);
    for (CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; }))
        command->group("Commands");
}

} // namespace

std::optional<Options> ReadCommandLine(int argc, const char* const* argv, ExitStatus& status)
{
    Options options;
    CLI::App app("Works out the layout of market-data files and converts them.", "tabulex");
    app.set_help_flag("-h,--help", "Print this help");
    SetHelp(app, "  tabulex inspect quotes.csv\n  tabulex convert quotes.txt -o quotes.csv");
    app.set_version_flag("--version", "tabulex " TABULEX_VERSION, "Print the version")
        ->group("General");
    AddGeneral(app, options.general);
    AddCommands(app, options);
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& done) {
        app.exit(done);
        status = ExitStatus::Done;
        return std::nullopt;
    } catch (const CLI::ParseError& fault) {
        status = TellUsageError(app, argc < 2 ? "a command is needed" : UsageMessage(app, fault));
        return std::nullopt;
    }
    options.sCommand = app.get_subcommands().front()->get_name();
    if (const std::string contradiction = ContradictionIn(options); !contradiction.empty()) {
        status = TellUsageError(app, contradiction);
        return std::nullopt;
    }
    return options;
}

} // namespace tabulex
