// A library reads the arguments. Its own messages are kept only where nothing better is known: for
// a word that it doesn't know the nearest one is suggested, and too few or too many values are
// reported with the option that they belong to.

#include "tools/tabulex/options/CommandLine.h"

#include <algorithm>
#include <sstream>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "tools/tabulex/input/FileArguments.h"
#include "tools/tabulex/options/CommandDefinitions.h"
#include "tools/tabulex/options/OutputTargets.h"
#include "tools/tabulex/output/Results.h"
#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/system/Terminal.h"
#include "tools/tabulex/text/Suggestion.h"
#include "tools/tabulex/text/VisibleText.h"

namespace tabulex {

namespace {

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

// The library's own message about too few or too many values names the option.
std::string WrongValues(const CLI::App& command, const std::string& message)
{
    const std::size_t nAt = std::min(message.find("--"), message.size());
    const std::string name = message.substr(nAt, message.find_first_of(": ", nAt) - nAt);
    const CLI::Option* option = command.get_option_no_throw(name);
    if (!option)
        return message;
    if (option->get_items_expected_max() == 0)
        return name + " takes no value";
    return option->count() > 1 ? name + " may be given once only"
                               : fmt::format("{} needs a value: {}", name, option->get_type_name());
}

// A word that isn't understood says more than what is missing because of it.
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
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&fault) ||
        dynamic_cast<const CLI::ConversionError*>(&fault))
        return WrongValues(command, fault.what());
    return fault.what();
}

// The help or the version: what was asked for in place of work.
ExitStatus PrintHelp(const CLI::App& app, const CLI::Success& request)
{
    std::ostringstream text;
    app.exit(request, text, text);
    try {
        Results results;
        results.Add(text.str());
        results.Finish();
    } catch (const Fault& fault) {
        WriteToErrorStream(fmt::format("tabulex: {}\n", fault.sMessage));
        return fault.status;
    }
    return ExitStatus::Done;
}

// Names the help of the command that was given, if there is one.
ExitStatus ReportUsageError(const CLI::App& app, const std::string& message)
{
    const auto commands = app.get_subcommands();
    const std::string name = commands.empty() ? "" : " " + commands.front()->get_name();
    const bool bTerminal = IsTerminal(Stream::Error);
    WriteToErrorStream(fmt::format("tabulex: {}\nTry 'tabulex{} --help'.\n",
                                   bTerminal ? VisibleUtf8(message) : message, name));
    return ExitStatus::Usage;
}

bool TakesSeveralFiles(const CLI::App& command)
{
    const CLI::Option* files = command.get_option_no_throw("FILE");
    return files && files->get_items_expected_max() > 1;
}

} // namespace

std::optional<Options> ReadCommandLine(const std::vector<std::string>& arguments,
                                       ExitStatus& status)
{
    std::vector<const char*> words;
    words.reserve(arguments.size());
    for (const std::string& argument : arguments)
        words.push_back(argument.c_str());
    Options options;
    CLI::App app;
    DefineCommandLine(app, options);
    try {
        app.parse(static_cast<int>(words.size()), words.data());
    } catch (const CLI::Success& done) {
        status = PrintHelp(app, done);
        return std::nullopt;
    } catch (const CLI::ParseError& fault) {
        status = ReportUsageError(app, words.size() < 2 ? "a command is needed"
                                                        : UsageMessage(app, fault));
        return std::nullopt;
    }
    options.sCommand = app.get_subcommands().front()->get_name();
    if (TakesSeveralFiles(*app.get_subcommands().front()))
        options.files = ExpandFiles(options.files);
    std::string contradiction = ContradictionIn(options);
    if (contradiction.empty())
        contradiction = intake::FaultIn(options.recipe);
    if (std::ranges::count(options.files, "-") > 1)
        contradiction = "standard input can be read once only; give '-' once";
    if (!contradiction.empty()) {
        status = ReportUsageError(app, contradiction);
        return std::nullopt;
    }
    return options;
}

} // namespace tabulex
