#include <gmock/gmock.h>

#include <functional>

#include "diagnostics/FaultmereClient.h"
#include "diagnostics/ReportLibrary.h"
#include "diagnostics/Reports.h"
#include "tests/diagnostics/fake_root.h"

namespace {

using namespace FaultmereUtil;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(ReportClient, ThereIsOneForTheProcess)
{
    EXPECT_EQ(&FaultmereClient::Instance(), &FaultmereClient::Instance());
}

TEST(ReportClient, TheSessionIsOpenedOnce)
{
    ReportDiary diary;
    TestClient client(diary);
    EXPECT_FALSE(client.Root());
    EXPECT_EQ(S_OK, client.Initialise());
    const std::size_t nLines = diary.lines.size();
    EXPECT_EQ(S_OK, client.Initialise());
    EXPECT_EQ(nLines, diary.lines.size());
    EXPECT_EQ(1, client.m_nLoads);
    EXPECT_TRUE(client.Root());
}

TEST(ReportClient, ARefusedSessionFallsBackToTheClientsAddress)
{
    for (const char* szRefused : {"CREATE", "ModuleName", "INIT"}) {
        SCOPED_TRACE(szRefused);
        ReportDiary diary;
        diary.answers[szRefused] = E_FAIL;
        TestClient client(diary);
        const FaultmereClient* const pClient = &client;
        char szAddress[16];
        std::snprintf(szAddress, sizeof szAddress, "%i",
                      static_cast<int>(reinterpret_cast<std::intptr_t>(pClient)));
        EXPECT_EQ(S_OK, client.Initialise());
        EXPECT_EQ(std::string("fallback ") + szAddress, diary.lines.back());
        EXPECT_TRUE(client.Root());
    }
}

TEST(ReportClient, WithoutSessionAndFallbackTheLibraryIsLetGo)
{
    ReportDiary diary;
    diary.answers = {{"INIT", E_FAIL}, {"fallback", E_ACCESSDENIED}};
    TestClient client(diary);
    EXPECT_EQ(E_ACCESSDENIED, client.Initialise());
    EXPECT_FALSE(client.Root());
    EXPECT_EQ(0, diary.nLiving);
    diary.lines.clear();
    EXPECT_TRUE(FAILED(TracerClass(client, std::source_location::current())("message")));
    EXPECT_EQ(S_OK, client.Initialise());
    client.Shutdown();
    EXPECT_THAT(diary.lines, IsEmpty());
    EXPECT_EQ(1, client.m_nLoads);
}

struct Command
{
    const char* szText;
    HRESULT (FaultmereClient::*send)();
};

constexpr Command kCommands[] = {
    {"IS CLEAN", &FaultmereClient::IsClean},
    {"DO CLEAN", &FaultmereClient::DoClean},
    {"REPORTDIALOG", &FaultmereClient::ReportDialog},
    {"TRACEENABLED", &FaultmereClient::TraceEnabled},
};

TEST(ReportClient, CommandsGoToTheLibraryAndGiveItsAnswer)
{
    for (const Command& row : kCommands) {
        SCOPED_TRACE(row.szText);
        OpenClient open;
        open.diary.answers[row.szText] = S_FALSE;
        EXPECT_EQ(S_FALSE, (open.client.*row.send)());
        EXPECT_THAT(open.diary.lines, ElementsAre(row.szText));
    }
}

TEST(ReportClient, CommandsOpenTheSession)
{
    for (const Command& row : kCommands) {
        SCOPED_TRACE(row.szText);
        ReportDiary diary;
        TestClient client(diary);
        EXPECT_EQ(S_OK, (client.*row.send)());
        EXPECT_THAT(diary.lines, Contains("INIT(bag)"));
        EXPECT_EQ(row.szText, diary.lines.back());
    }
}

TEST(ReportClient, CommandsFailWithoutALibrary)
{
    for (const Command& row : kCommands) {
        SCOPED_TRACE(row.szText);
        TestClient client;
        EXPECT_EQ(E_FAIL, (client.*row.send)());
    }
}

TEST(ReportClient, TerminateTellsTheLibraryAndEndsTheProcess)
{
    OpenClient open;
    open.client.Terminate();
    EXPECT_THAT(open.diary.lines, ElementsAre("TERMINATE"));
    EXPECT_EQ(1, open.client.m_nEnds);
}

TEST(ReportClient, ShutdownEndsTheSessionForGood)
{
    OpenClient open;
    open.client.Shutdown();
    open.client.Shutdown();
    EXPECT_THAT(open.diary.lines, ElementsAre("DEINIT"));
    EXPECT_EQ(0, open.diary.nLiving);
    EXPECT_EQ(E_FAIL, open.client.IsClean());
    EXPECT_EQ(1, open.client.m_nLoads);
}

struct CodeRow
{
    HRESULT code;
    int nBreaks, nEnds;
};

constexpr CodeRow kCodes[] = {
    {kBreak, 1, 0}, {kTerminate, 0, 1}, {kGoOn, 0, 0}, {E_FAIL, 0, 0}, {2, 0, 0},
};

TEST(ReportClient, CodesAreObeyed)
{
    for (const CodeRow& row : kCodes) {
        SCOPED_TRACE(row.code);
        OpenClient open;
        open.client.Obey(row.code);
        EXPECT_EQ(row.nBreaks, open.client.m_nBreaks);
        EXPECT_EQ(row.nEnds, open.client.m_nEnds);
        EXPECT_EQ(row.nEnds, static_cast<int>(open.diary.lines.size()));
        EXPECT_EQ(row.nEnds == 0, static_cast<bool>(open.client.Root()));
    }
}

TEST(ReportClient, TheEndIsToldToALibraryThatWasNotInSession)
{
    ReportDiary diary;
    TestClient client(diary);
    client.Obey(kTerminate);
    EXPECT_THAT(diary.lines, Contains("INIT(bag)"));
    EXPECT_EQ("DEINIT", diary.lines.back());
    EXPECT_EQ(1, client.m_nEnds);
}

TEST(ReportLibrary, TheRootComesFromTheFile)
{
    com_ptr<IReportRoot> root;
    ASSERT_EQ(S_OK, LoadReportRoot(FAKE_REPORT_LIBRARY, root));
    EXPECT_EQ(S_FALSE, root->Command(OLESTR("IS CLEAN"), nullptr, nullptr));
    com_ptr<IReportRoot> again;
    ASSERT_EQ(S_OK, LoadReportRoot(FAKE_REPORT_LIBRARY, again));
    EXPECT_EQ(root, again);
}

TEST(ReportLibrary, AMissingFileIsAFailure)
{
    com_ptr<IReportRoot> root;
    EXPECT_EQ(E_FAIL, LoadReportRoot("no such library", root));
    EXPECT_FALSE(root);
}

} // namespace
