// A progress view that answers as told and remembers what it showed.
#pragma once

#include <atomic>
#include <functional>
#include <string>
#include <vector>

#include "interfaces/NativeHost.h"
#include "tests/data/Text.h"

class ScriptedView final : public IQRL_TabulexConverter::IProgressView
{
public:
    using Control = IQRL_TabulexConverter::ProgressControl;

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
    void SetCaption(const OLECHAR*) override {}
    void SetText(Control control, const OLECHAR* pszText) override
    {
        using namespace IQRL_TabulexConverter;
        const std::string text = Utf8(pszText);
        if (control == ProgressFileName)
            m_script.sFileName = text;
        else if (control == ProgressErrorLine)
            m_sLine = text;
        else if (control == ProgressErrorField)
            m_sField = text;
        else if (control == ProgressErrorText)
            m_sError = text;
    }
    void SetPercent(ULONG) override {}
    void SetEnabled(Control, bool) override {}
    void SetShown(Control, bool) override {}
    LONG Top(Control) override { return 0; }
    void MoveDown(Control, LONG) override {}
    void GrowHeight(LONG) override {}
    void AskUser() override
    {
        m_script.questions.push_back(m_sLine + " " + m_sField + " " + m_sError);
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
    std::string m_sLine, m_sField, m_sError;
};
