// The page is a text with words such as @OPTIONS@, which are replaced by what the definition of the
// command line says. The rest of the page is written by hand, in the same text. In roff a line that
// begins with a dot is a request and a backslash begins an escape; Plain keeps a text from being
// taken for either.

#include "tools/tabulex/manual/ManualPage.h"

#include <algorithm>
#include <map>
#include <regex>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "tools/tabulex/options/HelpText.h"

namespace tabulex {

namespace {

// Text in which roff sees no requests or escapes.
std::string Plain(std::string_view text)
{
    std::string result;
    for (const char c : text) {
        if (c == '\\')
            result += "\\e";
        else if (c == '-')
            result += "\\-";
        else if (c == '\'')
            result += "\\(aq";
        else
            result += c;
    }
    return result.starts_with('.') ? "\\&" + result : result;
}

std::string Sentence(std::string_view text)
{
    return Plain(text) + (text.ends_with('.') ? "" : ".");
}

std::string Bold(std::string_view text)
{
    return "\\fB" + Plain(text) + "\\fR";
}

std::string Italic(std::string_view text)
{
    return "\\fI" + Plain(text) + "\\fR";
}

// Words to choose from are bold, since they are typed as they are.
std::string ValueName(const OptionNode& option)
{
    return option.choices.empty() || option.bOthersToo ? Italic(option.sValue)
                                                       : Bold(option.sValue);
}

std::string OptionEntry(const OptionNode& option)
{
    std::string head = option.sShort.empty() ? "" : Bold(option.sShort) + ", ";
    head += Bold(option.sLong);
    if (option.TakesValue())
        head += ' ' + ValueName(option);
    return fmt::format(".TP\n{}\n{}\n", head, Sentence(option.sDescription));
}

std::string SynopsisOf(const CommandNode& command)
{
    std::string line = Bold("tabulex " + command.sName) + " [" + Italic("OPTIONS") + "]";
    for (const ArgumentNode& argument : command.arguments)
        line += ' ' + Italic(argument.sName) + (argument.bRepeatable ? " ..." : "");
    return line;
}

std::string Synopsis(const CommandTree& tree)
{
    std::string text;
    for (const CommandNode& command : tree.commands)
        text += SynopsisOf(command) + "\n.br\n";
    return text + Bold("tabulex --help") + "\n.br\n" + Bold("tabulex --version");
}

// The names of the commands that have options of a group, in their order.
std::vector<std::string> TakersOf(const CommandTree& tree, const std::string& group)
{
    std::vector<std::string> names;
    for (const CommandNode& command : tree.commands)
        if (std::ranges::find(command.options, group, &OptionNode::sGroup) != command.options.end())
            names.push_back(command.sName);
    return names;
}

// A group is described once for all the commands that share it.
bool IsShared(const CommandTree& tree, const std::string& group)
{
    return group != kOwnGroup && TakersOf(tree, group).size() > 1;
}

std::string Commands(const CommandTree& tree)
{
    std::string text;
    for (const CommandNode& command : tree.commands) {
        text += fmt::format(".SS {}\n{}\n.PP\n{}\n", Plain(command.sName), SynopsisOf(command),
                            Sentence(command.sDescription));
        for (const OptionNode& option : command.options)
            if (!IsShared(tree, option.sGroup))
                text += OptionEntry(option);
        text += ".PP\n.RS\n";
        for (const std::string& example : command.examples)
            text += Plain(example) + "\n.br\n";
        text += ".RE\n";
    }
    text.pop_back();
    return text;
}

std::string SharedOptions(const CommandTree& tree)
{
    std::vector<std::string> groups;
    for (const CommandNode& command : tree.commands)
        for (const OptionNode& option : command.options)
            if (IsShared(tree, option.sGroup) &&
                std::ranges::find(groups, option.sGroup) == groups.end())
                groups.push_back(option.sGroup);
    std::string text;
    for (const std::string& group : groups) {
        const auto takers = TakersOf(tree, group);
        const auto command = std::ranges::find(tree.commands, takers.front(), &CommandNode::sName);
        text += fmt::format(".SS {}\nTaken by {}.\n", group, fmt::join(takers, ", "));
        for (const OptionNode& option : command->options)
            if (option.sGroup == group)
                text += OptionEntry(option);
    }
    text.pop_back();
    return text;
}

std::string Statuses()
{
    std::string text;
    for (const ExitStatusText& row : ExitStatusTexts())
        text += fmt::format(".TP\n{}\n{}\n", Bold(std::to_string(static_cast<int>(row.status))),
                            Sentence(row.pszMeaning));
    text.pop_back();
    return text;
}

} // namespace

std::string ManualPage(const CommandTree& tree, const std::string& text)
{
    const std::map<std::string, std::string> parts = {{"VERSION", Plain(TABULEX_VERSION)},
                                                      {"SYNOPSIS", Synopsis(tree)},
                                                      {"COMMANDS", Commands(tree)},
                                                      {"OPTIONS", SharedOptions(tree)},
                                                      {"STATUS", Statuses()}};
    static const std::regex word("@([A-Z]+)@");
    std::string page;
    std::string rest = text;
    for (std::smatch match; std::regex_search(rest, match, word); rest = match.suffix())
        page += match.prefix().str() + parts.at(match[1]);
    return page + rest;
}

} // namespace tabulex
