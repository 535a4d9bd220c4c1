#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "System.h"
#include "Values.h"
#include "platform/values.h"
#include "tests/support/Seed.h"

namespace {

// What a source becomes; an error code for one that doesn't convert.
struct Case
{
    Variant source;
    VARTYPE vt;
    HRESULT hr;
    Variant result;
};

Case Gives(Variant source, Variant result)
{
    return {source, result.vt, S_OK, result};
}

Case Fails(Variant source, VARTYPE vt, HRESULT hr)
{
    return {source, vt, hr, Empty()};
}

template <std::size_t n>
void Check(const Case (&rows)[n])
{
    for (const Case& row : rows) {
        SCOPED_TRACE(Show(row.source) + " to vt " + std::to_string(row.vt));
        Variant target;
        Variant source = row.source;
        EXPECT_EQ(Result{VariantChangeType(&target, &source, 0, row.vt)}, Result{row.hr});
        EXPECT_TRUE(Same(target, row.result)) << Show(target) << " for " << Show(row.result);
    }
}

bool Holds(const Case& row)
{
    Variant target;
    Variant source = row.source;
    return VariantChangeType(&target, &source, 0, row.vt) == row.hr && Same(target, row.result);
}

// A system that is listed as departing from the published results must do so in at least one
// row; otherwise its exception is out of date.
template <std::size_t n>
void CheckUnless(bool bException, const Case (&rows)[n])
{
    if (bException)
        EXPECT_FALSE(std::ranges::all_of(rows, Holds));
    else
        Check(rows);
}

TEST(NumberConversion, OverflowsBeyondTheTargetsRange)
{
    const Case rows[] = {
        Gives(I2(-128), I1(-128)),
        Fails(I2(-129), VT_I1, DISP_E_OVERFLOW),
        Gives(I2(127), I1(127)),
        Fails(I2(128), VT_I1, DISP_E_OVERFLOW),
        Fails(I2(-1), VT_UI1, DISP_E_OVERFLOW),
        Gives(I4(255), UI1(255)),
        Fails(I4(256), VT_UI1, DISP_E_OVERFLOW),
        Gives(I4(-32768), I2(-32768)),
        Fails(I4(-32769), VT_I2, DISP_E_OVERFLOW),
        Fails(I4(32768), VT_I2, DISP_E_OVERFLOW),
        Fails(I4(-1), VT_UI2, DISP_E_OVERFLOW),
        Gives(I4(65535), UI2(65535)),
        Fails(I4(65536), VT_UI2, DISP_E_OVERFLOW),
        Gives(I8(2147483647), I4(2147483647)),
        Fails(I8(2147483648), VT_I4, DISP_E_OVERFLOW),
        Gives(I8(-2147483648LL), I4(std::numeric_limits<LONG>::min())),
        Fails(I8(-2147483649LL), VT_I4, DISP_E_OVERFLOW),
        Gives(I8(4294967295), UI4(4294967295)),
        Fails(I8(4294967296), VT_UI4, DISP_E_OVERFLOW),
        Fails(I8(-1), VT_UI4, DISP_E_OVERFLOW),
        Fails(UI8(2147483648u), VT_I4, DISP_E_OVERFLOW),
        Fails(I1(-1), VT_UI2, DISP_E_OVERFLOW),
        Fails(I2(-1), VT_UI4, DISP_E_OVERFLOW),
        Fails(I4(-1), VT_UI8, DISP_E_OVERFLOW),
        Gives(UI4(4294967295), I8(4294967295)),
    };
    Check(rows);
}

TEST(NumberConversion, KeepsTheBitsBetweenIntegersOfOneSize)
{
    const Case rows[] = {
        Gives(I1(-1), UI1(255)),         Gives(UI1(255), I1(-1)),
        Gives(I2(-1), UI2(65535)),       Gives(UI2(65535), I2(-1)),
        Gives(I4(-1), UI4(4294967295)),  Gives(UI4(4294967295), I4(-1)),
        Gives(Uint(4294967295), I4(-1)), Gives(Uint(4294967295), Int(-1)),
        Gives(I4(-1), Int(-1)),          Gives(Int(-1), UI4(4294967295)),
    };
    Check(rows);
}

TEST(NumberConversion, TakesABooleanForItsSixteenBits)
{
    const Case rows[] = {
        Gives(Bool(-1), I1(-1)),  Gives(Bool(-1), UI1(255)),   Gives(Bool(-1), I2(-1)),
        Gives(Bool(-1), I4(-1)),  Gives(Bool(-1), UI2(65535)), Gives(Bool(-1), UI4(4294967295)),
        Gives(Bool(-1), R8(-1)),  Gives(Bool(-1), Cy(-10000)), Gives(Bool(128), I1(-128)),
        Gives(Bool(256), UI1(0)), Gives(Bool(1), I4(1)),       Gives(Bool(0), R4(0)),
    };
    Check(rows);
}

TEST(NumberConversion, MakesATrueBooleanOfAllButZero)
{
    const Case rows[] = {
        Gives(I4(0), Bool(0)),
        Gives(I4(2), Bool(-1)),
        Gives(I4(-2147483647), Bool(-1)),
        Gives(R8(0.0), Bool(0)),
        Gives(R8(-0.0), Bool(0)),
        Gives(R8(0.4), Bool(-1)),
        Gives(R4(-0.5F), Bool(-1)),
        Gives(Cy(0), Bool(0)),
        Gives(Cy(1), Bool(-1)),
        Gives(Date(1), Bool(-1)),
        Gives(UI8(1ull << 63), Bool(-1)),
    };
    Check(rows);
}

TEST(NumberConversion, RoundsHalvesToTheEvenNumber)
{
    struct Rounding
    {
        double value;
        LONG nWhole;
    };
    const Rounding rows[] = {
        {-2.5, -2}, {-1.5, -2}, {-0.6, -1}, {-0.5, 0}, {-0.4, 0}, {0.4, 0},
        {0.5, 0},   {0.6, 1},   {1.5, 2},   {2.5, 2},  {3.5, 4},  {126.5, 126},
    };
    for (const Rounding& row : rows) {
        const Case cases[] = {
            Gives(R8(row.value), I1(row.nWhole)),
            Gives(R8(row.value), I2(row.nWhole)),
            Gives(R8(row.value), I4(row.nWhole)),
            Gives(R8(row.value), I8(row.nWhole)),
            Gives(R4(static_cast<FLOAT>(row.value)), I4(row.nWhole)),
            Gives(Date(row.value), I4(row.nWhole)),
            Gives(Cy(std::llround(row.value * 10000)), I4(row.nWhole)),
        };
        Check(cases);
    }
}

TEST(NumberConversion, RoundsBeforeItLooksAtTheRange)
{
    const Case rows[] = {
        Gives(R8(-0.5), UI1(0)),
        Fails(R8(-0.6), VT_UI1, DISP_E_OVERFLOW),
        Gives(R8(255.4), UI1(255)),
        Fails(R8(256.0), VT_UI1, DISP_E_OVERFLOW),
        Fails(R8(32768.0), VT_I2, DISP_E_OVERFLOW),
        Gives(R8(-2147483648.0), I4(std::numeric_limits<LONG>::min())),
        Fails(R8(-2147483649.0), VT_I4, DISP_E_OVERFLOW),
        Fails(R8(2147483648.0), VT_I4, DISP_E_OVERFLOW),
        Gives(R8(4294967295.0), UI4(4294967295)),
        Fails(R8(4294967296.0), VT_UI4, DISP_E_OVERFLOW),
        Fails(R8(-1.0), VT_UI8, DISP_E_OVERFLOW),
        Fails(R8(1e30), VT_I8, DISP_E_OVERFLOW),
        Fails(R8(1e30), VT_UI8, DISP_E_OVERFLOW),
        Fails(R8(1e300), VT_I4, DISP_E_OVERFLOW),
    };
    Check(rows);
}

TEST(NumberConversion, BetweenFloatsChecksTheRangeOnly)
{
    const Case rows[] = {
        Gives(R4(1.5F), R8(1.5)),
        Gives(R8(0.1), R4(0.1F)),
        Fails(R8(1e39), VT_R4, DISP_E_OVERFLOW),
        Fails(R8(-1e39), VT_R4, DISP_E_OVERFLOW),
        // What rounds to the largest value fits.
        Gives(R8(3.40282356e38), R4(std::numeric_limits<FLOAT>::max())),
        Fails(R8(3.4028236e38), VT_R4, DISP_E_OVERFLOW),
        Gives(I8(1LL << 53), R8(9007199254740992.0)),
        Gives(UI4(4294967295), R8(4294967295.0)),
        Gives(Empty(), R8(0)),
        Gives(Empty(), I4(0)),
        Gives(Empty(), Bool(0)),
        Gives(Empty(), Date(0)),
    };
    Check(rows);
}

TEST(NumberConversion, KeepsDatesWithinTheYears100To9999)
{
    const Case rows[] = {
        Gives(I4(-657434), Date(-657434)),
        Fails(I4(-657435), VT_DATE, DISP_E_OVERFLOW),
        Gives(I4(2958465), Date(2958465)),
        Fails(I4(2958466), VT_DATE, DISP_E_OVERFLOW),
        Fails(I8(2958466), VT_DATE, DISP_E_OVERFLOW),
        Gives(R8(36526.25), Date(36526.25)),
        Fails(R8(1e9), VT_DATE, DISP_E_OVERFLOW),
        Gives(Date(-32768.5), R8(-32768.5)),
        Gives(Cy(15000), Date(1.5)),
    };
    Check(rows);
}

TEST(NumberConversion, KeepsFourDigitsOfACurrency)
{
    const Case rows[] = {
        Gives(R8(1.5), Cy(15000)),
        Gives(R8(-0.6), Cy(-6000)),
        Gives(R8(1.00009), Cy(10001)),
        Gives(R8(-1.00001), Cy(-10000)),
        Gives(R8(0.00001), Cy(0)),
        Fails(R8(4611686018427387648.0), VT_CY, DISP_E_OVERFLOW),
        Gives(I4(2147483647), Cy(21474836470000)),
        Fails(I8(922337203685478), VT_CY, DISP_E_OVERFLOW),
        Gives(I8(922337203685476), Cy(9223372036854760000)),
        Gives(Cy(-15000), R8(-1.5)),
        Gives(Cy(6000), R4(0.6F)),
    };
    Check(rows);
}

TEST(NumberConversion, RoundsTheExactValueOfAFloatToACurrency)
{
    const Case rows[] = {
        Gives(R8(0.00005), Cy(1)), // a little more than a half
        Gives(R8(-0.00005), Cy(-1)),
        Gives(R8(0.00015), Cy(1)), // a little less
        Gives(R8(0.00025), Cy(3)),
        Gives(R8(0.00003125), Cy(0)),
        Gives(R8(0.00046875), Cy(5)),
        Gives(R8(99999999999999.984), Cy(999999999999999844)),
        Gives(R8(922337203685477.5), Cy(9223372036854775000)),
        Fails(R8(922337203685477.625), VT_CY, DISP_E_OVERFLOW),
        Fails(R8(-922337203685477.625), VT_CY, DISP_E_OVERFLOW),
        Gives(R4(0.5F), Cy(5000)),
        Gives(Date(0.00025), Cy(3)),
    };
    Check(rows);
}

TEST(NumberConversion, ReachesToTheEndOfCurrency)
{
    const Case rows[] = {
        Gives(I8(922337203685477), Cy(9223372036854770000)),
        Gives(I8(-922337203685477), Cy(-9223372036854770000)),
        Gives(UI8(922337203685477), Cy(9223372036854770000)),
        Gives(Text(OLESTR("922337203685477.5807")), Cy(std::numeric_limits<LONGLONG>::max())),
        Gives(Text(OLESTR("-922337203685477.5808")), Cy(std::numeric_limits<LONGLONG>::min())),
    };
    CheckUnless(CurrencyEndsEarly(), rows);
}

TEST(NumberConversion, OfACurrencyBelowZeroRoundsIn64BitsToo)
{
    const Case rows[] = {
        Gives(Cy(-10000), I8(-1)),
        Gives(Cy(-15000), I8(-2)),
        Gives(Cy(-25000), I8(-2)),
        Gives(Cy(-1), I8(0)),
    };
    CheckUnless(NegativeCurrencyIsOneLess(), rows);
}

TEST(NumberConversion, From64BitsTo16Overflows)
{
    const Case rows[] = {
        Gives(I8(65535), UI2(65535)),
        Fails(I8(65536), VT_UI2, DISP_E_OVERFLOW),
        Fails(UI8(65536), VT_UI2, DISP_E_OVERFLOW),
        Fails(I8(4294967295), VT_UI2, DISP_E_OVERFLOW),
    };
    CheckUnless(CutsTo16Bits(), rows);
}

TEST(NumberConversion, OfWhatIsNotANumberOverflows)
{
    const Variant none = R8(std::nan(""));
    for (const VARTYPE vt : {VT_I1, VT_I2, VT_I4, VT_I8, VT_UI1, VT_UI2, VT_UI4, VT_UI8, VT_DATE}) {
        const Case rows[] = {Fails(none, vt, DISP_E_OVERFLOW)};
        CheckUnless(NotANumberIsANumber(), rows);
    }
    const Case rows[] = {Fails(none, VT_CY, DISP_E_OVERFLOW)};
    Check(rows);
}

// The slow twin: rounds by comparing with the neighbours, not by the processor's rounding.
LONGLONG HalfEven(double value)
{
    const double below = std::floor(value);
    const double rest = value - below;
    const bool bUp = rest > 0.5 || (rest == 0.5 && std::fmod(below, 2.0) != 0);
    return static_cast<LONGLONG>(below) + (bUp ? 1 : 0);
}

TEST(NumberConversion, AgreesWithAPlainRoundingOnRandomValues)
{
    std::mt19937 random(Seed());
    std::uniform_int_distribution<int> quarters(-200000, 200000);
    for (int n = 0; n < Rounds(20000); ++n) {
        const double value = quarters(random) / 4.0;
        const LONGLONG nWhole = HalfEven(value);
        Variant source = R8(value);
        Variant target;
        const HRESULT hr = VariantChangeType(&target, &source, 0, VT_I2);
        if (nWhole < -32768 || nWhole > 32767)
            ASSERT_EQ(Result{hr}, Result{DISP_E_OVERFLOW}) << value;
        else
            ASSERT_TRUE(Same(target, I2(static_cast<int>(nWhole)))) << value << Show(target);
    }
}

} // namespace
