// The operations of the preview grid, with a view and without.

#include "tests/dialog/GridFakes.h"

using namespace dialog_test;

namespace {

class GridMembers : public GridTest
{
protected:
    HRESULT Invoke(const char* pszName, WORD flags, Variant value, Variant& result)
    {
        string_t sName = Wide(pszName);
        LPOLESTR pszWide = sName.data();
        DISPID id = 0;
        IDispatch* pDispatch = static_cast<IQRLDataGridViewCtrl*>(m_pGrid.get());
        EXPECT_EQ(S_OK, pDispatch->GetIDsOfNames(IID_NULL, &pszWide, 1, 0, &id)) << pszName;
        DISPID put = DISPID_PROPERTYPUT;
        const bool bPut = flags == DISPATCH_PROPERTYPUT;
        DISPPARAMS params{&value, bPut ? &put : nullptr, bPut ? 1u : 0u, bPut ? 1u : 0u};
        return pDispatch->Invoke(id, IID_NULL, 0, flags, &params, result.put(), nullptr, nullptr);
    }
    HRESULT Put(const char* pszName, Variant value)
    {
        Variant ignored;
        return Invoke(pszName, DISPATCH_PROPERTYPUT, std::move(value), ignored);
    }
    HRESULT Call(const char* pszName)
    {
        Variant ignored;
        return Invoke(pszName, DISPATCH_METHOD, {}, ignored);
    }
    Variant Get(const char* pszName)
    {
        Variant result;
        EXPECT_EQ(S_OK, Invoke(pszName, DISPATCH_PROPERTYGET, {}, result)) << pszName;
        return result;
    }
    static Variant Object(IDispatch* pObject)
    {
        Variant value;
        value.vt = VT_DISPATCH;
        value.pdispVal = com_ptr<IDispatch>(pObject).detach();
        return value;
    }
    HRESULT PutParserResult(IDispatch* pParser) { return m_pGrid->put_DataParser(pParser); }
    IDispatch* Held()
    {
        com_ptr<IDispatch> pParser;
        m_pGrid->get_DataParser(pParser.put());
        return pParser.get();
    }
    IDispatch* Key() { return static_cast<IFileHandlerEvents*>(m_pGrid.get()); }
};

// ---- stock properties

TEST_F(GridMembers, StockPropertiesAreKept)
{
    struct Row
    {
        const char* pszName;
        LONG nInitially, nPut, nThen;
    };
    const Row kRows[] = {
        {"AutoSize", 0, 1, VARIANT_TRUE},
        {"BackColor", 0, 0x00804020, 0x00804020},
        {"BorderStyle", 0, 1, 1},
        {"BorderWidth", 0, 3, 3},
        {"Enabled", VARIANT_TRUE, 0, VARIANT_FALSE},
        {"TabStop", 0, 1, VARIANT_TRUE},
    };
    const auto number = [](const Variant& value) {
        return value.vt == VT_BOOL ? value.boolVal : value.lVal;
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.pszName);
        EXPECT_EQ(row.nInitially, number(Get(row.pszName)));
        EXPECT_EQ(S_OK, Put(row.pszName, Variant::FromI4(row.nPut)));
        EXPECT_EQ(row.nThen, number(Get(row.pszName)));
    }
}

TEST_F(GridMembers, GetsWantAPointer)
{
    EXPECT_EQ(E_POINTER, m_pGrid->get_AutoSize(nullptr));
    EXPECT_EQ(E_POINTER, m_pGrid->get_BackColor(nullptr));
    EXPECT_EQ(E_POINTER, m_pGrid->get_BorderStyle(nullptr));
    EXPECT_EQ(E_POINTER, m_pGrid->get_BorderWidth(nullptr));
    EXPECT_EQ(E_POINTER, m_pGrid->get_Enabled(nullptr));
    EXPECT_EQ(E_POINTER, m_pGrid->get_TabStop(nullptr));
    EXPECT_EQ(E_POINTER, m_pGrid->get_TextMode(nullptr));
    EXPECT_EQ(E_POINTER, m_pGrid->get_DataParser(nullptr));
}

TEST_F(GridMembers, TheListFollowsEnabled)
{
    m_pGrid->put_Enabled(VARIANT_FALSE);
    MakeView();
    EXPECT_FALSE(m_pView->m_bEnabled);
    m_pGrid->put_Enabled(VARIANT_TRUE);
    EXPECT_TRUE(m_pView->m_bEnabled);
}

// ---- DataParser

TEST_F(GridMembers, WithoutAParserThereIsNoneToGet)
{
    com_ptr<IDispatch> pParser;
    EXPECT_EQ(E_POINTER, m_pGrid->get_DataParser(pParser.put()));
    EXPECT_FALSE(pParser);
    EXPECT_EQ(S_OK, Put("DataParser", Object(m_pParser.get())));
    EXPECT_EQ(m_pParser.get(), Get("DataParser").pdispVal);
}

TEST_F(GridMembers, AParserGetsTheGridAsAListener)
{
    PutParser();
    ASSERT_EQ(1u, m_pParser->m_listeners.size());
    EXPECT_EQ(Key(), m_pParser->m_listeners[0].get());
    EXPECT_TRUE(m_reports.Texts().empty());
}

TEST_F(GridMembers, AFailedPutLeavesNoParser)
{
    struct Row
    {
        const char* pszFailure; // operation of the parser; null for the object itself
        HRESULT hr;
    };
    const Row kRows[] = {{"RecordParser", E_OUTOFMEMORY}, {"AddFileEventHandler", E_ACCESSDENIED}};
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.pszFailure);
        m_pParser->m_failures.clear();
        com_ptr<GridDataParser> pGood;
        ASSERT_EQ(S_OK, CreateObject(pGood));
        pGood->m_pRecordParser = m_pRecords.get();
        ASSERT_EQ(S_OK, PutParserResult(pGood.get()));
        m_pParser->m_failures[row.pszFailure] = row.hr;
        EXPECT_EQ(row.hr, PutParserResult(m_pParser.get()));
        EXPECT_EQ(nullptr, Held());
        EXPECT_EQ(E_POINTER, m_pGrid->CreateFields());
        EXPECT_EQ(std::vector<std::string>{kFailed}, m_reports.Texts());
        m_reports.Clear();
        pGood->m_listeners.clear();
    }
}

TEST_F(GridMembers, NullAndOtherObjectsAreNoParsers)
{
    PutParser();
    EXPECT_EQ(E_POINTER, PutParserResult(nullptr));
    EXPECT_EQ(nullptr, Held());
    EXPECT_EQ(E_NOINTERFACE, PutParserResult(m_pRecords.get()));
    EXPECT_EQ((std::vector<std::string>{kFailed, kFailed}), m_reports.Texts());
}

TEST_F(GridMembers, ARecordParserOfAnotherKindIsAFailure)
{
    m_pParser->m_pRecordParser = m_pParser.get();
    EXPECT_EQ(E_NOINTERFACE, PutParserResult(m_pParser.get()));
    EXPECT_EQ(nullptr, Held());
    m_pParser->m_pRecordParser.reset();
}

TEST_F(GridMembers, PuttingTheParserThatIsHeldReadsItsRecordParserAgain)
{
    MakeView();
    PutParser();
    com_ptr<GridRecordParser> pOther;
    ASSERT_EQ(S_OK, CreateObject(pOther));
    pOther->m_columns = {"Other"};
    m_pParser->m_pRecordParser = pOther.get();
    PutParser();
    EXPECT_EQ(1, m_pParser->m_nAdded);
    EXPECT_EQ(S_OK, m_pGrid->CreateFields());
    ASSERT_EQ(1u, m_pView->m_columns.size());
    EXPECT_EQ("Other", m_pView->m_columns[0].sText);
}

TEST_F(GridMembers, TheParserBeforeKeepsTheGridAsAListener)
{
    PutParser();
    com_ptr<GridDataParser> pOther;
    ASSERT_EQ(S_OK, CreateObject(pOther));
    pOther->m_pRecordParser = m_pRecords.get();
    EXPECT_EQ(S_OK, PutParserResult(pOther.get()));
    EXPECT_EQ(1u, m_pParser->m_listeners.size());
    EXPECT_EQ(1u, pOther->m_listeners.size());
    pOther->m_listeners.clear();
}

// ---- NotifySourceDetach

TEST_F(GridMembers, DetachingEmptiesTheList)
{
    MakeView();
    PutParser();
    m_pParser->m_onPage = [](VARIANT* v, ULONG nFrom, ULONG) {
        *v = GridBlock(nFrom, {{Variant::FromText(OLESTR("a"))}}).detach();
        return S_OK;
    };
    m_pRecords->m_columns = {"Open"};
    m_pGrid->CreateFields();
    m_pView->Events().OnRange(0, 0);
    EXPECT_EQ("\"a\"", m_pView->CellText(0, 0));
    m_log.Take();
    EXPECT_EQ(S_OK, Call("NotifySourceDetach"));
    EXPECT_EQ((Calls{"grid: scroll to top", "grid: rows 0", "grid: clear columns", "grid: erase"}),
              m_log.Take());
    EXPECT_EQ(m_pParser.get(), Held());
    m_pView->AddColumn(OLESTR("Open"), 10, true);
    EXPECT_EQ("", m_pView->CellText(0, 0));
}

TEST_F(GridMembers, DetachingKeepsTheColumnOfTextMode)
{
    m_pGrid->put_TextMode(VARIANT_TRUE);
    MakeView();
    EXPECT_EQ(S_OK, m_pGrid->NotifySourceDetach());
    EXPECT_EQ((Calls{"grid: scroll to top", "grid: rows 0", "grid: erase"}), m_log.Take());
}

TEST_F(GridMembers, WithoutAViewDetachingSucceeds)
{
    EXPECT_EQ(S_OK, m_pGrid->NotifySourceDetach());
}

// ---- CreateFields

TEST_F(GridMembers, ColumnsNeedAParserAndAView)
{
    EXPECT_EQ(E_POINTER, Call("CreateFields"));
    PutParser();
    EXPECT_EQ(E_UNEXPECTED, Call("CreateFields"));
    MakeView();
    EXPECT_EQ(S_OK, Call("CreateFields"));
}

TEST_F(GridMembers, ColumnsAreThoseOfTheParser)
{
    MakeView();
    m_pParser->m_records = {"1", "2", "3"};
    m_pRecords->m_columns = {"Date", "Open"};
    PutParser();
    EXPECT_EQ(S_OK, m_pGrid->CreateFields());
    // Ten units for each letter, and 4 edges of 2 and 40 around.
    EXPECT_EQ((Calls{"grid: rows 3", "grid: clear columns", "grid: column Date 88",
                     "grid: column Open 88"}),
              m_log.Take());
    EXPECT_TRUE(m_pView->m_columns[0].bHeading);
}

TEST_F(GridMembers, ACountThatFailsShowsNoRows)
{
    MakeView();
    m_pParser->m_nCount = 7;
    m_pParser->m_failures["GetCount"] = E_FAIL;
    PutParser();
    EXPECT_EQ(S_OK, m_pGrid->CreateFields());
    EXPECT_EQ((Calls{"grid: rows 0", "grid: clear columns"}), m_log.Take());
}

TEST_F(GridMembers, ANameThatFailsEndsTheColumns)
{
    MakeView();
    m_pRecords->m_columns = {"A", "B", "C"};
    m_pRecords->m_nUnnamed = 1;
    PutParser();
    EXPECT_EQ(S_OK, m_pGrid->CreateFields());
    EXPECT_EQ(1u, m_pView->m_columns.size());
    m_pRecords->m_failures["FieldCount"] = E_FAIL;
    EXPECT_EQ(S_OK, m_pGrid->CreateFields());
    EXPECT_EQ(0u, m_pView->m_columns.size());
}

TEST_F(GridMembers, AColumnThatIsRefusedIsReported)
{
    MakeView();
    m_pRecords->m_columns = {"A", "B"};
    m_pView->m_bRefuseColumns = true;
    PutParser();
    EXPECT_EQ(S_OK, m_pGrid->CreateFields());
    EXPECT_EQ((std::vector<std::string>{"bRes", "bRes"}), m_reports.Texts());
}

// ---- the rest

TEST_F(GridMembers, RefreshRepaintsAndNothingMore)
{
    EXPECT_EQ(S_OK, Call("Refresh"));
    MakeView();
    EXPECT_EQ(S_OK, Call("Refresh"));
    EXPECT_EQ((Calls{"grid: repaint"}), m_log.Take());
}

TEST_F(GridMembers, ComplexFieldChangesAreNotOffered)
{
    EXPECT_EQ(E_NOTIMPL, Put("oncomplexfieldchange", Variant::FromI4(1)));
}

TEST_F(GridMembers, TheSinkMustBeOne)
{
    EXPECT_EQ(E_INVALIDARG, Put("DataChangeSink", Object(nullptr)));
    EXPECT_EQ(E_NOINTERFACE, Put("DataChangeSink", Object(m_pParser.get())));
    com_ptr<GridDataSink> pSink;
    ASSERT_EQ(S_OK, CreateObject(pSink));
    EXPECT_EQ(S_OK, Put("DataChangeSink", Object(pSink.get())));
    EXPECT_EQ(2u, RefsOf(pSink.get()));
    EXPECT_EQ(E_NOINTERFACE, Put("DataChangeSink", Object(m_pParser.get())));
    EXPECT_EQ(2u, RefsOf(pSink.get()));
}

TEST_F(GridMembers, OtherFileEventsAreTakenAndIgnored)
{
    EXPECT_EQ(S_OK, m_pGrid->PutData({}, 0, 0));
    EXPECT_EQ(S_OK, m_pGrid->ProcessRecord(0, nullptr, VARIANT_FALSE));
}

TEST_F(GridMembers, AnObjectHasOneIdentity)
{
    com_ptr<IUnknown> pFirst, pSecond;
    com_ptr<IFileHandlerEvents> pEvents;
    ASSERT_EQ(S_OK, m_pGrid->QueryInterface(iid_of<IFileHandlerEvents>, pEvents.put_void()));
    ASSERT_EQ(S_OK, m_pGrid->QueryInterface(iid_of<IUnknown>, pFirst.put_void()));
    ASSERT_EQ(S_OK, pEvents->QueryInterface(iid_of<IUnknown>, pSecond.put_void()));
    EXPECT_EQ(pFirst.get(), pSecond.get());
}

// ---- the view

TEST_F(GridMembers, MovesItsView)
{
    m_pGrid->Move({1, 2, 3, 4});
    MakeView();
    m_pGrid->Move({1, 2, 3, 4});
    EXPECT_EQ((ControlPlace{1, 2, 3, 4}), m_pView->m_place);
}

TEST_F(GridMembers, AViewThatGoesTakesTheParsersWithIt)
{
    MakeView();
    PutParser();
    const ULONG nGridRefs = RefsOf(static_cast<IQRLDataGridViewCtrl*>(m_pGrid.get()));
    CloseView();
    EXPECT_TRUE(m_pParser->m_listeners.empty());
    EXPECT_EQ(nGridRefs - 1, RefsOf(static_cast<IQRLDataGridViewCtrl*>(m_pGrid.get())));
    EXPECT_EQ(nullptr, Held());
    EXPECT_EQ(1u, RefsOf(m_pParser.get()));
    EXPECT_EQ(2u, RefsOf(m_pRecords.get())); // the test's and the parser's
}

TEST_F(GridMembers, AParserMayHoldTheLastReference)
{
    MakeView();
    PutParser();
    CQRLDataGridViewCtrl* const pGrid = m_pGrid.get();
    m_pGrid.reset(); // the parser's listener is left
    pGrid->Events().OnClose();
    EXPECT_TRUE(m_pParser->m_listeners.empty());
    EXPECT_EQ(1u, RefsOf(m_pParser.get()));
    m_pView.reset();
    ASSERT_EQ(S_OK, CreateObject(m_pGrid));
}

TEST_F(GridMembers, WithoutAViewNothingIsDrawn)
{
    IGridEvents& events = m_pGrid->Events();
    events.OnRange(0, 10);
    EXPECT_EQ(0x00FFFFFFu, events.RowColour(0));
    EXPECT_FALSE(events.IsImported(0));
    OLECHAR text[4] = {1, 1, 1, 1};
    events.CellText(0, 0, text, 4);
    EXPECT_EQ(0, text[0]);
    events.OnHeaderPress(0);
    events.OnClose();
}

} // namespace
