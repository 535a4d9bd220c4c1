#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "src/parsing/DataTypes.h"
#include "tests/parsing/FieldText.h"
#include "tests/support/ReportLog.h"

using namespace Hesperon::specifics;

namespace {

constexpr const char* kRefused = "refused";

CDataField Parsed(unsigned uiType, string_view_t sTemplate, string_view_t sText)
{
    CDataField field = Column(uiType, sTemplate);
    field.ParseField(sText);
    return field;
}

TEST(Column, NumbersSaturateAndSumsWrap)
{
    CDataField field =
        Parsed(TypeTime, OLESTR("*f:*f"), OLESTR("99999999999999999999:99999999999999999999"));
    ASSERT_TRUE(field.FindVariable(OLESTR('f')));
    EXPECT_EQ(field.FindVariable(OLESTR('f'))->nValue, -2);
}

TEST(NumberColumn, KeepsTheLastNumberWhenATextIsRefused)
{
    for (const auto& [uiType, letter] :
         {std::pair(TypeClose, OLESTR('f')), {TypeVolume, OLESTR('i')}}) {
        SCOPED_TRACE(uiType);
        CDataField field = Parsed(uiType, {}, OLESTR("17"));
        field.ParseField(OLESTR("x"));
        EXPECT_FALSE(field.IsValid());
        EXPECT_EQ(field.FindVariable(letter)->AsDouble(), 17.0);
    }
}

TEST(DateColumn, ReadsEachDayWhateverCameBefore)
{
    constexpr string_view_t kTemplate = OLESTR("*y/*m/*d");
    CDataField field = Column(TypeDate, kTemplate);
    for (const string_view_t sText :
         {OLESTR("2004/2/29"), OLESTR("2004/2/29"), OLESTR("2004/3/29"), OLESTR("2003/3/29"),
          OLESTR("2003/3/28"), OLESTR("x"), OLESTR("2003/3/28"), OLESTR("2004/2/29")}) {
        SCOPED_TRACE(Shown(sText));
        field.ParseField(sText);
        EXPECT_EQ(ShownValue(field), Read(TypeDate, kTemplate, sText));
    }
}

TEST(Column, StartsAsADateWithoutTemplate)
{
    CDataField field;
    EXPECT_EQ(field.GetType(), TypeDate);
    EXPECT_TRUE(field.GetTemplate().empty());
    EXPECT_FALSE(field.IsValid());
    EXPECT_FALSE(field.HasCachedValue());
}

TEST(Column, NamesItsTemplateByItsType)
{
    for (unsigned uiType : {0u, 1u, 2u, 3u, 7u, 8u, 17u, 18u, kNoType}) {
        SCOPED_TRACE(uiType);
        const CDataField field = Column(uiType, OLESTR("*Y"));
        const char* expected = uiType == 0    ? "symbol"
                               : uiType <= 2  ? "*y"
                               : uiType <= 7  ? "float"
                               : uiType <= 17 ? "int"
                                              : "";
        EXPECT_EQ(Shown(field.GetTemplate()), expected);
    }
}

TEST(Column, OfSymbolOrWithoutTypeIsNeverValid)
{
    for (unsigned uiType : {0u, 18u, kNoType}) {
        SCOPED_TRACE(uiType);
        CDataField field = Parsed(uiType, OLESTR("*"), OLESTR("5"));
        EXPECT_FALSE(field.IsValid());
        VARIANT value{};
        EXPECT_EQ(field.GetValue(&value), E_FAIL);
    }
}

TEST(Column, CutsATemplateAt511Characters)
{
    CDataField field;
    field.SetTemplate(string_t(600, OLESTR('Y')));
    EXPECT_EQ(field.GetTemplate(), string_t(511, OLESTR('y')));
}

TEST(Column, DeclaresTheLettersOfItsTypeAheadOfThePmWord)
{
    struct
    {
        unsigned uiType;
        string_view_t sTemplate;
        std::string_view declared;
    } rows[] = {
        {TypeDate, OLESTR("*y/*m/*d hst"), "dmy"},
        {TypeDate, OLESTR("yy"), "y"},
        {TypeTime, OLESTR("*h:*m dy"), "hm"},
        {TypeTime, OLESTR("*h@mst"), "h"},
        {TypeTime, OLESTR("tsmhf"), "fhmst"},
        {TypePrice, OLESTR("*i.*f"), "f"},
        {TypePrice, OLESTR(""), "f"},
        {TypeVolume, OLESTR("f"), "i"},
        {TypeSymbol, OLESTR("dmyi"), ""},
        {kNoType, OLESTR("dmyi"), ""},
        {18, OLESTR("i"), ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::to_string(row.uiType) + " " + Shown(row.sTemplate));
        CDataField field = Column(row.uiType, row.sTemplate);
        std::string declared;
        for (char letter = 'a'; letter <= 'z'; ++letter)
            if (field.FindVariable(static_cast<OLECHAR>(letter)))
                declared += letter;
        EXPECT_EQ(declared, row.declared);
    }
}

TEST(Column, BuildsItsVariablesAnewWithTypeAndTemplate)
{
    CDataField field = Parsed(TypeTime, OLESTR("*h:*m"), OLESTR("9:30"));
    field.SetType(TypeDate);
    EXPECT_FALSE(field.FindVariable(OLESTR('h')));
    EXPECT_EQ(field.VariableOr0(OLESTR('m')), 0);
    field.SetTemplate(OLESTR("*y"));
    EXPECT_FALSE(field.FindVariable(OLESTR('m')));
    EXPECT_TRUE(field.FindVariable(OLESTR('y')));
}

TEST(Column, RereadsWithANewTemplate)
{
    CDataField field = Parsed(TypeDate, OLESTR("*y/*m/*d"), OLESTR("01/02/03"));
    EXPECT_EQ(ShownValue(field), "2001-02-03");
    field.SetTemplate(OLESTR("*d/*m/*y"));
    field.ParseField(OLESTR("01/02/03"));
    EXPECT_EQ(ShownValue(field), "2003-02-01");
}

TEST(Column, CopyTakesTheTemplateAsShownAndNoVariables)
{
    CDataField price = Column(TypePrice, OLESTR("*i.*f"));
    CDataField copy(price);
    copy.SetType(TypeTime);
    EXPECT_EQ(Shown(copy.GetTemplate()), "float");

    CDataField time = Parsed(TypeTime, OLESTR("*h:*m"), OLESTR("9:30"));
    ASSERT_EQ(ShownValue(time), "09:30:00.000");
    copy = time;
    EXPECT_EQ(copy.GetType(), TypeTime);
    EXPECT_EQ(Shown(copy.GetTemplate()), "*h:*m");
    EXPECT_TRUE(copy.IsValid());
    EXPECT_TRUE(copy.HasCachedValue());
    EXPECT_EQ(ShownValue(copy), "09:30:00.000");
    EXPECT_EQ(copy.VariableOr0(OLESTR('h')), 0);
    copy.ParseField(OLESTR("10:15"));
    EXPECT_EQ(ShownValue(copy), "10:15:00.000");
}

TEST(Column, AssignmentToItselfKeepsIt)
{
    CDataField date = Column(TypeDate, OLESTR("*y/*m/*d"));
    const CDataField& same = date;
    date = same;
    date.ParseField(OLESTR("03/12/25"));
    EXPECT_EQ(ShownValue(date), "2003-12-25");
}

TEST(Column, SwapExchangesTypeTemplateFlagAndValue)
{
    CDataField date = Parsed(TypeDate, OLESTR("*y/*m/*d"), OLESTR("03/12/25"));
    ASSERT_EQ(ShownValue(date), "2003-12-25");
    CDataField price = Column(TypePrice, {});
    date.Swap(price);
    EXPECT_EQ(date.GetType(), TypePrice);
    EXPECT_FALSE(date.IsValid());
    EXPECT_FALSE(date.HasCachedValue());
    EXPECT_EQ(ShownValue(price), "2003-12-25");
    EXPECT_EQ(Shown(price.GetTemplate()), "*y/*m/*d");
    price.ParseField(OLESTR("04/1/2"));
    date.ParseField(OLESTR("1.5"));
    EXPECT_EQ(ShownValue(price), "2004-01-02");
    EXPECT_EQ(ShownValue(date), "1.5");
}

TEST(Column, KeepsItsValueUntilTheNextParse)
{
    CDataField field = Parsed(TypeTime, OLESTR("*h:*m"), OLESTR("9:30"));
    EXPECT_FALSE(field.HasCachedValue());
    EXPECT_EQ(ShownValue(field), "09:30:00.000");
    EXPECT_TRUE(field.HasCachedValue());
    field.FindVariable(OLESTR('h'))->nValue = 10;
    EXPECT_EQ(ShownValue(field), "09:30:00.000");
    field.ParseField(OLESTR("x"));
    EXPECT_FALSE(field.HasCachedValue());
    EXPECT_EQ(ShownValue(field), kRefused);
}

TEST(Column, GivesTheDateThatWasCachedForIt)
{
    CDataField field = Parsed(TypeTime, OLESTR("*h:*m"), OLESTR("9:30"));
    field.SetCachedDate(0.5);
    VARIANT value{};
    EXPECT_EQ(field.GetValue(&value), S_OK);
    EXPECT_EQ(value.vt, VT_DATE);
    EXPECT_EQ(value.date, 0.5);
}

TEST(Column, GivesNoValueWhileItIsNotValid)
{
    CDataField field = Parsed(TypePrice, {}, OLESTR("1.5"));
    field.SetValid(false);
    VARIANT value{};
    EXPECT_EQ(field.GetValue(&value), E_FAIL);
    field.SetValid(true);
    EXPECT_EQ(field.GetValue(&value), S_OK);
    EXPECT_EQ(value.vt, VT_R8);
}

TEST(Column, GivesKindsByType)
{
    VARIANT value{};
    CDataField date = Parsed(TypeDate, OLESTR("*y/*m/*d"), OLESTR("03/12/25"));
    EXPECT_EQ(date.GetValue(&value), S_OK);
    EXPECT_EQ(value.vt, VT_DATE);
    EXPECT_EQ(value.date, 37980.0);
    CDataField volume = Parsed(TypeVolume, {}, OLESTR("5"));
    EXPECT_EQ(volume.GetValue(&value), S_OK);
    EXPECT_EQ(value.vt, VT_I8);
}

TEST(Column, EachSecondOfTheDayIsTheNearestFraction)
{
    CDataField field = Column(TypeTime, OLESTR("*h:*m:*s"));
    for (int n = 0; n < 86400; ++n) {
        const auto text = [](int part) {
            const std::string digits = std::to_string(part);
            return string_t(digits.begin(), digits.end());
        };
        field.ParseField(text(n / 3600) + OLESTR(":") + text(n / 60 % 60) + OLESTR(":") +
                         text(n % 60));
        VARIANT value{};
        ASSERT_EQ(field.GetValue(&value), S_OK);
        ASSERT_EQ(value.date, n / 86400.0) << n;
    }
}

TEST(Column, HourOfDayFollowsThePmWord)
{
    CDataField field = Parsed(TypeTime, OLESTR("*h:*mtt@pm"), OLESTR("1:30pm"));
    EXPECT_EQ(field.VariableOr0(OLESTR('h')), 1);
    EXPECT_EQ(field.HourOfDay(), 13);
    EXPECT_EQ(field.VariableOr0(OLESTR('t')), 1);
    EXPECT_EQ(field.VariableOr0(OLESTR('s')), 0);
}

TEST(Column, ReportsANullOutPointer)
{
    CDataField field = Parsed(TypePrice, {}, OLESTR("1.5"));
    ReportLog reports;
    EXPECT_TRUE(FAILED(field.GetValue(nullptr)));
    EXPECT_THAT(reports.Texts(), testing::ElementsAre("0 != pVar"));
}

TEST(MathValue, AddsIntegersAsIntegersAndTheRestAsDoubles)
{
    auto sum = [](tagMATHVALUE a, const tagMATHVALUE& b) {
        a.Add(b);
        return a;
    };
    const tagMATHVALUE whole = sum(tagMATHVALUE::Integer(2), tagMATHVALUE::Integer(3));
    EXPECT_TRUE(whole.IsInteger());
    EXPECT_EQ(whole.nValue, 5);
    for (const tagMATHVALUE& real : {sum(tagMATHVALUE::Integer(2), tagMATHVALUE::Double(0.5)),
                                     sum(tagMATHVALUE::Double(0.5), tagMATHVALUE::Integer(2)),
                                     sum(tagMATHVALUE::Double(0.5), tagMATHVALUE::Double(2))}) {
        EXPECT_FALSE(real.IsInteger());
        EXPECT_EQ(real.fValue, 2.5);
    }
}

} // namespace
