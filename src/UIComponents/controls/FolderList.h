// CFolderList: one folder as a list of what it holds, and the paths around it.
//
// All paths are whole and in the form of the system, as texts by the rule of File.h. Names of
// files may hold anything; nothing here throws but for memory. A thing that can't be looked at,
// such as a link that leads nowhere, is listed as a file without size and time.
//
// Above the roots may lie folders of the system's shell (Shell.h), whose names stand for paths
// here. They list the folders that lead down again, and nothing else.
//
// Not synchronised.
#pragma once

#include <memory>
#include <span>
#include <vector>

#include "platform/component.h"

namespace Hesperon::specifics {

struct FolderItem
{
    string_t sPath;
    string_t sName; // for the user: control characters and broken ones as \x and two digits
    bool bFolder = false;
    bool bDetailed = false; // the rest is there
    ULONGLONG nSize = 0;    // bytes; 0 for a folder
    DATE dtModified = 0;    // local time; 0 where it isn't known
};

class CFolderList
{
public:
    // Reads a folder. E_INVALIDARG for what is no folder, 0x80070002 for what isn't there,
    // E_ACCESSDENIED for a folder that may not be read, E_FAIL for any other failure; no list
    // then.
    static HRESULT Read(string_view_t sFolder, std::unique_ptr<CFolderList>& result);

    const string_t& Path() const { return m_chain.back(); }
    // From the topmost folder to the folder itself; never empty.
    std::span<const string_t> Chain() const { return m_chain; }
    // Empty for the topmost folder.
    string_view_t Parent() const
    {
        return m_chain.size() > 1 ? string_view_t(m_chain[m_chain.size() - 2]) : string_view_t();
    }

    // Files and folders, folders first, each sorted by name without case. Nothing that is
    // neither, such as a pipe, and nothing that ShowsInFolder hides.
    std::size_t Count() const { return m_items.size(); }
    // Size and time are read when an item is asked for first.
    const FolderItem& Item(std::size_t n);

private:
    explicit CFolderList(std::vector<string_t> chain) : m_chain(std::move(chain)) {}

    // Of a folder above the roots, by the length of the way to it.
    void AddFoldersBelow(std::size_t nDepth);

    std::vector<string_t> m_chain;
    std::vector<FolderItem> m_items;
};

// The name of a folder of a chain, as in FolderItem; a root is its own name. Folders above the
// roots are called as the system calls them.
string_t FolderName(string_view_t sFolder);

bool IsFolder(string_view_t sPath);

// Whether there is such a thing, whatever it is.
bool PathExists(string_view_t sPath);

// What stands before the last separator; empty if there is none, and for a file in a root.
string_view_t FolderPart(string_view_t sPath);

// The folder that holds a file, also where that is a root.
string_t FolderOfFile(string_view_t sFile);

// The file that a path names, as a whole path; a link stands for what it leads to in the end.
// E_INVALIDARG for what is no file, 0x80070002 for what isn't there, and as Read else.
HRESULT ResolveFile(string_view_t sPath, string_t& sFile);

} // namespace Hesperon::specifics
