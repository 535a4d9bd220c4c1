#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "src/parsing/DataTypes.h"
#include "tests/parsing/FieldText.h"
#include "tests/support/ChineseTexts.h"
#include "tests/support/ReportLog.h"

using namespace Hesperon::specifics;

namespace {

struct TypeRow
{
    unsigned uiType;
    string_view_t sName;
    string_view_t sLocalized;
};

constexpr TypeRow kTypes[] = {
    {0, OLESTR("Symbol"), OLESTR("商品")},
    {1, OLESTR("Date"), OLESTR("日期")},
    {2, OLESTR("Time"), OLESTR("时间")},
    {3, OLESTR("Open"), OLESTR("开盘价")},
    {4, OLESTR("High"), OLESTR("最高价")},
    {5, OLESTR("Low"), OLESTR("最低价")},
    {6, OLESTR("Close"), OLESTR("收盘价")},
    {7, OLESTR("Price"), OLESTR("价格")},
    {8, OLESTR("Volume"), OLESTR("成交量")},
    {9, OLESTR("Up Volume"), OLESTR("上涨量")},
    {10, OLESTR("Down Volume"), OLESTR("下跌量")},
    {11, OLESTR("Unchanged Volume"), OLESTR("平盘量")},
    {12, OLESTR("Total Volume"), OLESTR("总成交量")},
    {13, OLESTR("Up Ticks"), OLESTR("上涨笔数")},
    {14, OLESTR("Down Ticks"), OLESTR("下跌笔数")},
    {15, OLESTR("Unchanged Ticks"), OLESTR("平盘笔数")},
    {16, OLESTR("Total Ticks"), OLESTR("总笔数")},
    {17, OLESTR("Open Interest"), OLESTR("未平仓")},
};

std::vector<std::string> TemplatesOf(const CDataType& type)
{
    std::vector<std::string> templates;
    for (const tagTEMPLATE& entry : type.Templates())
        templates.push_back(Shown(entry.szTemplate));
    return templates;
}

CDataType Filled(unsigned uiType)
{
    CDataType type(uiType);
    type.FillDefaultTemplates();
    return type;
}

TEST(FieldTypes, HaveInternalAndLocalizedNames)
{
    ChineseTexts chinese;
    ASSERT_EQ(std::size(kTypes), TYPES_COUNT);
    for (const TypeRow& row : kTypes) {
        SCOPED_TRACE(row.uiType);
        EXPECT_EQ(Shown(TypeName(row.uiType)), Shown(row.sName));
        EXPECT_EQ(Shown(LocalizedTypeName(row.uiType)), Shown(row.sLocalized));
        EXPECT_EQ(FindType(row.sName), row.uiType);
    }
}

TEST(FieldTypes, OutOfRangeAreUndefined)
{
    ChineseTexts chinese;
    for (unsigned uiType : {18u, 19u, kNoType}) {
        SCOPED_TRACE(uiType);
        EXPECT_EQ(Shown(TypeName(uiType)), Shown(OLESTR("未定义")));
        EXPECT_EQ(Shown(LocalizedTypeName(uiType)), Shown(OLESTR("未定义")));
    }
}

TEST(FieldTypes, NamesAreFoundExactly)
{
    for (string_view_t sName : {OLESTR(""), OLESTR("date"), OLESTR("Date "), OLESTR("UpVolume"),
                                OLESTR("未定义"), OLESTR("日期")}) {
        SCOPED_TRACE(Shown(sName));
        EXPECT_EQ(FindType(sName), kNoType);
    }
}

TEST(Resolutions, AdmitTypesByTheMatrix)
{
    using Ids = std::vector<unsigned>;
    const Ids all = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17};
    const Ids bars = {0, 1, 2, 3, 4, 5, 6, 8, 9, 10, 11, 13, 14, 15, 16};
    const Ids days = {0, 1, 2, 3, 4, 5, 6, 8, 9, 10, 11, 13, 14, 15, 16, 17};
    const std::pair<LONG, Ids> rows[] = {
        {0, all}, {1, {0, 1, 2, 7, 8}}, {2, bars}, {3, bars}, {4, bars}, {5, bars}, {6, days},
        {7, days}};
    for (const auto& [nResolution, expected] : rows) {
        SCOPED_TRACE(nResolution);
        Ids admitted;
        for (unsigned uiType = 0; uiType < TYPES_COUNT; ++uiType)
            if (IsValidType(uiType, nResolution))
                admitted.push_back(uiType);
        EXPECT_EQ(admitted, expected);

        Ids kept;
        for (const auto& [uiType, type] : AdmittedTypes(DefaultTypes(), nResolution)) {
            EXPECT_EQ(type.Id(), uiType);
            kept.push_back(uiType);
        }
        EXPECT_EQ(kept, expected);
    }
}

TEST(Resolutions, ReportWhatIsOutOfRange)
{
    const std::string type = "uiType < TYPES_COUNT";
    const std::string resolution = "static_cast<const T*>(this)->m_nResolution < RESOLUTIONS_COUNT";
    ReportLog reports;
    EXPECT_FALSE(IsValidType(18, 0));
    EXPECT_FALSE(IsValidType(0, 8));
    EXPECT_FALSE(IsValidType(kNoType, -1));
    EXPECT_THAT(reports.Texts(), testing::ElementsAre(type, resolution, type, resolution));
}

TEST(Resolutions, RequireTypes)
{
    using Ids = std::vector<unsigned>;
    const std::pair<LONG, Ids> rows[] = {
        {0, {}},
        {1, {1, 2, 7}},
        {2, {1, 2, 3, 4, 5, 6}},
        {3, {1, 2, 3, 4, 5, 6}},
        {4, {}},
        {5, {1, 2, 3, 4, 5, 6}},
        {6, {1, 3, 4, 5, 6}},
        {7, {1, 3, 4, 5, 6}},
        {8, {}},
        {-1, {}},
    };
    for (const auto& [nResolution, expected] : rows) {
        SCOPED_TRACE(nResolution);
        const auto required = RequiredTypes(nResolution);
        EXPECT_EQ(Ids(required.begin(), required.end()), expected);
    }
}

TEST(Templates, DateDefaultsInTheOrderOfDetection)
{
    EXPECT_THAT(TemplatesOf(Filled(TypeDate)),
                testing::ElementsAre(
                    "*y/*m/*d", "*m/*d/*y", "yyyymmdd", "yymmdd", "*d.*m.*y", "*d/*m/*y",
                    "*dmmyyyy", "*dmmyy", "ddmmy*", "*y-*m-*d", "*y_*m_*d", "*y *m *d", "*d-*m-*y",
                    "*d_*m_*y", "*d *m *y", "*m-*d-*y", "*m_*d_*y", "*m *d *y", "*dmmmyy",
                    "*dmmmyyyy", "*d mmm *y", "*d-mmm-*y", "*d_mmm_*y", "mmm,*d *y", "mmm_*d_*y"));
}

TEST(Templates, TimeDefaultsInTheOrderOfDetection)
{
    EXPECT_THAT(TemplatesOf(Filled(TypeTime)),
                testing::ElementsAre("*hmm", "*hmmss", "*h:mm", "*h:*m", "*h:*m:*s", "*h:*mtt@pm",
                                     "*h:*m:*stt@pm", "*h:*m tt@pm", "*h:*m:*s tt@pm",
                                     "*h:*m:*s.*f"));
}

TEST(Templates, OtherTypesHaveOneThatCanBeRemoved)
{
    for (unsigned uiType = 0; uiType < TYPES_COUNT; ++uiType) {
        SCOPED_TRACE(uiType);
        CDataType type = Filled(uiType);
        const bool bList = uiType == TypeDate || uiType == TypeTime;
        for (const tagTEMPLATE& entry : type.Templates()) {
            EXPECT_EQ(entry.bDefault, bList);
            EXPECT_EQ(entry.nCount, 1u);
        }
        if (bList)
            continue;
        const char* expected = uiType == 0 ? "*" : uiType <= 7 ? "*i.*f" : "*i";
        EXPECT_THAT(TemplatesOf(type), testing::ElementsAre(expected));
        type.RemoveTemplate(type.Templates()[0].szTemplate);
        EXPECT_TRUE(type.Templates().empty());
    }
}

TEST(Templates, FillingStartsFromNothing)
{
    CDataType type = Filled(TypeTime);
    type.AddTemplate(OLESTR("hh"), false);
    type.FillDefaultTemplates();
    EXPECT_EQ(type.Templates().size(), 10u);
    EXPECT_EQ(type.Templates()[0].nCount, 1u);
}

TEST(Templates, FillingWithoutATypeIsReported)
{
    for (unsigned uiType : {18u, kNoType}) {
        SCOPED_TRACE(uiType);
        ReportLog reports;
        EXPECT_TRUE(Filled(uiType).Templates().empty());
        EXPECT_EQ(reports.Texts().size(), 1u);
    }
}

TEST(Templates, AddingTwiceCounts)
{
    CDataType type(TypeDate);
    type.AddTemplate(OLESTR("*Y;*M"), false);
    type.AddTemplate(OLESTR("*y;*m"), true);
    type.AddTemplate(OLESTR(""), false);
    ASSERT_EQ(type.Templates().size(), 1u);
    EXPECT_EQ(Shown(type.Templates()[0].szTemplate), "*y;*m");
    EXPECT_EQ(type.Templates()[0].nCount, 2u);
    EXPECT_FALSE(type.Templates()[0].bDefault);
}

TEST(Templates, UpperCaseDefaultIsTheDefaultAgain)
{
    CDataType type = Filled(TypeDate);
    type.AddTemplate(OLESTR("*Y/*M/*D"), false);
    EXPECT_EQ(type.Templates().size(), 25u);
    EXPECT_EQ(type.Templates()[0].nCount, 2u);
    EXPECT_TRUE(type.Templates()[0].bDefault);
}

TEST(Templates, AreCutAt511Characters)
{
    CDataType type(TypeDate);
    type.AddTemplate(string_t(600, OLECHAR('Y')), false);
    type.AddTemplate(string_t(511, OLECHAR('y')), false);
    ASSERT_EQ(1u, type.Templates().size());
    EXPECT_EQ(std::string(511, 'y'), Shown(type.Templates()[0].szTemplate));
    EXPECT_EQ(2u, type.Templates()[0].nCount);
}

TEST(Templates, AreFoundByExactText)
{
    CDataType type = Filled(TypeDate);
    EXPECT_EQ(type.FindTemplate(OLESTR("*y/*m/*d")), 0);
    EXPECT_EQ(type.FindTemplate(OLESTR("mmm_*d_*y")), 24);
    EXPECT_EQ(type.FindTemplate(OLESTR("*Y/*m/*d")), -1);
    EXPECT_EQ(type.FindTemplate(OLESTR("")), -1);
    EXPECT_EQ(CDataType().FindTemplate(OLESTR("*y")), -1);
    EXPECT_EQ(CDataType().Id(), kNoType);
}

TEST(Templates, OnlyAddedOnesCanBeRemoved)
{
    CDataType type = Filled(TypeDate);
    type.AddTemplate(OLESTR("yyyy"), false);
    type.AddTemplate(OLESTR("dd"), false);
    type.RemoveTemplate(OLESTR("*y/*m/*d"));
    type.RemoveTemplate(OLESTR("none"));
    type.RemoveTemplate(OLESTR("YYYY"));
    EXPECT_EQ(type.Templates().size(), 27u);
    type.RemoveTemplate(OLESTR("yyyy"));
    EXPECT_EQ(type.FindTemplate(OLESTR("yyyy")), -1);
    EXPECT_EQ(type.FindTemplate(OLESTR("dd")), 25);
}

TEST(Templates, TableHoldsAllTypes)
{
    const TypeTable types = DefaultTypes();
    EXPECT_EQ(types.size(), TYPES_COUNT);
    for (const auto& [uiType, type] : types) {
        SCOPED_TRACE(uiType);
        EXPECT_EQ(type.Id(), uiType);
        EXPECT_EQ(TemplatesOf(type), TemplatesOf(Filled(uiType)));
    }
}

} // namespace
