// A progress box over fake views, with a clock of the test's own. The test's thread is
// the box's, unless a test starts one.
#pragma once

#include <future>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "src/UIComponents/ProgressDlgNoHTML.h"
#include "tests/ui/FakeParser.h"
#include "tests/ui/FakeView.h"

namespace Hesperon::specifics::UILayer {

struct ProgressTestAccess
{
    static void PutClock(CProgressDlgNoHTML& box, std::function<std::uint32_t()> clock)
    {
        box.m_pState->m_pfnTickCount = std::move(clock);
    }
};

} // namespace Hesperon::specifics::UILayer

namespace ui_test {

using namespace std::chrono_literals;
using namespace Hesperon::specifics::UILayer;
using testing::ElementsAre;
using testing::IsEmpty;

// What the first error does to the view.
inline const Calls kOpenLayout{"show 409",    "show 408", "show 411", "show 410",  "show 413",
                               "show 412",    "show 422", "grow 60",  "move 2 60", "move 414 60",
                               "move 416 60", "show 414", "show 416"};

// Handles all messages that wait for this thread.
inline void Drain()
{
    while (PumpMessages(0ms))
        continue;
}

// Runs a call on a thread of its own while this one dispatches; gives its result when
// nothing is left to dispatch.
template <class Call>
auto OnWorker(Call call)
{
    auto result = std::async(std::launch::async, std::move(call));
    while (result.wait_for(0s) != std::future_status::ready)
        PumpMessages(1ms);
    Drain();
    return result.get();
}

class ProgressFixture : public testing::Test
{
protected:
    ProgressFixture()
    {
        SetProgressViews(&MakeView, this);
        EXPECT_EQ(CreateObject(box), S_OK);
        EXPECT_EQ(CreateObject(parser), S_OK);
        EXPECT_EQ(box->put_DataParser(parser.get()), S_OK);
        ProgressTestAccess::PutClock(*box.get(), [this] { return nNow.load(); });
    }
    ~ProgressFixture() override
    {
        box.reset();
        Drain();
        SetProgressViews(nullptr, nullptr);
    }

    // Opens the box and forgets the calls on its view so far.
    void Open()
    {
        ASSERT_EQ(box->ShowProgress(0), S_OK);
        log.Take();
    }
    void Close()
    {
        ASSERT_EQ(box->Close(), S_OK);
        log.Take();
    }
    // The worker's side.
    HRESULT Progress(ULONGLONG nPos, ULONGLONG nMax)
    {
        return OnWorker([=, this] { return box->DoProgress(nPos, nMax); });
    }
    HRESULT Error(const char* sText = "bad")
    {
        return OnWorker([=, this] { return box->OnError(Bstr(Wide(sText)).get()); });
    }
    HRESULT Error2(LONG_PTR nLine = 7, LONG nField = 3, const char* sText = "bad")
    {
        return OnWorker(
            [=, this] { return box->OnError2(nLine, nField, Bstr(Wide(sText)).get()); });
    }
    // The user presses this button at every question.
    void AnswerWith(ProgressControl button)
    {
        onAsk = [button](FakeView& v) { v.Press(button); };
    }

    std::atomic<std::uint32_t> nNow = 1000;
    ViewLog log;
    FakeView* view = nullptr;                                  // of the box that was opened last
    std::function<void(FakeView&)> onAsk, onShow, onErrorText; // of views that open later
    com_ptr<CProgressDlgNoHTML> box;
    com_ptr<FakeParser> parser;

private:
    static IProgressView* MakeView(void* pContext)
    {
        auto& test = *static_cast<ProgressFixture*>(pContext);
        test.view = new FakeView(test.log);
        test.view->m_onAsk = [&test](FakeView& v) {
            if (const auto call = test.onAsk)
                call(v);
        };
        test.view->m_onShow = test.onShow;
        test.view->m_onErrorText = test.onErrorText;
        return test.view;
    }
};

} // namespace ui_test
