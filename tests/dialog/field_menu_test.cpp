// The menu of a heading: what it offers, and what its numbers mean.

#include <gtest/gtest.h>

#include "Simples/interface/ResourceStrings.h"
#include "src/UIComponents/controls/ColumnChange.h"
#include "src/UIComponents/controls/FieldMenu.h"
#include "src/data/DataParser.h"
#include "tests/dialog/GridFakes.h"
#include "tests/support/ChineseTexts.h"
#include "tests/support/OfferAllResolutions.h"
#include "tests/support/TempFile.h"

using namespace dialog_test;
using Hesperon::specifics::CDataParser;
using Hesperon::specifics::ColumnChange;
using Hesperon::specifics::ColumnField;
using Hesperon::specifics::FieldChoice;
using Hesperon::specifics::FieldMenu;
using Hesperon::specifics::FieldMenuType;
using Hesperon::specifics::MenuText;

namespace {

// A menu as a text: "2001 Symbol", "-" for a line, "*" for a check mark, and in brackets what
// stands in a menu within it.
std::string MenuDump(ViewMenu menu)
{
    std::string sText;
    for (const ViewMenuItem& item : menu) {
        sText += sText.empty() ? "" : " | ";
        if (!item.pszText) {
            sText += "-";
            continue;
        }
        if (item.items.empty())
            sText += std::to_string(item.nId) + (item.bChecked ? "* " : " ");
        sText += Utf8(item.pszText);
        if (!item.items.empty())
            sText += " [" + MenuDump(item.items) + "]";
    }
    return sText;
}

// The ids of items without items of their own, lines left out.
void CollectIds(ViewMenu menu, std::vector<LONG>& ids)
{
    for (const ViewMenuItem& item : menu)
        if (!item.items.empty())
            CollectIds(item.items, ids);
        else if (item.pszText)
            ids.push_back(item.nId);
}

FieldMenuType MenuType(const char* pszName, std::vector<string_t> templates = {})
{
    return {Wide(pszName), Wide(std::string("<") + pszName + ">"), std::move(templates)};
}

// Texts of the menus are English while it lives.
class EnglishTexts
{
public:
    EnglishTexts() : m_before(ResourceHandle()) { SetResourceLanguage(Language::English); }
    ~EnglishTexts() { SetResourceHandle(m_before); }

private:
    const LONG_PTR m_before;
};

// ---- the model

TEST(FieldMenus, LinesStandBetweenTypesOfDifferentKinds)
{
    const EnglishTexts english;
    const string_t a = OLESTR("a");
    struct Row
    {
        std::vector<FieldMenuType> types;
        const char* pszDump;
    };
    const Row kRows[] = {
        {{}, ""},
        {{MenuType("P")}, "2000 <P>"},
        {{MenuType("P"), MenuType("Q")}, "2000 <P> | 2001 <Q>"},
        {{MenuType("T", {a})}, "<T> [2100 a | - | 2101 Custom...]"},
        {{MenuType("T", {a}), MenuType("U", {a})},
         "<T> [2100 a | - | 2101 Custom...] | <U> [2200 a | - | 2201 Custom...]"},
        {{MenuType("P"), MenuType("T", {a, a}), MenuType("Q")},
         "2000 <P> | - | <T> [2200 a | 2201 a | - | 2202 Custom...] | - | 2002 <Q>"},
    };
    for (const Row& row : kRows)
        EXPECT_EQ(row.pszDump, MenuDump(FieldMenu(row.types, {}).Items()));
}

TEST(FieldMenus, TheColumnsTemplateIsCheckedWhateverItsCase)
{
    const EnglishTexts english;
    const std::vector<FieldMenuType> types = {
        MenuType("Date", {OLESTR("*d.*m.*y"), OLESTR("*y-*m-*d")}),
        MenuType("Time", {OLESTR("*d.*m.*y")})};
    const auto dump = [&](const ColumnField& column) {
        return MenuDump(FieldMenu(types, column).Items());
    };
    EXPECT_EQ("<Date> [2100* *d.*m.*y | 2101 *y-*m-*d | - | 2102 Custom...] | "
              "<Time> [2200 *d.*m.*y | - | 2201 Custom...]",
              dump({OLESTR("Date"), OLESTR("*D.*M.*Y")}));
    EXPECT_EQ("<Date> [2100 *d.*m.*y | 2101 *y-*m-*d | - | 2102 Custom...] | "
              "<Time> [2200* *d.*m.*y | - | 2201 Custom...]",
              dump({OLESTR("Time"), OLESTR("*d.*m.*y")}));
    EXPECT_EQ("<Date> [2100 *d.*m.*y | 2101 *y-*m-*d | - | 2102 Custom...] | "
              "<Time> [2200 *d.*m.*y | - | 2201 Custom...]",
              dump({OLESTR("Date"), OLESTR("*d/*m/*y")}));
}

TEST(FieldMenus, NumbersStandForTypesTemplatesAndTheEditor)
{
    using Kind = FieldChoice::Kind;
    const FieldMenu menu({MenuType("P"), MenuType("T", {OLESTR("a"), OLESTR("b")}), MenuType("Q")},
                         {});
    struct Row
    {
        LONG nId;
        Kind kind;
        std::size_t nType, nTemplate;
    };
    const Row kRows[] = {
        {2000, Kind::Plain, 0, 0},    {2002, Kind::Plain, 2, 0},
        {2200, Kind::Template, 1, 0}, {2201, Kind::Template, 1, 1},
        {2202, Kind::Custom, 1, 2},   {0, Kind::Nothing, 0, 0}, // the menu was left
        {2001, Kind::Nothing, 0, 0}, // has templates, and so no number of its own
        {2003, Kind::Nothing, 0, 0}, // no such type
        {2100, Kind::Nothing, 0, 0}, // a plain type has no templates
        {2203, Kind::Nothing, 0, 0}, // no such template
        {2400, Kind::Nothing, 0, 0},  {1999, Kind::Nothing, 0, 0},
        {-1, Kind::Nothing, 0, 0},    {0x7FFFFFFF, Kind::Nothing, 0, 0},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.nId);
        const FieldChoice choice = menu.Choice(row.nId);
        EXPECT_EQ(row.kind, choice.kind);
        EXPECT_EQ(row.nType, choice.nType);
        EXPECT_EQ(row.nTemplate, choice.nTemplate);
    }
    EXPECT_EQ(OLESTR("Q"), menu.Type(menu.Choice(2002)).sName);
}

TEST(FieldMenus, ASmallAddressIsTheNumberOfAString)
{
    const ChineseTexts chinese;
    EXPECT_EQ(OLESTR("text"), MenuText(OLESTR("text")));
    EXPECT_EQ(OLESTR(""), MenuText(nullptr));
    EXPECT_EQ(LoadResourceString(IDS_DATE),
              MenuText(reinterpret_cast<const OLECHAR*>(std::uintptr_t(IDS_DATE))));
}

// ---- from a parser

class FieldMenusOfParsers : public testing::Test
{
protected:
    FieldMenusOfParsers()
    {
        EXPECT_EQ(S_OK, CreateObject(m_pFake));
        m_pFake->m_sName = "Date";
        m_pFake->m_sTemplate = "a";
    }
    std::string Dump(IRecordParser* pParser)
    {
        ColumnChange change(pParser, 0);
        std::vector<FieldMenuType> types;
        if (const HRESULT hr = change.Read(types); FAILED(hr))
            return "failed";
        return MenuDump(FieldMenu(types, change.Column()).Items());
    }

    const EnglishTexts m_english;
    com_ptr<GridRecordParser> m_pFake;
};

TEST_F(FieldMenusOfParsers, ASingleTemplateMakesATypePlain)
{
    m_pFake->m_types = m_pFake->m_typeTexts = {"Date", "Time", "Open"};
    m_pFake->m_templates = {{"Date", {"..."}}, {"Time", {"b", "..."}}};
    EXPECT_EQ("2000 Date | - | Time [2200 b | - | 2201 Custom...] | - | 2002 Open",
              Dump(m_pFake.get()));
}

TEST_F(FieldMenusOfParsers, TheLastTemplateIsNotOffered)
{
    m_pFake->m_types = m_pFake->m_typeTexts = {"Date"};
    m_pFake->m_templates = {{"Date", {"a", "b", "last"}}};
    EXPECT_EQ("Date [2100* a | 2101 b | - | 2102 Custom...]", Dump(m_pFake.get()));
}

TEST_F(FieldMenusOfParsers, AMissingTextIsTheName)
{
    m_pFake->m_types = {"Date", "Open", "High"};
    m_pFake->m_typeTexts = {"Datum", ""};
    EXPECT_EQ("2000 Datum | 2001 Open | 2002 High", Dump(m_pFake.get()));
}

TEST_F(FieldMenusOfParsers, NothingIsShownAfterAFailure)
{
    m_pFake->m_types = m_pFake->m_typeTexts = {"Open"};
    EXPECT_EQ("2000 Open", Dump(m_pFake.get()));
    for (const char* pszFailure :
         {"FieldTemplate", "FieldName", "TypeNames", "TypeNamesLocalized", "Templates"}) {
        m_pFake->m_failures = {{pszFailure, E_FAIL}};
        EXPECT_EQ("failed", Dump(m_pFake.get())) << pszFailure;
    }
}

// ---- from a real record parser

class FieldMenusOfFiles : public FieldMenusOfParsers
{
protected:
    // Types that the resolution admits, as the menu has them, date and time without theirs.
    std::string Offered(LONG nResolution)
    {
        const TempFile file("2003/01/13,09:30:00,133.54,134.30,133.44,133.98,477114\n"
                            "2003/01/13,09:35:00,133.98,134.56,133.94,134.36,839805\n");
        com_ptr<CDataParser> pData;
        EXPECT_EQ(S_OK, CreateObject(pData));
        com_ptr<IDispatch> pObject;
        EXPECT_EQ(S_OK, pData->get_RecordParser(pObject.put()));
        const auto pRecords = pObject.as<IRecordParser>();
        EXPECT_EQ(S_OK, OfferAllResolutions(*pRecords.get()));
        EXPECT_EQ(S_OK, pData->put_FileName(Bstr(file.Name()).get()));
        EXPECT_EQ(S_OK, pRecords->put_Resolution(nResolution));
        m_pRecords = pRecords;
        std::string sText;
        ColumnChange change(pRecords, 0);
        std::vector<FieldMenuType> types;
        EXPECT_EQ(S_OK, change.Read(types));
        const FieldMenu menu(types, change.Column());
        for (const ViewMenuItem& item : menu.Items())
            sText += !item.pszText ? "-|"
                     : item.items.empty()
                         ? std::to_string(item.nId) + " " + Utf8(item.pszText) + "|"
                         : Utf8(item.pszText) + ">|";
        m_ids.clear();
        CollectIds(menu.Items(), m_ids);
        m_sDates.clear();
        for (const ViewMenuItem& item : menu.Items())
            if (!item.items.empty())
                m_sDates.push_back(MenuDump(item.items));
        return sText;
    }

    com_ptr<IRecordParser> m_pRecords;
    std::vector<LONG> m_ids;
    std::vector<std::string> m_sDates;
};

TEST_F(FieldMenusOfFiles, OfferWhatTheResolutionAdmits)
{
    const std::string sPrices = "2004 Open|2005 High|2006 Low|2007 Close|";
    const std::string sHead = "2000 Undefined|2001 Symbol|-|Date>|Time>|-|";
    EXPECT_EQ(sHead + sPrices +
                  "2008 Price|2009 Volume|2010 Up Volume|2011 Down Volume|2012 Unchanged Volume|"
                  "2013 Total Volume|2014 Up Ticks|2015 Down Ticks|2016 Unchanged Ticks|"
                  "2017 Total Ticks|2018 Open Interest|",
              Offered(0));
    EXPECT_EQ(sHead + "2004 Price|2005 Volume|", Offered(1));
    const std::string sBars = sHead + sPrices +
                              "2008 Volume|2009 Up Volume|2010 Down Volume|2011 Unchanged Volume|"
                              "2012 Up Ticks|2013 Down Ticks|2014 Unchanged Ticks|"
                              "2015 Total Ticks|";
    EXPECT_EQ(sBars, Offered(5));
    EXPECT_EQ(sBars + "2016 Open Interest|", Offered(6));
}

TEST_F(FieldMenusOfFiles, OfferTheTemplatesOfDatesAndTimes)
{
    Offered(5);
    ASSERT_EQ(2u, m_sDates.size());
    EXPECT_TRUE(m_sDates[0].starts_with("2300* *y/*m/*d | 2301 *m/*d/*y | 2302 yyyymmdd | "))
        << m_sDates[0];
    EXPECT_TRUE(m_sDates[0].ends_with(" | 2324 mmm_*d_*y | - | 2325 Custom...")) << m_sDates[0];
    EXPECT_TRUE(m_sDates[1].starts_with("2400 *hmm | 2401 *hmmss | ")) << m_sDates[1];
    EXPECT_TRUE(m_sDates[1].ends_with(" | 2409 *h:*m:*s.*f | - | 2410 Custom...")) << m_sDates[1];
}

TEST_F(FieldMenusOfFiles, EveryNumberIsItsOwn)
{
    Offered(0);
    std::ranges::sort(m_ids);
    EXPECT_EQ(m_ids.end(), std::ranges::adjacent_find(m_ids));
    EXPECT_EQ(17u + 26 + 11, m_ids.size());
}

TEST_F(FieldMenusOfFiles, AreInTheLanguageThatIsSet)
{
    const ChineseTexts chinese;
    EXPECT_EQ("2000 \u672A\u5B9A\u4E49|2001 \u5546\u54C1|-|\u65E5\u671F>|\u65F6\u95F4>|-|"
              "2004 \u4EF7\u683C|2005 \u6210\u4EA4\u91CF|",
              Offered(1));
    EXPECT_TRUE(m_sDates[0].ends_with("\u81EA\u5B9A\u4E49...")) << m_sDates[0];
}

} // namespace
