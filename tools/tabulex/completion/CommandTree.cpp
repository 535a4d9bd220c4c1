#include "tools/tabulex/completion/CommandTree.h"

#include <algorithm>
#include <sstream>

#include "interfaces/FieldsAndResolutions.h"
#include "tools/tabulex/completion/Completion.h"
#include "tools/tabulex/host/ResolutionOffers.h"
#include "tools/tabulex/options/CommandDefinitions.h"
#include "tools/tabulex/options/HelpText.h"
#include "tools/tabulex/text/Text.h"

namespace tabulex {

namespace {

// Names of values and arguments that are paths.
constexpr std::string_view kPaths[] = {"FILE", "OUT"};

bool IsPath(std::string_view name)
{
    return std::ranges::find(kPaths, name) != std::end(kPaths);
}

std::vector<std::string> Split(const std::string& text, char separator)
{
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);)
        parts.push_back(part.substr(std::min(part.find_first_not_of(' '), part.size())));
    return parts;
}

// A value's name that is words in small letters with bars between them lists the choices.
std::vector<std::string> ChoicesOf(const std::string& value)
{
    const bool bWords = value.find('|') != value.npos &&
                        value.find_first_not_of("abcdefghijklmnopqrstuvwxyz|") == value.npos;
    return bWords ? Split(value, '|') : std::vector<std::string>();
}

// ---- values to offer where others are taken too

std::vector<std::string> Resolutions()
{
    std::vector<std::string> names;
    for (const ResolutionOffer& resolution : DefaultResolutions())
        names.push_back(resolution.sName);
    return names;
}

std::vector<std::string> Types()
{
    std::vector<std::string> names;
    for (const auto& type : IQRL_TabulexConverter::kFieldTypes)
        names.push_back(ToUtf8(type.sName));
    names.push_back("none");
    names.push_back("unknown");
    return names;
}

std::vector<std::string> Multipliers()
{
    return {"1000000", "100000", "10000",  "1000",    "100",      "10",       "1",
            "1/10",    "1/100",  "1/1000", "1/10000", "1/100000", "1/1000000"};
}

std::vector<std::string> Encodings()
{
    return {"utf-8",   "windows-1252", "windows-1251", "iso-8859-1", "gbk",
            "gb18030", "big5",         "shift_jis",    "euc-kr"};
}

struct Offer
{
    std::string_view sOption;
    std::vector<std::string> (*pfnValues)();
    bool bAfterEquals = false;
};

constexpr Offer kOffers[] = {
    {"--resolution", Resolutions},
    {"--column", Types, true},
    {"--encoding", Encodings},
    {"--price-multiplier", Multipliers},
    {"--volume-multiplier", Multipliers},
};

void AddOffers(OptionNode& node)
{
    const auto* offer = std::ranges::find(kOffers, node.sLong, &Offer::sOption);
    if (offer == std::end(kOffers))
        return;
    node.choices = offer->pfnValues();
    node.bOthersToo = true;
    node.bAfterEquals = offer->bAfterEquals;
}

std::string OneLine(std::string text)
{
    std::ranges::replace(text, '\n', ' ');
    return text;
}

OptionNode ReadOption(const CLI::Option& option)
{
    OptionNode node;
    if (!option.get_snames().empty())
        node.sShort = "-" + option.get_snames().front();
    node.sLong = "--" + option.get_lnames().front();
    if (option.get_items_expected_max() > 0)
        node.sValue = option.get_type_name();
    node.sDescription = OneLine(option.get_description());
    node.sGroup = option.get_group();
    node.choices = ChoicesOf(node.sValue);
    AddOffers(node);
    node.bPath = IsPath(node.sValue);
    node.bRepeatable = option.get_multi_option_policy() == CLI::MultiOptionPolicy::TakeAll;
    return node;
}

ArgumentNode ReadArgument(const CLI::Option& option)
{
    const std::string name = option.get_name(true);
    return {name, OneLine(option.get_description()), IsPath(name),
            option.get_items_expected_max() > 1};
}

CommandNode ReadCommand(const CLI::App& app)
{
    CommandNode node{app.get_name(), app.get_description(), Split(ExamplesOf(app), '\n'), {}, {}};
    for (const CLI::Option* option : app.get_options()) {
        if (option->get_positional())
            node.arguments.push_back(ReadArgument(*option));
        else
            node.options.push_back(ReadOption(*option));
    }
    return node;
}

} // namespace

std::string ChoiceList(const OptionNode& option)
{
    std::string list;
    for (const std::string& choice : option.choices) {
        list += list.empty() ? "" : " ";
        for (const char c : choice)
            list += c == ' ' ? std::string("\\ ") : std::string(1, c);
    }
    return list;
}

CommandTree ReadCommandTree()
{
    CLI::App app;
    Options options;
    DefineCommandLine(app, options);
    CommandTree tree{ReadCommand(app), {}};
    for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; }))
        tree.commands.push_back(ReadCommand(*command));
    return tree;
}

} // namespace tabulex
