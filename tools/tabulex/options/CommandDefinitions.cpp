#include "tools/tabulex/options/CommandDefinitions.h"

#include "tools/tabulex/options/HelpText.h"
#include "tools/tabulex/options/OptionGroups.h"

namespace tabulex {

namespace {

void AddInspect(CLI::App& app, Options& options)
{
    CLI::App& command =
        *app.add_subcommand("inspect", "Show what is found out about the layout of a file");
    SetHelp(command, "  tabulex inspect quotes.csv\n"
                     "  tabulex inspect --explain --dividers ';' quotes.csv");
    AddFiles(command, options, true);
    command.add_flag("--json", options.bJson, "One JSON object for each file");
    command.add_flag("--no-count", options.inspect.bNoCount,
                     "Don't count the records, which reads the whole file");
    command.add_flag("--explain", options.inspect.bExplain,
                     "Also say why: each decision with its reason");
    AddLayoutSettings(command, options.settings);
    AddRecipe(command, options.recipe);
    AddImportRange(command, options.settings);
    AddGeneral(command, options.general);
}

void AddConvert(CLI::App& app, Options& options)
{
    CLI::App& command =
        *app.add_subcommand("convert", "Write the records of a file as CSV, JSON Lines or SQLite");
    SetHelp(command, "  tabulex convert quotes.txt -o quotes.csv\n"
                     "  tabulex convert *.txt --from 2020-01-01 -o quotes.db --append");
    AddFiles(command, options, true);
    AddOutput(command, options.convert);
    AddAdvice(command, options.convert);
    AddNaming(command, options.convert);
    AddErrorHandling(command, options.convert);
    AddReport(command, options.convert);
    command.add_flag(
        "--json", options.bJson,
        "Print account, warnings and bad lines as JSON on\nstandard error, a line a file");
    AddNoCheck(command, options.convert);
    AddLayoutSettings(command, options.settings);
    AddRecipe(command, options.recipe);
    AddImportRange(command, options.settings);
    AddGeneral(command, options.general);
}

// Without an output the settings are printed.
void AddImport(CLI::App& app, Options& options)
{
    CLI::App& command =
        *app.add_subcommand("import", "Choose a file and its settings in a dialog, and convert");
    SetHelp(command, "  tabulex import quotes.txt -o quotes.csv\n"
                     "  tabulex import ~/downloads");
    command
        .add_option("FILE", options.files,
                    "A quote file, or a folder to choose one from\n(default: the current one)")
        ->type_name("")
        ->expected(0, 1);
    AddOutput(command, options.convert);
    AddErrorHandling(command, options.convert);
    AddEnvironment(command, options.settings);
    AddRecipe(command, options.recipe);
    AddGeneral(command, options.general);
    command.get_option("--output")
        ->description("File to write, or a folder (or a name with / at\nits end); '-' is standard "
                      "output. Without it the\n'convert' command that gives the same is printed");
    command.callback([&command, &options] {
        options.import.bConvert = command.count("--output") > 0 || command.count("--dry-run") > 0;
    });
}

void AddPreview(CLI::App& app, Options& options)
{
    CLI::App& command = *app.add_subcommand("preview", "Show decoded records as a table");
    SetHelp(command, "  tabulex preview quotes.csv\n"
                     "  tabulex preview quotes.csv --from 1000 --count 50");
    AddFiles(command, options, false);
    AddRecordRange(command, options.range, "Number of records (default: 20)");
    AddLayoutSettings(command, options.settings);
    AddRecipe(command, options.recipe);
    AddGeneral(command, options.general);
}

void AddCheck(CLI::App& app, Options& options)
{
    CLI::App& command =
        *app.add_subcommand("check", "Check whether a file can be converted, or why not");
    SetHelp(command, "  tabulex check quotes.csv\n"
                     "  tabulex check quotes.csv --resolution 'Minutes|5'");
    AddFiles(command, options, true);
    AddLayoutSettings(command, options.settings);
    AddRecipe(command, options.recipe);
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

void AddSymbols(CLI::App& app, Options& options)
{
    CLI::App& command = *app.add_subcommand("symbols", "List the symbols of a file, each once");
    SetHelp(command, "  tabulex symbols quotes.csv\n  tabulex symbols quotes.csv | sort");
    AddFiles(command, options, true);
    AddLayoutSettings(command, options.settings);
    AddRecipe(command, options.recipe);
    AddGeneral(command, options.general);
}

void AddEnvironmentCommand(CLI::App& app, Options& options)
{
    CLI::App& command =
        *app.add_subcommand("environment", "Merge environment files and print the result");
    SetHelp(command, "  tabulex environment mine.env\n"
                     "  tabulex environment mine.env yours.env > both.env");
    AddFiles(command, options, true);
    command.get_option("FILE")->description("Environment files, as 'convert' saves them");
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

} // namespace

void DefineCommandLine(CLI::App& app, Options& options)
{
    app.name("tabulex");
    app.description("Works out the layout of market-data files and converts them.");
    app.allow_windows_style_options(false); // a slash begins a path
    app.set_help_flag("-h,--help", "Print this help");
    SetHelp(app, "  tabulex inspect quotes.csv\n  tabulex convert quotes.txt -o quotes.csv");
    app.set_version_flag("--version", "tabulex " TABULEX_VERSION, "Print the version")
        ->group("General");
    AddGeneral(app, options.general);
    AddInspect(app, options);
    AddConvert(app, options);
    AddImport(app, options);
    AddPreview(app, options);
    AddCheck(app, options);
    AddRaw(app, options);
    AddSymbols(app, options);
    AddEnvironmentCommand(app, options);
    AddTemplate(app, options);
    app.require_subcommand(1);
    for (CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; }))
        command->group("Commands");
}

} // namespace tabulex
