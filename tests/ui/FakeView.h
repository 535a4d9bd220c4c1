// A view that writes down every call as a text, and presses the buttons that a test wants.
#pragma once

#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "interfaces/ControlTable.h"
#include "src/UIComponents/views/ProgressView.h"
#include "tests/support/Text.h"

namespace ui_test {

using namespace IQRL_TabulexConverter;
using Calls = std::vector<std::string>;

inline Calls operator+(Calls calls, const Calls& more)
{
    calls.insert(calls.end(), more.begin(), more.end());
    return calls;
}

// The calls on the views of a test; outlives them.
class ViewLog
{
public:
    void Add(std::string sCall)
    {
        std::lock_guard lock(m_lock);
        m_calls.push_back(std::move(sCall));
    }
    // The calls since the last Take.
    Calls Take()
    {
        std::lock_guard lock(m_lock);
        return std::exchange(m_calls, {});
    }

private:
    std::mutex m_lock;
    Calls m_calls;
};

// A move is written down as the distance downwards, one of the whole view as its growth.
class FakeView final : public ControlTable<IProgressView>
{
public:
    explicit FakeView(ViewLog& log) : m_log(log)
    {
        ControlTable::Move(ProgressErrorTop, {0, 100, 0, 102});
        ControlTable::Move(ProgressErrorBottom, {0, 160, 0, 162});
    }

    // Called at these moments, to press a button; the view may be gone when they return.
    std::function<void(FakeView&)> m_onAsk, m_onShow, m_onErrorText;

    void Press(ProgressControl button) { m_pButtons->Press(button); }

    void Show(LONG_PTR hwndParent, IProgressButtons* pButtons) override
    {
        m_pButtons = pButtons;
        Told("open over " + std::to_string(hwndParent));
        Run(m_onShow);
    }
    void Hide() override { Told("close"); }
    void SetText(LONG nControl, const OLECHAR* pszText) override
    {
        ControlTable::SetText(nControl, pszText);
        if (nControl == kWholeView)
            Told("caption " + Utf8(pszText));
        else
            Told("text", nControl, Utf8(pszText));
        if (nControl == ProgressErrorText)
            Run(m_onErrorText);
    }
    void SetPercent(ULONG nPercent) override { Told("percent " + std::to_string(nPercent)); }
    void SetEnabled(LONG nControl, bool bEnabled) override
    {
        ControlTable::SetEnabled(nControl, bEnabled);
        Told(bEnabled ? "enable" : "disable", nControl);
    }
    void SetShown(LONG nControl, bool bShown) override
    {
        ControlTable::SetShown(nControl, bShown);
        Told(bShown ? "show" : "hide", nControl);
    }
    void Move(LONG nControl, const ControlPlace& place) override
    {
        const ControlPlace before = Place(nControl);
        ControlTable::Move(nControl, place);
        if (nControl == kWholeView)
            Told("grow " + std::to_string(place.nBottom - before.nBottom));
        else
            Told("move", nControl, std::to_string(place.nTop - before.nTop));
    }
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
    ~FakeView() = default;

    void Told(std::string sCall)
    {
        m_log.Add(m_thread == std::this_thread::get_id() ? std::move(sCall)
                                                         : sCall + " on another thread");
    }
    void Told(const std::string& sVerb, LONG nControl, const std::string& sValue = {})
    {
        Told(sVerb + " " + std::to_string(nControl) + (sValue.empty() ? "" : " " + sValue));
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
