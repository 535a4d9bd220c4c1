#include "tools/tabulex/input/FileArguments.h"

#include <algorithm>
#include <filesystem>

#include "tools/tabulex/input/NamePattern.h"
#include "tools/tabulex/system/Paths.h"
#include "tools/tabulex/text/NaturalOrder.h"

namespace tabulex {

namespace fs = std::filesystem;

namespace {

std::vector<std::string> FilesOfFolder(const std::string& folder)
{
    std::vector<std::string> files;
    std::error_code error, ignored;
    for (fs::directory_iterator entry(PathOf(folder), error), end; !error && entry != end;
         entry.increment(error))
        if (!Utf8Of(entry->path().filename()).starts_with('.') && entry->is_regular_file(ignored))
            files.push_back(Utf8Of(entry->path()));
    std::ranges::sort(files, NaturalLess);
    return files;
}

std::vector<std::string> FilesOf(const std::string& name)
{
    std::error_code error;
    const fs::file_status status = fs::status(PathOf(name), error);
    if (fs::is_directory(status))
        return FilesOfFolder(name);
    if (!fs::exists(status) && IsPattern(name))
        return FilesOfPattern(name);
    return {};
}

} // namespace

std::vector<std::string> ExpandFiles(const std::vector<std::string>& names)
{
    std::vector<std::string> files;
    for (const std::string& name : names) {
        const auto inside = FilesOf(name);
        files.insert(files.end(), inside.begin(), inside.end());
        if (inside.empty())
            files.push_back(name);
    }
    return files;
}

} // namespace tabulex
