#include "tools/tabulex/OptionGroups.h"

#include <array>
#include <stdexcept>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "tools/tabulex/Formats.h"
#include "tools/tabulex/OptionValues.h"
#include "tools/tabulex/Suggestion.h"

namespace tabulex {

namespace {

// An option whose text is read by `read`; what that throws becomes a usage error which
// names the option.
template <class Target, class Reader>
CLI::Option* AddValue(CLI::App& app, const std::string& names, const char* pszType, Target& target,
                      Reader read, const std::string& description)
{
    const auto take = [&target, read, names](const std::string& text) {
        try {
            target = read(text);
        } catch (const std::invalid_argument& fault) {
            throw CLI::ValidationError(names, fault.what());
        }
    };
    return app.add_option_function<std::string>(names, take, description)->type_name(pszType);
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

// A reader that takes one of some words, and names the nearest for any other.
template <class Value, std::size_t N>
auto OneOf(const Word<Value> (&words)[N])
{
    return [words = std::to_array(words)](const std::string& text) {
        std::vector<std::string> names;
        for (const auto& word : words) {
            if (text == word.pszName)
                return word.value;
            names.push_back(word.pszName);
        }
        const auto near = Suggest(text, names);
        throw std::invalid_argument(
            fmt::format("'{}' is not one of {}{}", text, fmt::join(names, ", "),
                        near ? fmt::format("; did you mean '{}'?", *near) : ""));
    };
}

constexpr Word<When> kWhen[] = {
    {"auto", When::Auto}, {"always", When::Always}, {"never", When::Never}};
constexpr Word<OutputFormat> kFormats[] = {{"csv", OutputFormat::Csv},
                                           {"jsonl", OutputFormat::JsonLines}};
constexpr Word<OnBadLine> kActions[] = {
    {"ask", OnBadLine::Ask}, {"skip", OnBadLine::Skip}, {"stop", OnBadLine::Stop}};
constexpr Word<const char*> kLanguages[] = {{"zh", "zh"}, {"en", "en"}};

// Far from the end of the number range, so that positions can be added.
const auto kPosition = WholeUpTo<ULONGLONG>(0, ULONGLONG(1) << 62);

} // namespace

void AddGeneral(CLI::App& app, GeneralOptions& general)
{
    const std::string group = "General";
    AddValue(app, "--lang", "zh|en", general.sLanguage, OneOf(kLanguages),
             "Language of the component's texts\n(default: from the locale)")
        ->group(group);
    AddValue(
        app, "--encoding", "NAME", general.sEncoding, [](const std::string& s) { return s; },
        "Code page of the text in files, such as\nwindows-1252, gbk or utf-8 (default: the "
        "locale's)")
        ->group(group);
    AddValue(app, "--offer", "LIST", general.resolutions, ReadOffers,
             "Resolutions to offer, as id=name,id=name,...")
        ->group(group);
    AddValue(app, "--color", "WHEN", general.colour, OneOf(kWhen), "Colours: auto, always or never")
        ->group(group);
    AddValue(
        app, "--report-log", "FILE", general.sReportLog, [](const std::string& s) { return s; },
        "Append the component's own reports to FILE;\n'-' is standard error")
        ->group(group);
    app.add_flag("-q,--quiet", general.bQuiet, "No summary and no warnings")->group(group);
    app.add_flag("-v,--verbose", general.bVerbose, "Tell what is done")->group(group);
}

void AddFiles(CLI::App& app, Options& options, bool bSeveral)
{
    auto* files = app.add_option("FILE", options.files, bSeveral ? "Quote files" : "A quote file")
                      ->required()
                      ->type_name(bSeveral ? "..." : "");
    if (!bSeveral)
        files->expected(1);
}

void AddLayoutSettings(CLI::App& app, Settings& settings)
{
    const std::string group = "Settings";
    const auto text = [](const std::string& s) { return s; };
    AddValue(app, "--resolution", "NAME[|SIZE]", settings.sResolution, text,
             "An offered resolution")
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
           "Type of column N (from 1), or 'none';\nmay be given several times")
        ->allow_extra_args(false)
        ->type_name("N=TYPE[:TEMPLATE]")
        ->group(group);
    AddValue(app, "--code-page", "N", settings.nCodePage, WholeUpTo<ULONG>(0, 0xFFFFFFFF),
             "Number of the file's code page")
        ->group(group);
    app.add_flag("--bar-end-time", settings.bBarEndTime,
                 "Times in the file are those of the bars' start:\nadd the bar size")
        ->group(group);
    AddValue(app, "--price-multiplier", "NAME", settings.sPriceMultiplier, text,
             "1000000, 100000, ... 1 ... 1/1000000")
        ->group(group);
    AddValue(app, "--volume-multiplier", "NAME", settings.sVolumeMultiplier, text, "Likewise")
        ->group(group);
    AddValue(app, "--symbol", "S", settings.sSymbol, text, "Only records of this symbol")
        ->group(group);
}

void AddImportRange(CLI::App& app, Settings& settings)
{
    const std::string group = "Settings";
    AddValue(app, "--from", "DATE", settings.dtFrom, ReadDateTime,
             "First moment, YYYY-MM-DD[THH:MM[:SS[.mmm]]]")
        ->group(group);
    AddValue(app, "--to", "DATE", settings.dtTo, ReadDateTime,
             "Last moment; a date alone is its 00:00")
        ->group(group);
    AddValue(app, "--portion", "START:COUNT", settings.portion, ReadPortion,
             "COUNT records from position START (from 0)")
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
    const auto text = [](const std::string& s) { return s; };
    ConversionOptions& conversion = convert.conversion;
    AddValue(app, "-o,--output", "OUT", conversion.sOutput, text,
             "File to write; '-' is standard output (default).\nIt appears when all went well")
        ->group(group);
    AddValue(app, "--format", "csv|jsonl", convert.format, OneOf(kFormats),
             "Format (default: by the ending of OUT, then csv)")
        ->group(group);
    app.add_flag("-n,--dry-run", conversion.bDryRun, "Convert, but write nothing")->group(group);
    AddValue(app, "--progress", "WHEN", conversion.progress, OneOf(kWhen),
             "Progress on standard error: auto, always or never")
        ->group(group);
}

void AddErrorHandling(CLI::App& app, ConvertOptions& convert)
{
    const std::string group = "Bad lines";
    ConversionOptions& conversion = convert.conversion;
    AddValue(app, "--on-error", "ask|skip|stop", convert.onError, OneOf(kActions),
             "What to do with a bad line (default: ask on a\nterminal, else skip)")
        ->group(group);
    AddValue(
        app, "--rejects", "FILE", conversion.sRejects, [](const std::string& s) { return s; },
        "Also write bad lines to FILE as CSV")
        ->group(group);
    AddValue(app, "--max-errors", "N", conversion.errors.nMost, kPosition,
             "Give up at the first bad line beyond N")
        ->group(group);
    app.add_flag("--no-check", convert.bNoCheck, "Convert even if the settings check finds faults")
        ->group(group);
}

} // namespace tabulex
