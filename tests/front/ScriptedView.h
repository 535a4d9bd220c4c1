// A progress view that answers as told and remembers what it showed.
#pragma once

#include <atomic>
#include <functional>
#include <string>
#include <vector>

#include "interfaces/ControlTable.h"
#include "interfaces/NativeHost.h"
#include "tests/support/Text.h"

class ScriptedView final
    : public IQRL_TabulexConverter::ControlTable<IQRL_TabulexConverter::IProgressView>
{
public:
    // What a view does and what it is asked; set before the session starts.
    struct Script
    {
        std::function<void(IQRL_TabulexConverter::IProgressButtons&)> onAsk;
        std::vector<std::string> questions; // "line field text"
        std::vector<std::string> life;      // "show", "hide", "release"
        std::string sFileName;
    };

    // Until TabulexSetProgressViews is called again.
    static void Install(Script& script)
    {
        TabulexSetProgressViews(
            [](void* pContext) -> IProgressView* {
                return new ScriptedView(*static_cast<Script*>(pContext));
            },
            &script);
    }

    void Show(LONG_PTR, IQRL_TabulexConverter::IProgressButtons* pButtons) override
    {
        m_pButtons = pButtons;
        m_script.life.push_back("show");
    }
    void Hide() override { m_script.life.push_back("hide"); }
    void SetText(LONG nControl, const OLECHAR* pszText) override
    {
        ControlTable::SetText(nControl, pszText);
        if (nControl == IQRL_TabulexConverter::ProgressFileName)
            m_script.sFileName = Utf8(pszText);
    }
    void SetPercent(ULONG) override {}
    void AskUser() override
    {
        using namespace IQRL_TabulexConverter;
        m_script.questions.push_back(Utf8(Text(ProgressErrorLine)) + " " +
                                     Utf8(Text(ProgressErrorField)) + " " +
                                     Utf8(Text(ProgressErrorText)));
        if (m_script.onAsk)
            m_script.onAsk(*m_pButtons);
    }
    void Release() override
    {
        m_script.life.push_back("release");
        delete this;
    }

private:
    explicit ScriptedView(Script& script) : m_script(script) {}
    ~ScriptedView() = default;

    Script& m_script;
    IQRL_TabulexConverter::IProgressButtons* m_pButtons = nullptr;
};
