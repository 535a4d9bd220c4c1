// CommandTree: the commands and their options as plain data, read from the definition of the
// command line. Completions and the manual page are written from it, by walking its commands
// and their options in the order of the help.
#pragma once

#include <string>
#include <vector>

namespace tabulex {

struct OptionNode
{
    std::string sShort;       // "-o"; empty for none
    std::string sLong;        // "--output"
    std::string sValue;       // "OUT"; empty for a flag
    std::string sDescription; // one line
    std::string sGroup;
    std::vector<std::string> choices; // values to offer
    bool bOthersToo = false;          // they aren't all that the value may be
    bool bAfterEquals = false;        // they stand behind a sign: "3=Close"
    bool bPath = false;               // the value is a file or a folder
    bool bRepeatable = false;

    bool TakesValue() const { return !sValue.empty(); }
};

struct ArgumentNode
{
    std::string sName; // "FILE"
    std::string sDescription;
    bool bPath = false;
    bool bRepeatable = false;
};

struct CommandNode
{
    std::string sName;
    std::string sDescription;
    std::vector<std::string> examples; // command lines
    std::vector<OptionNode> options;   // in the order of the help
    std::vector<ArgumentNode> arguments;
};

struct CommandTree
{
    CommandNode tool; // options that may come before a command
    std::vector<CommandNode> commands;
};

CommandTree ReadCommandTree();

// The group of options that belong to a single command and have no heading of their own.
inline constexpr const char* kOwnGroup = "Options";

} // namespace tabulex
