#include "tools/tabulex/options/OutputTargets.h"

#include <algorithm>

#include <fmt/format.h>

#include "tools/tabulex/system/Files.h"
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
    {".csv", OutputFormat::Csv},          {".jsonl", OutputFormat::JsonLines},
    {".ndjson", OutputFormat::JsonLines}, {".db", OutputFormat::Sqlite},
    {".sqlite", OutputFormat::Sqlite},    {".sqlite3", OutputFormat::Sqlite},
};

OutputFormat FormatOf(const ConvertOptions& convert)
{
    if (convert.format)
        return *convert.format;
    const auto ending = LowerCase(Utf8Of(PathOf(convert.sOutput).extension()));
    const auto* row = std::ranges::find(kEndings, ending, &Ending::sText);
    return row == std::end(kEndings) ? OutputFormat::Csv : row->format;
}

std::string PathInFolder(const std::string& folder, const std::string& file, OutputFormat format)
{
    fs::path name = PathOf(file).stem();
    name += std::ranges::find(kEndings, format, &Ending::format)->sText;
    return Utf8Of(PathOf(folder) / name);
}

OldTable OldTableOf(const ConvertOptions& convert)
{
    if (convert.bAppend)
        return OldTable::Append;
    return convert.bReplace ? OldTable::Replace : OldTable::Refuse;
}

// Works also if one of them doesn't exist yet.
bool AreSame(const std::string& a, const std::string& b)
{
    std::error_code error;
    const auto place = [&](const std::string& path) {
        return Utf8Of(fs::weakly_canonical(fs::absolute(PathOf(path), error), error));
    };
    return AreSameName(place(a), place(b));
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

std::string ContradictionInRejects(const ConvertOptions& convert,
                                   const std::vector<std::string>& files)
{
    const std::string& rejects = convert.sRejects;
    const auto isTaken = [&](const OutputOptions& output) {
        return output.sPath != "-" && AreSame(output.sPath, rejects);
    };
    const bool bTaken = !rejects.empty() && std::ranges::any_of(OutputsOf(convert, files), isTaken);
    return rejects == "-" || bTaken ? "--rejects needs a file of its own" : "";
}

} // namespace

std::string ContradictionIn(const ConvertOptions& convert, const std::vector<std::string>& files)
{
    for (const std::string& fault :
         {ContradictionInTable(convert), ContradictionInSeveral(convert, files),
          ContradictionInRejects(convert, files)})
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
