// FolderHost: a dialog that holds a folder view, and writes down what it reports.
#pragma once

#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "src/UIComponents/controls/FolderFilter.h"
#include "src/UIComponents/windows/FolderWindow.h"
#include "tests/support/TempFolder.h"
#include "tests/windows/dialogs/ModalDriver.h"

#include <ole2.h>

namespace folder_test {

using Hesperon::specifics::UILayer::FolderWindow;
using namespace IQRL_TabulexConverter;
namespace fs = std::filesystem;

// The shell wants OleInitialize on the thread.
class Ole
{
public:
    Ole() { OleInitialize(nullptr); }
    ~Ole() { OleUninitialize(); }
    Ole(const Ole&) = delete;
    Ole& operator=(const Ole&) = delete;
};

// A window of the dialogs' class, for Tab and the like.
class HostDialog
{
public:
    HostDialog()
        : m_hWnd(CreateWindowExW(WS_EX_CONTROLPARENT, L"#32770", L"folders",
                                 WS_POPUP | WS_CAPTION | WS_VISIBLE | WS_CLIPCHILDREN, 40, 40, 560,
                                 460, nullptr, nullptr, nullptr, nullptr))
    {}
    ~HostDialog() { Close(); }
    HostDialog(const HostDialog&) = delete;
    HostDialog& operator=(const HostDialog&) = delete;

    HWND Window() const { return m_hWnd; }
    void Close()
    {
        if (const HWND hWnd = std::exchange(m_hWnd, nullptr))
            DestroyWindow(hWnd);
    }

private:
    HWND m_hWnd;
};

// Filters as the folder list does, with no chain.
class FolderReports final : public IFolderEvents
{
public:
    std::vector<std::wstring> m_selections;
    std::vector<LONG> m_commands;
    std::vector<LONG> m_clicks;
    std::vector<std::wstring> m_asked; // of Shows
    int m_nResizes = 0;
    int m_nCloses = 0;
    std::function<void(LONG)> m_onCommand;

    bool Shows(const OLECHAR* pszPath) override
    {
        m_asked.emplace_back(pszPath);
        return Hesperon::specifics::ShowsInFolder(pszPath, {});
    }
    LONG EntryCount() override { return 0; }
    FolderEntry Entry(LONG) override { return {}; }
    void OnSelection(const OLECHAR* pszPath) override { m_selections.emplace_back(pszPath); }
    void OnCommand(FolderCommand command) override
    {
        m_commands.push_back(command);
        if (m_onCommand)
            m_onCommand(command);
    }
    void OnClose() override { ++m_nCloses; }
    void OnText(LONG) override {}
    void OnSelect(LONG) override {}
    void OnClick(LONG nControl) override { m_clicks.push_back(nControl); }
    void OnDate(LONG) override {}
    void OnResize() override { ++m_nResizes; }
};

// ---- the shell's list inside a view

inline HWND ListOf(HWND hPane)
{
    const HWND hView = DescendantOfClass(hPane, L"SHELLDLL_DefView");
    return hView ? DescendantOfClass(hView, L"SysListView32") : nullptr;
}

inline std::wstring ItemText(HWND hList, int nItem)
{
    wchar_t text[MAX_PATH] = L"";
    LVITEMW item{};
    item.pszText = text;
    item.cchTextMax = MAX_PATH;
    SendMessageW(hList, LVM_GETITEMTEXTW, static_cast<WPARAM>(nItem),
                 reinterpret_cast<LPARAM>(&item));
    return text;
}

inline std::vector<std::wstring> ItemTexts(HWND hList)
{
    std::vector<std::wstring> texts;
    const auto nItems = static_cast<int>(SendMessageW(hList, LVM_GETITEMCOUNT, 0, 0));
    for (int n = 0; n < nItems; ++n)
        texts.push_back(ItemText(hList, n));
    return texts;
}

inline int ItemOf(HWND hList, const std::wstring& sText)
{
    const std::vector<std::wstring> texts = ItemTexts(hList);
    for (std::size_t n = 0; n < texts.size(); ++n)
        if (texts[n] == sText)
            return static_cast<int>(n);
    return -1;
}

// As a click does.
inline bool SelectItem(HWND hList, const std::wstring& sText)
{
    const int nItem = ItemOf(hList, sText);
    LVITEMW item{};
    item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    item.state = LVIS_SELECTED | LVIS_FOCUSED;
    return nItem >= 0 && SendMessageW(hList, LVM_SETITEMSTATE, static_cast<WPARAM>(nItem),
                                      reinterpret_cast<LPARAM>(&item));
}

// The texts of the selected items, with a blank after each.
inline std::wstring SelectedItems(HWND hList)
{
    std::wstring sTexts;
    for (LRESULT n = -1;
         (n = SendMessageW(hList, LVM_GETNEXTITEM, static_cast<WPARAM>(n), LVNI_SELECTED)) >= 0;)
        sTexts += ItemText(hList, static_cast<int>(n)) + L' ';
    return sTexts;
}

inline void Pump()
{
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

} // namespace folder_test
