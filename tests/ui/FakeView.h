// A view that keeps what it is told as texts, and presses what the test wants.
#pragma once

#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "src/UIComponents/ProgressView.h"
#include "tests/data/Text.h"

namespace ui_test {

using namespace IQRL_TabulexConverter;
using Calls = std::vector<std::string>;

inline Calls operator+(Calls calls, const Calls& more)
{
    calls.insert(calls.end(), more.begin(), more.end());
    return calls;
}

// What the views of a test have been told; outlives them.
class ViewLog
{
public:
    void Add(std::string sCall)
    {
        std::lock_guard lock(m_lock);
        m_calls.push_back(std::move(sCall));
    }
    // What has come since the last time.
    Calls Take()
    {
        std::lock_guard lock(m_lock);
        return std::exchange(m_calls, {});
    }

private:
    std::mutex m_lock;
    Calls m_calls;
};

class FakeView final : public IProgressView
{
public:
    explicit FakeView(ViewLog& log) : m_log(log) {}

    // Where the press comes from; the view may be gone when they return.
    std::function<void(FakeView&)> m_onAsk, m_onShow, m_onErrorText;

    void Press(ProgressControl button) { m_pButtons->Press(button); }

    void Show(LONG_PTR hwndParent, IProgressButtons* pButtons) override
    {
        m_pButtons = pButtons;
        Told("open over " + std::to_string(hwndParent));
        Run(m_onShow);
    }
    void Hide() override { Told("close"); }
    void SetCaption(const OLECHAR* pszText) override { Told("caption " + Utf8(pszText)); }
    void SetText(ProgressControl control, const OLECHAR* pszText) override
    {
        Told("text", control, Utf8(pszText));
        if (control == ProgressErrorText)
            Run(m_onErrorText);
    }
    void SetPercent(ULONG nPercent) override { Told("percent " + std::to_string(nPercent)); }
    void SetEnabled(ProgressControl control, bool bEnabled) override
    {
        Told(bEnabled ? "enable" : "disable", control);
    }
    void SetShown(ProgressControl control, bool bShown) override
    {
        Told(bShown ? "show" : "hide", control);
    }
    LONG Top(ProgressControl control) override
    {
        return control == ProgressErrorTop ? 100 : control == ProgressErrorBottom ? 160 : -1;
    }
    void MoveDown(ProgressControl control, LONG nDelta) override
    {
        Told("move", control, std::to_string(nDelta));
    }
    void GrowHeight(LONG nDelta) override { Told("grow " + std::to_string(nDelta)); }
    void AskUser() override
    {
        Told("ask");
        Run(m_onAsk);
    }
    void Release() override
    {
        Told("release");
        delete this;
    }

private:
    void Told(std::string sCall)
    {
        m_log.Add(m_thread == std::this_thread::get_id() ? std::move(sCall)
                                                         : sCall + " on another thread");
    }
    void Told(const std::string& sVerb, ProgressControl control, const std::string& sValue = {})
    {
        Told(sVerb + " " + std::to_string(control) + (sValue.empty() ? "" : " " + sValue));
    }
    void Run(const std::function<void(FakeView&)>& call)
    {
        if (const auto own = call)
            own(*this);
    }

    ViewLog& m_log;
    const std::thread::id m_thread = std::this_thread::get_id();
    IProgressButtons* m_pButtons = nullptr;
};

} // namespace ui_test
