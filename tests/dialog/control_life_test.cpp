// Life of the control, the choice of a file, and how the grids come alive.

#include "tests/dialog/ControlFixture.h"

#include <thread>

#include "tests/support/Objects.h"
#include "tests/support/ReportLog.h"

using namespace dialog_test;

namespace {

using ControlLife = ControlFixture;

const Calls kInitialCalls = {"add handler",   "SetStartRow 3",    "SetUseBarsEndTime on",
                             "lines: parser", "lines: text mode", "records: parser",
                             "records: sink"};

TEST_F(ControlLife, RefusesNoGrid)
{
    EXPECT_EQ(m_pControl->SetFileContentGrid(nullptr), E_UNEXPECTED);
    EXPECT_EQ(m_pControl->SetDataGrid(nullptr), E_UNEXPECTED);
}

TEST_F(ControlLife, InitializeShowsTheSettingsAndHandsOutParsers)
{
    m_pRecords->m_nLinesToSkip = 2;
    m_pData->m_bHeader = VARIANT_TRUE;
    m_pRecords->m_bEndTime = VARIANT_TRUE;
    m_pControl->SetFileContentGrid(Text());
    m_pControl->SetDataGrid(Records());
    EXPECT_EQ(m_pControl->Initialize(), S_OK);
    EXPECT_EQ(Take(), kInitialCalls);
    EXPECT_EQ(m_pRecordsGrid->m_pParser.get(), m_pData->Identity());
    EXPECT_TRUE(m_pText->m_pParser);
    EXPECT_NE(m_pText->m_pParser.get(), m_pData->Identity()) << "a parser of its own";
}

TEST_F(ControlLife, OnlyTheExactTruthCountsAtFirst)
{
    m_pData->m_bHeader = 1;
    m_pRecords->m_bEndTime = 1;
    EXPECT_EQ(m_pControl->Initialize(), S_OK);
    EXPECT_EQ(Take(), Calls({"add handler", "SetStartRow 0", "SetUseBarsEndTime off"}));
}

TEST_F(ControlLife, WithoutAParserInitializeFails)
{
    m_params.pDataParser.reset();
    EXPECT_EQ(m_pControl->Initialize(), E_UNEXPECTED);
    EXPECT_THAT(Take(), IsEmpty());
}

TEST_F(ControlLife, FailuresOfInitializeAreReportedAndTheRestGoesOn)
{
    const ReportLog reports;
    for (const char* sCall :
         {"add handler", "lines: parser", "lines: text mode", "records: parser", "records: sink"})
        m_script.m_results[sCall] = E_FAIL;
    m_pControl->SetFileContentGrid(Text());
    m_pControl->SetDataGrid(Records());
    EXPECT_EQ(m_pControl->Initialize(), S_OK);
    EXPECT_EQ(Take().size(), kInitialCalls.size());
    EXPECT_EQ(reports.Texts(), std::vector<std::string>(5, "(((HRESULT)(hr__)) >= 0)"));
}

TEST_F(ControlLife, AFileThatTheParserHasIsShownAtOnce)
{
    m_pControl->SetFileContentGrid(Text());
    m_pControl->SetDataGrid(Records());
    m_pData->m_sFile = "/no.csv";
    EXPECT_EQ(m_pControl->Initialize(), S_OK);
    const Calls calls = Take();
    EXPECT_THAT(calls, testing::Contains("file /no.csv"));
    EXPECT_EQ(calls.back(), "ResetStartRow");
    EXPECT_EQ(m_views.m_nMostWaiting, 1);
    EXPECT_EQ(m_views.m_nWaiting, 0);
}

TEST_F(ControlLife, ANameOfThreeCharactersIsNotShownAtOnceButCanBeChosen)
{
    m_pData->m_sFile = "abc";
    Start();
    m_pControl->OnFileSelected(OLESTR("abc"));
    EXPECT_THAT(Take(), testing::Contains("file abc"));
}

TEST_F(ControlLife, AShortPathChangesNothing)
{
    Start();
    for (const OLECHAR* pszPath :
         {OLESTR(""), OLESTR("a"), OLESTR("ab"), static_cast<const OLECHAR*>(nullptr)}) {
        m_pControl->OnFileSelected(pszPath);
        EXPECT_THAT(Take(), IsEmpty());
    }
    EXPECT_EQ(m_views.m_nWaiting, 0);
}

TEST_F(ControlLife, WithoutAGridAFileIsIgnored)
{
    m_pControl->SetDataGrid(Records());
    m_pControl->Initialize();
    Take();
    m_pControl->OnFileSelected(OLESTR("/file.csv"));
    EXPECT_THAT(Take(), IsEmpty());
}

TEST_F(ControlLife, AFileIsOpenedInThisOrder)
{
    Start();
    m_pRecords->m_pPrice->m_sCurrent = "10";
    m_pData->m_nCodePage = 936;
    m_pRecords->m_nSize = 5;
    m_pControl->OnFileSelected(OLESTR("/file.csv"));
    EXPECT_EQ(Take(), Calls({"records: detach", "lines: detach", "SetMultiPrice 10",
                             "SetMultiVolume 1", "file /file.csv", "SetFileLanguage 936",
                             "SetDateFirst 40000", "SetDateLast 40010", "SetControlsState 2",
                             "SetDateFormat 1", "ShowUseBarsEndTime yes", "SetStartRow 1",
                             "SetResolution 5 3", "ResetStartRow"}));
}

TEST_F(ControlLife, AFileWithoutDatesLeavesOnlyWhatMayHelp)
{
    Start();
    for (const char* sRead : {"get start", "get end"}) {
        m_script.m_results = {{sRead, E_FAIL}};
        m_pControl->OnFileSelected(OLESTR("/file.csv"));
        const Calls calls = Take();
        EXPECT_THAT(calls, testing::Contains("SetControlsState 1")) << sRead;
        EXPECT_THAT(calls, testing::Not(testing::Contains("SetDateFirst 40000"))) << sRead;
        EXPECT_EQ(calls.back(), "ResetStartRow") << sRead;
    }
}

TEST_F(ControlLife, AMultiplierThatIsNotInTheListShowsOne)
{
    m_pRecords->m_pPrice->m_sCurrent = "7";
    m_script.m_results["SetMultiPrice 7"] = TYPE_E_ELEMENTNOTFOUND;
    Start();
    m_pControl->OnFileSelected(OLESTR("/file.csv"));
    const Calls calls = Take();
    EXPECT_THAT(calls, testing::Contains("SetMultiPrice 7"));
    EXPECT_THAT(calls, testing::Contains("SetMultiPrice 1"));
}

TEST_F(ControlLife, EachMultiplierThatCannotBeReadShowsOne)
{
    Start();
    for (const char* sRead : {"get price multiplier", "get price"}) {
        m_pRecords->m_pPrice->m_sCurrent = "10";
        m_pRecords->m_pVolume->m_sCurrent = "1/10";
        m_script.m_results = {{sRead, E_FAIL}};
        m_pControl->OnFileSelected(OLESTR("/file.csv"));
        const Calls calls = Take();
        EXPECT_EQ(calls[2], "SetMultiPrice 1") << sRead;
        EXPECT_EQ(calls[3], "SetMultiVolume 1/10") << sRead;
    }
}

// ---- the grids come alive

TEST_F(ControlLife, ACountMakesTheColumnsOnTheDialogsThread)
{
    Start();
    std::thread([this] { TellCount(); }).join();
    EXPECT_THAT(Take(), IsEmpty());
    Drain();
    EXPECT_EQ(Take(), Calls({"records: columns", "lines: count 100 complete"}));
    TellCount();
    Drain();
    EXPECT_THAT(Take(), IsEmpty()) << "once a file";
    m_pControl->OnFileSelected(OLESTR("/file.csv"));
    Take();
    TellCount();
    Drain();
    EXPECT_EQ(Take(), Calls({"records: columns", "lines: count 100 complete"}));
}

TEST_F(ControlLife, AGridWithoutAParserGetsTheMainOne)
{
    Start();
    m_pText->m_pParser.reset();
    m_pRecordsGrid->m_nCreateFailures = 1;
    TellCount();
    Drain();
    EXPECT_EQ(Take(), Calls({"records: columns", "records: parser", "records: columns",
                             "lines: parser", "lines: count 100 complete"}));
    EXPECT_EQ(m_pText->m_pParser.get(), m_pData->Identity());
}

TEST_F(ControlLife, ColumnsThatCannotBeMadeAreTriedAThousandTimesMore)
{
    Start();
    m_script.m_results["records: columns"] = E_POINTER;
    TellCount();
    Drain();
    const Calls calls = Take();
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "records: columns"), 2 * 1001);
    TellCount();
    Drain();
    EXPECT_EQ(Take().size(), calls.size()) << "a later count starts again";
    for (int n = 0; n < 50; ++n)
        TellCount();
    Drain();
    EXPECT_EQ(Take().size(), calls.size()) << "counts that come together are one";
}

// ---- end

TEST_F(ControlLife, UninitializeTakesItselfOutOfTheParsers)
{
    Start();
    const auto pEvents = m_pData->m_pHandler.as<IFileHandlerEvents>();
    const auto pSink = m_pRecordsGrid->m_pSink.as<IDataChangeSink>();
    ASSERT_TRUE(pEvents && pSink);
    TellCount(); // posts
    m_pControl->Uninitialize();
    EXPECT_EQ(Take(), Calls({"remove handler"}));
    EXPECT_FALSE(m_pControl->DataParser());
    EXPECT_EQ(pEvents->RecordCountChange(1, VARIANT_TRUE), S_OK);
    EXPECT_EQ(pEvents->PutData({}, 0, 0), S_OK);
    EXPECT_EQ(pEvents->ProcessRecord(0, nullptr, VARIANT_FALSE), S_OK);
    EXPECT_EQ(pSink->OnDataChanged(), S_OK);
    Drain();
    EXPECT_THAT(Take(), IsEmpty());
    EXPECT_TRUE(m_pRecordsGrid->m_pParser) << "the grids keep what they have";
}

TEST_F(ControlLife, EndsWhileTheWorkerCounts)
{
    for (int n = 0; n < 200; ++n) {
        CConvertCtrl control(m_params, m_controls);
        control.SetFileContentGrid(Text());
        control.SetDataGrid(Records());
        ASSERT_EQ(control.Initialize(), S_OK);
        std::thread worker([pEvents = m_pData->m_pHandler.as<IFileHandlerEvents>()] {
            for (int nCount = 0; nCount < 20; ++nCount)
                pEvents->RecordCountChange(1, VARIANT_FALSE);
        });
        PumpMessages(0ms);
        control.Uninitialize();
        worker.join();
        Drain();
    }
    EXPECT_EQ(RefsOf(m_pData->Identity()), 3u) << "the test, the parameters, the record grid";
}

// ---- memory that runs out

struct ThrowingSinks final : Hesperon::specifics::notify::IFileEventSink,
                             Hesperon::specifics::notify::IDataChangeEventSink
{
    void OnFileSelected(const OLECHAR*) override {}
    void OnRecordCountChanged() override { throw std::bad_alloc(); }
    void OnDataChanged() override { throw std::bad_alloc(); }
};

TEST(ControlEventObjects, LetNoExceptionOut)
{
    ThrowingSinks sinks;
    com_ptr<Hesperon::specifics::CFileEventHandler> pFileEvents;
    com_ptr<Hesperon::specifics::CDataChangeEvent> pDataEvents;
    ASSERT_EQ(CreateObject(pFileEvents), S_OK);
    ASSERT_EQ(CreateObject(pDataEvents), S_OK);
    pFileEvents->PointAt(&sinks);
    pDataEvents->PointAt(&sinks);
    EXPECT_EQ(pFileEvents->RecordCountChange(1, VARIANT_TRUE), E_OUTOFMEMORY);
    EXPECT_EQ(pDataEvents->OnDataChanged(), E_OUTOFMEMORY);
}

} // namespace
