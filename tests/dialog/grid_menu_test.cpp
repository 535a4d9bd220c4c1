// What happens when the user presses the heading of a column, and chooses.

#include "tests/dialog/GridFakes.h"
#include "tests/dialog/fakes/FakeViews.h"

using namespace dialog_test;

namespace {

class GridMenus : public GridTest
{
protected:
    void SetUp() override
    {
        m_pRecords->m_pLog = &m_log;
        m_pRecords->m_types = m_pRecords->m_typeTexts = {"None", "Date", "Open"};
        m_pRecords->m_templates = {{"Date", {"*y-*m-*d", "*d.*m.*y", "..."}}};
        m_pRecords->m_columns = {"First", "Second"};
        m_pRecords->m_sName = "Date";
        m_pRecords->m_sTemplate = "*y-*m-*d";
        MakeView();
        PutParser();
        m_pGrid->CreateFields();
        ASSERT_EQ(S_OK, CreateObject(m_pSink));
        m_pSink->m_pLog = &m_log;
        ASSERT_EQ(S_OK, m_pGrid->put_DataChangeSink(m_pSink.get()));
        m_pGrid->ListenToPlainTypes([this] { m_log.Add("plain type"); });
        m_log.Take();
    }

    // The calls that follow when the user chooses an item in the menu of a column.
    Calls Choose(LONG nId, LONG nColumn = 1)
    {
        m_pView->m_onMenu = [=](ViewMenu, LONG) { return nId; };
        m_pView->Events().OnHeaderPress(nColumn);
        return m_log.Take();
    }

    com_ptr<GridDataSink> m_pSink;
};

constexpr LONG kPlainItem = 2002, kTemplateItem = 2201, kCustomItem = 2202;

TEST_F(GridMenus, OpenBelowTheHeadingThatIsPressed)
{
    LONG nAsked = -1;
    m_pView->m_onMenu = [&](ViewMenu menu, LONG nColumn) {
        nAsked = nColumn;
        EXPECT_EQ(5u, menu.size()); // with two lines
        return 0;
    };
    m_pView->Events().OnHeaderPress(1);
    EXPECT_EQ(1, nAsked);
    EXPECT_EQ(Calls{}, m_log.Take());
}

TEST_F(GridMenus, APlainTypeIsSetAndNoSinkHearsOfIt)
{
    EXPECT_EQ((Calls{"parser: type 1 Open", "grid: heading 1 Second", "grid: erase", "plain type"}),
              Choose(kPlainItem));
    EXPECT_EQ((Calls{"parser: type 0 None", "grid: heading 0 First", "grid: erase", "plain type"}),
              Choose(2000, 0));
}

TEST_F(GridMenus, ATemplateIsSetWithSmartResolutionAndTheSinkHearsOfIt)
{
    EXPECT_EQ((Calls{"parser: smart", "parser: type 1 Date", "parser: template 1 *d.*m.*y", "sink",
                     "parser: not smart", "grid: heading 1 Second", "grid: erase"}),
              Choose(kTemplateItem));
}

TEST_F(GridMenus, SmartResolutionEndsAlsoAfterFailures)
{
    m_pRecords->m_failures = {{"SetFieldName", E_INVALIDARG}, {"SetFieldTemplate", E_FAIL}};
    EXPECT_EQ((Calls{"parser: smart", "parser: type 1 Date", "parser: template 1 *d.*m.*y", "sink",
                     "parser: not smart", "grid: heading 1 Second", "grid: erase"}),
              Choose(kTemplateItem));
}

TEST_F(GridMenus, WithoutASinkATemplateIsSetAllTheSame)
{
    com_ptr<CQRLDataGridViewCtrl> pGrid;
    ASSERT_EQ(S_OK, CreateObject(pGrid));
    FakeGrid view("other", &m_log, pGrid->Events());
    pGrid->Attach(&view);
    ASSERT_EQ(S_OK, pGrid->put_DataParser(m_pParser.get()));
    view.m_onMenu = [](ViewMenu, LONG) { return kTemplateItem; };
    m_log.Take();
    view.Events().OnHeaderPress(0);
    EXPECT_EQ((Calls{"parser: smart", "parser: type 0 Date", "parser: template 0 *d.*m.*y",
                     "parser: not smart", "other: heading 0 First", "other: erase"}),
              m_log.Take());
    view.Events().OnClose();
}

TEST_F(GridMenus, AHeadingWhoseColumnHasGoneStays)
{
    m_pRecords->m_nUnnamed = 1;
    EXPECT_EQ((Calls{"parser: type 1 Open", "grid: erase", "plain type"}), Choose(kPlainItem));
    EXPECT_EQ("Second", m_pView->m_columns[1].sText);
}

TEST_F(GridMenus, WithoutAChoiceNothingChanges)
{
    for (const LONG nId : {0, 2001, 2100, 2300, 4711})
        EXPECT_EQ(Calls{}, Choose(nId)) << nId;
}

TEST_F(GridMenus, ThatCanNotBeBuiltShowNothing)
{
    m_pRecords->m_failures = {{"FieldTemplate", E_INVALIDARG}};
    m_pView->m_onMenu = [](ViewMenu, LONG) -> LONG {
        ADD_FAILURE();
        return 0;
    };
    m_pView->Events().OnHeaderPress(7);
    EXPECT_EQ(Calls{}, m_log.Take());
}

// ---- the template editor

TEST_F(GridMenus, TheEditorsTemplateIsSet)
{
    FakeViews views;
    views.m_onRun = [&](FakeDialog& dialog) {
        EXPECT_EQ(DialogTemplate, dialog.m_dialog);
        EXPECT_EQ(Calls{}, m_log.Take()) << "changed before the dialog was left";
        dialog.Type(TemplateText, " *m/*d ");
        dialog.Click(SmallDialogOk);
    };
    EXPECT_EQ((Calls{"parser: smart", "parser: type 1 Date", "parser: template 1 *m/*d", "sink",
                     "parser: not smart", "grid: heading 1 Second", "grid: erase"}),
              Choose(kCustomItem));
}

TEST_F(GridMenus, CancelInTheEditorLeavesFieldAndHeadingAlone)
{
    FakeViews views;
    views.m_onRun = [](FakeDialog& dialog) {
        dialog.Type(TemplateText, "*m/*d");
        dialog.Click(SmallDialogCancel);
    };
    EXPECT_EQ(Calls{}, Choose(kCustomItem));
    EXPECT_EQ("Second", m_pView->m_columns[1].sText);
}

TEST_F(GridMenus, WithoutViewsTheEditorChangesNothing)
{
    EXPECT_EQ(Calls{}, Choose(kCustomItem));
}

// ---- a view that goes meanwhile

TEST_F(GridMenus, AViewThatGoesDuringTheMenuChangesNothing)
{
    m_pView->m_onMenu = [&](ViewMenu, LONG) {
        m_pGrid->Events().OnClose();
        return kPlainItem;
    };
    m_pView->Events().OnHeaderPress(1);
    EXPECT_EQ(Calls{}, m_log.Take());
    m_pView.reset();
}

TEST_F(GridMenus, AViewThatGoesDuringTheEditorChangesNothing)
{
    FakeViews views;
    views.m_onRun = [&](FakeDialog& dialog) {
        dialog.Type(TemplateText, "*m/*d");
        m_pGrid->Events().OnClose();
        dialog.Click(SmallDialogOk);
    };
    EXPECT_EQ(Calls{}, Choose(kCustomItem));
    m_pView.reset();
}

TEST_F(GridMenus, TheListenerMayEndTheDialog)
{
    m_pGrid->ListenToPlainTypes([&] {
        m_log.Add("plain type");
        m_pGrid->Events().OnClose();
    });
    EXPECT_EQ((Calls{"parser: type 1 Open", "grid: heading 1 Second", "grid: erase", "plain type"}),
              Choose(kPlainItem));
    m_pView.reset();
}

} // namespace
