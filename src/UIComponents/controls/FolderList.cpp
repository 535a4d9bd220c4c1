// Reading a folder: the kind of each entry comes with the folder itself on most systems, so no
// entry is looked at by its own until somebody asks for its size; folders of a hundred thousand
// files on another machine open at once.

#include "src/UIComponents/controls/FolderList.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "platform/Folders.h"
#include "platform/Shell.h"
#include "src/UIComponents/controls/FolderFilter.h"
#include "src/values/CaseFold.h"

namespace Hesperon::specifics {

namespace fs = std::filesystem;

namespace {

constexpr HRESULT kNotThere = static_cast<HRESULT>(0x80070002);

HRESULT ResultOfError(const std::error_code& error)
{
    if (error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory)
        return kNotThere;
    return error == std::errc::permission_denied ? E_ACCESSDENIED : E_FAIL;
}

// The result for a thing that isn't what was wanted.
HRESULT ResultOfKind(const fs::file_status& status, const std::error_code& error)
{
    return fs::exists(status) ? E_INVALIDARG
                              : ResultOfError(status.type() == fs::file_type::not_found
                                                  ? make_error_code(std::errc::not_a_directory)
                                                  : error);
}

// Empty for a text that names nothing: the system would cut it at a zero.
fs::path WholePath(string_view_t sPath)
{
    if (sPath.empty() || sPath.find(OLECHAR('\0')) != sPath.npos)
        return {};
    std::error_code error;
    fs::path path = fs::absolute(PathOfText(sPath), error).lexically_normal().make_preferred();
    if (error)
        return {};
    return path.has_filename() || !path.has_relative_path() ? path : path.parent_path();
}

// A link file stands for what it leads to.
fs::path Followed(fs::path path)
{
    fs::path target = LinkTarget(path);
    return target.empty() ? path : target;
}

// How many folders lead to this one, itself included; 0 for a folder of the file system.
std::size_t DepthAboveRoots(string_view_t sFolder)
{
    const auto above = FoldersAboveRoots();
    const auto same = [&](string_view_t s) { return EqualIgnoringCase(s, sFolder); };
    const auto found = std::ranges::find_if(above, same);
    return found == above.end() ? 0 : static_cast<std::size_t>(found - above.begin()) + 1;
}

std::vector<string_t> ChainAboveRoots(std::size_t nDepth)
{
    const auto above = FoldersAboveRoots().first(nDepth);
    return {above.begin(), above.end()};
}

std::vector<string_t> ChainOf(fs::path folder)
{
    std::vector<string_t> chain = {TextOfPath(folder)};
    while (folder.has_relative_path() && folder != folder.parent_path()) {
        folder = folder.parent_path();
        chain.push_back(TextOfPath(folder));
    }
    std::ranges::reverse(chain);
    const auto above = FoldersAboveRoots();
    chain.insert(chain.begin(), above.begin(), above.end());
    return chain;
}

// ---- names

// What a terminal or a list would act on instead of showing it: control characters, and bytes
// that are no text, which path texts hold as lone surrogates from U+DC80 up.
bool IsUnshowable(OLECHAR c)
{
    return c < 0x20 || (c >= 0x7F && c < 0xA0) || (c >= 0xDC80 && c <= 0xDCFF);
}

bool IsHighSurrogate(OLECHAR c)
{
    return c >= 0xD800 && c < 0xDC00;
}

string_t ShownName(string_view_t sName)
{
    static constexpr string_view_t kDigits = OLESTR("0123456789ABCDEF");
    string_t sShown;
    for (std::size_t n = 0; n < sName.size(); ++n) {
        const OLECHAR c = sName[n];
        const bool bPaired = n > 0 && IsHighSurrogate(sName[n - 1]);
        if (IsUnshowable(c) && !bPaired)
            (sShown += OLESTR("\\x")).append({kDigits[c >> 4 & 15], kDigits[c & 15]});
        else
            sShown += c;
    }
    return sShown;
}

bool SortsBefore(const FolderItem& first, const FolderItem& second)
{
    if (first.bFolder != second.bFolder)
        return first.bFolder;
    const auto [a, b] = std::ranges::mismatch(first.sName, second.sName, {}, &FoldCase, &FoldCase);
    if (a == first.sName.end() && b == second.sName.end())
        return first.sPath < second.sPath;
    return a == first.sName.end() || (b != second.sName.end() && FoldCase(*a) < FoldCase(*b));
}

} // namespace

// ---- reading

HRESULT CFolderList::Read(string_view_t sFolder, std::unique_ptr<CFolderList>& result)
{
    result.reset();
    if (const std::size_t nDepth = DepthAboveRoots(sFolder)) {
        result.reset(new CFolderList(ChainAboveRoots(nDepth)));
        result->AddFoldersBelow(nDepth);
        return S_OK;
    }
    const fs::path folder = Followed(WholePath(sFolder));
    if (folder.empty())
        return E_INVALIDARG;
    std::error_code error;
    const fs::file_status status = fs::status(folder, error);
    if (!fs::is_directory(status))
        return ResultOfKind(status, error);
    fs::directory_iterator entry(folder, error);
    if (error)
        return ResultOfError(error);
    std::unique_ptr<CFolderList> pList(new CFolderList(ChainOf(folder)));
    // A folder that can't be read to its end gives what was read.
    for (; entry != fs::directory_iterator(); entry.increment(error)) {
        FolderItem item{.sPath = TextOfPath(entry->path()),
                        .sName = ShownName(TextOfPath(entry->path().filename())),
                        .bFolder = entry->is_directory(error)};
        const bool bFile = entry->is_regular_file(error) || !entry->exists(error);
        if ((item.bFolder || bFile) && ShowsInFolder(item.sPath, pList->Chain()))
            pList->m_items.push_back(std::move(item));
    }
    std::ranges::sort(pList->m_items, SortsBefore);
    result = std::move(pList);
    return S_OK;
}

void CFolderList::AddFoldersBelow(std::size_t nDepth)
{
    const auto above = FoldersAboveRoots();
    const auto add = [&](string_t sPath) {
        m_items.push_back({.sPath = sPath, .sName = FolderName(sPath), .bFolder = true});
    };
    if (nDepth < above.size())
        add(string_t(above[nDepth]));
    else
        for (const fs::path& root : FileSystemRoots())
            add(TextOfPath(root));
}

const FolderItem& CFolderList::Item(std::size_t n)
{
    FolderItem& item = m_items[n];
    if (!std::exchange(item.bDetailed, true)) {
        std::error_code error;
        const fs::path path = PathOfText(item.sPath);
        if (const auto nSize = fs::file_size(path, error); !error && !item.bFolder)
            item.nSize = nSize;
        if (const auto time = fs::last_write_time(path, error); !error)
            item.dtModified = LocalTime(time);
    }
    return item;
}

// ---- paths

string_t FolderName(string_view_t sFolder)
{
    if (string_t sName = NameAboveRoots(sFolder); !sName.empty())
        return sName;
    const fs::path path = PathOfText(sFolder);
    return ShownName(TextOfPath(path.has_filename() ? path.filename() : path));
}

bool IsFolder(string_view_t sPath)
{
    std::error_code error;
    const fs::path path = Followed(WholePath(sPath));
    return DepthAboveRoots(sPath) || (!path.empty() && fs::is_directory(path, error));
}

bool PathExists(string_view_t sPath)
{
    std::error_code error;
    const fs::path path = WholePath(sPath);
    return DepthAboveRoots(sPath) || (!path.empty() && fs::exists(path, error));
}

string_view_t FolderPart(string_view_t sPath)
{
    constexpr bool bBackslash = fs::path::preferred_separator == '\\';
    const std::size_t n = sPath.find_last_of(bBackslash ? OLESTR("/\\") : OLESTR("/"));
    return sPath.substr(0, n == sPath.npos ? 0 : n);
}

string_t FolderOfFile(string_view_t sFile)
{
    return TextOfPath(PathOfText(sFile).parent_path());
}

HRESULT ResolveFile(string_view_t sPath, string_t& sFile)
{
    fs::path path = Followed(WholePath(sPath));
    if (path.empty() || DepthAboveRoots(sPath))
        return E_INVALIDARG;
    std::error_code error;
    // By the system's own rule: a target that goes up starts from the folder that really holds the
    // link, which isn't the one that the path names where a folder on the way is a link too.
    if (fs::is_symlink(path, error))
        if (fs::path target = fs::canonical(path, error); !error)
            path = std::move(target);
    const fs::file_status status = fs::status(path, error);
    if (!fs::is_regular_file(status))
        return ResultOfKind(status, error);
    sFile = TextOfPath(path);
    return S_OK;
}

} // namespace Hesperon::specifics
