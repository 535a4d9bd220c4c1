// The preview grid on a file, with the real parsers: what is drawn is what they give, and the
// tinted rows are those that an import takes.

#include <fstream>
#include <sstream>

#include "src/data/DataParser.h"
#include "src/data/FakeRecordParser.h"
#include "tests/dialog/GridFakes.h"
#include "tests/support/OfferAllResolutions.h"
#include "tests/support/TempFile.h"
#include "tests/support/Waits.h"

using namespace dialog_test;
using Hesperon::specifics::CDataParser;
using Hesperon::specifics::CFakeRecordParser;

namespace {

// The bytes of a sample.
std::string Sample(const char* pszName)
{
    std::ifstream stream(std::string(SAMPLES "/") + pszName, std::ios::binary);
    std::ostringstream bytes;
    bytes << stream.rdbuf();
    EXPECT_FALSE(bytes.str().empty()) << pszName;
    return bytes.str();
}

class GridOnFile : public testing::Test
{
protected:
    ~GridOnFile() override
    {
        if (m_pView)
            m_pGrid->Events().OnClose();
    }

    // Shows a file; its records are counted when this returns.
    void Show(const std::string& bytes)
    {
        m_file.Write(bytes);
        ASSERT_EQ(S_OK, CreateObject(m_pData));
        com_ptr<IDispatch> pObject;
        ASSERT_EQ(S_OK, m_pData->get_RecordParser(pObject.put()));
        ASSERT_EQ(S_OK, query(pObject.get(), m_pRecords));
        ASSERT_EQ(S_OK, OfferAllResolutions(*m_pRecords.get()));
        ASSERT_EQ(S_OK, CreateObject(m_pGrid));
        m_pView = std::make_unique<FakeGrid>("grid", nullptr, m_pGrid->Events());
        m_pGrid->Attach(m_pView.get());
        ASSERT_EQ(S_OK, m_pGrid->put_DataParser(static_cast<IDataParser*>(m_pData.get())));
        ASSERT_EQ(S_OK, m_pData->put_FileName(Bstr(m_file.Name()).get()));
        ASSERT_TRUE(Eventually([&] { return Count() == m_pView->m_nPosted; }));
        ASSERT_EQ(S_OK, m_pGrid->CreateFields());
    }
    // -1 before the file is counted.
    LONG Count()
    {
        ULONGLONG nCount = 0;
        VARIANT_BOOL bComplete = VARIANT_FALSE;
        m_pData->GetCount(&nCount, &bComplete);
        return bComplete != VARIANT_FALSE ? static_cast<LONG>(nCount) : -1;
    }
    // A row as it is drawn, without its quotation marks.
    std::string Row(LONG nRow)
    {
        std::string sText;
        for (LONG n = 0; n < m_pView->ColumnCount(); ++n)
            sText += (n ? "," : "") + m_pView->CellText(nRow, n);
        std::erase(sText, '"');
        return sText;
    }
    DATE DateOfRecord(LONG nRow)
    {
        Bstr sRecord;
        Variant date;
        EXPECT_EQ(S_OK, m_pData->put_Position(static_cast<ULONGLONG>(nRow)));
        EXPECT_EQ(S_OK, m_pData->get_CurrentRecord(sRecord.put()));
        EXPECT_EQ(S_OK, m_pRecords->Parse(sRecord.get()));
        EXPECT_EQ(S_OK, m_pRecords->get_CurrentDateTime(&date));
        return date.date;
    }
    std::string Headings()
    {
        std::string sText;
        for (const FakeGrid::Column& column : m_pView->m_columns)
            sText += column.sText + " ";
        return sText;
    }

    const TempFile m_file;
    com_ptr<CDataParser> m_pData;
    com_ptr<IRecordParser> m_pRecords;
    com_ptr<CQRLDataGridViewCtrl> m_pGrid;
    std::unique_ptr<FakeGrid> m_pView;
};

TEST_F(GridOnFile, DrawsTheFieldsOfDailyBars)
{
    Show(Sample("day-no-header.csv"));
    EXPECT_EQ(6, m_pView->ColumnCount());
    EXPECT_EQ(Count(), m_pView->m_nRows);
    m_pView->Events().OnRange(0, 3);
    EXPECT_EQ("1/13/2003,98.05,98.78,97.65,98.36,358127", Row(0));
    EXPECT_EQ("1/16/2003,98.87,99.31,98.31,99.08,127875", Row(3));
    EXPECT_EQ(",,,,,", Row(4)) << "not in the range";
}

TEST_F(GridOnFile, DrawsEachSampleAsItsParserReadsIt)
{
    for (const char* pszName : {"minute-5.csv", "descending.csv", "symbols.csv", "time-10.csv",
                                "junk.csv", "week.csv", "divider-tab.txt", "divider-blank.txt"}) {
        SCOPED_TRACE(pszName);
        Show(Sample(pszName));
        const LONG nLast = std::min<LONG>(m_pView->m_nRows, 50) - 1;
        m_pView->Events().OnRange(0, nLast);
        Variant block;
        ASSERT_EQ(S_OK, m_pData->ParseRecords(&block, 0, static_cast<ULONG>(nLast + 1)));
        for (LONG nRow = 0; nRow <= nLast; ++nRow)
            for (LONG n = 0; n < m_pView->ColumnCount(); ++n) {
                Variant value;
                LONG indices[] = {nRow, n};
                ASSERT_EQ(S_OK, SafeArrayGetElement(block.parray, indices, &value));
                std::vector<OLECHAR> text(259);
                Hesperon::specifics::WriteValue(value, text);
                EXPECT_EQ(Utf8(text.data()), m_pView->CellText(nRow, n)) << nRow << ',' << n;
                EXPECT_NE("", m_pView->CellText(nRow, n)) << nRow << ',' << n;
            }
        m_pGrid->Events().OnClose();
        m_pView.reset();
    }
}

TEST_F(GridOnFile, TintsTheRowsOfTheRange)
{
    for (const char* pszName : {"day-no-header.csv", "minute-5.csv", "descending.csv"}) {
        SCOPED_TRACE(pszName);
        Show(Sample(pszName));
        const LONG nRows = m_pView->m_nRows;
        ASSERT_GT(nRows, 8);
        const DATE start = DateOfRecord(3), end = DateOfRecord(6);
        ASSERT_LT(start, end);
        EXPECT_EQ(S_OK, m_pData->put_StartDateTime(Variant::FromDate(start)));
        EXPECT_EQ(S_OK, m_pData->put_EndDateTime(Variant::FromDate(end)));
        m_pView->Events().OnRange(0, nRows - 1);
        for (LONG n = 0; n < nRows; ++n)
            EXPECT_EQ(n >= 3 && n <= 6, m_pView->Events().IsImported(n)) << n;
        m_pGrid->Events().OnClose();
        m_pView.reset();
    }
}

TEST_F(GridOnFile, ShowsItsLinesInTextMode)
{
    const std::string bytes = Sample("minute-5.csv");
    Show(bytes);
    com_ptr<CFakeRecordParser> pNone;
    ASSERT_EQ(S_OK, CreateObject(pNone));
    com_ptr<CDataParser> pText;
    ASSERT_EQ(S_OK, CreateObject(pText));
    ASSERT_EQ(S_OK, pText->put_RecordParser(pNone.get()));
    ASSERT_EQ(S_OK, pText->put_FileName(Bstr(m_file.Name()).get()));
    ASSERT_EQ(S_OK, m_pGrid->put_TextMode(VARIANT_TRUE));
    ASSERT_EQ(S_OK, m_pGrid->put_DataParser(static_cast<IDataParser*>(pText.get())));
    ASSERT_EQ(S_OK, m_pGrid->CreateFields());
    std::istringstream lines(bytes);
    LONG nRow = 0;
    for (std::string sLine; std::getline(lines, sLine); ++nRow) {
        std::erase(sLine, '\r');
        EXPECT_EQ(sLine, m_pView->CellText(nRow, 0));
    }
    m_pData->RemoveFileEventHandler(static_cast<IFileHandlerEvents*>(m_pGrid.get()));
}

TEST_F(GridOnFile, AChangeOfTheParserShowsAtTheNextPaint)
{
    Show("2003/01/13,10.5\n2003/01/14,11.5\n");
    m_pView->Events().OnRange(0, 1);
    EXPECT_TRUE(Row(0).starts_with("1/13/2003,")) << Row(0);
    ASSERT_EQ(S_OK, m_pData->put_HeaderOffset(1));
    EXPECT_TRUE(Row(0).starts_with("1/13/2003,")) << Row(0);
    m_pView->Events().OnRange(0, 0);
    EXPECT_TRUE(Row(0).starts_with("1/14/2003,")) << Row(0);
}

// A plain type has the parser read its dates anew; the range of the import is the whole file's
// then.
TEST_F(GridOnFile, APlainTypeSetsTheRangeBackToTheWholeFile)
{
    Show(Sample("day-no-header.csv"));
    EXPECT_EQ(S_OK, m_pData->put_StartDateTime(Variant::FromDate(DateOfRecord(3))));
    DATE heard = 0;
    m_pGrid->ListenToPlainTypes([&] {
        Variant start;
        m_pData->get_StartDateTime(&start);
        heard = start.date;
    });
    m_pView->m_onMenu = [](ViewMenu, LONG) { return 2000; }; // undefined
    m_pView->Events().OnHeaderPress(1);
    EXPECT_EQ(DateOfRecord(0), heard);
    Bstr sHeading;
    ASSERT_EQ(S_OK, m_pRecords->GetFieldNameLocalized(sHeading.put(), 1));
    EXPECT_EQ(Utf8(sHeading.view()), m_pView->m_columns[1].sText);
}

TEST_F(GridOnFile, ATemplateHasTheLayoutFoundAnew)
{
    Show("01/02/2003,10.5,11,10,10.75,5\n02/02/2003,10.5,11,10,10.75,6\n"
         "03/02/2003,10.5,11,10,10.75,7\n");
    const std::string sBefore = Headings();
    m_pView->Events().OnRange(0, 2);
    EXPECT_TRUE(Row(1).starts_with("2/2/2003,")) << Row(1);
    LONG nDayFirst = 0;
    m_pView->m_onMenu = [&](ViewMenu menu, LONG) {
        for (const ViewMenuItem& type : menu)
            for (const ViewMenuItem& item : type.items)
                if (item.pszText && string_view_t(item.pszText) == OLESTR("*d/*m/*y"))
                    nDayFirst = item.nId;
        return nDayFirst;
    };
    m_pView->Events().OnHeaderPress(0);
    ASSERT_NE(0, nDayFirst);
    EXPECT_EQ(sBefore, Headings());
    m_pView->Events().OnRange(0, 2);
    EXPECT_TRUE(Row(0).starts_with("2/1/2003,")) << Row(0);
    EXPECT_TRUE(Row(2).starts_with("2/3/2003,")) << Row(2);
    VARIANT_BOOL bSmart = VARIANT_TRUE;
    EXPECT_EQ(S_OK, m_pRecords->get_SmartResolutionEnabled(&bSmart));
    EXPECT_EQ(VARIANT_FALSE, bSmart);
}

TEST_F(GridOnFile, GoesWithItsView)
{
    Show(Sample("week.csv"));
    m_pGrid->Events().OnClose();
    m_pView.reset();
    // The worker may still be in its last call.
    EXPECT_TRUE(
        Eventually([&] { return RefsOf(static_cast<IQRLDataGridViewCtrl*>(m_pGrid.get())) == 1; }));
}

} // namespace
