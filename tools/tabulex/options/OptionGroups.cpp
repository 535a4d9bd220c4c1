// The value of an option is taken as a text and read by a function of the tool, not by the library:
// so a fault names the option and the allowed values, and can suggest the nearest one.

#include "tools/tabulex/options/OptionGroups.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "intake/RecipeOptions.h"
#include "tools/tabulex/options/OptionValues.h"
#include "tools/tabulex/text/Formats.h"
#include "tools/tabulex/text/Suggestion.h"

namespace tabulex {

namespace {

// "--output" of "-o,--output".
std::string LongName(const std::string& names)
{
    return names.substr(names.find("--"));
}

// An option whose text is read by `read`; what that throws becomes a usage error with the
// option's name.
template <class Target, class Reader>
CLI::Option* AddValue(CLI::App& app, const std::string& names, const std::string& type,
                      Target& target, Reader read, const std::string& description)
{
    const auto take = [&target, read, names](const std::string& text) {
        try {
            target = read(text);
        } catch (const std::invalid_argument& fault) {
            throw CLI::ValidationError(LongName(names), fault.what());
        }
    };
    return app.add_option_function<std::string>(names, take, description)->type_name(type);
}

template <class Number>
auto WholeUpTo(ULONGLONG nLeast, ULONGLONG nMost)
{
    return [=](const std::string& text) {
        const auto value = ParseWhole(text);
        if (!value || *value < nLeast || *value > nMost)
            throw std::invalid_argument(
                fmt::format("'{}' is not a whole number from {} to {}", text, nLeast, nMost));
        return static_cast<Number>(*value);
    };
}

template <class Value>
struct Word
{
    const char* pszName;
    Value value;
};

// An option that takes one of some words, and suggests the nearest for any other. The help
// shows the words in place of the value's name.
template <class Target, class Value, std::size_t N>
CLI::Option* AddChoice(CLI::App& app, const std::string& names, const Word<Value> (&words)[N],
                       Target& target, const std::string& description)
{
    std::vector<std::string> allowed;
    for (const auto& word : words)
        allowed.push_back(word.pszName);
    const auto read = [words = std::to_array(words), allowed](const std::string& text) {
        const auto at = std::ranges::find(allowed, text);
        if (at != allowed.end())
            return words[static_cast<std::size_t>(at - allowed.begin())].value;
        const auto near = Suggest(text, allowed);
        throw std::invalid_argument(
            fmt::format("'{}' is not one of {}{}", text, fmt::join(allowed, ", "),
                        near ? fmt::format("; did you mean '{}'?", *near) : ""));
    };
    return AddValue(app, names, fmt::format("{}", fmt::join(allowed, "|")), target, read,
                    description);
}

std::string AnyText(const std::string& text)
{
    return text;
}

std::string SomeText(const std::string& text)
{
    if (text.empty())
        throw std::invalid_argument("'' is not a name");
    return text;
}

constexpr Word<When> kWhen[] = {
    {"auto", When::Auto}, {"always", When::Always}, {"never", When::Never}};
constexpr Word<OutputFormat> kFormats[] = {{"csv", OutputFormat::Csv},
                                           {"jsonl", OutputFormat::JsonLines},
                                           {"sqlite", OutputFormat::Sqlite}};
constexpr Word<OnBadLine> kActions[] = {
    {"ask", OnBadLine::Ask}, {"skip", OnBadLine::Skip}, {"stop", OnBadLine::Stop}};
constexpr Word<LineNumbers> kLineNumbers[] = {{"file", LineNumbers::File},
                                              {"component", LineNumbers::Component}};
constexpr Word<HeaderChoice> kHeaders[] = {
    {"yes", HeaderChoice::Yes}, {"no", HeaderChoice::No}, {"auto", HeaderChoice::Auto}};
constexpr Word<advice::DayMonth> kOrders[] = {{"day-first", advice::DayMonth::DayFirst},
                                              {"month-first", advice::DayMonth::MonthFirst}};
constexpr Word<const char*> kLanguages[] = {{"zh", "zh"}, {"en", "en"}};

// Far from the end of the number range, so that positions can be added.
constexpr const char* kRecipeGroup = "Lines and cells, before the file is read";

const auto kPosition = WholeUpTo<ULONGLONG>(0, ULONGLONG(1) << 62);

} // namespace

void AddGeneral(CLI::App& app, GeneralOptions& general)
{
    const std::string group = "General";
    AddChoice(app, "--lang", kLanguages, general.sLanguage,
              "Language of the component's texts\n(default: from the locale)")
        ->group(group);
    AddValue(app, "--encoding", "NAME", general.sEncoding, AnyText,
             "Code page of the text in files, such as\nwindows-1252, gbk or utf-8 (default: the "
             "locale's)")
        ->group(group);
    AddValue(app, "--offer", "LIST", general.resolutions, ReadOffers,
             "Resolutions to offer, as id=name,id=name,...")
        ->group(group);
    AddChoice(app, "--color", kWhen, general.colour,
              "Colours (auto: on a terminal, unless\nNO_COLOR is set)")
        ->group(group);
    AddValue(app, "--report-log", "FILE", general.sReportLog, SomeText,
             "Append the component's own reports to FILE;\n'-' is standard error")
        ->group(group);
    app.add_flag("-q,--quiet", general.bQuiet, "No summary and no warnings")->group(group);
    app.add_flag("-v,--verbose", general.bVerbose, "Report what is done")->group(group);
}

constexpr const char* kOneFile = "A quote file; '-' is standard input. Archives are\nunpacked, a "
                                 "file of several is ARCHIVE/FILE";
constexpr const char* kSeveralFiles = "Quote files, folders of them, or quoted patterns such\nas "
                                      "'data/*.csv'; '-' is standard input. "
                                      "Archives are\nunpacked, a file of several is ARCHIVE/FILE";

void AddFiles(CLI::App& app, Options& options, bool bSeveral)
{
    auto* files = app.add_option("FILE", options.files, bSeveral ? kSeveralFiles : kOneFile)
                      ->required()
                      ->type_name(bSeveral ? "..." : "");
    if (!bSeveral)
        files->expected(1);
}

CLI::Option* AddEnvironment(CLI::App& app, Settings& settings)
{
    return AddValue(app, "--environment", "FILE", settings.sEnvironment, SomeText,
                    "Read templates of dates and times from FILE\nbefore the layout is found");
}

void AddLayoutSettings(CLI::App& app, Settings& settings)
{
    const std::string group = "Settings";
    AddEnvironment(app, settings)->group(group);
    AddValue(app, "--resolution", "NAME[|SIZE]", settings.sResolution, AnyText,
             "Ticks, Tick Bars, Count Bars, Seconds, Minutes,\nDays or Weeks, or what --offer "
             "names")
        ->group(group);
    AddValue(app, "--size", "N", settings.nSize, WholeUpTo<LONG>(1, 0x7FFFFFFF),
             "Size of the resolution, such as 5 for\n5-minute bars")
        ->group(group);
    AddValue(app, "--dividers", "CHARS", settings.nDividers, ReadDividers,
             "Field dividers out of ':', ' ', ',', ';', '|', '\\t'")
        ->group(group);
    AddValue(app, "--lines-to-skip", "N", settings.nLinesToSkip, WholeUpTo<ULONG>(0, 0xFFFFFFF0),
             "Lines before the header or the data")
        ->group(group);
    AddChoice(app, "--header", kHeaders, settings.header,
              "Whether the line after these names the columns\n(auto: if it looks like a header)")
        ->group(group);
    // Read as a list, so that the last one given doesn't replace the others.
    const auto addColumn = [&settings](const std::vector<std::string>& texts) {
        for (const std::string& one : texts)
            try {
                settings.columns.push_back(ReadColumn(one));
            } catch (const std::invalid_argument& fault) {
                throw CLI::ValidationError("--column", fault.what());
            }
    };
    app.add_option_function<std::vector<std::string>>(
           "--column", addColumn,
           "Type of column N (from 1), 'none' or 'unknown',\nsuch as '1=Date:*d/*m/*y'; may be "
           "given several "
           "times")
        ->allow_extra_args(false)
        ->type_name("N=TYPE[:TEMPLATE]")
        ->group(group);
    AddValue(app, "--code-page", "N", settings.nCodePage, ReadCodePage,
             "Number of the file's code page; has no effect on\ntext, which is read by --encoding")
        ->group(group);
    app.add_flag("--bar-end-time", settings.bBarEndTime,
                 "Times in the file are those of the bars' start:\nadd the bar size")
        ->group(group);
    AddValue(app, "--price-multiplier", "NAME", settings.sPriceMultiplier, ReadMultiplier,
             "Scales prices: 1000000, 100000, ... 1 ...\n1/1000000")
        ->group(group);
    AddValue(app, "--volume-multiplier", "NAME", settings.sVolumeMultiplier, ReadMultiplier,
             "Scales volumes, likewise")
        ->group(group);
    AddValue(app, "--symbol", "S", settings.sSymbol, SomeText, "Only records of this symbol")
        ->group(group);
}

// The table of the recipe has names, help and readers; each value is read as it comes, so that
// those of an option that may be given several times add up.
void AddRecipe(CLI::App& app, intake::Recipe& recipe)
{
    for (const intake::RecipeOption& option : intake::RecipeOptions()) {
        const auto read = [&recipe, &option](const std::vector<std::string>& values) {
            for (const std::string& value : values)
                try {
                    option.read(recipe, value);
                } catch (const std::invalid_argument& fault) {
                    throw CLI::ValidationError(option.pszName, fault.what());
                }
        };
        if (*option.pszValue == '\0')
            app.add_flag_callback(
                   option.pszName, [read] { read({""}); }, option.pszHelp)
                ->group(kRecipeGroup);
        else
            app.add_option_function<std::vector<std::string>>(option.pszName, read, option.pszHelp)
                ->allow_extra_args(false)
                ->expected(1, option.bSeveral ? CLI::detail::expected_max_vector_size : 1)
                ->type_name(option.pszValue)
                ->group(kRecipeGroup);
    }
}

void AddImportRange(CLI::App& app, Settings& settings)
{
    const std::string group = "Range";
    AddValue(app, "--from", "DATE", settings.dtFrom, ReadDateTime,
             "First moment, YYYY-MM-DD[THH:MM[:SS[.mmm]]]")
        ->group(group);
    AddValue(app, "--to", "DATE", settings.dtTo, ReadDateTime,
             "Last moment; a date alone is its 00:00")
        ->group(group);
    app.add_flag("--whole-file", settings.bWholeFile,
                 "Take rows of any moment, where the first and\nlast line don't hold the first and "
                 "last moment")
        ->group(group);
    AddValue(app, "--portion", "START:COUNT", settings.portion, ReadPortion,
             "COUNT records from position START (from 0);\nbad lines aren't reported")
        ->group(group);
}

void AddRecordRange(CLI::App& app, RangeOptions& range, const char* pszCount)
{
    AddValue(app, "--from", "N", range.nFrom, kPosition, "First record, counted from 0");
    AddValue(app, "--count", "K", range.nCount, kPosition, pszCount);
}

void AddOutput(CLI::App& app, ConvertOptions& convert)
{
    const std::string group = "Output";
    AddValue(app, "-o,--output", "OUT", convert.sOutput, SomeText,
             "File to write, or a folder (or a name with / at\nits end) for a file each; '-' is "
             "standard output\n(default). It appears when all went well")
        ->group(group);
    AddChoice(app, "--format", kFormats, convert.format,
              "Format (default: by the ending of OUT, then csv)")
        ->group(group);
    AddValue(app, "--table", "NAME", convert.sTable, SomeText,
             "SQLite: table to write (default: quotes)")
        ->group(group);
    app.add_flag("--append", convert.bAppend, "SQLite: add to the table if it is there already")
        ->group(group);
    app.add_flag("--replace", convert.bReplace, "SQLite: put the table in the place of an old one")
        ->group(group);
    app.add_flag("--save-environment", convert.bSaveEnvironment,
                 "Write the templates, with those of --column, back\nto the file of --environment "
                 "when all went well")
        ->group(group);
    app.add_flag("-n,--dry-run", convert.bDryRun, "Convert, but write no rows")->group(group);
    AddChoice(app, "--progress", kWhen, convert.progress,
              "Progress on standard error (auto: on a\nterminal, after a second)")
        ->group(group);
}

void AddNaming(CLI::App& app, ConvertOptions& convert)
{
    const auto read = [](const std::string& text) { return NamePattern(text); };
    AddValue(app, "--symbol-from-name", "PATTERN", convert.symbolFromName, read,
             "A Symbol column from the file's name: the part\nthat {} stands for in PATTERN, such "
             "as\n'{}_daily.csv'");
}

void AddErrorHandling(CLI::App& app, ConvertOptions& convert)
{
    const std::string group = "Bad lines";
    AddChoice(app, "--on-error", kActions, convert.onError,
              "What to do with a bad line (default: ask on a\nterminal, else skip)")
        ->group(group);
    AddValue(app, "--rejects", "FILE", convert.sRejects, SomeText,
             "Also write bad lines to FILE as CSV")
        ->group(group);
    AddValue(app, "--max-errors", "N", convert.nMaxErrors, kPosition,
             "Give up at the first bad line beyond N (default:\nmore than a tenth end with status "
             "1)")
        ->group(group);
    AddChoice(app, "--line-numbers", kLineNumbers, convert.lineNumbers,
              "Number lines as an editor does (file, the\ndefault) or as the component does")
        ->group(group);
    app.add_flag("--strict", convert.bStrict, "Write nothing where there is a warning (status 1)")
        ->group(group);
}

void AddReport(CLI::App& app, ConvertOptions& convert)
{
    AddValue(app, "--report", "FILE", convert.sReport, SomeText,
             "Write account, warnings and bad lines to FILE\nas JSON, an object a file");
}

void AddAdvice(CLI::App& app, ConvertOptions& convert)
{
    const std::string group = "Advice";
    app.add_flag(
           "--auto", convert.bAuto,
           "Read each file as 'inspect' advises; nothing is\nwritten where two readings are as "
           "good")
        ->group(group);
    AddChoice(app, "--prefer", kOrders, convert.prefer,
              "With --auto: how to read dates whose day and\nmonth nothing tells apart")
        ->group(group);
}

void AddNoCheck(CLI::App& app, ConvertOptions& convert)
{
    app.add_flag("--no-check", convert.bNoCheck, "Convert even if the settings check finds faults");
}

} // namespace tabulex
