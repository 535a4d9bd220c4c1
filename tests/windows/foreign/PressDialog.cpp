// Presses the buttons of a dialog that another program shows:
//
//   press_dialog Confirms|Cancels PROGRAM ARGUMENT...
//
// It starts the program, waits for its dialog, changes the start row, opens and closes the box of
// dividers, and presses OK or cancel. It says what it saw, and gives the program's status. Where
// something doesn't come within the time limit, the program is ended, and the status is 1.

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <string>

namespace {

enum Control : int
{
    Ok = 300,
    Cancel = 2,
    StartRow = 230,
    Delimiters = 240,
    Comma = 206,
    BoxOk = 1,
};

PROCESS_INFORMATION g_program{};

[[noreturn]] void GiveUp(const char* pszWhat)
{
    std::printf("no %s\n", pszWhat);
    std::fflush(stdout);
    TerminateProcess(g_program.hProcess, 1);
    std::exit(1);
}

template <class Find>
HWND Await(const char* pszWhat, Find find)
{
    constexpr ULONGLONG kLongest = 30'000;
    constexpr DWORD kPause = 20;
    const ULONGLONG nEnd = GetTickCount64() + kLongest;
    while (GetTickCount64() < nEnd && WaitForSingleObject(g_program.hProcess, 0) != WAIT_OBJECT_0) {
        if (const HWND hWnd = find())
            return hWnd;
        Sleep(kPause);
    }
    GiveUp(pszWhat);
}

// Any window below, by the number of the control. The panes' own numbers are 0.
HWND ControlOf(HWND hWnd, int nControl)
{
    struct Search
    {
        int nControl;
        HWND hFound;
    } search{nControl, nullptr};
    EnumChildWindows(
        hWnd,
        [](HWND h, LPARAM lParam) -> BOOL {
            auto& s = *reinterpret_cast<Search*>(lParam);
            if (GetDlgCtrlID(h) == s.nControl)
                s.hFound = h;
            return s.hFound == nullptr;
        },
        reinterpret_cast<LPARAM>(&search));
    return search.hFound;
}

// A dialog of the program that has this control, is on show, and can be used.
HWND DialogWith(int nControl)
{
    for (HWND h = FindWindowExW(nullptr, nullptr, L"#32770", nullptr); h;
         h = FindWindowExW(nullptr, h, L"#32770", nullptr)) {
        DWORD nProcess = 0;
        GetWindowThreadProcessId(h, &nProcess);
        if (nProcess == g_program.dwProcessId && IsWindowVisible(h) && IsWindowEnabled(h) &&
            ControlOf(h, nControl))
            return h;
    }
    return nullptr;
}

std::wstring TextOfControl(HWND hDlg, int nControl)
{
    wchar_t szText[200] = L"";
    SendMessageW(ControlOf(hDlg, nControl), WM_GETTEXT, 200, reinterpret_cast<LPARAM>(szText));
    return szText;
}

void Click(HWND hDlg, int nControl)
{
    PostMessageW(ControlOf(hDlg, nControl), BM_CLICK, 0, 0);
}

bool Start(wchar_t** arguments)
{
    std::wstring sCommand;
    for (; *arguments; ++arguments)
        sCommand += L"\"" + std::wstring(*arguments) + L"\" ";
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    std::fflush(stdout);
    return CreateProcessW(nullptr, sCommand.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                          &startup, &g_program);
}

void Use(bool bConfirm)
{
    // The button is on when the file has been read.
    const HWND hDlg = Await("dialog that is ready", [] {
        const HWND h = DialogWith(Ok);
        return h && IsWindowEnabled(ControlOf(h, Ok)) ? h : nullptr;
    });
    std::printf("start row %ls\n", TextOfControl(hDlg, StartRow).c_str());
    SendMessageW(ControlOf(hDlg, StartRow), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"3"));
    std::printf("start row %ls\n", TextOfControl(hDlg, StartRow).c_str());
    Click(hDlg, Delimiters);
    const HWND hBox = Await("box of dividers", [] { return DialogWith(Comma); });
    std::printf("comma %s\n",
                SendMessageW(ControlOf(hBox, Comma), BM_GETCHECK, 0, 0) ? "ticked" : "not ticked");
    Click(hBox, BoxOk);
    Await("end of the box", [&] { return IsWindow(hBox) ? nullptr : hDlg; });
    const HWND hAgain = Await("dialog behind the box", [] { return DialogWith(Ok); });
    std::fflush(stdout);
    Click(hAgain, bConfirm ? Ok : Cancel);
}

} // namespace

int wmain(int argc, wchar_t** argv)
{
    if (argc < 3 || !Start(argv + 2))
        return 2;
    Use(std::wstring(argv[1]) == L"Confirms");
    constexpr DWORD kLongest = 30'000;
    if (WaitForSingleObject(g_program.hProcess, kLongest) != WAIT_OBJECT_0)
        GiveUp("end of the program");
    DWORD nStatus = 1;
    GetExitCodeProcess(g_program.hProcess, &nStatus);
    return static_cast<int>(nStatus);
}
