// A pattern is taken apart at its slashes. The part without characters of patterns is a folder;
// each further part is looked for in all folders that fitted so far.

#include "tools/tabulex/input/NamePattern.h"

#include <algorithm>
#include <filesystem>

#include "tools/tabulex/system/Paths.h"
#include "tools/tabulex/text/NaturalOrder.h"

namespace tabulex {

namespace fs = std::filesystem;

namespace {

// Whether the set at the front of the pattern has the character; `nLength` becomes the set's
// length, 0 where the bracket isn't closed and stands for itself.
bool IsInSet(char c, std::string_view pattern, std::size_t& nLength)
{
    std::size_t i = 1;
    const bool bOutside = i < pattern.size() && (pattern[i] == '!' || pattern[i] == '^');
    i += bOutside;
    const std::size_t nClose = pattern.find(']', i + 1);
    nLength = nClose == std::string_view::npos ? 0 : nClose + 1;
    bool bFound = false;
    for (; nLength > 0 && i < nClose; ++i) {
        const bool bRange = i + 2 < nClose && pattern[i + 1] == '-';
        const char last = pattern[bRange ? i + 2 : i];
        bFound = bFound || (c >= pattern[i] && c <= last);
        i += bRange ? 2 : 0;
    }
    return bFound != bOutside;
}

// Whether one character fits the front of a pattern without '*'; `nLength` is what that takes.
bool FitsOne(char c, std::string_view pattern, std::size_t& nLength)
{
    nLength = 1;
    if (pattern[0] == '?')
        return true;
    if (pattern[0] != '[')
        return pattern[0] == c;
    const bool bInSet = IsInSet(c, pattern, nLength);
    if (nLength > 0)
        return bInSet;
    nLength = 1;
    return c == '[';
}

// Both without the folder; `folder` is empty for the current one.
void AddFitting(const fs::path& folder, const std::string& part, std::vector<fs::path>& found)
{
    std::error_code error;
    for (fs::directory_iterator entry(folder.empty() ? "." : folder, error), end;
         !error && entry != end; entry.increment(error)) {
        const fs::path name = entry->path().filename();
        if (FitsPattern(Utf8Of(name), part))
            found.push_back(folder / name);
    }
}

std::vector<fs::path> PathsOfPattern(const std::string& pattern)
{
    std::vector<fs::path> paths = {fs::path()};
    for (const fs::path& part : PathOf(pattern)) {
        std::vector<fs::path> longer;
        for (const fs::path& path : paths)
            if (IsPattern(Utf8Of(part)))
                AddFitting(path, Utf8Of(part), longer);
            else
                longer.push_back(path / part);
        paths = std::move(longer);
    }
    return paths;
}

} // namespace

bool IsPattern(std::string_view name)
{
    return name.find_first_of("*?[") != std::string_view::npos;
}

// At a star the shortest run is taken first; where the rest then fails it gets one longer.
bool FitsPattern(std::string_view name, std::string_view pattern)
{
    if (name.starts_with('.') && !pattern.starts_with('.'))
        return false;
    std::size_t nAt = 0, nPattern = 0, nRunEnd = 0, nStar = std::string_view::npos;
    while (nAt < name.size() || nPattern < pattern.size()) {
        std::size_t nLength = 0;
        if (nPattern < pattern.size() && pattern[nPattern] == '*') {
            nStar = nPattern++;
            nRunEnd = nAt;
        } else if (nAt < name.size() && nPattern < pattern.size() &&
                   FitsOne(name[nAt], pattern.substr(nPattern), nLength)) {
            ++nAt;
            nPattern += nLength;
        } else if (nStar != std::string_view::npos && nRunEnd < name.size()) {
            nAt = ++nRunEnd;
            nPattern = nStar + 1;
        } else {
            return false;
        }
    }
    return true;
}

std::vector<std::string> FilesOfPattern(const std::string& pattern)
{
    std::vector<std::string> files;
    std::error_code ignored;
    for (const fs::path& path : PathsOfPattern(pattern))
        if (fs::is_regular_file(path, ignored))
            files.push_back(Utf8Of(path));
    std::ranges::sort(files, NaturalLess);
    return files;
}

} // namespace tabulex
