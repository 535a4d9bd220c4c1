// A host that opens the import dialog in real windows, and the person in front of it.
#pragma once

#include <commctrl.h>

#include "interfaces/IDialogViews.h"
#include "src/UIComponents/views/DialogViews.h"
#include "src/UIComponents/windows/SystemDialogViews.h"
#include "tests/front/ScriptedHost.h"
#include "tests/windows/dialogs/ModalDriver.h"
#include "tests/windows/dialogs/Pictures.h"

// Waits inside a step: what the dialog's thread is sent and posted meanwhile gets through.
class WindowSession : public FrontFixture
{
protected:
    using DialogViews = Hesperon::specifics::UILayer::SystemDialogViews;

    WindowSession() { Hesperon::specifics::UILayer::SetDialogViews(&m_views); }
    ~WindowSession() override { Hesperon::specifics::UILayer::SetDialogViews(nullptr); }

    static std::wstring Sample(const char* pszName)
    {
        std::wstring sPath = Wide(std::string("Z:") + SAMPLES + "/" + pszName);
        std::ranges::replace(sPath, L'/', L'\\');
        return sPath;
    }
    void OpenSample(const char* pszName)
    {
        ASSERT_EQ(front->put_FileName(Bstr(Sample(pszName)).get()), S_OK);
    }
    // The person presses 300 or 2 in a step, which ends this.
    VARIANT_BOOL Analyse(HWND hParent = nullptr)
    {
        VARIANT_BOOL bStatus = VARIANT_FALSE;
        EXPECT_EQ(front->DoAnalyse(&bStatus, reinterpret_cast<LONG_PTR>(hParent)), S_OK);
        return bStatus;
    }
    std::size_t Convert()
    {
        sink = NewSink();
        EXPECT_EQ(front->DoConvert(sink.get(), 0), S_OK);
        PumpToTheEnd();
        return sink->rows.size();
    }

    // ---- what the person does

    // As Tab does it: a button becomes the default one.
    static void Focus(HWND hDlg, int nControl)
    {
        SendMessageW(hDlg, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(Descendant(hDlg, nControl)),
                     TRUE);
    }
    static void Type(HWND hDlg, int nControl, const wchar_t* pszText)
    {
        SendMessageW(Descendant(hDlg, nControl), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(pszText));
    }
    static void Choose(HWND hDlg, int nControl, int nRow)
    {
        const HWND hList = Descendant(hDlg, nControl);
        SendMessageW(hList, CB_SETCURSEL, static_cast<WPARAM>(nRow), 0);
        SendMessageW(GetParent(hList), WM_COMMAND, MAKEWPARAM(nControl, CBN_SELCHANGE),
                     reinterpret_cast<LPARAM>(hList));
    }
    static void PickDate(HWND hDlg, int nControl, SYSTEMTIME date)
    {
        const HWND hPicker = Descendant(hDlg, nControl);
        SendMessageW(hPicker, DTM_SETSYSTEMTIME, GDT_VALID, reinterpret_cast<LPARAM>(&date));
        NMDATETIMECHANGE change{};
        change.nmhdr = {hPicker, static_cast<UINT_PTR>(nControl),
                        static_cast<UINT>(DTN_DATETIMECHANGE)};
        change.dwFlags = GDT_VALID;
        change.st = date;
        SendMessageW(GetParent(hPicker), WM_NOTIFY, static_cast<WPARAM>(nControl),
                     reinterpret_cast<LPARAM>(&change));
    }
    // The list of the records' grid, which is below that of the lines.
    static HWND Records(HWND hDlg)
    {
        HWND hLowest = nullptr;
        for (HWND h : ListsOf(hDlg))
            if (!hLowest || TopOf(h) > TopOf(hLowest))
                hLowest = h;
        return hLowest;
    }
    static HWND Lines(HWND hDlg)
    {
        const HWND hPane = GetParent(Descendant(hDlg, IQRL_TabulexConverter::ContentLanguage));
        return DescendantOfClass(hPane, L"SysListView32");
    }
    static int RowsOf(HWND hList)
    {
        return static_cast<int>(SendMessageW(hList, LVM_GETITEMCOUNT, 0, 0));
    }
    // Until the worker has counted the file.
    static bool HasRows(HWND hDlg) { return RowsOf(Records(hDlg)) > 0; }
    static std::wstring Heading(HWND hDlg, int nColumn)
    {
        wchar_t szText[200] = L"";
        HDITEMW item{};
        item.mask = HDI_TEXT;
        item.pszText = szText;
        item.cchTextMax = 200;
        SendMessageW(HeaderOf(hDlg), HDM_GETITEMW, static_cast<WPARAM>(nColumn),
                     reinterpret_cast<LPARAM>(&item));
        return szText;
    }
    static HWND HeaderOf(HWND hDlg)
    {
        return reinterpret_cast<HWND>(SendMessageW(Records(hDlg), LVM_GETHEADER, 0, 0));
    }
    // A press on a heading, which opens its menu when the step has returned.
    static void PressHeading(HWND hDlg, int nColumn)
    {
        const HWND hHeader = HeaderOf(hDlg);
        RECT rect{};
        SendMessageW(hHeader, HDM_GETITEMRECT, static_cast<WPARAM>(nColumn),
                     reinterpret_cast<LPARAM>(&rect));
        const LPARAM at = MAKELPARAM((rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2);
        PostMessageW(hHeader, WM_LBUTTONDOWN, MK_LBUTTON, at);
        PostMessageW(hHeader, WM_LBUTTONUP, 0, at);
    }
    static RECT RectOf(HWND hDlg, int nControl)
    {
        RECT rect{};
        GetWindowRect(Descendant(hDlg, nControl), &rect);
        return rect;
    }

    DialogViews m_views;
    ModalDriver m_driver;

private:
    static LONG TopOf(HWND hWnd)
    {
        RECT rect{};
        GetWindowRect(hWnd, &rect);
        return rect.top;
    }
    static std::vector<HWND> ListsOf(HWND hDlg)
    {
        std::vector<HWND> lists;
        EnumChildWindows(
            hDlg,
            [](HWND hWnd, LPARAM lParam) -> BOOL {
                wchar_t szClass[32] = L"";
                GetClassNameW(hWnd, szClass, 32);
                if (lstrcmpiW(szClass, L"SysListView32") == 0)
                    reinterpret_cast<std::vector<HWND>*>(lParam)->push_back(hWnd);
                return TRUE;
            },
            reinterpret_cast<LPARAM>(&lists));
        return lists;
    }
};
