// ConsoleProgress: what a progress box shows itself on in a program without windows.
// It tells bad lines on standard error and has each of them skipped.
#pragma once

#include <cstdio>
#include <map>
#include <string>

#include "../common/RowSink.h"
#include "interfaces/IProgressView.h"

class ConsoleProgress final : public IQRL_TabulexConverter::IProgressView
{
public:
    using Control = IQRL_TabulexConverter::ProgressControl;

    // For TabulexSetProgressViews.
    static IProgressView* Make(void*) { return new ConsoleProgress; }

    void Show(LONG_PTR, IQRL_TabulexConverter::IProgressButtons* pButtons) override
    {
        m_pButtons = pButtons;
    }
    void SetText(Control control, const OLECHAR* pszText) override
    {
        m_texts[control] = Utf8(pszText);
    }
    void AskUser() override
    {
        using namespace IQRL_TabulexConverter;
        std::fprintf(stderr, "line %s, field %s: %s\n", m_texts[ProgressErrorLine].c_str(),
                     m_texts[ProgressErrorField].c_str(), m_texts[ProgressErrorText].c_str());
        m_pButtons->Press(ProgressSkip);
    }
    void Release() override { delete this; }

    // ---- looks, which a console lacks

    void Hide() override {}
    void SetCaption(const OLECHAR*) override {}
    void SetPercent(ULONG) override {}
    void SetEnabled(Control, bool) override {}
    void SetShown(Control, bool) override {}
    LONG Top(Control) override { return 0; }
    void MoveDown(Control, LONG) override {}
    void GrowHeight(LONG) override {}

private:
    ~ConsoleProgress() = default;

    IQRL_TabulexConverter::IProgressButtons* m_pButtons = nullptr;
    std::map<Control, std::string> m_texts;
};
