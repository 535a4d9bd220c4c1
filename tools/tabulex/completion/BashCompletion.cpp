#include <algorithm>
#include <map>
#include <set>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "tools/tabulex/completion/Completion.h"

namespace tabulex {

namespace {

// Bash hands "--option=value" over as three words, and "--column 3=Close" as four: the option is
// then taken for "--column=". Braces are doubled as in any format of fmt.
constexpr const char* kBashScript = R"(# Completion of tabulex for bash.

_tabulex()
{{
    local word=${{COMP_WORDS[COMP_CWORD]}} option=${{COMP_WORDS[COMP_CWORD-1]}}
    local command="" commands="" paths="" words="" i sign=0
    if [[ $word == "=" ]]; then
        word=""
        sign=$COMP_CWORD
    elif [[ $option == "=" ]]; then
        sign=$((COMP_CWORD-1))
        option=${{COMP_WORDS[sign-1]}}
    fi
    if ((sign > 2)); then
        i=${{COMP_WORDS[sign-2]}}
        [[ $i == "=" ]] && i=${{COMP_WORDS[sign-3]}}
        [[ $i == --column ]] && option=--column=
    fi
    for ((i = 1; i < COMP_CWORD; i++)); do
        case ${{COMP_WORDS[i]}} in
            {commands}) command=${{COMP_WORDS[i]}}; break ;;
        esac
    done
    case $option in
{values}        *)
            case $command in
{options}            esac
            if [[ $word == -* ]]; then
                paths=""
            else
                words=$commands
            fi
            ;;
    esac
    COMPREPLY=()
    if [[ -n $words ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
        for ((i = 0; i < ${{#COMPREPLY[@]}}; i++)); do
            COMPREPLY[i]=${{COMPREPLY[i]// /\\ }}
        done
    fi
    if [[ -n $paths ]]; then
        compopt -o filenames 2> /dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
    fi
}}

complete -F _tabulex tabulex
)";

void AddName(std::vector<std::string>& names, const OptionNode& option)
{
    if (!option.sShort.empty())
        names.push_back(option.sShort);
    names.push_back(option.sLong);
}

// The cases of options that take a value, for all commands together, since an option means
// the same in each.
std::string ValueCases(const CommandTree& tree)
{
    std::map<std::string, std::vector<std::string>> names; // of options, by action
    std::set<std::string> seen;
    for (const CommandNode& command : tree.commands)
        for (const OptionNode& option : command.options) {
            if (!option.TakesValue() || !seen.insert(option.sLong).second)
                continue;
            const std::string action = option.bPath ? "paths=yes"
                                       : option.choices.empty()
                                           ? ":"
                                           : fmt::format("words='{}'", ChoiceList(option));
            if (option.bAfterEquals)
                names[action].push_back(option.sLong + "=");
            AddName(names[option.bAfterEquals ? ":" : action], option);
        }
    std::string cases;
    for (const auto& [action, options] : names)
        cases += fmt::format("        {}) {} ;;\n", fmt::join(options, " | "), action);
    return cases;
}

// The case of a command: its options, and words or paths that don't begin with a dash.
std::string CommandCase(const CommandNode& command, const std::string& others)
{
    std::vector<std::string> words;
    for (const OptionNode& option : command.options)
        AddName(words, option);
    return fmt::format("                '{}') words='{}' {} ;;\n", command.sName,
                       fmt::join(words, " "), others);
}

std::string OthersOf(const CommandNode& command)
{
    const bool bPaths = std::ranges::any_of(command.arguments, &ArgumentNode::bPath);
    return bPaths ? "paths=yes" : "";
}

} // namespace

std::string BashCompletion(const CommandTree& tree)
{
    std::vector<std::string> commands;
    std::string options;
    for (const CommandNode& command : tree.commands) {
        commands.push_back(command.sName);
        options += CommandCase(command, OthersOf(command));
    }
    CommandNode none = tree.tool;
    none.sName.clear();
    options += CommandCase(none, fmt::format("commands='{}'", fmt::join(commands, " ")));
    return fmt::format(kBashScript, fmt::arg("commands", fmt::join(commands, " | ")),
                       fmt::arg("values", ValueCases(tree)), fmt::arg("options", options));
}

} // namespace tabulex
