#include <vector>

#include <gtest/gtest.h>

#include "Values.h"
#include "platform/values.h"

namespace {

SafeArray Create(VARTYPE vt, std::vector<SAFEARRAYBOUND> bounds)
{
    return SafeArray(SafeArrayCreate(vt, static_cast<UINT>(bounds.size()), bounds.data()));
}

LONG GetI4(const SafeArray& array, std::vector<LONG> indices)
{
    LONG n = -1;
    EXPECT_EQ(Result{SafeArrayGetElement(array.get(), indices.data(), &n)}, Result{S_OK});
    return n;
}

HRESULT PutI4(const SafeArray& array, std::vector<LONG> indices, LONG n)
{
    return SafeArrayPutElement(array.get(), indices.data(), &n);
}

struct ElementSize
{
    VARTYPE vt;
    UINT nBytes;
};

TEST(SafeArrayCreate, KnowsTheSizeAndKindOfEachElement)
{
    const ElementSize rows[] = {
        {VT_I1, 1},   {VT_UI1, 1},   {VT_I2, 2},       {VT_UI2, 2},     {VT_I4, 4},
        {VT_UI4, 4},  {VT_I8, 8},    {VT_UI8, 8},      {VT_INT, 4},     {VT_UINT, 4},
        {VT_R4, 4},   {VT_R8, 8},    {VT_CY, 8},       {VT_DATE, 8},    {VT_BSTR, 8},
        {VT_BOOL, 2}, {VT_ERROR, 4}, {VT_VARIANT, 24}, {VT_UNKNOWN, 8}, {VT_DISPATCH, 8},
    };
    for (const ElementSize& row : rows) {
        SCOPED_TRACE(row.vt);
        const SafeArray array = Create(row.vt, {{3, 0}});
        ASSERT_TRUE(array);
        EXPECT_EQ(SafeArrayGetElemsize(array.get()), row.nBytes);
        EXPECT_EQ(array.get()->cbElements, row.nBytes);
        VARTYPE vt = VT_EMPTY;
        EXPECT_EQ(Result{SafeArrayGetVartype(array.get(), &vt)}, Result{S_OK});
        EXPECT_EQ(vt, row.vt);
    }
}

TEST(SafeArrayCreate, RefusesKindsWithoutAValueAndTooManyDimensions)
{
    SAFEARRAYBOUND bound = {8, 0};
    for (const VARTYPE vt : {VARTYPE{VT_EMPTY}, VARTYPE{VT_NULL}, VARTYPE{15}, VARTYPE{24}})
        EXPECT_EQ(SafeArrayCreate(vt, 1, &bound), nullptr) << vt;
    EXPECT_EQ(SafeArrayCreate(VT_UI1, 65536, &bound), nullptr);
}

TEST(SafeArrayCreate, ZeroesTheElements)
{
    const SafeArray array = Create(VT_I4, {{5, 1}, {3, -1}});
    for (LONG row = -1; row < 2; ++row)
        for (LONG column = 1; column < 6; ++column)
            EXPECT_EQ(GetI4(array, {column, row}), 0);
}

TEST(SafeArrayCreate, AcceptsEmptyDimensions)
{
    const SafeArray array = Create(VT_VARIANT, {{5, 0}, {0, 0}});
    ASSERT_TRUE(array);
    LONG indices[] = {0, 0};
    Variant v;
    EXPECT_EQ(Result{SafeArrayGetElement(array.get(), indices, &v)}, Result{DISP_E_BADINDEX});
}

TEST(SafeArrayBounds, AreThoseGivenLeftmostFirst)
{
    const SafeArray array = Create(VT_I4, {{42, 1}, {2, 23}});
    ASSERT_EQ(SafeArrayGetDim(array.get()), 2u);
    struct Row
    {
        UINT dimension;
        HRESULT hr;
        LONG nLower;
        LONG nUpper;
    };
    const Row rows[] = {{0, DISP_E_BADINDEX, 0, 0},
                        {1, S_OK, 1, 42},
                        {2, S_OK, 23, 24},
                        {3, DISP_E_BADINDEX, 0, 0}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.dimension);
        LONG nLower = 0;
        LONG nUpper = 0;
        EXPECT_EQ(Result{SafeArrayGetLBound(array.get(), row.dimension, &nLower)}, Result{row.hr});
        EXPECT_EQ(Result{SafeArrayGetUBound(array.get(), row.dimension, &nUpper)}, Result{row.hr});
        EXPECT_EQ(nLower, row.nLower);
        EXPECT_EQ(nUpper, row.nUpper);
    }
    // The descriptor holds the bounds in reverse.
    EXPECT_EQ(array.get()->rgsabound[0].lLbound, 23);
}

TEST(SafeArrayElements, LieWithTheLeftmostIndexRunningFastest)
{
    const SafeArray array = Create(VT_I4, {{42, 1}, {2, 23}});
    BYTE* data = nullptr;
    ASSERT_EQ(SafeArrayAccessData(array.get(), reinterpret_cast<void**>(&data)), S_OK);
    struct Row
    {
        LONG indices[2];
        std::ptrdiff_t nBytes;
    };
    for (Row row : {Row{{1, 23}, 0}, Row{{3, 23}, 8}, Row{{20, 23}, 76}, Row{{3, 24}, 176}}) {
        SCOPED_TRACE(row.nBytes);
        void* element = nullptr;
        ASSERT_EQ(SafeArrayPtrOfIndex(array.get(), row.indices, &element), S_OK);
        EXPECT_EQ(static_cast<BYTE*>(element) - data, row.nBytes);
    }
    EXPECT_EQ(SafeArrayUnaccessData(array.get()), S_OK);
}

TEST(SafeArrayElements, AreReachedOnlyWithinTheBounds)
{
    const SafeArray array = Create(VT_I4, {{4, 1}, {2, -23}});
    struct Row
    {
        LONG indices[2];
        HRESULT hr;
    };
    const Row rows[] = {
        {{1, -23}, S_OK},
        {{4, -22}, S_OK},
        {{0, -23}, DISP_E_BADINDEX},
        {{5, -23}, DISP_E_BADINDEX},
        {{1, -24}, DISP_E_BADINDEX},
        {{1, -21}, DISP_E_BADINDEX},
        {{-2147483647, -23}, DISP_E_BADINDEX},
        {{2147483647, -23}, DISP_E_BADINDEX},
    };
    for (Row row : rows) {
        SCOPED_TRACE(testing::Message() << row.indices[0] << ',' << row.indices[1]);
        LONG n = 7;
        void* element = nullptr;
        EXPECT_EQ(Result{SafeArrayGetElement(array.get(), row.indices, &n)}, Result{row.hr});
        EXPECT_EQ(Result{SafeArrayPutElement(array.get(), row.indices, &n)}, Result{row.hr});
        EXPECT_EQ(Result{SafeArrayPtrOfIndex(array.get(), row.indices, &element)}, Result{row.hr});
    }
}

TEST(SafeArrayElements, KeepTextOfTheirOwn)
{
    const SafeArray array = Create(VT_BSTR, {{2, 0}});
    LONG nIndex = 1;
    const Bstr first(string_view_t(OLESTR("a\0b"), 3));
    const Bstr second(OLESTR("second"));
    ASSERT_EQ(SafeArrayPutElement(array.get(), &nIndex, first.get()), S_OK);
    ASSERT_EQ(SafeArrayPutElement(array.get(), &nIndex, second.get()), S_OK);
    Bstr found;
    ASSERT_EQ(SafeArrayGetElement(array.get(), &nIndex, found.put()), S_OK);
    EXPECT_EQ(found.view(), second.view());
    EXPECT_NE(found.get(), second.get());
    void* element = nullptr;
    ASSERT_EQ(SafeArrayPtrOfIndex(array.get(), &nIndex, &element), S_OK);
    EXPECT_NE(*static_cast<BSTR*>(element), second.get());
    EXPECT_NE(*static_cast<BSTR*>(element), found.get());
}

TEST(SafeArrayElements, MayBeNullText)
{
    const SafeArray array = Create(VT_BSTR, {{1, 0}});
    LONG nIndex = 0;
    ASSERT_EQ(SafeArrayPutElement(array.get(), &nIndex, nullptr), S_OK);
    Bstr found(OLESTR("old"));
    ASSERT_EQ(SafeArrayGetElement(array.get(), &nIndex, found.put()), S_OK);
    EXPECT_EQ(found.view(), string_view_t());
}

TEST(SafeArrayElements, KeepVariantsOfTheirOwn)
{
    const SafeArray array = Create(VT_VARIANT, {{2, 0}, {2, 0}});
    LONG indices[] = {1, 1};
    Variant value = Text(OLESTR("deep"));
    ASSERT_EQ(SafeArrayPutElement(array.get(), indices, &value), S_OK);
    ASSERT_EQ(SafeArrayPutElement(array.get(), indices, &value), S_OK);
    // The receiver's old content is ignored.
    VARIANT found;
    found.vt = VT_BSTR;
    found.bstrVal = value.bstrVal;
    ASSERT_EQ(SafeArrayGetElement(array.get(), indices, &found), S_OK);
    EXPECT_NE(found.bstrVal, value.bstrVal);
    EXPECT_TRUE(Same(found, value)) << Show(found);
    VariantClear(&found);
    LONG others[] = {0, 0};
    ASSERT_EQ(SafeArrayGetElement(array.get(), others, &found), S_OK);
    EXPECT_EQ(found.vt, VT_EMPTY);
}

TEST(SafeArrayElements, HoldReferencesToObjects)
{
    for (const VARTYPE vt : {VT_UNKNOWN, VT_DISPATCH}) {
        SCOPED_TRACE(vt);
        FakeObject object;
        {
            const SafeArray array = Create(vt, {{2, 0}});
            for (LONG nIndex : {0, 1, 1})
                ASSERT_EQ(
                    SafeArrayPutElement(array.get(), &nIndex, static_cast<IDispatch*>(&object)),
                    S_OK);
            EXPECT_EQ(object.nReferences, 3u);
            LONG nIndex = 0;
            IDispatch* found = nullptr;
            ASSERT_EQ(SafeArrayGetElement(array.get(), &nIndex, &found), S_OK);
            EXPECT_EQ(found, &object);
            EXPECT_EQ(object.nReferences, 4u);
            found->Release();
            ASSERT_EQ(SafeArrayPutElement(array.get(), &nIndex, nullptr), S_OK);
            EXPECT_EQ(object.nReferences, 2u);
        }
        EXPECT_EQ(object.nReferences, 1u);
    }
}

TEST(SafeArrayCopy, IsDeepAndHasTheSameShape)
{
    FakeObject object;
    {
        const SafeArray array = Create(VT_VARIANT, {{2, 3}, {4, -1}});
        LONG indices[] = {4, 2};
        Variant value;
        object.AddRef();
        value.vt = VT_DISPATCH;
        value.pdispVal = &object;
        ASSERT_EQ(SafeArrayPutElement(array.get(), indices, &value), S_OK);
        SAFEARRAY* raw = nullptr;
        ASSERT_EQ(SafeArrayCopy(array.get(), &raw), S_OK);
        const SafeArray copy(raw);
        EXPECT_EQ(object.nReferences, 4u);
        EXPECT_EQ(SafeArrayGetDim(raw), 2u);
        LONG n = 0;
        EXPECT_EQ(SafeArrayGetUBound(raw, 1, &n), S_OK);
        EXPECT_EQ(n, 4);
        EXPECT_EQ(SafeArrayGetLBound(raw, 2, &n), S_OK);
        EXPECT_EQ(n, -1);
        Variant found;
        ASSERT_EQ(SafeArrayGetElement(raw, indices, &found), S_OK);
        EXPECT_EQ(found.pdispVal, &object);
    }
    EXPECT_EQ(object.nReferences, 1u);
}

TEST(SafeArrayCopy, OfNothingIsNothing)
{
    SAFEARRAY* copy = reinterpret_cast<SAFEARRAY*>(1);
    EXPECT_EQ(Result{SafeArrayCopy(nullptr, &copy)}, Result{S_OK});
    EXPECT_EQ(copy, nullptr);
}

TEST(SafeArrayRedim, KeepsWhatFitsAndZeroesWhatIsNew)
{
    const SafeArray array = Create(VT_I4, {{2, 0}, {3, 0}});
    for (LONG row = 0; row < 3; ++row)
        for (LONG column = 0; column < 2; ++column)
            ASSERT_EQ(PutI4(array, {column, row}, row * 10 + column + 1), S_OK);
    SAFEARRAYBOUND bound = {2, 0};
    ASSERT_EQ(SafeArrayRedim(array.get(), &bound), S_OK);
    LONG gone[] = {0, 2};
    LONG n = 0;
    EXPECT_EQ(Result{SafeArrayGetElement(array.get(), gone, &n)}, Result{DISP_E_BADINDEX});
    bound = {4, 0};
    ASSERT_EQ(SafeArrayRedim(array.get(), &bound), S_OK);
    const LONG expected[4][2] = {{1, 2}, {11, 12}, {0, 0}, {0, 0}};
    for (LONG row = 0; row < 4; ++row)
        for (LONG column = 0; column < 2; ++column)
            EXPECT_EQ(GetI4(array, {column, row}), expected[row][column]) << column << ',' << row;
}

TEST(SafeArrayRedim, ReleasesWhatFallsAway)
{
    FakeObject object;
    const SafeArray array = Create(VT_DISPATCH, {{2, 0}, {3, 0}});
    for (LONG row = 0; row < 3; ++row) {
        LONG indices[] = {1, row};
        ASSERT_EQ(SafeArrayPutElement(array.get(), indices, static_cast<IDispatch*>(&object)),
                  S_OK);
    }
    EXPECT_EQ(object.nReferences, 4u);
    SAFEARRAYBOUND bound = {1, 0};
    ASSERT_EQ(SafeArrayRedim(array.get(), &bound), S_OK);
    EXPECT_EQ(object.nReferences, 2u);
    bound = {0, 0};
    ASSERT_EQ(SafeArrayRedim(array.get(), &bound), S_OK);
    EXPECT_EQ(object.nReferences, 1u);
    bound = {2, 0};
    ASSERT_EQ(SafeArrayRedim(array.get(), &bound), S_OK);
    LONG indices[] = {1, 1};
    IDispatch* found = &object;
    ASSERT_EQ(SafeArrayGetElement(array.get(), indices, &found), S_OK);
    EXPECT_EQ(found, nullptr);
}

TEST(SafeArrayRedim, TakesTheNewLowerBound)
{
    const SafeArray array = Create(VT_I4, {{2, 0}});
    ASSERT_EQ(PutI4(array, {0}, 7), S_OK);
    SAFEARRAYBOUND bound = {2, 5};
    ASSERT_EQ(SafeArrayRedim(array.get(), &bound), S_OK);
    EXPECT_EQ(GetI4(array, {5}), 7);
}

TEST(SafeArrayLocks, AreCountedAndForbidRedimAndDestruction)
{
    SafeArray array = Create(VT_I4, {{2, 0}});
    void* data = nullptr;
    ASSERT_EQ(SafeArrayAccessData(array.get(), &data), S_OK);
    EXPECT_EQ(data, array.get()->pvData);
    ASSERT_EQ(SafeArrayLock(array.get()), S_OK);
    EXPECT_EQ(array.get()->cLocks, 2u);
    SAFEARRAYBOUND bound = {4, 0};
    EXPECT_EQ(Result{SafeArrayRedim(array.get(), &bound)}, Result{DISP_E_ARRAYISLOCKED});
    EXPECT_EQ(Result{SafeArrayDestroy(array.get())}, Result{DISP_E_ARRAYISLOCKED});
    EXPECT_EQ(Result{PutI4(array, {1}, 3)}, Result{S_OK});
    EXPECT_EQ(Result{SafeArrayUnlock(array.get())}, Result{S_OK});
    EXPECT_EQ(Result{SafeArrayDestroy(array.get())}, Result{DISP_E_ARRAYISLOCKED});
    EXPECT_EQ(Result{SafeArrayUnaccessData(array.get())}, Result{S_OK});
    EXPECT_EQ(Result{SafeArrayUnlock(array.get())}, Result{E_UNEXPECTED});
    EXPECT_EQ(Result{SafeArrayRedim(array.get(), &bound)}, Result{S_OK});
    EXPECT_EQ(Result{SafeArrayDestroy(array.detach())}, Result{S_OK});
}

TEST(SafeArrayCalls, RefuseNullArguments)
{
    const SafeArray array = Create(VT_I4, {{2, 0}});
    LONG n = 0;
    VARTYPE vt = 0;
    void* data = nullptr;
    SAFEARRAYBOUND bound = {1, 0};
    EXPECT_EQ(Result{SafeArrayDestroy(nullptr)}, Result{S_OK});
    EXPECT_EQ(SafeArrayGetDim(nullptr), 0u);
    EXPECT_EQ(SafeArrayGetElemsize(nullptr), 0u);
    const HRESULT refused[] = {
        SafeArrayCopy(array.get(), nullptr),
        SafeArrayRedim(nullptr, &bound),
        SafeArrayGetVartype(nullptr, &vt),
        SafeArrayGetLBound(nullptr, 1, &n),
        SafeArrayGetElement(nullptr, &n, &n),
        SafeArrayPutElement(nullptr, &n, &n),
        SafeArrayPtrOfIndex(array.get(), &n, nullptr),
        SafeArrayLock(nullptr),
        SafeArrayUnlock(nullptr),
        SafeArrayAccessData(nullptr, &data),
    };
    for (std::size_t row = 0; row < std::size(refused); ++row)
        EXPECT_EQ(Result{refused[row]}, Result{E_INVALIDARG}) << row;
}

} // namespace
