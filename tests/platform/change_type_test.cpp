#include <iterator>

#include <gtest/gtest.h>

#include "Values.h"
#include "platform/values.h"

namespace {

// Order of the columns of the table.
constexpr VARTYPE kKinds[] = {
    VT_EMPTY, VT_NULL, VT_I1,   VT_I2,   VT_I4,    VT_I8,       VT_UI1,
    VT_UI2,   VT_UI4,  VT_UI8,  VT_INT,  VT_UINT,  VT_R4,       VT_R8,
    VT_CY,    VT_DATE, VT_BSTR, VT_BOOL, VT_ERROR, VT_DISPATCH, VT_UNKNOWN,
};

// One letter a target kind: '=' converts, 'T' is a type mismatch, '?' isn't published.
struct Row
{
    VARTYPE vt;
    const char* results;
};

constexpr Row kRows[] = {
    //               EN1248 1248 iu RRCD SB  EDU
    {VT_EMPTY, "=="
               "===="
               "===="
               "=="
               "===="
               "=="
               "TTT"},
    {VT_NULL, "T="
              "TTTT"
              "TTTT"
              "TT"
              "TTTT"
              "TT"
              "TTT"},
    {VT_I1, "=="
            "===="
            "===="
            "=="
            "===="
            "=="
            "TTT"},
    {VT_I2, "=="
            "===="
            "===="
            "=="
            "===="
            "=="
            "TTT"},
    {VT_I4, "=="
            "===="
            "===="
            "=="
            "===="
            "=="
            "TTT"},
    {VT_I8, "=="
            "===="
            "===="
            "=="
            "===="
            "=="
            "TTT"},
    {VT_UI1, "=="
             "===="
             "===="
             "=="
             "===="
             "=="
             "TTT"},
    {VT_UI2, "=="
             "===="
             "===="
             "=="
             "===="
             "=="
             "TTT"},
    {VT_UI4, "=="
             "===="
             "===="
             "=="
             "===="
             "=="
             "TTT"},
    {VT_UI8, "=="
             "===="
             "===="
             "=="
             "===="
             "=="
             "TTT"},
    {VT_INT, "=="
             "===="
             "===="
             "=="
             "===="
             "=="
             "TTT"},
    {VT_UINT, "=="
              "===="
              "===="
              "=="
              "===="
              "=="
              "TTT"},
    {VT_R4, "=="
            "===="
            "===="
            "=="
            "===="
            "=="
            "TTT"},
    {VT_R8, "=="
            "===="
            "===="
            "=="
            "===="
            "=="
            "TTT"},
    {VT_CY, "=="
            "===="
            "===="
            "=="
            "===="
            "=="
            "TTT"},
    {VT_DATE, "=="
              "===="
              "===="
              "=="
              "===="
              "=="
              "TTT"},
    {VT_BSTR, "=="
              "===="
              "===="
              "=="
              "===="
              "=="
              "TTT"},
    {VT_BOOL, "=="
              "===="
              "===="
              "=="
              "===="
              "=="
              "TTT"},
    {VT_ERROR, "TT"
               "TTTT"
               "TTTT"
               "TT"
               "TTTT"
               "TT"
               "=TT"},
    {VT_DISPATCH, "??"
                  "TTTT"
                  "TTTT"
                  "TT"
                  "TTTT"
                  "TT"
                  "T=="},
    {VT_UNKNOWN, "=="
                 "TTTT"
                 "TTTT"
                 "TT"
                 "TTTT"
                 "TT"
                 "T=="},
};
static_assert(std::size(kRows) == std::size(kKinds));

// A small value of the kind that every numeric kind can hold.
Variant SampleOf(VARTYPE vt, FakeObject& object)
{
    const Variant samples[] = {Empty(),
                               Null(),
                               I1(1),
                               I2(1),
                               I4(1),
                               I8(1),
                               UI1(1),
                               UI2(1),
                               UI4(1),
                               UI8(1),
                               Int(1),
                               Uint(1),
                               R4(1),
                               R8(1),
                               Cy(10000),
                               Date(1),
                               Text(OLESTR("1.2")),
                               Bool(-1),
                               Error(1)};
    for (const Variant& sample : samples)
        if (sample.vt == vt)
            return sample;
    Variant v;
    object.AddRef();
    v.pdispVal = &object;
    v.vt = vt;
    return v;
}

// Calls check(source, target kind, expected result) for each pair of the table.
template <class Check>
void ForEachPair(Check check)
{
    for (const Row& row : kRows)
        for (std::size_t n = 0; n < std::size(kKinds); ++n) {
            if (row.results[n] == '?')
                continue;
            SCOPED_TRACE(testing::Message() << "vt " << row.vt << " to vt " << kKinds[n]);
            FakeObject object;
            {
                Variant source = SampleOf(row.vt, object);
                check(source, kKinds[n], row.results[n] == '=' ? S_OK : DISP_E_TYPEMISMATCH);
            }
            EXPECT_EQ(object.nReferences, 1u);
        }
}

constexpr USHORT kFlags = VARIANT_NOVALUEPROP;

TEST(VariantChangeType, HasTheSameResultForEachPairOfKinds)
{
    ForEachPair([](Variant& source, VARTYPE vt, HRESULT expected) {
        Variant target = I4(4711);
        EXPECT_EQ(Result{VariantChangeType(&target, &source, kFlags, vt)}, Result{expected});
        EXPECT_EQ(target.vt, SUCCEEDED(expected) ? vt : VARTYPE{VT_I4});
        if (FAILED(expected)) {
            EXPECT_TRUE(Same(target, I4(4711))) << Show(target);
        }
    });
}

TEST(VariantChangeType, WorksInPlace)
{
    ForEachPair([](Variant& source, VARTYPE vt, HRESULT expected) {
        const Variant before(source);
        EXPECT_EQ(Result{VariantChangeType(&source, &source, kFlags, vt)}, Result{expected});
        EXPECT_EQ(source.vt, SUCCEEDED(expected) ? vt : before.vt);
        if (FAILED(expected)) {
            EXPECT_TRUE(Same(source, before)) << Show(source);
        }
    });
}

TEST(VariantChangeType, LooksThroughReferences)
{
    ForEachPair([](Variant& source, VARTYPE vt, HRESULT expected) {
        Variant direct;
        const HRESULT hr = VariantChangeType(&direct, &source, kFlags, vt);
        ASSERT_EQ(Result{hr}, Result{expected});
        VARIANT reference;
        VariantInit(&reference);
        for (const bool bWhole : {false, true}) {
            if (!bWhole && (source.vt == VT_EMPTY || source.vt == VT_NULL))
                continue;
            const VARTYPE behind = bWhole ? VARTYPE{VT_VARIANT} : source.vt;
            reference.vt = static_cast<VARTYPE>(VT_BYREF | behind);
            reference.byref = bWhole ? static_cast<void*>(&source) : &source.llVal;
            Variant target;
            EXPECT_EQ(Result{VariantChangeType(&target, &reference, kFlags, vt)}, Result{expected});
            EXPECT_TRUE(Same(target, direct)) << Show(target) << " for " << Show(direct);
        }
    });
}

TEST(VariantChangeType, NeverConvertsToArraysReferencesOrBadKinds)
{
    struct Target
    {
        VARTYPE vt;
        HRESULT hr;
    };
    const Target rows[] = {
        {VT_VARIANT, DISP_E_TYPEMISMATCH},
        {VT_BYREF | VT_I4, DISP_E_TYPEMISMATCH},
        {VT_ARRAY | VT_I4, DISP_E_TYPEMISMATCH},
        {VT_ARRAY | VT_VARIANT, DISP_E_TYPEMISMATCH},
        {15, DISP_E_BADVARTYPE},
        {24, DISP_E_BADVARTYPE},
        {31, DISP_E_BADVARTYPE},
        {0x3847, DISP_E_BADVARTYPE},
    };
    for (const Target& row : rows) {
        SCOPED_TRACE(row.vt);
        Variant source = I4(1);
        Variant target = I4(4711);
        EXPECT_EQ(Result{VariantChangeType(&target, &source, 0, row.vt)}, Result{row.hr});
        EXPECT_TRUE(Same(target, I4(4711))) << Show(target);
    }
}

TEST(VariantChangeType, ConvertsNoArrayButToItsOwnKind)
{
    Variant source = Variant::FromArray(SafeArrayCreateVector(VT_I4, 0, 2), VT_I4);
    Variant target;
    EXPECT_EQ(Result{VariantChangeType(&target, &source, 0, VT_I4)}, Result{DISP_E_TYPEMISMATCH});
    EXPECT_EQ(Result{VariantChangeType(&target, &source, 0, VT_ARRAY | VT_I4)}, Result{S_OK});
    EXPECT_EQ(target.vt, VT_ARRAY | VT_I4);
    EXPECT_NE(target.parray, source.parray);
}

TEST(VariantChangeType, RefusesANullReference)
{
    VARIANT source;
    VariantInit(&source);
    source.vt = VT_BYREF | VT_VARIANT;
    source.byref = nullptr;
    Variant target = I4(123);
    EXPECT_EQ(Result{VariantChangeType(&target, &source, 0, VT_I4)}, Result{DISP_E_TYPEMISMATCH});
    EXPECT_TRUE(Same(target, I4(123))) << Show(target);
}

TEST(VariantChangeType, AsksAnObjectForItsDefaultProperty)
{
    FakeObject object;
    object.defaultValue = Text(OLESTR("42"));
    object.AddRef();
    Variant source;
    source.pdispVal = &object;
    source.vt = VT_DISPATCH;
    Variant target;
    ASSERT_EQ(Result{VariantChangeType(&target, &source, 0, VT_I4)}, Result{S_OK});
    EXPECT_TRUE(Same(target, I4(42))) << Show(target);
}

TEST(VariantChangeType, AddsAReferenceForAnotherInterface)
{
    FakeObject object;
    {
        object.AddRef();
        Variant source;
        source.punkVal = &object;
        source.vt = VT_UNKNOWN;
        Variant target;
        ASSERT_EQ(Result{VariantChangeType(&target, &source, 0, VT_DISPATCH)}, Result{S_OK});
        EXPECT_EQ(object.nReferences, 3u);
        EXPECT_EQ(target.pdispVal, &object);
        ASSERT_EQ(Result{VariantChangeType(&source, &source, 0, VT_DISPATCH)}, Result{S_OK});
        EXPECT_EQ(object.nReferences, 3u);
    }
    EXPECT_EQ(object.nReferences, 1u);
}

} // namespace
