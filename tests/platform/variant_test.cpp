#include <gtest/gtest.h>

#include "Values.h"
#include "platform/com_ptr.h"
#include "platform/values.h"

namespace {

// Kinds without a meaning and modifiers that a value can't have.
constexpr VARTYPE kBadKinds[] = {
    15,
    24,
    25,
    27,
    31,
    VT_BYREF | VT_EMPTY,
    VT_BYREF | VT_NULL,
    VT_ARRAY | VT_EMPTY,
    VT_BYREF | 15,
    0x1000 | VT_I4,
    0x8000 | VT_I4,
    0x8000 | VT_BYREF | VT_I4,
};

Variant Reference(VARTYPE vt, void* value)
{
    Variant v;
    v.byref = value;
    v.vt = static_cast<VARTYPE>(VT_BYREF | vt);
    return v;
}

Variant Dispatch(FakeObject& object)
{
    Variant v;
    object.AddRef();
    v.pdispVal = &object;
    v.vt = VT_DISPATCH;
    return v;
}

TEST(VariantLayout, IsThePublishedOne)
{
    EXPECT_EQ(sizeof(VARIANT), 24u);
    EXPECT_EQ(offsetof(VARIANT, llVal), 8u);
}

TEST(VariantClear, EmptiesEachScalarKind)
{
    const Variant values[] = {
        Empty(), Null(),  I1(1), I2(1), I4(1), I8(1),   UI1(1),  UI2(1),   UI4(1),           UI8(1),
        Int(1),  Uint(1), R4(1), R8(1), Cy(1), Date(1), Bool(1), Error(1), Text(OLESTR("a"))};
    for (const Variant& value : values) {
        SCOPED_TRACE(Show(value));
        Variant v(value);
        EXPECT_EQ(Result{VariantClear(&v)}, Result{S_OK});
        EXPECT_EQ(v.vt, VT_EMPTY);
    }
}

TEST(VariantClear, RefusesBadKindsAndLeavesThem)
{
    for (const VARTYPE vt : kBadKinds) {
        SCOPED_TRACE(vt);
        VARIANT v;
        VariantInit(&v);
        v.vt = vt;
        EXPECT_EQ(Result{VariantClear(&v)}, Result{DISP_E_BADVARTYPE});
        EXPECT_EQ(v.vt, vt);
    }
}

TEST(VariantClear, ReleasesInterfaces)
{
    FakeObject object;
    for (const VARTYPE vt : {VT_DISPATCH, VT_UNKNOWN}) {
        Variant v = Dispatch(object);
        v.vt = vt;
        EXPECT_EQ(object.nReferences, 2u);
        EXPECT_EQ(Result{VariantClear(&v)}, Result{S_OK});
        EXPECT_EQ(object.nReferences, 1u);
    }
}

TEST(VariantClear, FreesNothingBehindAReference)
{
    FakeObject object;
    IDispatch* pObject = &object;
    Bstr text(OLESTR("kept"));
    BSTR raw = text.get();
    Variant inner = Text(OLESTR("kept too"));
    Variant references[] = {Reference(VT_DISPATCH, &pObject), Reference(VT_BSTR, &raw),
                            Reference(VT_VARIANT, &inner)};
    for (Variant& v : references) {
        EXPECT_EQ(Result{VariantClear(&v)}, Result{S_OK});
        EXPECT_EQ(v.vt, VT_EMPTY);
    }
    EXPECT_EQ(object.nReferences, 1u);
    EXPECT_EQ(TextOf(raw), OLESTR("kept"));
    EXPECT_EQ(TextOf(inner.bstrVal), OLESTR("kept too"));
}

TEST(VariantClear, DestroysArraysWithTheirElements)
{
    FakeObject object;
    SAFEARRAY* array = SafeArrayCreateVector(VT_DISPATCH, 0, 2);
    LONG nIndex = 1;
    ASSERT_EQ(SafeArrayPutElement(array, &nIndex, static_cast<IDispatch*>(&object)), S_OK);
    EXPECT_EQ(object.nReferences, 2u);
    Variant v = Variant::FromArray(array, VT_DISPATCH);
    EXPECT_EQ(Result{VariantClear(&v)}, Result{S_OK});
    EXPECT_EQ(object.nReferences, 1u);
}

TEST(VariantClear, LeavesALockedArray)
{
    SAFEARRAY* array = SafeArrayCreateVector(VT_I4, 0, 2);
    SafeArrayLock(array);
    VARIANT v;
    VariantInit(&v);
    v.vt = VT_ARRAY | VT_I4;
    v.parray = array;
    EXPECT_EQ(Result{VariantClear(&v)}, Result{DISP_E_ARRAYISLOCKED});
    SafeArrayUnlock(array);
    EXPECT_EQ(Result{SafeArrayDestroy(array)}, Result{S_OK});
}

TEST(VariantCopy, OfTextIsDeepAndKeepsZerosAndOddBytes)
{
    Variant source = Text(string_view_t(OLESTR("a\0b"), 3));
    Variant copy;
    ASSERT_EQ(Result{VariantCopy(&copy, &source)}, Result{S_OK});
    EXPECT_NE(copy.bstrVal, source.bstrVal);
    EXPECT_TRUE(Same(copy, source)) << Show(copy);

    Variant odd;
    odd.bstrVal = SysAllocStringByteLen("abc", 3);
    odd.vt = VT_BSTR;
    ASSERT_EQ(Result{VariantCopy(&copy, &odd)}, Result{S_OK});
    EXPECT_EQ(SysStringByteLen(copy.bstrVal), 3u);
}

TEST(VariantCopy, OfNullTextIsEmptyTextOfItsOwn)
{
    Variant source;
    source.bstrVal = nullptr;
    source.vt = VT_BSTR;
    Variant copy;
    ASSERT_EQ(Result{VariantCopy(&copy, &source)}, Result{S_OK});
    EXPECT_EQ(copy.vt, VT_BSTR);
    ASSERT_NE(copy.bstrVal, nullptr);
    EXPECT_EQ(SysStringLen(copy.bstrVal), 0u);
}

TEST(VariantCopy, OfAnArrayIsDeep)
{
    const Variant source = Variant::FromArray(SafeArrayCreateVector(VT_VARIANT, 5, 2), VT_VARIANT);
    LONG nIndex = 6;
    Variant element = Text(OLESTR("deep"));
    ASSERT_EQ(SafeArrayPutElement(source.parray, &nIndex, &element), S_OK);
    Variant copy(source);
    ASSERT_NE(copy.parray, source.parray);
    Variant found;
    ASSERT_EQ(SafeArrayGetElement(copy.parray, &nIndex, &found), S_OK);
    EXPECT_TRUE(Same(found, element)) << Show(found);
}

TEST(VariantCopy, OfNoArrayIsNone)
{
    VARIANT source;
    VariantInit(&source);
    source.vt = VT_ARRAY | VT_I4;
    source.parray = nullptr;
    Variant copy = I4(7);
    EXPECT_EQ(Result{VariantCopy(&copy, &source)}, Result{S_OK});
    EXPECT_EQ(copy.vt, VT_ARRAY | VT_I4);
    EXPECT_EQ(copy.parray, nullptr);
    EXPECT_EQ(Result{VariantClear(&copy)}, Result{S_OK});
}

TEST(VariantCopy, AddsAReferenceToAnInterface)
{
    FakeObject object;
    {
        const Variant source = Dispatch(object);
        Variant copy(source);
        EXPECT_EQ(object.nReferences, 3u);
        EXPECT_EQ(copy.pdispVal, &object);
    }
    EXPECT_EQ(object.nReferences, 1u);
}

TEST(VariantCopy, CopiesAReferenceAsItIs)
{
    FakeObject object;
    IDispatch* pObject = &object;
    Variant source = Reference(VT_DISPATCH, &pObject);
    Variant copy;
    ASSERT_EQ(Result{VariantCopy(&copy, &source)}, Result{S_OK});
    EXPECT_EQ(copy.vt, VT_BYREF | VT_DISPATCH);
    EXPECT_EQ(copy.byref, static_cast<void*>(&pObject));
    EXPECT_EQ(object.nReferences, 1u);
}

TEST(VariantCopy, OntoItselfChangesNothing)
{
    Variant v = Text(OLESTR("self"));
    const BSTR text = v.bstrVal;
    EXPECT_EQ(Result{VariantCopy(&v, &v)}, Result{S_OK});
    EXPECT_EQ(v.bstrVal, text);
    EXPECT_EQ(TextOf(text), OLESTR("self"));
}

TEST(VariantCopy, ReleasesWhatTheTargetHeld)
{
    FakeObject object;
    Variant target = Dispatch(object);
    Variant source = I4(7);
    EXPECT_EQ(Result{VariantCopy(&target, &source)}, Result{S_OK});
    EXPECT_EQ(object.nReferences, 1u);
    EXPECT_TRUE(Same(target, I4(7))) << Show(target);
}

TEST(VariantCopy, RefusesBadKindsOnEitherSide)
{
    for (const VARTYPE vt : kBadKinds) {
        SCOPED_TRACE(vt);
        VARIANT bad;
        VariantInit(&bad);
        bad.vt = vt;
        Variant good = I4(7);
        EXPECT_EQ(Result{VariantCopy(&good, &bad)}, Result{DISP_E_BADVARTYPE});
        EXPECT_TRUE(Same(good, I4(7))) << Show(good);
        EXPECT_EQ(Result{VariantCopy(&bad, &good)}, Result{DISP_E_BADVARTYPE});
        EXPECT_EQ(Result{VariantCopy(&bad, &bad)}, Result{DISP_E_BADVARTYPE});
        EXPECT_EQ(bad.vt, vt);
    }
}

TEST(VariantCopyInd, GivesTheValueBehindAReference)
{
    const Variant values[] = {I1(-3),    I2(-300),   I4(-70000), I8(-1LL << 40),
                              UI1(200),  UI2(60000), UI4(~0u),   UI8(~0ull),
                              Int(-5),   Uint(5),    R4(1.5F),   R8(2.5),
                              Cy(12345), Date(2.5),  Bool(-1),   Error(E_FAIL)};
    for (Variant value : values) {
        SCOPED_TRACE(Show(value));
        Variant reference = Reference(value.vt, &value.llVal);
        Variant copy = Text(OLESTR("old"));
        ASSERT_EQ(Result{VariantCopyInd(&copy, &reference)}, Result{S_OK});
        EXPECT_TRUE(Same(copy, value)) << Show(copy);
    }
}

TEST(VariantCopyInd, OwnsTextArraysAndInterfaces)
{
    FakeObject object;
    IDispatch* pObject = &object;
    Bstr text(OLESTR("text"));
    BSTR raw = text.get();
    const SafeArray array(SafeArrayCreateVector(VT_I4, 0, 3));
    SAFEARRAY* pArray = array.get();
    {
        Variant copy;
        Variant reference = Reference(VT_BSTR, &raw);
        ASSERT_EQ(Result{VariantCopyInd(&copy, &reference)}, Result{S_OK});
        EXPECT_NE(copy.bstrVal, raw);
        EXPECT_EQ(TextOf(copy.bstrVal), OLESTR("text"));

        reference = Reference(VT_ARRAY | VT_I4, &pArray);
        ASSERT_EQ(Result{VariantCopyInd(&copy, &reference)}, Result{S_OK});
        EXPECT_EQ(copy.vt, VT_ARRAY | VT_I4);
        EXPECT_NE(copy.parray, pArray);

        reference = Reference(VT_DISPATCH, &pObject);
        ASSERT_EQ(Result{VariantCopyInd(&copy, &reference)}, Result{S_OK});
        EXPECT_EQ(object.nReferences, 2u);
    }
    EXPECT_EQ(object.nReferences, 1u);
}

TEST(VariantCopyInd, FollowsOneReferenceToAVariant)
{
    Variant inner = Text(OLESTR("inner"));
    Variant reference = Reference(VT_VARIANT, &inner);
    Variant copy;
    ASSERT_EQ(Result{VariantCopyInd(&copy, &reference)}, Result{S_OK});
    EXPECT_TRUE(Same(copy, inner)) << Show(copy);

    LONG n = 42;
    inner = Reference(VT_I4, &n);
    ASSERT_EQ(Result{VariantCopyInd(&copy, &reference)}, Result{S_OK});
    EXPECT_TRUE(Same(copy, I4(42))) << Show(copy);

    Variant second = Reference(VT_VARIANT, &reference);
    EXPECT_EQ(Result{VariantCopyInd(&copy, &second)}, Result{E_INVALIDARG});
}

TEST(VariantCopyInd, WorksInPlace)
{
    Bstr text(OLESTR("text"));
    BSTR raw = text.get();
    Variant v = Reference(VT_BSTR, &raw);
    ASSERT_EQ(Result{VariantCopyInd(&v, &v)}, Result{S_OK});
    EXPECT_TRUE(Same(v, Text(OLESTR("text")))) << Show(v);
    EXPECT_NE(v.bstrVal, raw);
}

TEST(VariantCopyInd, RefusesBadKinds)
{
    for (const VARTYPE vt : kBadKinds) {
        // A reference to an array isn't followed, so it may point nowhere.
        SCOPED_TRACE(vt);
        LONGLONG room[4] = {};
        VARIANT bad;
        VariantInit(&bad);
        bad.vt = vt;
        bad.byref = room;
        Variant copy;
        const HRESULT expected = vt & VT_BYREF ? E_INVALIDARG : DISP_E_BADVARTYPE;
        EXPECT_EQ(Result{VariantCopyInd(&copy, &bad)}, Result{expected});
    }
}

TEST(VariantOwner, MovesAndDetaches)
{
    Variant first = Text(OLESTR("one"));
    const BSTR text = first.bstrVal;
    Variant second(std::move(first));
    EXPECT_EQ(first.vt, VT_EMPTY);
    EXPECT_EQ(second.bstrVal, text);
    VARIANT raw = second.detach();
    EXPECT_EQ(second.vt, VT_EMPTY);
    EXPECT_EQ(raw.bstrVal, text);
    VariantClear(&raw);
}

} // namespace
