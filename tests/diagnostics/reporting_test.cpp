// Reports as all code makes them, without an installed report library.

#include <gmock/gmock.h>

#include <atomic>
#include <stdexcept>
#include <thread>

#include "diagnostics/FaultmereClient.h"
#include "diagnostics/Reports.h"
#include "platform/threads/CriticalSection.h"
#include "tests/diagnostics/fake_root.h"

namespace {

using namespace FaultmereUtil;

struct Call
{
    const char* szName;
    void (*make)();
    const char* szText;
    Report::Kind kind;
};

constexpr Call kCalls[] = {
    {"ReportAssertion", [] { ReportAssertion("pVal"); }, "pVal", Report::Kind::Assertion},
    {"ReportFailure", [] { ReportFailure("hr", E_FAIL); }, "hr", Report::Kind::Assertion},
    {"Assert", [] { Assert(false, "n > 0"); }, "n > 0", Report::Kind::Assertion},
    {"AssertOk", [] { AssertOk(E_FAIL); }, "(((HRESULT)(hr)) >= 0)", Report::Kind::Assertion},
    {"Trace", [] { Trace("message"); }, "message", Report::Kind::Trace},
};

// Installs a receiver for the length of a test.
class Listening
{
public:
    explicit Listening(Receiver receiver) : m_before(SetReceiver(std::move(receiver))) {}
    ~Listening() { SetReceiver(m_before); }
    Listening(const Listening&) = delete;

private:
    Receiver m_before;
};

class Heard
{
public:
    std::vector<Report> reports;

private:
    Listening m_listening{[this](const Report& report) {
        reports.push_back(report);
        return kGoOn;
    }};
};

TEST(Reporting, AnAbsentLibraryIsLookedForOnce)
{
    TestClient client;
    for (int n = 0; n < 1000; ++n) {
        EXPECT_EQ(E_FAIL, AsserterClass(client, std::source_location::current())("pVal"));
        EXPECT_EQ(E_FAIL, TracerClass(client, std::source_location::current())("message"));
        EXPECT_EQ(E_FAIL, ReportException(client, {}));
    }
    EXPECT_EQ(1, client.m_nLoads);
}

TEST(Reporting, WithoutLibraryAndReceiverNothingIsShown)
{
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    for (const Call& row : kCalls)
        row.make();
    EXPECT_EQ("", testing::internal::GetCapturedStdout());
    EXPECT_EQ("", testing::internal::GetCapturedStderr());
}

TEST(Reporting, TheReceiverHearsTextPlaceAndThread)
{
    for (const Call& row : kCalls) {
        SCOPED_TRACE(row.szName);
        Heard heard;
        row.make();
        ASSERT_EQ(1u, heard.reports.size());
        const Report& report = heard.reports[0];
        EXPECT_EQ(row.kind, report.kind);
        EXPECT_EQ(row.szText, report.sText);
        EXPECT_THAT(report.place.file_name(), testing::EndsWith("reporting_test.cpp"));
        EXPECT_NE(0u, report.place.line());
        EXPECT_EQ(CurrentThreadId(), report.nThread);
    }
}

TEST(Reporting, TheLineIsThatOfTheCaller)
{
    Heard heard;
    const auto place = std::source_location::current();
    Assert(false, "pVal");
    ASSERT_EQ(1u, heard.reports.size());
    EXPECT_EQ(place.line() + 1, heard.reports[0].place.line());
    EXPECT_STREQ(place.function_name(), heard.reports[0].place.function_name());
}

TEST(Reporting, AReportIsMadeOnItsOwnThread)
{
    Heard heard;
    std::uint32_t nThread = 0;
    std::thread([&] {
        nThread = CurrentThreadId();
        Trace("message");
    }).join();
    ASSERT_EQ(1u, heard.reports.size());
    EXPECT_EQ(nThread, heard.reports[0].nThread);
    EXPECT_NE(CurrentThreadId(), heard.reports[0].nThread);
}

TEST(Reporting, WhatHoldsIsNotReported)
{
    Heard heard;
    EXPECT_TRUE(Assert(true, "n > 0"));
    EXPECT_EQ(S_OK, AssertOk(S_OK));
    EXPECT_EQ(S_FALSE, AssertOk(S_FALSE));
    EXPECT_TRUE(heard.reports.empty());
}

TEST(Reporting, ChecksGiveBackWhatTheyCheck)
{
    EXPECT_FALSE(Assert(false, "n > 0"));
    EXPECT_EQ(E_INVALIDARG, AssertOk(E_INVALIDARG));
}

TEST(Reporting, TheLastSystemErrorIsKept)
{
    for (const bool bHeard : {false, true})
        for (const Call& row : kCalls) {
            SCOPED_TRACE(row.szName);
            const Listening listening(bHeard ? Receiver([](const Report&) {
                SetLastSystemError(5);
                return kGoOn;
            })
                                             : Receiver());
            SetLastSystemError(17);
            row.make();
            EXPECT_EQ(17, LastSystemError());
        }
}

TEST(Reporting, TheLastSystemErrorIsKeptByTheReportObjects)
{
    OpenClient open;
    SetLastSystemError(17);
    {
        AsserterClass asserter(open.client, std::source_location::current());
        SetLastSystemError(5);
    }
    EXPECT_EQ(17, LastSystemError());
    {
        TracerClass tracer(open.client, std::source_location::current());
        SetLastSystemError(5);
    }
    EXPECT_EQ(17, LastSystemError());
}

TEST(Reporting, AReceiverGivesTheOneBefore)
{
    int nFirst = 0;
    const Listening first([&](const Report&) {
        ++nFirst;
        return kGoOn;
    });
    const Receiver before = SetReceiver({});
    Trace("unheard");
    EXPECT_EQ(0, nFirst);
    EXPECT_FALSE(SetReceiver(before));
    Trace("heard");
    EXPECT_EQ(1, nFirst);
}

TEST(Reporting, AReceiverThatThrowsDisturbsNobody)
{
    int nHeard = 0;
    const Listening listening([&](const Report&) -> HRESULT {
        ++nHeard;
        throw std::runtime_error("receiver");
    });
    for (const Call& row : kCalls)
        row.make();
    EXPECT_EQ(static_cast<int>(std::size(kCalls)), nHeard);
}

TEST(Reporting, AReceiversOwnReportsAreDropped)
{
    int nHeard = 0;
    const Listening listening([&](const Report&) {
        ++nHeard;
        ReportAssertion("from within");
        return kGoOn;
    });
    ReportAssertion("pVal");
    ReportAssertion("pVal");
    EXPECT_EQ(2, nHeard);
}

TEST(Reporting, AReceiverMayReplaceItself)
{
    int nHeard = 0;
    const std::string sLong(100, 'x'); // part of the closure, read after the replacement
    std::string sRead;
    const Listening listening([&, sLong](const Report&) {
        SetReceiver({});
        ++nHeard;
        sRead = sLong;
        return kGoOn;
    });
    Trace("heard");
    Trace("unheard");
    EXPECT_EQ(1, nHeard);
    EXPECT_EQ(sLong, sRead);
}

TEST(Reporting, AReportUnderALockOfTheCallerLeavesItHeld)
{
    CriticalSection lock;
    const LockGuard guard(lock);
    Heard heard;
    for (const Call& row : kCalls)
        row.make();
    EXPECT_EQ(std::size(kCalls), heard.reports.size());
    bool bTaken = true;
    std::thread([&] { bTaken = lock.try_lock(); }).join();
    EXPECT_FALSE(bTaken);
}

TEST(Reporting, ReportsOfManyThreadsAreHeardOneByOne)
{
    constexpr int kThreads = 4, kReports = 500;
    int nHeard = 0; // guarded by the receiver's lock
    std::atomic<bool> bInside = false, bTwoInside = false;
    const Listening listening([&](const Report&) {
        bTwoInside = bTwoInside || bInside.exchange(true);
        ++nHeard;
        bInside = false;
        return kGoOn;
    });
    std::vector<std::thread> threads;
    for (int n = 0; n < kThreads; ++n)
        threads.emplace_back([] {
            for (int i = 0; i < kReports; ++i)
                Trace("message");
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(kThreads * kReports, nHeard);
    EXPECT_FALSE(bTwoInside);
}

TEST(Reporting, ThreadsThatReportFirstAtTheSameTimeLoadOnce)
{
    ReportDiary diary;
    TestClient client(diary);
    std::atomic<int> nWithLibrary = 0;
    std::vector<std::thread> threads;
    for (int n = 0; n < 4; ++n)
        threads.emplace_back([&] {
            client.Initialise();
            nWithLibrary += static_cast<bool>(client.Root());
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(1, client.m_nLoads);
    EXPECT_EQ(4, nWithLibrary);
}

class ReportingDeathTest : public testing::Test
{
protected:
    ReportingDeathTest() { testing::FLAGS_gtest_death_test_style = "threadsafe"; }

    static void ReportTo(HRESULT answer)
    {
        const Listening listening([=](const Report& report) {
            std::fprintf(stderr, "heard %s\n", report.sText.c_str());
            return answer;
        });
        ReportAssertion("pVal");
        std::exit(0); // not reached where the answer ends the process
    }
};

TEST_F(ReportingDeathTest, AReceiverCanEndTheProcess)
{
    EXPECT_DEATH(ReportTo(kTerminate), "heard pVal");
}

TEST_F(ReportingDeathTest, AReceiverCanBreak)
{
    EXPECT_DEATH(ReportTo(kBreak), "heard pVal");
}

TEST_F(ReportingDeathTest, ControlGoesOnBehindAnAssertion)
{
    EXPECT_EXIT(ReportTo(kGoOn), testing::ExitedWithCode(0), "heard pVal");
}

} // namespace
