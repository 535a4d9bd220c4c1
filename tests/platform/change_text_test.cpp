#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "System.h"
#include "Values.h"
#include "platform/values.h"
#include "tests/support/Seed.h"

namespace {

constexpr LCID kEnglish = 0x0409;

Variant FromText(string_view_t text, VARTYPE vt, HRESULT& hr)
{
    Variant source = Text(text);
    Variant target;
    hr = VariantChangeTypeEx(&target, &source, kEnglish, 0, vt);
    return target;
}

string_t ToText(Variant source, USHORT flags = 0)
{
    Variant target;
    EXPECT_EQ(Result{VariantChangeTypeEx(&target, &source, kEnglish, flags, VT_BSTR)},
              Result{S_OK});
    EXPECT_EQ(target.vt, VT_BSTR);
    return target.vt == VT_BSTR ? string_t(TextOf(target.bstrVal)) : string_t();
}

struct TextOfValue
{
    Variant value;
    string_view_t text;
};

TEST(TextOfNumber, HasNoMoreDigitsThanItNeeds)
{
    const TextOfValue rows[] = {
        {Empty(), OLESTR("")},
        {I1(-128), OLESTR("-128")},
        {UI1(255), OLESTR("255")},
        {I2(-32768), OLESTR("-32768")},
        {I4(0), OLESTR("0")},
        {I4(2147483647), OLESTR("2147483647")},
        {UI4(4294967295), OLESTR("4294967295")},
        {I8(std::numeric_limits<LONGLONG>::min()), OLESTR("-9223372036854775808")},
        {UI8(~0ull), OLESTR("18446744073709551615")},
        {Int(-7), OLESTR("-7")},
        {R8(0), OLESTR("0")},
        {R8(0.5), OLESTR("0.5")},
        {R8(-1.5), OLESTR("-1.5")},
        {R8(0.1), OLESTR("0.1")},
        {R8(1.0 / 3), OLESTR("0.333333333333333")},
        {R8(100000), OLESTR("100000")},
        {R8(123456789012345.0), OLESTR("123456789012345")},
        {R8(1e15), OLESTR("1E+15")},
        {R8(1.25e-5), OLESTR("1.25E-05")},
        {R8(1e300), OLESTR("1E+300")},
        {R4(0.5F), OLESTR("0.5")},
        {R4(0.1F), OLESTR("0.1")},
        {R4(123.25F), OLESTR("123.25")},
        {Cy(0), OLESTR("0")},
        {Cy(10000), OLESTR("1")},
        {Cy(-15000), OLESTR("-1.5")},
        {Cy(9), OLESTR("0.0009")},
        {Cy(std::numeric_limits<LONGLONG>::max()), OLESTR("922337203685477.5807")},
        {Bool(-1), OLESTR("-1")},
        {Bool(0), OLESTR("0")},
    };
    for (const TextOfValue& row : rows) {
        SCOPED_TRACE(Show(row.value));
        EXPECT_EQ(Narrow(ToText(row.value)), Narrow(row.text));
    }
}

TEST(TextOfBoolean, IsAWordWhenAskedFor)
{
    EXPECT_EQ(ToText(Bool(-1), VARIANT_ALPHABOOL), OLESTR("True"));
    EXPECT_EQ(ToText(Bool(1), VARIANT_ALPHABOOL), OLESTR("True"));
    EXPECT_EQ(ToText(Bool(0), VARIANT_ALPHABOOL), OLESTR("False"));
}

TEST(TextOfDate, IsTheShortAmericanForm)
{
    const TextOfValue rows[] = {
        {Date(0), OLESTR("12:00:00 AM")},
        {Date(0.5), OLESTR("12:00:00 PM")},
        {Date(3.34), OLESTR("1/2/1900 8:09:36 AM")},
        {Date(3339.34), OLESTR("2/20/1909 8:09:36 AM")},
        {Date(365), OLESTR("12/30/1900")},
        {Date(365.25), OLESTR("12/30/1900 6:00:00 AM")},
        {Date(1461), OLESTR("12/31/1903")},
        {Date(1461.5), OLESTR("12/31/1903 12:00:00 PM")},
        {Date(25570), OLESTR("1/2/1970")},
        {Date(2958465), OLESTR("12/31/9999")},
    };
    for (const TextOfValue& row : rows) {
        SCOPED_TRACE(Show(row.value));
        EXPECT_EQ(Narrow(ToText(row.value)), Narrow(row.text));
    }
}

struct ValueOfText
{
    string_view_t text;
    Variant value;
};

struct Unreadable
{
    string_view_t text;
    VARTYPE vt;
    HRESULT hr;
};

TEST(NumberOfText, IsReadWithBlanksSignsAndPoint)
{
    const ValueOfText rows[] = {
        {OLESTR("0"), I4(0)},
        {OLESTR("  42\t "), I4(42)},
        {OLESTR("+7"), I4(7)},
        {OLESTR("-7"), I4(-7)},
        {OLESTR("7-"), I4(-7)},
        {OLESTR("(7)"), I4(-7)},
        {OLESTR("007"), I4(7)},
        {OLESTR("1,234"), I4(1234)},
        {OLESTR("1e3"), I4(1000)},
        {OLESTR("2147483647"), I4(2147483647)},
        {OLESTR("-2147483648"), I4(std::numeric_limits<LONG>::min())},
        {OLESTR("9223372036854775807"), I8(std::numeric_limits<LONGLONG>::max())},
        {OLESTR("-9223372036854775808"), I8(std::numeric_limits<LONGLONG>::min())},
        {OLESTR("18446744073709551615"), UI8(~0ull)},
        {OLESTR("9007199254740993"), I8(9007199254740993)},
        {OLESTR("-1.5"), I1(-2)},
        {OLESTR("-0.5"), UI1(0)},
        {OLESTR("0.5"), I2(0)},
        {OLESTR("1.5"), I2(2)},
        {OLESTR("0.6"), UI4(1)},
        {OLESTR("12.5"), R8(12.5)},
        {OLESTR("0.1"), R8(0.1)},
        {OLESTR(".5"), R8(0.5)},
        {OLESTR("5."), R8(5)},
        {OLESTR("-1.25e2"), R8(-125)},
        {OLESTR("1E-400"), R8(0)},
        {OLESTR("1,234,567.25"), R8(1234567.25)},
        {OLESTR("0.4"), R4(0.4F)},
        {OLESTR("1.5"), Cy(15000)},
        {OLESTR("-0.0009"), Cy(-9)},
        {OLESTR("1,23,4"), I4(1234)},
        {OLESTR("3.4028235e38"), R4(std::numeric_limits<FLOAT>::max())},
        {string_view_t(OLESTR("5\0x"), 3), I4(5)},
    };
    for (const ValueOfText& row : rows) {
        SCOPED_TRACE(Narrow(row.text));
        HRESULT hr = S_OK;
        const Variant value = FromText(row.text, row.value.vt, hr);
        EXPECT_EQ(Result{hr}, Result{S_OK});
        EXPECT_TRUE(Same(value, row.value)) << Show(value) << " for " << Show(row.value);
    }
}

TEST(NumberOfText, MayHaveADollar)
{
    const ValueOfText rows[] = {
        {OLESTR("$1.50"), Cy(15000)},      {OLESTR("-$1.50"), Cy(-15000)},
        {OLESTR("$-1.50"), Cy(-15000)},    {OLESTR("($1.50)"), Cy(-15000)},
        {OLESTR("1.50$"), Cy(15000)},      {OLESTR(" $ 1.50 "), Cy(15000)},
        {OLESTR("$1,234.50"), R8(1234.5)}, {OLESTR("$7"), I4(7)},
    };
    for (const ValueOfText& row : rows) {
        SCOPED_TRACE(Narrow(row.text));
        HRESULT hr = S_OK;
        const Variant value = FromText(row.text, row.value.vt, hr);
        EXPECT_EQ(Result{hr}, Result{S_OK});
        EXPECT_TRUE(Same(value, row.value)) << Show(value) << " for " << Show(row.value);
    }
}

TEST(NumberOfText, MayBeHexadecimalOrOctal)
{
    const ValueOfText rows[] = {
        {OLESTR("&H10"), I4(16)},
        {OLESTR("&hff"), UI1(255)},
        {OLESTR(" &HFF "), I2(255)},
        {OLESTR("&O17"), I4(15)},
        {OLESTR("&o17"), UI8(15)},
        {OLESTR("&HFFFF"), I4(65535)},
        {OLESTR("&H10"), R8(16)},
        {OLESTR("&H7FFFFFFF"), I4(2147483647)},
        // The bits of a number with a sign.
        {OLESTR("&HFF"), I1(-1)},
        {OLESTR("&HFFFF"), I2(-1)},
        {OLESTR("&HFFFFFFFF"), I4(-1)},
        {OLESTR("&HFFFFFFFF"), I8(4294967295)},
    };
    for (const ValueOfText& row : rows) {
        SCOPED_TRACE(Narrow(row.text) + " to vt " + std::to_string(row.value.vt));
        HRESULT hr = S_OK;
        const Variant value = FromText(row.text, row.value.vt, hr);
        EXPECT_EQ(Result{hr}, Result{S_OK});
        EXPECT_TRUE(Same(value, row.value)) << Show(value) << " for " << Show(row.value);
    }
}

TEST(NumberOfText, FailsForOtherTextAndBeyondTheRange)
{
    const Unreadable rows[] = {
        {OLESTR(""), VT_I4, DISP_E_TYPEMISMATCH},
        {OLESTR(" "), VT_R8, DISP_E_TYPEMISMATCH},
        {OLESTR("abc"), VT_I4, DISP_E_TYPEMISMATCH},
        {OLESTR("12x"), VT_I4, DISP_E_TYPEMISMATCH},
        {OLESTR("1 2"), VT_I4, DISP_E_TYPEMISMATCH},
        {OLESTR("1.2.3"), VT_R8, DISP_E_TYPEMISMATCH},
        {OLESTR("-"), VT_R8, DISP_E_TYPEMISMATCH},
        {OLESTR("."), VT_R8, DISP_E_TYPEMISMATCH},
        {OLESTR("--1"), VT_I4, DISP_E_TYPEMISMATCH},
        {OLESTR("(1"), VT_I4, DISP_E_TYPEMISMATCH},
        {OLESTR("True"), VT_I4, DISP_E_TYPEMISMATCH},
        {OLESTR("-129"), VT_I1, DISP_E_OVERFLOW},
        {OLESTR("128"), VT_I1, DISP_E_OVERFLOW},
        {OLESTR("-1"), VT_UI1, DISP_E_OVERFLOW},
        {OLESTR("-0.6"), VT_UI1, DISP_E_OVERFLOW},
        {OLESTR("32768"), VT_I2, DISP_E_OVERFLOW},
        {OLESTR("65536"), VT_UI2, DISP_E_OVERFLOW},
        {OLESTR("2147483648"), VT_I4, DISP_E_OVERFLOW},
        {OLESTR("-2147483649"), VT_I4, DISP_E_OVERFLOW},
        {OLESTR("-1"), VT_UI4, DISP_E_OVERFLOW},
        {OLESTR("4294967296"), VT_UI4, DISP_E_OVERFLOW},
        {OLESTR("9223372036854775808"), VT_I8, DISP_E_OVERFLOW},
        {OLESTR("-1"), VT_UI8, DISP_E_OVERFLOW},
        {OLESTR("99999999999999999999999"), VT_UI8, DISP_E_OVERFLOW},
        {OLESTR("1e400"), VT_R8, DISP_E_OVERFLOW},
        {OLESTR("1e40"), VT_R4, DISP_E_OVERFLOW},
        {OLESTR("$"), VT_R8, DISP_E_TYPEMISMATCH},
        {OLESTR("$$1"), VT_R8, DISP_E_TYPEMISMATCH},
        {OLESTR("1 $ 2"), VT_R8, DISP_E_TYPEMISMATCH},
        {OLESTR("&H"), VT_I4, DISP_E_TYPEMISMATCH},
        {OLESTR("&HG"), VT_I4, DISP_E_TYPEMISMATCH},
        {OLESTR("&H1\u0131"), VT_I4, DISP_E_TYPEMISMATCH},
        {OLESTR("&O8"), VT_I4, DISP_E_TYPEMISMATCH},
        {OLESTR("&10"), VT_I4, DISP_E_TYPEMISMATCH},
        {OLESTR("0x10"), VT_I4, DISP_E_TYPEMISMATCH},
        {OLESTR("&HFFFF"), VT_UI1, DISP_E_OVERFLOW},
        {OLESTR("&H10000"), VT_I2, DISP_E_OVERFLOW},
        {OLESTR("1.5$x"), VT_R8, DISP_E_TYPEMISMATCH},
    };
    for (const Unreadable& row : rows) {
        SCOPED_TRACE(Narrow(row.text) + " to vt " + std::to_string(row.vt));
        HRESULT hr = S_OK;
        EXPECT_EQ(FromText(row.text, row.vt, hr).vt, VT_EMPTY);
        EXPECT_EQ(Result{hr}, Result{row.hr});
    }
}

TEST(NumberOfText, IsAMismatchForNullText)
{
    for (const VARTYPE vt : {VT_I1, VT_I4, VT_UI8, VT_R4, VT_R8, VT_CY, VT_DATE}) {
        SCOPED_TRACE(vt);
        Variant source;
        source.bstrVal = nullptr;
        source.vt = VT_BSTR;
        Variant target;
        EXPECT_EQ(Result{VariantChangeType(&target, &source, 0, vt)}, Result{DISP_E_TYPEMISMATCH});
    }
}

TEST(BooleanOfText, IsAWordOrANumber)
{
    const ValueOfText rows[] = {
        {OLESTR("True"), Bool(-1)}, {OLESTR("true"), Bool(-1)},   {OLESTR("False"), Bool(0)},
        {OLESTR("FALSE"), Bool(0)}, {OLESTR("#TRUE#"), Bool(-1)}, {OLESTR("#FALSE#"), Bool(0)},
        {OLESTR("0"), Bool(0)},     {OLESTR("-1"), Bool(-1)},     {OLESTR("+1"), Bool(-1)},
        {OLESTR("0.1"), Bool(-1)},
    };
    for (const ValueOfText& row : rows) {
        SCOPED_TRACE(Narrow(row.text));
        HRESULT hr = S_OK;
        const Variant value = FromText(row.text, VT_BOOL, hr);
        EXPECT_EQ(Result{hr}, Result{S_OK});
        EXPECT_TRUE(Same(value, row.value)) << Show(value);
    }
    for (const string_view_t text : {OLESTR("On"), OLESTR("Yes"), OLESTR("#True#"), OLESTR("")}) {
        SCOPED_TRACE(Narrow(text));
        HRESULT hr = S_OK;
        FromText(text, VT_BOOL, hr);
        EXPECT_EQ(Result{hr}, Result{DISP_E_TYPEMISMATCH});
    }
}

struct DateOfTextRow
{
    string_view_t text;
    DATE date;
};

TEST(DateOfText, IsReadInTheUsualForms)
{
    const DateOfTextRow rows[] = {
        {OLESTR("1/2/1970"), 25570},
        {OLESTR("1-2-1970"), 25570},
        {OLESTR("1 2 1970"), 25570},
        {OLESTR("1970-01-02"), 25570},
        {OLESTR("1970/1/2"), 25570},
        {OLESTR("2 January, 1970"), 25570},
        {OLESTR("2 January 1970"), 25570},
        {OLESTR("2 Jan 1970"), 25570},
        {OLESTR("2/Jan/1970"), 25570},
        {OLESTR("2-Jan-1970"), 25570},
        {OLESTR("January 2, 1970"), 25570},
        {OLESTR("12/30/1899"), 0},
        {OLESTR("12/25/1899 6:00:00 AM"), -5.25},
        {OLESTR("1/2/1970 12:00:00 PM"), 25570.5},
        {OLESTR("1/2/1970 6:00 PM"), 25570.75},
        {OLESTR("1970-01-02 18:00:00"), 25570.75},
        {OLESTR("6:00 1/2/1970"), 25570.25},
        // The order of three numbers.
        {OLESTR("1 2 3"), 37623},
        {OLESTR("14 2 3"), 41673},
        {OLESTR("2 14 3"), 37666},
        {OLESTR("2003/13/1"), 37634},
        {OLESTR("2003 1 13"), 37634},
        {OLESTR("13/1/2003"), 37634},
        {OLESTR("1 2 29"), 47120},
        // Times alone.
        {OLESTR("1 am"), 1.0 / 24},
        {OLESTR("0:1"), 1.0 / 1440},
        {OLESTR("2.5"), 125.0 / 1440},
        {OLESTR("00:00 AM"), 0},
        {OLESTR("12:59 AM"), 59.0 / 1440},
        {OLESTR("00:00 pm"), 0.5},
        {OLESTR("12:59 p"), 779.0 / 1440},
        {OLESTR("13:00 AM"), 780.0 / 1440},
        {OLESTR("1.5.2"), 3902.0 / 86400},
        {OLESTR("1.2 3 4 5"), 38415.04305555556},
        {OLESTR("1 2 3 4.5.6"), 37623.17020833334},
    };
    for (const DateOfTextRow& row : rows) {
        SCOPED_TRACE(Narrow(row.text));
        HRESULT hr = S_OK;
        const Variant value = FromText(row.text, VT_DATE, hr);
        EXPECT_EQ(Result{hr}, Result{S_OK});
        EXPECT_EQ(value.vt, VT_DATE);
        EXPECT_NEAR(value.date, row.date, 1e-9);
    }
}

struct ShortYear
{
    string_view_t text;
    int nYear; // of two digits
    int nMonth;
    int nDay;
};

TEST(DateOfText, HasShortYearsInTheUsersCentury)
{
    const ShortYear rows[] = {
        {OLESTR("1/2/00"), 0, 1, 2},  {OLESTR("1/2/29"), 29, 1, 2}, {OLESTR("1/2/30"), 30, 1, 2},
        {OLESTR("1/2/49"), 49, 1, 2}, {OLESTR("1/2/50"), 50, 1, 2}, {OLESTR("1/2/99"), 99, 1, 2},
        {OLESTR("2 3 32"), 32, 2, 3}, {OLESTR("32 2 3"), 32, 2, 3}, {OLESTR("30 2"), 30, 2, 1},
        {OLESTR("2 30"), 30, 2, 1},   {OLESTR("Jan 35"), 35, 1, 1}, {OLESTR("35-Jan"), 35, 1, 1},
    };
    for (const ShortYear& row : rows) {
        SCOPED_TRACE(Narrow(row.text));
        HRESULT hr = S_OK;
        const Variant value = FromText(row.text, VT_DATE, hr);
        ASSERT_EQ(Result{hr}, Result{S_OK});
        SYSTEMTIME time = {};
        ASSERT_EQ(VariantTimeToSystemTime(value.date, &time), 1);
        EXPECT_EQ(time.wYear, FullYearOf(row.nYear));
        EXPECT_EQ(time.wMonth, row.nMonth);
        EXPECT_EQ(time.wDay, row.nDay);
    }
}

TEST(DateOfText, IsAMismatchForOtherText)
{
    const string_view_t rows[] = {
        OLESTR(""),           OLESTR("True"),       OLESTR("0"),         OLESTR("1"),
        OLESTR("0."),         OLESTR(".0"),         OLESTR("-1.1"),      OLESTR("1.1-"),
        OLESTR("1;2;3"),      OLESTR("1*2*3"),      OLESTR("1@2@3"),     OLESTR("(1:2)"),
        OLESTR("0.60"),       OLESTR("24.00"),      OLESTR("0:60"),      OLESTR("24:00"),
        OLESTR("1 2 am"),     OLESTR("1 am 2"),     OLESTR("32 49"),     OLESTR("0 49"),
        OLESTR("1.5 2"),      OLESTR("1 5.2"),      OLESTR("2 32 3"),    OLESTR("1 2 am 3"),
        OLESTR("1 2.3 4"),    OLESTR("1.2 3.4"),    OLESTR("1.2.3.4"),   OLESTR("1 2 3 4"),
        OLESTR("1 am 2 3.4"), OLESTR("1.2 3 am 4"), OLESTR("2/30/2001"), OLESTR("1/2/1970 25:00"),
    };
    for (const string_view_t text : rows) {
        SCOPED_TRACE(Narrow(text));
        HRESULT hr = S_OK;
        EXPECT_EQ(FromText(text, VT_DATE, hr).vt, VT_EMPTY);
        EXPECT_EQ(Result{hr}, Result{DISP_E_TYPEMISMATCH});
    }
}

TEST(DateOfText, WithoutAYearIsOfTheCurrentOne)
{
    for (const string_view_t text : {OLESTR("3/2"), OLESTR("2 Mar"), OLESTR("Mar 2")}) {
        SCOPED_TRACE(Narrow(text));
        HRESULT hr = S_OK;
        const Variant value = FromText(text, VT_DATE, hr);
        ASSERT_EQ(Result{hr}, Result{S_OK});
        SYSTEMTIME time = {};
        ASSERT_EQ(VariantTimeToSystemTime(value.date, &time), 1);
        EXPECT_EQ(time.wMonth, 3);
        EXPECT_EQ(time.wDay, 2);
        EXPECT_GE(time.wYear, 2024);
    }
}

TEST(TextOfNumber, ReadsBackToTheSameValue)
{
    std::mt19937_64 random(Seed());
    std::uniform_int_distribution<LONGLONG> prices(-99999999999, 99999999999);
    for (int n = 0; n < Rounds(20000); ++n) {
        // Prices of up to four decimals survive fifteen digits exactly.
        const double price = static_cast<double>(prices(random)) / 10000;
        const string_t text = ToText(R8(price));
        HRESULT hr = S_OK;
        const Variant value = FromText(text, VT_R8, hr);
        ASSERT_EQ(Result{hr}, Result{S_OK}) << Narrow(text);
        ASSERT_EQ(value.dblVal, price) << Narrow(text);
    }
}

} // namespace
