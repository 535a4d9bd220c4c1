// ShellView: one folder in the shell's own view, in one mode, inside a host window that it fills.
// Another folder or mode is another view.
//
// It lists, sorts and draws by itself, and reports what is selected; Enter, Backspace and a double
// click become commands, which are posted to a window. It never starts a program.
//
// Used on the thread of the host window, after OleInitialize.
#pragma once

#include <memory>

#include "interfaces/IFolderView.h"
#include "src/UIComponents/windows/shell/ItemIds.h"
#include "src/UIComponents/windows/shell/ShellBrowser.h"

namespace Hesperon::specifics::UILayer {

struct IShellViewEvents
{
    // Whether a thing of the folder is listed. sPath is its parsing name.
    virtual bool Includes(const ItemIds& item, const string_t& sPath) = 0;
    // The selection may be another one. Must not end the view.
    virtual void OnSelectionChange() = 0;

protected:
    ~IShellViewEvents() = default;
};

class ShellView final : private IShellBrowserEvents
{
public:
    using FolderMode = IQRL_TabulexConverter::FolderMode;

    // Where a view lies, and what it tells: commands as WM_COMMAND with the number of a
    // FolderCommand, the rest through the events, which outlive the view.
    struct Host
    {
        HWND hPlace;    // its client area is filled
        HWND hCommands; // a window of the same thread
        IShellViewEvents& events;
    };

    // Nothing is selected at first. Null where the folder can't be read or shown.
    static std::unique_ptr<ShellView> Show(const Host& host, ItemIds folder, FolderMode mode);
    ~ShellView();
    ShellView(const ShellView&) = delete;
    ShellView& operator=(const ShellView&) = delete;

    const ItemIds& Folder() const { return m_folder; }
    // The path of what is selected; empty for nothing.
    string_t Selected() const;
    // Selects one thing of this folder, or nothing if it isn't there, and scrolls to it.
    void Select(string_view_t sPath);
    void Fill(); // the host's client area again
    void TakeFocus();

private:
    ShellView(const Host& host, ItemIds folder) : m_host(host), m_folder(std::move(folder)) {}

    // ---- IShellBrowserEvents
    bool Includes(PCUITEMID_CHILD pChild) override;
    void OnSelectionChange() override;
    void OnDefaultAction() override;

    bool Open(FolderMode mode);
    bool IsReadable() const;
    bool MakeWindow(FolderMode mode);
    void SelectNothing();

    const Host m_host;
    const ItemIds m_folder;
    com_ptr<IShellFolder> m_pFolder;
    com_ptr<IShellView> m_pView;
    com_ptr<ShellBrowser> m_pBrowser;
    HWND m_hWnd = nullptr;
};

} // namespace Hesperon::specifics::UILayer
