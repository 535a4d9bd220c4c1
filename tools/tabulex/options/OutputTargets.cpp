#include "tools/tabulex/options/OutputTargets.h"

#include <algorithm>

#include <fmt/format.h>

#include "tools/tabulex/system/Files.h"
#include "tools/tabulex/system/OutputPlace.h"
#include "tools/tabulex/system/Paths.h"
#include "tools/tabulex/text/Text.h"

namespace tabulex {

namespace fs = std::filesystem;

namespace {

struct Ending
{
    std::string_view sText;
    OutputFormat format;
};

// The first ending of a format is that of the files made in a folder.
constexpr Ending kEndings[] = {
    {".csv", OutputFormat::Csv},         {".txt", OutputFormat::Csv},
    {".jsonl", OutputFormat::JsonLines}, {".ndjson", OutputFormat::JsonLines},
    {".db", OutputFormat::Sqlite},       {".sqlite", OutputFormat::Sqlite},
    {".sqlite3", OutputFormat::Sqlite},
};

std::string EndingOf(const std::string& path)
{
    return LowerCase(Utf8Of(PathOf(path).extension()));
}

OutputFormat FormatOf(const ConvertOptions& convert)
{
    if (convert.format)
        return *convert.format;
    const auto* row = std::ranges::find(kEndings, EndingOf(convert.sOutput), &Ending::sText);
    return row == std::end(kEndings) ? OutputFormat::Csv : row->format;
}

// Of the ending of a packed file the one before it is left.
fs::path StemOf(const std::string& file)
{
    constexpr std::string_view kPacked[] = {".gz", ".zst", ".bz2", ".xz", ".zip"};
    if (file == "-")
        return "stdin";
    const fs::path path = PathOf(file);
    const bool bPacked =
        std::ranges::find(kPacked, LowerCase(Utf8Of(path.extension()))) != std::end(kPacked);
    const fs::path stem = path.stem();
    return bPacked && stem.has_extension() ? stem.stem() : stem;
}

std::string PathInFolder(const std::string& folder, const std::string& file, OutputFormat format)
{
    fs::path name = StemOf(file);
    name += std::ranges::find(kEndings, format, &Ending::format)->sText;
    return Utf8Of(PathOf(folder) / name);
}

OldTable OldTableOf(const ConvertOptions& convert)
{
    if (convert.bAppend)
        return OldTable::Append;
    return convert.bReplace ? OldTable::Replace : OldTable::Refuse;
}

// What isn't a file needs no ending, and a name may have none.
std::string ContradictionInEnding(const ConvertOptions& convert)
{
    const std::string ending = EndingOf(convert.sOutput);
    if (convert.format || convert.sOutput == "-" || ending.size() < 2 ||
        std::ranges::find(kEndings, ending, &Ending::sText) != std::end(kEndings) ||
        IsFolder(convert.sOutput) || FindPlace(convert.sOutput).kind != PlaceKind::File)
        return {};
    return fmt::format(
        "no format that can be written has the ending '{}'; use .csv or .txt for CSV, "
        ".jsonl or .ndjson for JSON Lines, .db, .sqlite or .sqlite3 for SQLite, or "
        "add --format csv, jsonl or sqlite",
        ending);
}

std::string ContradictionInTable(const ConvertOptions& convert)
{
    if (convert.bAppend && convert.bReplace)
        return "--append and --replace exclude each other";
    if (FormatOf(convert) == OutputFormat::Sqlite)
        return convert.sOutput == "-" ? "--format sqlite can't be printed; name a file by --output"
                                      : "";
    const char* pszOption = convert.bAppend ? "--append" : "--replace";
    if (convert.bAppend || convert.bReplace || convert.sTable)
        return fmt::format("{} is for tables; add --format sqlite, or an output that ends in .db",
                           convert.sTable ? "--table" : pszOption);
    return {};
}

// The outputs of two files must not have the same name.
std::string ContradictionInSeveral(const ConvertOptions& convert,
                                   const std::vector<std::string>& files)
{
    if (files.size() < 2 || convert.sOutput == "-")
        return {};
    if (!IsFolder(convert.sOutput))
        return FormatOf(convert) == OutputFormat::Sqlite
                   ? ""
                   : fmt::format("--output takes the rows of one file, and several are given; "
                                 "name a folder, as {}/",
                                 convert.sOutput);
    const auto outputs = OutputsOf(convert, files);
    for (std::size_t i = 0; i < files.size(); ++i)
        for (std::size_t n = 0; n < i; ++n)
            if (AreSameName(outputs[n].sPath, outputs[i].sPath))
                return fmt::format("the rows of '{}' and '{}' would both go to '{}'", files[n],
                                   files[i], outputs[i].sPath);
    return {};
}

// A file that an option names, and that is written beside the rows.
struct SideFile
{
    const char* pszOption;
    std::string sPath;
    bool bMayBeRead; // or it is found out for each file, when its turn comes
};

std::vector<SideFile> SideFiles(const Options& options)
{
    const ConvertOptions& convert = options.convert;
    const std::string& log = options.general.sReportLog;
    std::vector<SideFile> files = {{"--rejects", convert.sRejects, true},
                                   {"--report", convert.sReport, false},
                                   {"--report-log", log == "-" ? "" : log, false}};
    if (convert.bSaveEnvironment)
        files.push_back({"--save-environment", options.settings.sEnvironment, false});
    std::erase_if(files, [](const SideFile& file) { return file.sPath.empty(); });
    return files;
}

std::vector<std::string> RowFiles(const Options& options)
{
    std::vector<std::string> paths;
    if (options.convert.bDryRun)
        return paths;
    paths.push_back(options.convert.sOutput);
    for (const OutputOptions& output : OutputsOf(options.convert, options.files))
        paths.push_back(output.sPath);
    return paths;
}

// What is written beside the rows goes to files that are nothing else.
std::string ContradictionInSideFiles(const Options& options)
{
    const std::vector<SideFile> files = SideFiles(options);
    const std::vector<std::string> rows = RowFiles(options);
    for (std::size_t i = 0; i < files.size(); ++i) {
        const auto isFile = [&](const std::string& path) {
            return AreSamePlace(path, files[i].sPath);
        };
        const auto isRead = [&](const std::string& path) { return path != "-" && isFile(path); };
        if (std::ranges::any_of(rows, isFile) ||
            (!files[i].bMayBeRead && std::ranges::any_of(options.files, isRead)) ||
            std::ranges::any_of(files.begin(), files.begin() + static_cast<std::ptrdiff_t>(i),
                                isFile, &SideFile::sPath))
            return fmt::format("{} needs a file of its own, which is neither read nor written "
                               "otherwise",
                               files[i].pszOption);
    }
    return {};
}

std::string ContradictionInEnvironment(const Options& options)
{
    return options.convert.bSaveEnvironment && options.settings.sEnvironment.empty()
               ? "--save-environment needs a file: give it by --environment"
               : "";
}

} // namespace

std::string ContradictionIn(const Options& options)
{
    const ConvertOptions& convert = options.convert;
    const std::vector<std::string>& files = options.files;
    for (const std::string& fault :
         {ContradictionInEnding(convert), ContradictionInTable(convert),
          ContradictionInSeveral(convert, files), ContradictionInEnvironment(options),
          convert.sRejects == "-" ? std::string("--rejects needs a file of its own")
                                  : std::string(),
          ContradictionInSideFiles(options)})
        if (!fault.empty())
            return fault;
    return {};
}

std::vector<OutputOptions> OutputsOf(const ConvertOptions& convert,
                                     const std::vector<std::string>& files)
{
    OutputOptions output{convert.sOutput, FormatOf(convert)};
    output.sTable = convert.sTable.value_or(output.sTable);
    output.oldTable = OldTableOf(convert);
    std::vector<OutputOptions> outputs;
    const bool bFolder = IsFolder(convert.sOutput);
    for (const std::string& file : files) {
        if (bFolder)
            output.sPath = PathInFolder(convert.sOutput, file, output.format);
        outputs.push_back(output);
    }
    return outputs;
}

bool IsFolder(const std::string& output)
{
    std::error_code error;
    return !output.empty() &&
           (PathOf(output).filename().empty() || fs::is_directory(PathOf(output), error));
}

} // namespace tabulex
