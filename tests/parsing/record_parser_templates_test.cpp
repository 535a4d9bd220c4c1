// The templates of a record parser's dates and times.

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/parsing/Layout.h"
#include "tests/support/ReportLog.h"

using namespace Hesperon::specifics;

namespace {

class ColumnTemplates : public testing::Test
{
protected:
    // Date *m/*d/*y, Time *h:mm, Open, High
    ColumnTemplates()
        : m_file({OLESTR("01/02/2003,09:30,1.5,2.5"), OLESTR("01/03/2003,09:30,1.5,2.5")})
    {
        EXPECT_EQ(S_OK, m_file.Load());
        EXPECT_EQ("Date *m/*d/*y, Time *h:mm, Open, High", m_file.Columns());
        m_file.File().m_positions.clear();
    }

    HRESULT SetTemplate(string_view_t sTemplate, ULONG nField)
    {
        Bstr owner;
        return m_file->SetFieldTemplate(Text(owner, sTemplate), nField);
    }
    LONG TemplateCount(string_view_t sType)
    {
        Bstr owner;
        LONG nCount = -1;
        EXPECT_EQ(S_OK, m_file->GetTemplateItemCount(Text(owner, sType), &nCount));
        return nCount;
    }
    const std::string& Refreshes() const { return m_file.File().m_refreshes; }

    ParsedFile m_file;
};

TEST_F(ColumnTemplates, SetByHandJoinTheList)
{
    const LONG nBefore = TemplateCount(OLESTR("Date"));
    EXPECT_EQ(S_OK, SetTemplate(OLESTR("*D/*M/*Y"), 0));
    EXPECT_EQ("Date *d/*m/*y, Time *h:mm, Open, High", m_file.Columns());
    EXPECT_EQ(nBefore, TemplateCount(OLESTR("Date"))); // a default one
    EXPECT_EQ(S_OK, SetTemplate(OLESTR("*M/*D/Y*"), 0));
    EXPECT_EQ("Date *m/*d/y*, Time *h:mm, Open, High", m_file.Columns());
    EXPECT_EQ(nBefore + 1, TemplateCount(OLESTR("Date")));
    EXPECT_EQ("ff", Refreshes());

    Bstr type, name;
    LONG bDefault = 7;
    EXPECT_EQ(S_OK,
              m_file->GetTemplateItem(Text(type, OLESTR("Date")), nBefore, name.put(), &bDefault));
    EXPECT_EQ("*m/*d/y*", Shown(name.view()));
    EXPECT_EQ(0, bDefault);
}

TEST_F(ColumnTemplates, ThatStandOrAreOfOtherTypesChangeNothing)
{
    EXPECT_EQ(S_OK, SetTemplate(OLESTR("*M/*D/*Y"), 0)); // but for case the present one
    EXPECT_EQ(S_OK, SetTemplate(OLESTR("*i"), 2));
    EXPECT_EQ("", Refreshes());
    EXPECT_EQ("Date *m/*d/*y, Time *h:mm, Open, High", m_file.Columns());
    EXPECT_EQ(E_INVALIDARG, SetTemplate(OLESTR("*y"), 4));
}

TEST_F(ColumnTemplates, ThatAreEmptyAreReported)
{
    ReportLog reports;
    SetTemplate(OLESTR(""), 0);
    m_file->SetFieldTemplate(nullptr, 1);
    SetTemplate(OLESTR(""), 2); // of no date
    EXPECT_THAT(reports.Texts(),
                testing::ElementsAre("bsTemplate && bsTemplate[0]", "bsTemplate && bsTemplate[0]"));
    EXPECT_EQ("Date *m/*d/*y, Time *h:mm, Open, High", m_file.Columns());
}

TEST_F(ColumnTemplates, AreTheBaseOfANewInferenceWhenThatIsSmart)
{
    EXPECT_EQ(S_OK, m_file->put_SmartResolutionEnabled(VARIANT_TRUE));
    EXPECT_EQ(S_OK, m_file->SetFieldType(2, TypeClose));
    ReportLog reports;
    EXPECT_EQ(S_OK, SetTemplate(OLESTR("*d/*m/*y"), 0));
    EXPECT_EQ("F", Refreshes());
    EXPECT_EQ("Date *d/*m/*y, Time *h:mm, Open, High", m_file.Columns());
    EXPECT_EQ("2003-02-01", m_file.Value(0));
    EXPECT_TRUE(reports.Texts().empty());
}

// Days 06 to 11 as 01/06/2003 and as 20030106, and bars of them.
ParsedFile DatesTwice()
{
    std::vector<string_t> lines;
    for (int nDay = 6; nDay <= 11; ++nDay)
        lines.push_back(Wide(fmt::format("01/{0:02}/2003,200301{0:02},1,2,0.5,1.5", nDay)));
    return ParsedFile(std::move(lines));
}

TEST(TemplatesOfASecondDate, SurviveASmartInference)
{
    const ParsedFile file = DatesTwice();
    ASSERT_EQ(S_OK, file.Offer(AllResolutions()));
    ASSERT_EQ(S_OK, file.Load());
    ASSERT_EQ(S_OK, file->put_SmartResolutionEnabled(VARIANT_TRUE));
    Bstr name(OLESTR("Date"));
    EXPECT_EQ(S_OK, file->SetFieldName(1, name.get()));
    Bstr sTemplate(OLESTR("yyyymmdd"));
    ReportLog reports;
    EXPECT_EQ(S_OK, file->SetFieldTemplate(sTemplate.get(), 1));
    EXPECT_EQ("fF", file.File().m_refreshes);
    LONG nType = -7;
    EXPECT_EQ(S_OK, file->GetFieldType(1, &nType));
    EXPECT_EQ(static_cast<LONG>(TypeDate), nType);
    EXPECT_TRUE(file.Columns().starts_with("Date *m/*d/*y, Date yyyymmdd, ")) << file.Columns();
    Bstr duplicated;
    EXPECT_EQ(S_OK, file->get_DuplicatedField(duplicated.put()));
    EXPECT_EQ("Date", Shown(duplicated.view()));
    EXPECT_TRUE(reports.Texts().empty());
}

TEST(ASecondTime, StaysThroughAChoiceOfTheResolution)
{
    ParsedFile file(
        {OLESTR("20030106,09:30,10:30,1,2,0.5,1.5"), OLESTR("20030106,09:35,10:35,1,2,0.5,1.5")});
    ASSERT_EQ(S_OK, file.Load());
    ASSERT_EQ(S_OK, file->SetFieldType(2, TypeTime));
    Bstr sTemplate(OLESTR("*h:*m"));
    ASSERT_EQ(S_OK, file->SetFieldTemplate(sTemplate.get(), 2));
    EXPECT_EQ(S_OK, file->put_Resolution(ResolutionMinutes));
    EXPECT_EQ("Date yyyymmdd, Time *h:mm, Time *h:*m, Open, High, Low, Close", file.Columns());
}

TEST_F(ColumnTemplates, OfColumnsThatWereNeverFixedAreReportedWhenInferenceIsSmart)
{
    m_file.File().m_pRecordParser = nullptr; // no refresh builds the columns anew
    EXPECT_EQ(S_OK, m_file->put_SmartResolutionEnabled(VARIANT_TRUE));
    ReportLog reports;
    EXPECT_EQ(S_OK, SetTemplate(OLESTR("*d/*m/*y"), 0)); // fixes all dates and times
    EXPECT_EQ(S_OK, SetTemplate(OLESTR("*h:*m"), 1));
    EXPECT_TRUE(reports.Texts().empty());
    // The date that a choice of the resolution finds isn't fixed by it.
    ASSERT_EQ(S_OK, m_file->SetFieldType(0, TypeVolume));
    ASSERT_EQ(S_OK, m_file->put_Resolution(ResolutionDays));
    EXPECT_EQ("Date *m/*d/*y, Time *h:*m, Open, High", m_file.Columns());
    EXPECT_EQ(S_OK, SetTemplate(OLESTR("*d/*m/*y"), 0));
    EXPECT_THAT(reports.Texts(), testing::ElementsAre("m_predefinedFields.end() != "
                                                      "m_predefinedFields.find((size_t)nField)"));
    EXPECT_EQ("FFF", Refreshes());
}

TEST_F(ColumnTemplates, AreCutAt511CharactersInTheColumnAndInTheList)
{
    const string_t sLong = OLESTR("*M/*D/*Y") + string_t(600, OLECHAR('?'));
    const string_t sCut = OLESTR("*m/*d/*y") + string_t(503, OLECHAR('?'));
    EXPECT_EQ(S_OK, SetTemplate(sLong, 0));
    Bstr type, column, listed;
    LONG bDefault = 7;
    EXPECT_EQ(S_OK, m_file->GetFieldTemplate(column.put(), 0));
    EXPECT_EQ(26, TemplateCount(OLESTR("Date")));
    EXPECT_EQ(S_OK,
              m_file->GetTemplateItem(Text(type, OLESTR("Date")), 25, listed.put(), &bDefault));
    EXPECT_EQ(Shown(sCut), Shown(column.view()));
    EXPECT_EQ(Shown(sCut), Shown(listed.view()));
    EXPECT_EQ(S_OK, m_file->RemoveTemplate(0, listed.get()));
    EXPECT_EQ(25, TemplateCount(OLESTR("Date")));
}

TEST_F(ColumnTemplates, AreListedForDateAndTimeAlone)
{
    Bstr owner;
    Variant list;
    EXPECT_EQ(S_OK, m_file->GetTemplates(&list, Text(owner, OLESTR("Time"))));
    EXPECT_EQ("*hmm, *hmmss, *h:mm, *h:*m, *h:*m:*s, *h:*mtt@pm, *h:*m:*stt@pm, *h:*m tt@pm, "
              "*h:*m:*s tt@pm, *h:*m:*s.*f, ...",
              ShownList(list));
    EXPECT_EQ(S_OK, m_file->GetTemplates(list.put(), Text(owner, OLESTR("Date"))));
    EXPECT_TRUE(ShownList(list).starts_with("*y/*m/*d, *m/*d/*y, "));
    EXPECT_TRUE(ShownList(list).ends_with("mmm,*d *y, mmm_*d_*y, ..."));
    for (string_view_t sType : {OLESTR("Open"), OLESTR("date"), OLESTR("")}) {
        SCOPED_TRACE(Shown(sType));
        EXPECT_EQ(S_OK, m_file->GetTemplates(list.put(), Text(owner, sType)));
        EXPECT_EQ(VT_EMPTY, list.vt);
    }
    EXPECT_EQ(E_POINTER, m_file->GetTemplates(nullptr, Text(owner, OLESTR("Date"))));
    EXPECT_EQ(E_NOTIMPL, m_file->SetTemplates(list, Text(owner, OLESTR("Date"))));
}

TEST_F(ColumnTemplates, AreHandedOutOneByOne)
{
    Bstr date, open, name;
    LONG nCount = 0;
    LONG bDefault = 0;
    const BSTR bsDate = Text(date, OLESTR("Date"));
    const BSTR bsOpen = Text(open, OLESTR("Open"));
    EXPECT_EQ(25, TemplateCount(OLESTR("Date")));
    EXPECT_EQ(10, TemplateCount(OLESTR("Time")));
    EXPECT_EQ(TYPE_E_ELEMENTNOTFOUND, m_file->GetTemplateItemCount(bsOpen, &nCount));
    EXPECT_EQ(E_INVALIDARG, m_file->GetTemplateItemCount(nullptr, &nCount));
    EXPECT_EQ(E_INVALIDARG, m_file->GetTemplateItemCount(bsDate, nullptr));

    EXPECT_EQ(S_OK, m_file->GetTemplateItem(bsDate, 24, name.put(), &bDefault));
    EXPECT_EQ("mmm_*d_*y", Shown(name.view()));
    EXPECT_EQ(1, bDefault);
    EXPECT_EQ(DISP_E_BADINDEX, m_file->GetTemplateItem(bsDate, 25, name.put(), &bDefault));
    EXPECT_EQ(DISP_E_BADINDEX, m_file->GetTemplateItem(bsDate, -1, name.put(), &bDefault));
    EXPECT_EQ(TYPE_E_ELEMENTNOTFOUND, m_file->GetTemplateItem(bsOpen, 0, name.put(), &bDefault));
    EXPECT_EQ(E_INVALIDARG, m_file->GetTemplateItem(nullptr, 0, name.put(), &bDefault));
    EXPECT_EQ(E_INVALIDARG, m_file->GetTemplateItem(bsDate, 0, nullptr, &bDefault));
    EXPECT_EQ(E_INVALIDARG, m_file->GetTemplateItem(bsDate, 0, name.put(), nullptr));
}

TEST_F(ColumnTemplates, AreRemovedUnlessTheyAreDefaults)
{
    Bstr owner;
    EXPECT_EQ(S_OK, SetTemplate(OLESTR("*m/*d/y*"), 0));
    EXPECT_EQ(26, TemplateCount(OLESTR("Date")));
    EXPECT_EQ(S_OK, m_file->RemoveTemplate(0, Text(owner, OLESTR("*m/*d/*y"))));
    EXPECT_EQ(S_OK, m_file->RemoveTemplate(0, Text(owner, OLESTR("*M/*D/Y*")))); // exact
    EXPECT_EQ(26, TemplateCount(OLESTR("Date")));
    EXPECT_EQ(S_OK, m_file->RemoveTemplate(0, Text(owner, OLESTR("*m/*d/y*"))));
    EXPECT_EQ(25, TemplateCount(OLESTR("Date")));
    EXPECT_EQ(E_INVALIDARG, m_file->RemoveTemplate(4, Text(owner, OLESTR("*m/*d/y*"))));
}

} // namespace
