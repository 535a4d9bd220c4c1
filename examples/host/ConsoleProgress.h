// ConsoleProgress: what a progress box shows itself on in a program without windows.
// It prints bad lines on standard error and has each of them skipped.
#pragma once

#include <cstdio>

#include "../common/RowSink.h"
#include "interfaces/ControlTable.h"
#include "interfaces/IProgressView.h"

class ConsoleProgress final
    : public IQRL_TabulexConverter::ControlTable<IQRL_TabulexConverter::IProgressView>
{
public:
    // For TabulexSetProgressViews.
    static IProgressView* Make(void*) { return new ConsoleProgress; }

    void Show(LONG_PTR, IQRL_TabulexConverter::IProgressButtons* pButtons) override
    {
        m_pButtons = pButtons;
    }
    void Hide() override {}
    void SetPercent(ULONG) override {}
    void AskUser() override
    {
        using namespace IQRL_TabulexConverter;
        std::fprintf(stderr, "line %s, field %s: %s\n", Utf8(Text(ProgressErrorLine)).c_str(),
                     Utf8(Text(ProgressErrorField)).c_str(), Utf8(Text(ProgressErrorText)).c_str());
        m_pButtons->Press(ProgressSkip);
    }
    void Release() override { delete this; }

private:
    ~ConsoleProgress() = default;

    IQRL_TabulexConverter::IProgressButtons* m_pButtons = nullptr;
};
