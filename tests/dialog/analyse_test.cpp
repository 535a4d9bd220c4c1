// DoAnalyse: what goes into the import dialog, and what comes back.

#include "interfaces/FieldsAndResolutions.h"
#include "interfaces/IDataParser.h"
#include "interfaces/IRecordParser.h"
#include "module/Module.h"
#include "src/UIComponents/controls/FolderList.h"
#include "src/parsing/EnvironmentDocument.h"
#include "tests/dialog/fakes/FakeViews.h"
#include "tests/front/ProcessCounts.h"
#include "tests/front/ScriptedHost.h"
#include "tests/support/Objects.h"
#include "tests/support/Seed.h"

using namespace dialog_test;

namespace {

class Analyse : public FrontFixture
{
protected:
    // Gives the status; the user does this.
    VARIANT_BOOL Run(std::function<void(FakeDialog&)> user, LONG_PTR hwndParent = 0)
    {
        m_views.m_onRun = std::move(user);
        VARIANT_BOOL bStatus = 7;
        EXPECT_EQ(front->DoAnalyse(&bStatus, hwndParent), S_OK);
        return bStatus;
    }
    com_ptr<IDataParser> Parser()
    {
        com_ptr<IDispatch> pParser;
        front->get_DataParser(pParser.put());
        return pParser.as<IDataParser>();
    }
    LONG Chosen(HRESULT (STDMETHODCALLTYPE IqrlTabulexConvertor::*get)(LONG*))
    {
        LONG nValue = -99;
        (front.get()->*get)(&nValue);
        return nValue;
    }

    FakeViews m_views;
};

TEST_F(Analyse, OkTakesTheChoices)
{
    for (const LONG nId : {1, 2}) {
        front->AddFieldTemplate(nId, Bstr(Wide("Fields " + std::to_string(nId))).get());
        front->AddTimeZoneTemplate(nId, Bstr(Wide("Zone " + std::to_string(nId))).get());
    }
    const TempFile file(Minutes(50));
    ASSERT_EQ(Open(*front.get(), file), S_OK);
    EXPECT_EQ(Run([](FakeDialog& dialog) {
                  FakePane& pane = dialog.Pane(DialogSettings);
                  pane.Choose(SettingsField, 1);
                  pane.Choose(SettingsTimeZone, 0);
                  EXPECT_EQ(pane.ChosenText(SettingsResolution), "Minutes");
                  EXPECT_TRUE(dialog.IsEnabled(ImportOk));
                  dialog.Click(ImportOk);
              }),
              VARIANT_TRUE);
    EXPECT_EQ(Chosen(&IqrlTabulexConvertor::get_FieldTemplate), 2);
    EXPECT_EQ(Chosen(&IqrlTabulexConvertor::get_TimeZoneTemplate), 1);
    EXPECT_EQ(Chosen(&IqrlTabulexConvertor::get_ResolutionTemplate), 2);
    EXPECT_EQ(Chosen(&IqrlTabulexConvertor::get_ResolutionSizeTemplate), 1);
    EXPECT_EQ(Chosen(&IqrlTabulexConvertor::get_FieldCount), 7);
    Bstr sEnvironment;
    front->get_Environment(sEnvironment.put());
    string_t sFolder;
    EXPECT_TRUE(Hesperon::specifics::ReadFolder(sEnvironment.view(), sFolder));
    EXPECT_EQ(sFolder, Hesperon::specifics::FolderPart(Bstr(file.Name()).view()))
        << "the folder is remembered";
}

TEST_F(Analyse, CancelLeavesTheChoices)
{
    for (const LONG nId : {1, 2})
        front->AddFieldTemplate(nId, Bstr(Wide("Fields " + std::to_string(nId))).get());
    front->put_FieldTemplate(1);
    const TempFile file(Minutes(50));
    ASSERT_EQ(Open(*front.get(), file), S_OK);
    Bstr sBefore, sAfter;
    front->get_Environment(sBefore.put());
    EXPECT_EQ(Run([](FakeDialog& dialog) {
                  FakePane& pane = dialog.Pane(DialogSettings);
                  pane.Choose(SettingsField, 1);
                  pane.Choose(SettingsResolution, 1);
                  dialog.Click(ImportCancel);
              }),
              VARIANT_FALSE);
    EXPECT_EQ(Chosen(&IqrlTabulexConvertor::get_FieldTemplate), 1);
    EXPECT_EQ(Chosen(&IqrlTabulexConvertor::get_ResolutionTemplate), 2);
    EXPECT_EQ(Chosen(&IqrlTabulexConvertor::get_ResolutionSizeTemplate), 1);
    front->get_Environment(sAfter.put());
    EXPECT_EQ(sBefore.view(), sAfter.view());
    LONG nResolution = 0;
    com_ptr<IDispatch> pRecords;
    Parser()->get_RecordParser(pRecords.put());
    pRecords.as<IRecordParser>()->get_Resolution(&nResolution);
    EXPECT_EQ(nResolution, ResolutionTick) << "what the user did to the parser stays";
}

TEST_F(Analyse, CancelLeavesTheStartRowInTheParser)
{
    const TempFile file(Minutes(50));
    ASSERT_EQ(Open(*front.get(), file), S_OK);
    Run([](FakeDialog& dialog) { dialog.Pane(DialogSettings).Type(SettingsStartRow, "12"); });
    com_ptr<IDispatch> pRecords;
    Parser()->get_RecordParser(pRecords.put());
    ULONG nLines = 0;
    VARIANT_BOOL bHeader = VARIANT_FALSE;
    pRecords.as<IRecordParser>()->get_LinesToSkip(&nLines);
    Parser()->get_HasHeader(&bHeader);
    EXPECT_EQ(nLines, bHeader ? 10u : 11u);
}

TEST_F(Analyse, WithoutAParentTheActiveWindowOwnsTheDialog)
{
    for (const LONG_PTR hwndActive : {42, 0}) {
        m_views.m_hwndActive = hwndActive;
        Run([=](FakeDialog& dialog) { EXPECT_EQ(dialog.m_hwndParent, hwndActive); });
    }
    Run([](FakeDialog& dialog) { EXPECT_EQ(dialog.m_hwndParent, 5); }, 5);
}

TEST_F(Analyse, AHostWithResolutionsAloneSeesNoFieldTemplates)
{
    Run([](FakeDialog& dialog) {
        EXPECT_EQ(dialog.Pane(DialogSettings).RowCount(SettingsField), 0);
        EXPECT_GT(dialog.Pane(DialogSettings).RowCount(SettingsResolution), 1);
    });
}

TEST_F(Analyse, ADialogThatCannotBeSetUpIsCancelled)
{
    m_views.m_bRefuse = true;
    EXPECT_EQ(Run([](FakeDialog&) {}), VARIANT_FALSE);
}

TEST_F(Analyse, WithoutAStatusFails)
{
    EXPECT_EQ(front->DoAnalyse(nullptr, 0), E_POINTER);
}

TEST_F(Analyse, TheHostMayReleaseTheObjectMeanwhile)
{
    VARIANT_BOOL bStatus = 7;
    IqrlTabulexConvertor* pFront = front.get();
    m_views.m_onRun = [this](FakeDialog& dialog) {
        front.reset();
        dialog.Click(ImportCancel);
    };
    EXPECT_EQ(pFront->DoAnalyse(&bStatus, 0), S_OK);
    EXPECT_EQ(bStatus, VARIANT_FALSE);
}

// Each opens while the file's worker still scans.
TEST_F(Analyse, AThousandDialogsLeaveNothingBehind)
{
    const TempFile file(Minutes(40000));
    sink.reset();
    const auto runOne = [&](int n) {
        front = NewFront();
        ASSERT_EQ(Open(*front.get(), file), S_OK);
        Run([n](FakeDialog& dialog) {
            PumpMessages(std::chrono::milliseconds(n % 2));
            dialog.Click(n % 2 ? ImportOk : ImportCancel);
        });
        front.reset();
    };
    for (int n = 0; n < 10; ++n) // what the system keeps from the first times
        runOne(n);
    PumpUntil([] { return ModuleLockCount() == 0 && !OwnsWindows(); });
    const ProcessCounts before = CountProcessAtRest();
    for (int n = 0; n < Rounds(1000); ++n)
        runOne(n);
    PumpUntil([] { return ModuleLockCount() == 0 && !OwnsWindows(); });
    // Windows makes a handle for a lock at which two threads meet for the first time, and keeps it.
    // There are a few such locks, however many dialogs there were.
    constexpr std::size_t kMostLocks = 8;
    const ProcessCounts after = CountProcessAtRest();
    EXPECT_EQ(after.nThreads, before.nThreads);
    EXPECT_EQ(after.nWindows, before.nWindows);
    EXPECT_LE(after.nHandles, before.nHandles + kMostLocks);
}

TEST_F(Analyse, ADialogLetsGoOfTheParser)
{
    const TempFile file(Minutes(5000));
    ASSERT_EQ(Open(*front.get(), file), S_OK);
    const auto pParser = Parser();
    const ULONG nRefs = RefsOf(pParser.get());
    Run([](FakeDialog& dialog) { dialog.Click(ImportOk); });
    PumpUntil([&] { return RefsOf(pParser.get()) == nRefs; });
}

} // namespace
