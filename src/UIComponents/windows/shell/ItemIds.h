// The shell's names of things: identifier lists, and the paths that they stand for.
//
// An absolute list leads from the desktop to a thing; a child's list is its last link, which only
// the folder that holds the thing can read. Texts are parsing names: the path of what lies in
// the file system, "::{...}" for what the shell alone knows. A path ends in a backslash only where
// it is a root, also where the shell adds one.
//
// Used on threads that have called OleInitialize. Failures of the shell are told as nothing.
#pragma once

#include <utility>

#include "platform/com_ptr.h"
#include "platform/component.h"

#include <shlobj.h>

namespace Hesperon::specifics::UILayer {

// Owns an absolute list. Empty is "no thing"; the desktop is a list with no links.
class ItemIds
{
public:
    ItemIds() = default;
    explicit ItemIds(PIDLIST_ABSOLUTE pIds) : m_pIds(pIds) {} // takes it over
    ItemIds(ItemIds&& other) noexcept : m_pIds(std::exchange(other.m_pIds, nullptr)) {}
    ~ItemIds() { ILFree(m_pIds); }
    ItemIds& operator=(ItemIds other) noexcept
    {
        std::swap(m_pIds, other.m_pIds);
        return *this;
    }

    explicit operator bool() const { return m_pIds != nullptr; }
    PCIDLIST_ABSOLUTE get() const { return m_pIds; }
    ItemIds Clone() const { return ItemIds(m_pIds ? ILCloneFull(m_pIds) : nullptr); }
    // The folder that holds the thing; empty above the desktop.
    ItemIds Parent() const;
    ItemIds Child(PCUITEMID_CHILD pChild) const { return ItemIds(ILCombine(m_pIds, pChild)); }
    // Whether this is the other thing, or a folder on the way to it.
    bool LeadsTo(const ItemIds& other) const;
    // The last link, which belongs to this list.
    PCUITEMID_CHILD Last() const { return reinterpret_cast<PCUITEMID_CHILD>(ILFindLastID(m_pIds)); }

private:
    PIDLIST_ABSOLUTE m_pIds = nullptr;
};

// The thing that a whole path or another parsing name stands for; empty where there is none. No
// box comes up, also where a disk is missing.
ItemIds ItemOfPath(string_view_t sPath);

// Null for what is no folder.
com_ptr<IShellFolder> OpenShellFolder(const ItemIds& folder);

// The parsing name of a thing in the folder; empty where it has none.
string_t PathOfItem(IShellFolder& folder, PCUITEMID_CHILD pChild);
// The same by the whole list, as the folder that holds the thing has it; empty for no thing.
string_t PathOfItem(const ItemIds& item);

// The number of a thing's small picture in the system's list of pictures; 0 where it isn't known.
int SmallIconOf(const ItemIds& item);
// That list, which is the system's own; null if it can't be had.
HIMAGELIST SmallIcons();

} // namespace Hesperon::specifics::UILayer
