#include <fmt/format.h>
#include <fmt/ranges.h>

#include "tools/tabulex/completion/Completion.h"

namespace tabulex {

namespace {

constexpr const char* kZshScript = R"(#compdef tabulex
# Completion of tabulex for zsh.

_tabulex_commands()
{{
    local -a commands=(
{commands}    )
    _describe command commands
}}

_tabulex()
{{
    local curcontext=$curcontext state line
    typeset -A opt_args
    _arguments -C \
{options}        '1:command:_tabulex_commands' '*::argument:->argument' && return
    [[ $state == argument ]] || return
    curcontext=${{curcontext%:*}}-$line[1]:
    case $line[1] in
{cases}    esac
}}

_tabulex "$@"
)";

// Text for single quotes, with a backslash before each character that _arguments would
// interpret.
std::string Escaped(std::string_view text, std::string_view meaningful)
{
    std::string result;
    for (const char c : text) {
        if (c == '\'') {
            result += R"('\'')";
            continue;
        }
        if (meaningful.find(c) != meaningful.npos)
            result += '\\';
        result += c;
    }
    return result;
}

// What follows the description of an option that takes a value.
std::string ValueAction(const OptionNode& option)
{
    if (!option.TakesValue())
        return {};
    const std::string list = ChoiceList(option);
    const std::string action = option.bPath   ? "_files"
                               : list.empty() ? ""
                               : option.bAfterEquals
                                   ? fmt::format("{{compset -P \"*=\" && compadd - {}}}", list)
                                   : fmt::format("({})", list);
    return fmt::format(":{}:{}", Escaped(option.sValue, ":"), action);
}

// An option with two names is written '(-o --output)'{-o+,--output=}'[text]': neither name is
// offered after the other, and a value may follow the short one at once. A star in front lets an
// option be given again.
std::string OptionLine(const OptionNode& option)
{
    const std::string text =
        fmt::format("[{}]{}", Escaped(option.sDescription, "[]\\"), ValueAction(option));
    const char* pszEquals = option.TakesValue() ? "=" : "";
    if (option.bRepeatable)
        return fmt::format("        '*{}{}{}' \\\n", option.sLong, pszEquals, text);
    if (option.sShort.empty())
        return fmt::format("        '{}{}{}' \\\n", option.sLong, pszEquals, text);
    return fmt::format("        '({0} {1})'{{{0}{2},{1}{3}}}'{4}' \\\n", option.sShort,
                       option.sLong, option.TakesValue() ? "+" : "", pszEquals, text);
}

std::string ArgumentsOf(const CommandNode& command)
{
    std::vector<std::string> parts;
    for (const ArgumentNode& argument : command.arguments)
        parts.push_back(fmt::format("'{}:{}:{}'", argument.bRepeatable ? "*" : "", argument.sName,
                                    argument.bPath ? "_files" : ""));
    return fmt::format("        {}", fmt::join(parts, " "));
}

std::string OptionLines(const CommandNode& command)
{
    std::string lines;
    for (const OptionNode& option : command.options)
        lines += OptionLine(option);
    return lines;
}

} // namespace

std::string ZshCompletion(const CommandTree& tree)
{
    std::string commands;
    std::string cases;
    for (const CommandNode& command : tree.commands) {
        commands +=
            fmt::format("        '{}:{}'\n", command.sName, Escaped(command.sDescription, ""));
        cases += fmt::format("    {})\n        _arguments \\\n{}{} ;;\n", command.sName,
                             OptionLines(command), ArgumentsOf(command));
    }
    return fmt::format(kZshScript, fmt::arg("commands", commands),
                       fmt::arg("options", OptionLines(tree.tool)), fmt::arg("cases", cases));
}

} // namespace tabulex
