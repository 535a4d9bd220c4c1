// The template editor.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "src/UIComponents/TemplateEditDlgNoHTML.h"
#include "src/data/DataParser.h"
#include "src/data/UnofferedRecordParser.h"
#include "tests/dialog/fakes/FakeViews.h"
#include "tests/support/ReportLog.h"
#include "tests/support/TempFile.h"

using namespace dialog_test;
using namespace Hesperon::specifics;
using Hesperon::specifics::UILayer::CTemplateEditDlgNoHTML;

namespace {

// A parser with a list of templates. A clone has a copy of it, and is kept for the test.
class TemplateParser final : public UnofferedRecordParser<TemplateParser>
{
public:
    struct Item
    {
        std::string sName;
        LONG bDefault;
        HRESULT hr = S_OK;
    };

    std::vector<Item> m_items = {{"*m/*d/*y", 1}, {"*d.*m.*y", 0}, {"*y-*m-*d", 1}};
    HRESULT m_hrClone = S_OK, m_hrCount = S_OK, m_hrRemove = S_OK;
    std::vector<std::string> m_asked;   // types
    std::vector<std::string> m_removed; // "column template"
    com_ptr<TemplateParser> m_pClone;

    HRESULT STDMETHODCALLTYPE Clone(IDispatch** newObj) override
    {
        if (FAILED(m_hrClone))
            return m_hrClone;
        m_pClone = com_ptr<TemplateParser>(new TemplateParser);
        m_pClone->m_items = m_items;
        m_pClone->m_hrCount = m_hrCount;
        m_pClone->m_hrRemove = m_hrRemove;
        *newObj = com_ptr<IDispatch>(m_pClone.get()).detach();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTemplateItemCount(BSTR bsTypeName, LONG* nCount) override
    {
        m_asked.push_back(Utf8(TextOf(bsTypeName)));
        *nCount = static_cast<LONG>(m_items.size());
        return m_hrCount;
    }
    HRESULT STDMETHODCALLTYPE GetTemplateItem(BSTR, LONG nIndex, BSTR* bsName,
                                              LONG* bDefault) override
    {
        const Item& item = m_items.at(static_cast<std::size_t>(nIndex));
        if (SUCCEEDED(item.hr)) {
            *bsName = NewBstr(Wide(item.sName));
            *bDefault = item.bDefault;
        }
        return item.hr;
    }
    HRESULT STDMETHODCALLTYPE RemoveTemplate(ULONG nField, BSTR Template) override
    {
        m_removed.push_back(std::to_string(nField) + " " + Utf8(TextOf(Template)));
        return m_hrRemove;
    }
};

class TemplateDialog : public testing::Test
{
protected:
    TemplateDialog() : m_pParser(new TemplateParser), m_views(&m_log) {}

    LONG Run(std::function<void(FakeDialog&)> user)
    {
        m_views.m_onRun = std::move(user);
        CTemplateEditDlgNoHTML dialog(OLESTR("Date"), m_pParser.get(), 3);
        dialog.m_sTemplate = Wide(m_sBefore);
        const LONG nResult = dialog.DoModal();
        m_sTemplate = Utf8(dialog.m_sTemplate);
        return nResult;
    }

    com_ptr<TemplateParser> m_pParser;
    CallLog m_log;
    FakeViews m_views;
    std::string m_sBefore = "preset";
    std::string m_sTemplate; // after the dialog
};

// "ok delete", a button that is off as "-".
std::string Buttons(FakeDialog& dialog)
{
    return std::string(dialog.IsEnabled(SmallDialogOk) ? "ok " : "- ") +
           (dialog.IsEnabled(TemplateDelete) ? "delete" : "-");
}

TEST_F(TemplateDialog, OpensWithTheTemplatesOfTheTypeAndAnEmptyEdit)
{
    EXPECT_EQ(Run([&](FakeDialog& dialog) {
                  EXPECT_EQ(dialog.m_dialog, DialogTemplate);
                  EXPECT_EQ(dialog.m_hwndParent, m_views.m_hwndActive);
                  EXPECT_THAT(dialog.Rows(TemplateList),
                              testing::ElementsAre("*m/*d/*y", "*d.*m.*y", "*y-*m-*d"));
                  EXPECT_EQ(dialog.RowData(TemplateList, 0), 1);
                  EXPECT_EQ(dialog.RowData(TemplateList, 1), 0);
                  EXPECT_EQ(dialog.TextAt(TemplateText), "");
                  EXPECT_EQ(dialog.Selected(TemplateList), kNoRow);
                  EXPECT_EQ(Buttons(dialog), "- -");
              }),
              kDialogCancel);
    EXPECT_THAT(m_log.Take(),
                testing::ElementsAre("dialog: centre", "dialog: disable 1", "dialog: disable 454"));
    EXPECT_THAT(m_pParser->m_pClone->m_asked, testing::ElementsAre("Date"));
    EXPECT_THAT(m_pParser->m_asked, testing::IsEmpty());
    EXPECT_EQ(m_sTemplate, "preset");
}

TEST_F(TemplateDialog, MakesRowsHigherOnce)
{
    Run([&](FakeDialog& dialog) {
        EXPECT_EQ(dialog.RowHeight(TemplateList), 4);
        dialog.Choose(TemplateList, 1);
        dialog.Click(TemplateDelete);
        EXPECT_EQ(dialog.RowHeight(TemplateList), 4);
    });
    m_views.m_onMade = [](FakeDialog& dialog) { dialog.SetRowHeight(TemplateList, 0); };
    Run([&](FakeDialog& dialog) { EXPECT_EQ(dialog.RowHeight(TemplateList), 0); });
}

// ---- the edit

struct TypedRow
{
    const char* szTyped;
    const char* szButtons;
    const char* szTemplate;
};

TEST_F(TemplateDialog, TakesWhatIsTypedWithoutWhiteSpaceAtTheEnds)
{
    static constexpr TypedRow kRows[] = {
        {"*y", "ok -", "*y"},
        {"  *y *m\t", "ok -", "*y *m"},
        {"\u3000*y\u00A0", "ok -", "*y"}, // wide blanks
        {"", "- -", ""},
        {" \t\u3000 ", "- -", ""}, // white space alone
        {"x", "ok -", "x"},
    };
    Run([&](FakeDialog& dialog) {
        for (const TypedRow& row : kRows) {
            SCOPED_TRACE(row.szTyped);
            dialog.Type(TemplateText, row.szTyped);
            EXPECT_EQ(Buttons(dialog), row.szButtons);
            dialog.Click(SmallDialogOk);
            EXPECT_EQ(dialog.m_nResult, dialog.IsEnabled(SmallDialogOk) ? kDialogOk : 0);
            dialog.m_nResult = 0;
        }
    });
    EXPECT_EQ(m_sTemplate, "x");
    for (const TypedRow& row : kRows) {
        Run([&](FakeDialog& dialog) { dialog.Type(TemplateText, row.szTyped); });
        EXPECT_EQ(m_sTemplate, row.szTemplate);
    }
}

TEST_F(TemplateDialog, TakesAtMost511Characters)
{
    Run([&](FakeDialog& dialog) {
        dialog.Type(TemplateText, ("  " + std::string(600, 'y')).c_str());
    });
    EXPECT_EQ(m_sTemplate, std::string(511, 'y'));
}

TEST_F(TemplateDialog, TextThatTheUserDidntTypeDoesntCount)
{
    Run([&](FakeDialog& dialog) {
        dialog.SetFocus(TemplateList);
        dialog.SetText(TemplateText, OLESTR("*y"));
        EXPECT_EQ(Buttons(dialog), "- -");
    });
    EXPECT_EQ(m_sTemplate, "preset");
}

// ---- the list

TEST_F(TemplateDialog, AChosenRowGoesIntoTheEdit)
{
    static constexpr const char* kButtons[] = {"ok -", "ok delete", "ok -"};
    EXPECT_EQ(Run([&](FakeDialog& dialog) {
                  dialog.SetFocus(TemplateList);
                  for (LONG n = 0; n < 3; ++n) {
                      dialog.Choose(TemplateList, n);
                      EXPECT_EQ(dialog.TextAt(TemplateText), dialog.ChosenText(TemplateList));
                      EXPECT_EQ(Buttons(dialog), kButtons[n]);
                  }
                  dialog.Click(SmallDialogOk);
              }),
              kDialogOk);
    EXPECT_EQ(m_sTemplate, "*y-*m-*d");
}

TEST_F(TemplateDialog, AChosenRowKeepsItsWhiteSpace)
{
    m_pParser->m_items = {{" *y ", 0}};
    Run([&](FakeDialog& dialog) { dialog.Choose(TemplateList, 0); });
    EXPECT_EQ(m_sTemplate, " *y ");
}

// What stands in the edit, and which row is selected: each alone decides on a button.
TEST_F(TemplateDialog, ButtonsFollowTextAndRow)
{
    struct Row
    {
        LONG nRow;
        const char* szText;
        const char* szButtons;
    };
    static constexpr Row kRows[] = {
        {kNoRow, "", "- -"},   {kNoRow, "  ", "- -"}, {kNoRow, "t", "ok -"}, {0, "", "- -"},
        {0, " ", "- -"},       {0, "t", "ok -"},      {1, "", "- delete"},   {1, " ", "- delete"},
        {1, "t", "ok delete"}, {kNoRow, "t", "ok -"},
    };
    Run([&](FakeDialog& dialog) {
        for (const Row& row : kRows) {
            dialog.Choose(TemplateList, row.nRow);
            dialog.Type(TemplateText, row.szText);
            EXPECT_EQ(Buttons(dialog), row.szButtons) << row.nRow << " '" << row.szText << "'";
        }
    });
}

TEST_F(TemplateDialog, AFailingCountLeavesTheListEmpty)
{
    m_pParser->m_hrCount = TYPE_E_ELEMENTNOTFOUND;
    Run([&](FakeDialog& dialog) { EXPECT_THAT(dialog.Rows(TemplateList), testing::IsEmpty()); });
}

TEST_F(TemplateDialog, AFailingItemIsLeftOut)
{
    m_pParser->m_items[1].hr = E_FAIL;
    Run([&](FakeDialog& dialog) {
        EXPECT_THAT(dialog.Rows(TemplateList), testing::ElementsAre("*m/*d/*y", "*y-*m-*d"));
    });
}

// ---- deleting

TEST_F(TemplateDialog, DeletesFromTheClone)
{
    Run([&](FakeDialog& dialog) {
        dialog.Choose(TemplateList, 1);
        dialog.Click(TemplateDelete);
        EXPECT_THAT(dialog.Rows(TemplateList), testing::ElementsAre("*m/*d/*y", "*y-*m-*d"));
        EXPECT_EQ(dialog.TextAt(TemplateText), "");
        EXPECT_EQ(Buttons(dialog), "- -");
        dialog.Click(TemplateDelete); // nothing is selected now
    });
    EXPECT_THAT(m_pParser->m_pClone->m_removed, testing::ElementsAre("3 *d.*m.*y"));
    EXPECT_THAT(m_pParser->m_removed, testing::IsEmpty());
    EXPECT_EQ(m_sTemplate, "*d.*m.*y"); // the deleted one, but OK is off
}

TEST_F(TemplateDialog, AFailingDeletionChangesNothing)
{
    m_pParser->m_hrRemove = E_INVALIDARG;
    Run([&](FakeDialog& dialog) {
        dialog.Choose(TemplateList, 1);
        dialog.Click(TemplateDelete);
        EXPECT_EQ(dialog.Rows(TemplateList).size(), 3u);
        EXPECT_EQ(dialog.TextAt(TemplateText), "*d.*m.*y");
        EXPECT_EQ(Buttons(dialog), "ok delete");
    });
}

// The lists of a clone are its own.
TEST_F(TemplateDialog, ADeletedTemplateStaysInTheParserThatWasGiven)
{
    const TempFile file("01/02/2003,09:30,1.5\n01/02/2003,09:31,1.5\n");
    com_ptr<CDataParser> pDataParser;
    ASSERT_EQ(CreateObject(pDataParser), S_OK);
    ASSERT_EQ(pDataParser->put_FileName(Bstr(file.Name()).get()), S_OK);
    com_ptr<IDispatch> pObject;
    ASSERT_EQ(pDataParser->get_RecordParser(pObject.put()), S_OK);
    const auto pParser = pObject.as<IRecordParser>();
    const Bstr own(OLESTR("*m/*d/y*"));
    ASSERT_EQ(pParser->SetFieldTemplate(own.get(), 0), S_OK);
    std::size_t nBefore = 0, nAfter = 0;
    m_views.m_onRun = [&](FakeDialog& dialog) {
        nBefore = dialog.Rows(TemplateList).size();
        const auto nRow = static_cast<LONG>(nBefore) - 1;
        dialog.Choose(TemplateList, nRow);
        EXPECT_EQ(dialog.ChosenText(TemplateList), "*m/*d/y*");
        EXPECT_EQ(Buttons(dialog), "ok delete");
        dialog.Click(TemplateDelete);
        nAfter = dialog.Rows(TemplateList).size();
    };
    CTemplateEditDlgNoHTML first(OLESTR("Date"), pParser, 0);
    EXPECT_EQ(first.DoModal(), kDialogCancel);
    EXPECT_EQ(nAfter, nBefore - 1);

    std::size_t nAgain = 0;
    m_views.m_onRun = [&](FakeDialog& dialog) { nAgain = dialog.Rows(TemplateList).size(); };
    CTemplateEditDlgNoHTML second(OLESTR("Date"), pParser, 0);
    second.DoModal();
    EXPECT_EQ(nAgain, nBefore);
}

// ---- the end

TEST_F(TemplateDialog, EnterIsOkWhereOkIsEnabled)
{
    EXPECT_EQ(Run([](FakeDialog& dialog) { dialog.PressEnter(0, TemplateText); }), kDialogCancel);
    EXPECT_EQ(Run([](FakeDialog& dialog) {
                  dialog.Type(TemplateText, "*y");
                  dialog.PressEnter(0, TemplateText);
              }),
              kDialogOk);
}

TEST_F(TemplateDialog, CancelEndsIt)
{
    EXPECT_EQ(Run([](FakeDialog& dialog) {
                  dialog.Type(TemplateText, "*y");
                  dialog.Click(SmallDialogCancel);
                  EXPECT_EQ(dialog.m_nResult, kDialogCancel);
              }),
              kDialogCancel);
}

TEST_F(TemplateDialog, AParserThatCantBeClonedIsReported)
{
    ReportLog reports;
    m_pParser->m_hrClone = E_OUTOFMEMORY;
    EXPECT_EQ(Run([](FakeDialog& dialog) {
                  EXPECT_THAT(dialog.Rows(TemplateList), testing::IsEmpty());
                  dialog.AddRow(TemplateList, OLESTR("x"), 0);
                  dialog.Choose(TemplateList, 0);
                  dialog.Click(TemplateDelete);
                  EXPECT_EQ(dialog.RowCount(TemplateList), 1);
                  dialog.Click(SmallDialogOk);
              }),
              kDialogOk);
    EXPECT_THAT(reports.Texts(), testing::ElementsAre("m_pRecordParserClone"));
    CTemplateEditDlgNoHTML none(OLESTR("Date"), nullptr, 0);
    EXPECT_EQ(reports.Texts().size(), 2u);
}

} // namespace
