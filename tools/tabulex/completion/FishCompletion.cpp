// Fish takes a line for each option, with a condition under which it is offered: no command yet, or
// the option's own command somewhere in the words before.

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "tools/tabulex/completion/Completion.h"

namespace tabulex {

namespace {

std::string Quoted(std::string_view text)
{
    std::string result = "'";
    for (const char c : text) {
        if (c == '\'' || c == '\\')
            result += '\\';
        result += c;
    }
    return result + '\'';
}

std::string ValueFlags(const OptionNode& option)
{
    if (!option.TakesValue())
        return {};
    if (option.bPath)
        return " -r -F";
    const std::string list = ChoiceList(option);
    if (option.bAfterEquals)
        return fmt::format(
            " -x -a {}",
            Quoted(fmt::format("(set --local n (string match -r '^[0-9]+=' -- (commandline "
                               "-ct)); and for t in {}; echo $n$t; end)",
                               list)));
    return list.empty() ? " -x" : fmt::format(" -x -a {}", Quoted(list));
}

std::string OptionLine(const OptionNode& option, const std::string& condition)
{
    const std::string shortName =
        option.sShort.empty() ? std::string() : " -s " + option.sShort.substr(1);
    return fmt::format("complete -c tabulex -n {}{} -l {}{} -d {}\n", condition, shortName,
                       option.sLong.substr(2), ValueFlags(option), Quoted(option.sDescription));
}

} // namespace

std::string FishCompletion(const CommandTree& tree)
{
    std::string script = "# Completion of tabulex for fish.\n\ncomplete -c tabulex -f\n\n";
    const std::string none = "__fish_use_subcommand";
    for (const CommandNode& command : tree.commands)
        script += fmt::format("complete -c tabulex -n {} -a {} -d {}\n", none, command.sName,
                              Quoted(command.sDescription));
    for (const OptionNode& option : tree.tool.options)
        script += OptionLine(option, none);
    for (const CommandNode& command : tree.commands) {
        const std::string seen = Quoted("__fish_seen_subcommand_from " + command.sName);
        script += '\n';
        for (const OptionNode& option : command.options)
            script += OptionLine(option, seen);
        for (const ArgumentNode& argument : command.arguments)
            if (argument.bPath)
                script += fmt::format("complete -c tabulex -n {} -F\n", seen);
    }
    return script;
}

} // namespace tabulex
