// ModalDriver: drives modal dialogs, boxes and menus from inside the test, on the thread that
// shows them, and bounds the test in time.
//
//   ModalDriver driver;
//   driver.OnDialog([](HWND hDlg) { ... return true; }); // the first one shown
//   driver.OnDialog([](HWND hBox) { ... return true; }); // the second one, and so on
//   DialogBoxParamW(...);                                // the steps run inside its loop
//   EXPECT_TRUE(driver.AllRan());
//
// A step is called again every 10 ms, by a timer of the modal loop, until it gives true; so it
// can wait for a state without sleeping. Where the time limit passes, the program ends with
// status 86 and a list of its windows: nothing waits for a person. One driver at a time.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "platform/component.h"

// The system has an IFolderView of its own; it must be known before names of the component are
// used without their namespace.
#include <shlobj.h>

class ModalDriver
{
public:
    using Step = std::function<bool(HWND hWnd)>;

    explicit ModalDriver(std::chrono::milliseconds limit = std::chrono::seconds(60));
    ~ModalDriver();
    ModalDriver(const ModalDriver&) = delete;
    ModalDriver& operator=(const ModalDriver&) = delete;

    void OnDialog(Step step) { m_steps.push_back(std::move(step)); }
    bool AllRan() const { return m_nNext == m_steps.size() && m_live.empty(); }

private:
    struct Live
    {
        HWND hWnd;
        std::size_t nStep;
    };

    static LRESULT CALLBACK OnHook(int nCode, WPARAM wParam, LPARAM lParam);
    static void CALLBACK OnTimer(HWND hWnd, UINT, UINT_PTR nTimer, DWORD);
    static DWORD WINAPI Watch(void* pThis);
    void Seen(HWND hWnd);
    void RunStep(HWND hWnd);

    HHOOK m_hHook = nullptr;
    HANDLE m_hDone = nullptr;
    HANDLE m_hWatch = nullptr;
    std::chrono::milliseconds m_limit;
    std::vector<Step> m_steps;
    std::vector<Live> m_live;
    std::vector<HWND> m_done; // those whose step is over, while they stand
    std::size_t m_nNext = 0;
};

// Steps that follow each other on one window: each is called until it gives true.
ModalDriver::Step InTurn(std::vector<ModalDriver::Step> steps);

// ---- what steps do

void Press(HWND hDlg, int nControl); // a button, when the step has returned
void PostKey(HWND hWnd, UINT nKey);
std::wstring TextOf(HWND hWnd);
std::wstring TextOf(HWND hDlg, int nControl);
// The menu that is open; null for none.
HMENU OpenMenu();
// Chooses an item of the open menu by its text, through a menu within the menu for each text but
// the last, with the keys of the keyboard. False if there is none of that text.
bool ChooseInMenu(const std::vector<std::wstring>& path);
void PressInMenu(const std::vector<UINT>& keys);
// Any window below hWnd, at any depth, with this control id or of this class; null for none.
HWND Descendant(HWND hWnd, int nControl);
HWND DescendantOfClass(HWND hWnd, const wchar_t* pszClass);
// Lets posted messages through until the state has come, for at most ten seconds.
bool PumpUntil(const std::function<bool()>& state);
// The same for a time, as for a picture of controls that fade in.
void PumpFor(std::chrono::milliseconds time);
// A key to the control that has the keyboard; returns when it has been handled.
void PressKey(UINT nKey);
