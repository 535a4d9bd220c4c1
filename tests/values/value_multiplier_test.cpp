#include <gmock/gmock.h>

#include <limits>
#include <random>

#include "src/values/qrlValueMultiplier.h"
#include "tests/support/ReportLog.h"
#include "tests/support/Seed.h"
#include "tests/values/multipliers.h"

namespace {

using namespace Hesperon::specifics;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr LONGLONG kLargest = std::numeric_limits<LONGLONG>::max();
constexpr LONGLONG kSmallest = std::numeric_limits<LONGLONG>::min();

constexpr char kKindAssertion[] = "0 && \"qrlValueMultiplier: Only accept VT_I8 & VT_R8 types\"";

struct MultiplierRow
{
    const OLECHAR* szName;
    BYTE nCode;
    LONGLONG nFactor, nDivisor;
    LONGLONG n12345, nMinus12345; // what becomes of 12345 and -12345
};

constexpr MultiplierRow kMultipliers[] = {
    {OLESTR("1000000"), 0x01, 1000000, 1, 12345000000, -12345000000},
    {OLESTR("100000"), 0x40, 100000, 1, 1234500000, -1234500000},
    {OLESTR("10000"), 0x41, 10000, 1, 123450000, -123450000},
    {OLESTR("1000"), 0x42, 1000, 1, 12345000, -12345000},
    {OLESTR("100"), 0x43, 100, 1, 1234500, -1234500},
    {OLESTR("10"), 0x44, 10, 1, 123450, -123450},
    {OLESTR("1"), 0x45, 1, 1, 12345, -12345},
    {OLESTR("1/10"), 0x49, 1, 10, 1234, -1234},
    {OLESTR("1/100"), 0x4D, 1, 100, 123, -123},
    {OLESTR("1/1000"), 0x4E, 1, 1000, 12, -12},
    {OLESTR("1/10000"), 0x4F, 1, 10000, 1, -1},
    {OLESTR("1/100000"), 0x50, 1, 100000, 0, 0},
    {OLESTR("1/1000000"), 0x02, 1, 1000000, 0, 0},
};

class ValueMultiplier : public testing::Test
{
protected:
    HRESULT Put(const OLECHAR* szName) { return m_object->put_Current(Bstr(szName).get()); }
    LONGLONG Integer(LONGLONG nValue)
    {
        VARIANT value = IntegerValue(nValue);
        EXPECT_EQ(S_OK, m_object->ApplyTransform(&value));
        EXPECT_EQ(VT_I8, value.vt);
        return value.llVal;
    }
    double Float(double fValue)
    {
        VARIANT value = FloatValue(fValue);
        EXPECT_EQ(S_OK, m_object->ApplyTransform(&value));
        EXPECT_EQ(VT_R8, value.vt);
        return value.dblVal;
    }
    string_t Text(const OLECHAR* szText)
    {
        Variant value = Variant::FromText(szText);
        EXPECT_EQ(S_OK, m_object->ApplyTransform(&value));
        EXPECT_EQ(VT_BSTR, value.vt);
        return string_t(TextOf(value.bstrVal));
    }

    ReportLog m_reports;
    com_ptr<CqrlValueMultiplier> m_object = NewMultiplier();
};

TEST_F(ValueMultiplier, StartsAtOne)
{
    EXPECT_EQ(string_t(OLESTR("1")), CurrentOf(*m_object.get()));
    EXPECT_EQ(0x45, m_object->Code());
    EXPECT_EQ(12345, Integer(12345));
    EXPECT_EQ(123.45, Float(123.45));
}

TEST_F(ValueMultiplier, ANewOneLetsAnyKindPassWithoutAnAssertion)
{
    EXPECT_EQ(string_t(OLESTR("text")), Text(OLESTR("text")));
    EXPECT_EQ(S_OK, Put(OLESTR("1")));
    EXPECT_EQ(string_t(OLESTR("text")), Text(OLESTR("text")));
    EXPECT_EQ(S_OK, m_object->ApplyTransform(nullptr));
    EXPECT_THAT(m_reports.Texts(), IsEmpty());
}

TEST_F(ValueMultiplier, NamesStandInTheOrderOfTheTable)
{
    Variant names;
    ASSERT_EQ(S_OK, m_object->get_TransformNames(&names));
    EXPECT_EQ(8200, names.vt);
    ASSERT_EQ(1u, SafeArrayGetDim(names.parray));
    LONG nLow = -1, nHigh = -1;
    SafeArrayGetLBound(names.parray, 1, &nLow);
    SafeArrayGetUBound(names.parray, 1, &nHigh);
    EXPECT_EQ(0, nLow);
    ASSERT_EQ(12, nHigh);
    for (LONG i = 0; i <= nHigh; ++i) {
        SCOPED_TRACE(i);
        Bstr name;
        ASSERT_EQ(S_OK, SafeArrayGetElement(names.parray, &i, name.put()));
        EXPECT_EQ(string_t(kMultipliers[i].szName), name.str());
    }
}

TEST_F(ValueMultiplier, NullPointersAreRefused)
{
    EXPECT_EQ(E_POINTER, m_object->get_Current(nullptr));
    EXPECT_EQ(E_POINTER, m_object->get_TransformNames(nullptr));
}

TEST_F(ValueMultiplier, NameAndCodeSelectTheSameRow)
{
    for (const MultiplierRow& row : kMultipliers) {
        SCOPED_TRACE(&row - kMultipliers);
        const auto byCode = NewMultiplier();
        EXPECT_EQ(S_OK, Put(row.szName));
        EXPECT_EQ(S_OK, byCode->SetCode(row.nCode));
        EXPECT_EQ(row.nCode, m_object->Code());
        EXPECT_EQ(row.nCode, byCode->Code());
        EXPECT_EQ(string_t(row.szName), CurrentOf(*m_object.get()));
        EXPECT_EQ(string_t(row.szName), CurrentOf(*byCode.get()));
    }
}

TEST_F(ValueMultiplier, IntegersAreScaledByEachRow)
{
    for (const MultiplierRow& row : kMultipliers) {
        SCOPED_TRACE(&row - kMultipliers);
        Put(OLESTR("1"));
        Put(row.szName);
        EXPECT_EQ(row.n12345, Integer(12345));
        EXPECT_EQ(row.nMinus12345, Integer(-12345));
        EXPECT_EQ(0, Integer(0));
    }
}

TEST_F(ValueMultiplier, FloatsAreScaledByOneOperation)
{
    std::mt19937 random(Seed());
    std::uniform_real_distribution<double> values(-1e6, 1e6);
    for (const MultiplierRow& row : kMultipliers) {
        SCOPED_TRACE(&row - kMultipliers);
        m_object = NewMultiplier();
        Put(row.szName);
        for (int n = 0; n < Rounds(1000); ++n) {
            const double fValue = values(random);
            const double fExpected = row.nDivisor > 1 ? fValue / static_cast<double>(row.nDivisor)
                                                      : fValue * static_cast<double>(row.nFactor);
            ASSERT_EQ(fExpected, Float(fValue));
        }
    }
}

TEST_F(ValueMultiplier, AHundredthOfAFloat)
{
    Put(OLESTR("1/100"));
    EXPECT_EQ(123.45, Float(12345.0));
}

TEST_F(ValueMultiplier, IntegerProductsWrapAt64Bits)
{
    Put(OLESTR("10"));
    EXPECT_EQ(-10, Integer(kLargest)); // (2^63 - 1) * 10 modulo 2^64
    EXPECT_EQ(0, Integer(kSmallest));
    Put(OLESTR("1/10"));
    EXPECT_EQ(-922337203685477580, Integer(kSmallest));
}

TEST_F(ValueMultiplier, UnknownNamesAndCodesChangeNothing)
{
    Put(OLESTR("1/100"));
    for (const OLECHAR* szName : {OLESTR("abc"), OLESTR(""), OLESTR("1/100 "), OLESTR("01")}) {
        SCOPED_TRACE(testing::PrintToString(string_t(szName)));
        EXPECT_EQ(E_INVALIDARG, Put(szName));
    }
    EXPECT_EQ(E_INVALIDARG, m_object->put_Current(nullptr));
    for (int nCode = 0; nCode <= 0xFF; ++nCode) {
        SCOPED_TRACE(nCode);
        const bool bKnown =
            std::ranges::find(kMultipliers, nCode, &MultiplierRow::nCode) != std::end(kMultipliers);
        if (!bKnown) {
            EXPECT_EQ(E_INVALIDARG, m_object->SetCode(static_cast<BYTE>(nCode)));
        }
    }
    EXPECT_EQ(string_t(OLESTR("1/100")), CurrentOf(*m_object.get()));
    EXPECT_EQ(123, Integer(12345));
}

TEST_F(ValueMultiplier, AnUnknownNameLeavesTheSpecialisedTransformAlone)
{
    Put(OLESTR("10"));
    Integer(1);
    Put(OLESTR("abc"));
    EXPECT_EQ(AsIntegerTimes(10, 1.5), Float(1.5));
}

TEST_F(ValueMultiplier, TheFirstValueDecidesForAllThatFollow)
{
    Put(OLESTR("10"));
    EXPECT_EQ(70, Integer(7));
    EXPECT_EQ(AsIntegerTimes(10, 1.5), Float(1.5));

    Put(OLESTR("1/10"));
    EXPECT_EQ(0.75, Float(7.5));
    EXPECT_EQ(AsFloatOver(10, 4607182418800017408), Integer(4607182418800017408)); // 1.0
}

// The payload of these kinds is an address, and whoever frees the value uses it.
TEST_F(ValueMultiplier, TextsAndOtherAddressesStayAsTheyAreAfterANumber)
{
    constexpr VARTYPE kAddresses[] = {VT_BSTR,          VT_DISPATCH,      VT_UNKNOWN,
                                      VT_ARRAY | VT_R8, VT_BYREF | VT_R8, VT_BYREF | VT_BSTR};
    for (const MultiplierRow& row : kMultipliers)
        for (const bool bInteger : {true, false}) {
            SCOPED_TRACE(testing::Message()
                         << &row - kMultipliers << (bInteger ? ", integer" : ""));
            m_object = NewMultiplier();
            Put(row.szName);
            bInteger ? static_cast<void>(Integer(7)) : static_cast<void>(Float(7));
            EXPECT_EQ(string_t(OLESTR("12345")), Text(OLESTR("12345")));
            for (const VARTYPE vt : kAddresses) {
                SCOPED_TRACE(vt);
                VARIANT value = IntegerValue(12345);
                value.vt = vt;
                EXPECT_EQ(S_OK, m_object->ApplyTransform(&value));
                EXPECT_EQ(12345, value.llVal);
            }
            EXPECT_EQ(S_OK, m_object->ApplyTransform(nullptr));
        }
}

TEST_F(ValueMultiplier, NumbersOfOtherKindsAreScaledAsTheFirstValueWas)
{
    for (const VARTYPE vt : {VT_EMPTY, VT_I4, VT_DATE, VT_UI8, VT_CY}) {
        SCOPED_TRACE(vt);
        m_object = NewMultiplier();
        Put(OLESTR("10"));
        Integer(7);
        VARIANT value = IntegerValue(12345);
        value.vt = vt;
        EXPECT_EQ(S_OK, m_object->ApplyTransform(&value));
        EXPECT_EQ(123450, value.llVal);
    }
}

TEST_F(ValueMultiplier, TheSameNameDoesNotRearm)
{
    Put(OLESTR("10"));
    Integer(7);
    EXPECT_EQ(S_OK, Put(OLESTR("10")));
    EXPECT_EQ(S_OK, m_object->SetCode(0x44));
    EXPECT_EQ(AsIntegerTimes(10, 1.5), Float(1.5));
}

TEST_F(ValueMultiplier, AnotherNameAndBackRearms)
{
    Put(OLESTR("1/100"));
    Integer(7);
    Put(OLESTR("1/10"));
    Put(OLESTR("1/100"));
    EXPECT_EQ(123.45, Float(12345.0));
}

TEST_F(ValueMultiplier, AnotherKindIsAssertedOnceAndStopsTheScaling)
{
    Put(OLESTR("100"));
    EXPECT_EQ(string_t(OLESTR("7")), Text(OLESTR("7")));
    EXPECT_EQ(7, Integer(7));
    EXPECT_EQ(7.5, Float(7.5));
    EXPECT_EQ(string_t(OLESTR("7")), Text(OLESTR("7")));
    EXPECT_THAT(m_reports.Texts(), ElementsAre(kKindAssertion));
    Put(OLESTR("10"));
    EXPECT_EQ(70, Integer(7));
    EXPECT_EQ(1u, m_reports.Texts().size());
}

TEST_F(ValueMultiplier, KindsOtherThanTheTwoAreRefused)
{
    for (const VARTYPE vt : {VT_EMPTY, VT_NULL, VT_I2, VT_I4, VT_R4, VT_DATE, VT_UI8, VT_CY}) {
        SCOPED_TRACE(vt);
        const auto object = NewMultiplier();
        object->SetCode(0x43);
        VARIANT value = IntegerValue(7);
        value.vt = vt;
        const std::size_t nReports = m_reports.Texts().size();
        EXPECT_EQ(S_OK, object->ApplyTransform(&value));
        EXPECT_EQ(vt, value.vt);
        EXPECT_EQ(7, value.llVal);
        EXPECT_EQ(nReports + 1, m_reports.Texts().size());
    }
}

TEST_F(ValueMultiplier, ANullValueIsAssertedAndStopsTheScaling)
{
    Put(OLESTR("100"));
    EXPECT_EQ(S_OK, m_object->ApplyTransform(nullptr));
    EXPECT_THAT(m_reports.Texts(), ElementsAre("pVal"));
    EXPECT_EQ(7, Integer(7));
    EXPECT_EQ(S_OK, m_object->ApplyTransform(nullptr));
    EXPECT_EQ(1u, m_reports.Texts().size());
}

TEST_F(ValueMultiplier, RowOneSpecialisesTooWhenItIsPutBack)
{
    Put(OLESTR("10"));
    Put(OLESTR("1"));
    EXPECT_EQ(string_t(OLESTR("text")), Text(OLESTR("text")));
    EXPECT_THAT(m_reports.Texts(), ElementsAre(kKindAssertion));
}

TEST_F(ValueMultiplier, ObjectsDoNotShareTheirState)
{
    const auto other = NewMultiplier();
    Put(OLESTR("10"));
    EXPECT_EQ(string_t(OLESTR("1")), CurrentOf(*other.get()));
    VARIANT value = IntegerValue(7);
    other->ApplyTransform(&value);
    EXPECT_EQ(7, value.llVal);
}

} // namespace
