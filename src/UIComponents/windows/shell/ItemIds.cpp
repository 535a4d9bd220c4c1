#include "src/UIComponents/windows/shell/ItemIds.h"

#include <filesystem>

#include "platform/Folders.h"
#include "platform/Shell.h"
#include "src/values/CaseFold.h"

#include <shellapi.h>

namespace Hesperon::specifics::UILayer {

namespace {

// The whole file system as the shell takes it; a name of the shell stays as it is.
string_t ParsingName(string_view_t sPath)
{
    if (sPath.starts_with(OLESTR("::")))
        return string_t(sPath);
    std::error_code error;
    std::filesystem::path path = std::filesystem::absolute(PathOfText(sPath), error);
    return error ? string_t() : TextOfPath(path.lexically_normal().make_preferred());
}

string_t WithoutLastBackslash(string_t sPath)
{
    constexpr std::size_t kRoot = 3; // C: with a backslash
    if (sPath.size() > kRoot && sPath.back() == L'\\')
        sPath.pop_back();
    return sPath;
}

ItemIds DesktopItem()
{
    PIDLIST_ABSOLUTE pIds = nullptr;
    SHGetFolderLocation(nullptr, CSIDL_DESKTOP, nullptr, 0, &pIds);
    return ItemIds(pIds);
}

com_ptr<IShellFolder> Desktop()
{
    com_ptr<IShellFolder> pDesktop;
    SHGetDesktopFolder(pDesktop.put());
    return pDesktop;
}

string_t TextOfBytes(const char* pszBytes)
{
    string_t sText(MAX_PATH, L'\0');
    const int nUnits = MultiByteToWideChar(CP_ACP, 0, pszBytes, -1, sText.data(), MAX_PATH);
    sText.resize(nUnits > 0 ? static_cast<std::size_t>(nUnits) - 1 : 0);
    return sText;
}

// One of three forms, of which the first is to be freed and the last lies in the list itself.
string_t TextOfName(const STRRET& name, PCUITEMID_CHILD pChild)
{
    if (name.uType == STRRET_WSTR) {
        string_t sText = name.pOleStr ? name.pOleStr : L"";
        CoTaskMemFree(name.pOleStr);
        return sText;
    }
    return TextOfBytes(name.uType == STRRET_CSTR
                           ? name.cStr
                           : reinterpret_cast<const char*>(pChild) + name.uOffset);
}

DWORD_PTR IconInfo(PCIDLIST_ABSOLUTE pIds, SHFILEINFOW& info)
{
    return SHGetFileInfoW(reinterpret_cast<const wchar_t*>(pIds), 0, &info, sizeof(info),
                          SHGFI_PIDL | SHGFI_SYSICONINDEX | SHGFI_SMALLICON);
}

} // namespace

ItemIds ItemIds::Parent() const
{
    ItemIds parent = Clone();
    if (!parent || !ILRemoveLastID(parent.m_pIds))
        return {};
    return parent;
}

bool ItemIds::LeadsTo(const ItemIds& other) const
{
    return m_pIds && other.m_pIds &&
           (ILIsParent(m_pIds, other.m_pIds, FALSE) || ILIsEqual(m_pIds, other.m_pIds));
}

ItemIds ItemOfPath(string_view_t sPath)
{
    if (EqualIgnoringCase(sPath, FoldersAboveRoots().front()))
        return DesktopItem(); // the shell would look for it on the desktop
    const com_ptr<IShellFolder> pDesktop = Desktop();
    string_t sName = ParsingName(sPath);
    PIDLIST_RELATIVE pIds = nullptr;
    if (!pDesktop || sName.empty() ||
        FAILED(pDesktop->ParseDisplayName(nullptr, nullptr, sName.data(), nullptr, &pIds, nullptr)))
        return {};
    return ItemIds(reinterpret_cast<PIDLIST_ABSOLUTE>(pIds));
}

com_ptr<IShellFolder> OpenShellFolder(const ItemIds& folder)
{
    com_ptr<IShellFolder> pDesktop = Desktop();
    if (!pDesktop || !folder || ILIsEmpty(folder.get()))
        return folder ? pDesktop : nullptr;
    com_ptr<IShellFolder> pFolder;
    pDesktop->BindToObject(folder.get(), nullptr, __uuidof(IShellFolder), pFolder.put_void());
    return pFolder;
}

string_t PathOfItem(IShellFolder& folder, PCUITEMID_CHILD pChild)
{
    STRRET name{};
    if (FAILED(folder.GetDisplayNameOf(pChild, SHGDN_FORPARSING, &name)))
        return {};
    return WithoutLastBackslash(TextOfName(name, pChild));
}

string_t PathOfItem(const ItemIds& item)
{
    const com_ptr<IShellFolder> pFolder = OpenShellFolder(item.Parent());
    return pFolder ? PathOfItem(*pFolder.get(), item.Last()) : string_t();
}

int SmallIconOf(const ItemIds& item)
{
    SHFILEINFOW info{};
    return item && IconInfo(item.get(), info) ? info.iIcon : 0;
}

HIMAGELIST SmallIcons()
{
    SHFILEINFOW info{};
    return reinterpret_cast<HIMAGELIST>(
        SHGetFileInfoW(L".", FILE_ATTRIBUTE_DIRECTORY, &info, sizeof(info),
                       SHGFI_USEFILEATTRIBUTES | SHGFI_SYSICONINDEX | SHGFI_SMALLICON));
}

} // namespace Hesperon::specifics::UILayer
