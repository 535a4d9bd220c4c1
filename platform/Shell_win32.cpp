#include "platform/Shell.h"

#include "platform/com_ptr.h"

#include <shlobj.h>

namespace {

constexpr string_view_t kDesktop = OLESTR("::{00021400-0000-0000-C000-000000000046}");
constexpr string_view_t kComputer = OLESTR("::{20D04FE0-3AEA-1069-A2D8-08002B30309D}");
constexpr string_view_t kAbove[] = {kDesktop, kComputer};

constexpr CLSID kShellLink = {0x00021401, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

string_t DisplayName(int nFolder)
{
    PIDLIST_ABSOLUTE pIds = nullptr;
    if (FAILED(SHGetFolderLocation(nullptr, nFolder, nullptr, 0, &pIds)))
        return {};
    SHFILEINFOW info{};
    SHGetFileInfoW(reinterpret_cast<const wchar_t*>(pIds), 0, &info, sizeof(info),
                   SHGFI_PIDL | SHGFI_DISPLAYNAME);
    ILFree(pIds);
    return info.szDisplayName;
}

bool IsLinkFile(const std::filesystem::path& path)
{
    std::error_code error;
    return CompareStringOrdinal(path.extension().c_str(), -1, L".lnk", -1, TRUE) == CSTR_EQUAL &&
           std::filesystem::is_regular_file(path, error);
}

com_ptr<IShellLinkW> OpenLink(const std::filesystem::path& path)
{
    com_ptr<IShellLinkW> pLink;
    com_ptr<IPersistFile> pFile;
    if (FAILED(CoCreateInstance(kShellLink, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IShellLinkW),
                                pLink.put_void())) ||
        FAILED(pLink->QueryInterface(__uuidof(IPersistFile), pFile.put_void())) ||
        FAILED(pFile->Load(path.c_str(), STGM_READ)))
        return nullptr;
    return pLink;
}

// The path that a link holds beside its identifiers may have lost what the code page lacks.
std::filesystem::path TargetOf(IShellLinkW& link)
{
    wchar_t path[MAX_PATH] = L"";
    PIDLIST_ABSOLUTE pIds = nullptr;
    const bool bByIds = link.GetIDList(&pIds) == S_OK && SHGetPathFromIDListW(pIds, path);
    ILFree(pIds);
    if (bByIds)
        return path;
    return link.GetPath(path, MAX_PATH, nullptr, 0) == S_OK ? path : L"";
}

} // namespace

std::span<const string_view_t> FoldersAboveRoots()
{
    return kAbove;
}

string_t NameAboveRoots(string_view_t sFolder)
{
    if (sFolder == kDesktop)
        return DisplayName(CSIDL_DESKTOP);
    return sFolder == kComputer ? DisplayName(CSIDL_DRIVES) : string_t();
}

std::vector<std::filesystem::path> FileSystemRoots()
{
    std::vector<std::filesystem::path> roots;
    const DWORD nDrives = GetLogicalDrives(); // one bit a letter
    for (int n = 0; n < 26; ++n)
        if (nDrives >> n & 1)
            roots.emplace_back(string_t(1, static_cast<OLECHAR>(L'A' + n)).append(L":\\"));
    return roots;
}

// A target that has moved is looked for, briefly and without a box; one that has gone keeps the
// path that the link was made with.
std::filesystem::path LinkTarget(const std::filesystem::path& path)
{
    const com_ptr<IShellLinkW> pLink = IsLinkFile(path) ? OpenLink(path) : nullptr;
    if (!pLink)
        return {};
    constexpr DWORD kMilliseconds = 500;
    pLink->Resolve(nullptr, SLR_NO_UI | SLR_NOUPDATE | (kMilliseconds << 16));
    return TargetOf(*pLink.get());
}
