// Invoke, over an interface of all kinds of rows.

#include <gtest/gtest.h>

#include "tests/module/Gadget.h"

namespace {

constexpr UINT kUnset = 77;
constexpr WORD kCall = DISPATCH_METHOD, kGet = DISPATCH_PROPERTYGET, kPut = DISPATCH_PROPERTYPUT,
               kPutRef = DISPATCH_PROPERTYPUTREF;

Variant I4(LONG n)
{
    return Variant::FromI4(n);
}

Variant Words(string_view_t s)
{
    return Variant::FromText(s);
}

Variant NoObject()
{
    Variant value;
    value.vt = VT_DISPATCH;
    value.pdispVal = nullptr;
    return value;
}

class Dispatching : public testing::Test
{
protected:
    Dispatching() { EXPECT_EQ(S_OK, CreateObject(m_gadget)); }

    // Arguments in declared order. A put carries the name that marks it.
    HRESULT Invoke(DISPID id, WORD flags, std::vector<Variant> arguments = {})
    {
        std::vector<VARIANT> reversed(arguments.rbegin(), arguments.rend());
        DISPID put = DISPID_PROPERTYPUT;
        const bool bNamed = flags == kPut && !arguments.empty();
        DISPPARAMS params{reversed.data(), bNamed ? &put : nullptr,
                          static_cast<UINT>(reversed.size()), bNamed ? 1u : 0u};
        return InvokeWith(id, flags, &params);
    }
    HRESULT InvokeWith(DISPID id, WORD flags, DISPPARAMS* params)
    {
        m_gadget->m_sCalls.clear();
        m_nArgument = kUnset;
        m_exception = EXCEPINFO{};
        return m_gadget->Invoke(id, IID_NULL, 0, flags, params, m_result.put(), &m_exception,
                                &m_nArgument);
    }

    com_ptr<Gadget> m_gadget;
    Variant m_result;
    EXCEPINFO m_exception{};
    UINT m_nArgument = kUnset;
};

TEST_F(Dispatching, RefusesBadCallsInAFixedOrder)
{
    const Variant n = I4(1);
    const Variant words = Words(OLESTR("x"));
    struct Row
    {
        const char* szWhat;
        DISPID id;
        WORD flags;
        std::vector<Variant> arguments;
        HRESULT hr;
    };
    const Row kRows[] = {
        {"six for nothing known", 99, kCall, {n, n, n, n, n, n}, DISP_E_BADPARAMCOUNT},
        {"six for a method", 3, kCall, {n, n, n, n, n, n}, DISP_E_BADPARAMCOUNT},
        {"a number below", 0, kCall, {}, DISP_E_MEMBERNOTFOUND},
        {"a number above", 9, kGet, {}, DISP_E_MEMBERNOTFOUND},
        {"a negative number", -1, kCall, {n}, DISP_E_MEMBERNOTFOUND},
        {"a method with one too many", 1, kCall, {n}, DISP_E_BADPARAMCOUNT},
        {"a method with too few", 2, kCall, {n, words}, DISP_E_BADPARAMCOUNT},
        {"too few of a bad kind", 2, kCall, {words}, DISP_E_BADPARAMCOUNT},
        {"a get with an argument", 6, kGet, {n}, DISP_E_BADPARAMCOUNT},
        {"a put with two", 6, kPut, {n, n}, DISP_E_BADPARAMCOUNT},
        {"a put with none", 6, kPut, {}, DISP_E_BADPARAMCOUNT},
        {"a property as a method", 6, kCall, {}, DISP_E_MEMBERNOTFOUND},
        {"a property without flags", 6, 0, {}, DISP_E_MEMBERNOTFOUND},
        {"a property put by reference", 6, kPutRef, {n}, DISP_E_MEMBERNOTFOUND},
        {"a put of what can be read only", 7, kPut, {n}, DISP_E_MEMBERNOTFOUND},
        {"a result with an argument", 8, kGet, {n}, DISP_E_BADPARAMCOUNT},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.szWhat);
        EXPECT_EQ(row.hr, Invoke(row.id, row.flags, row.arguments));
        EXPECT_EQ("", m_gadget->m_sCalls);
        EXPECT_EQ(kUnset, m_nArgument);
        EXPECT_EQ(S_OK, m_exception.scode);
        EXPECT_EQ(VT_EMPTY, m_result.vt);
    }
}

TEST_F(Dispatching, WantsAParameterBlock)
{
    EXPECT_EQ(DISP_E_BADVARTYPE, InvokeWith(1, kCall, nullptr));
    EXPECT_EQ(DISP_E_BADVARTYPE, InvokeWith(99, kCall, nullptr));
}

TEST_F(Dispatching, KnowsOneNameOfAnArgument)
{
    struct Row
    {
        const char* szWhat;
        DISPID id;
        std::vector<DISPID> names;
        HRESULT hr;
    };
    const Row kRows[] = {
        {"no name", 6, {}, S_OK},
        {"the name of a put", 6, {DISPID_PROPERTYPUT}, S_OK},
        {"another name", 6, {0}, DISP_E_NONAMEDARGS},
        {"a number that is no operation's", 99, {0}, DISP_E_NONAMEDARGS},
        {"two names", 6, {DISPID_PROPERTYPUT, DISPID_PROPERTYPUT}, DISP_E_NONAMEDARGS},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.szWhat);
        Variant level = I4(9);
        std::vector<DISPID> names = row.names;
        DISPPARAMS params{&level, names.data(), 1, static_cast<UINT>(names.size())};
        EXPECT_EQ(row.hr, InvokeWith(row.id, kPut, &params));
        EXPECT_EQ(row.hr == S_OK ? "put_Level" : "", m_gadget->m_sCalls);
    }
    Variant level = I4(9);
    DISPPARAMS params{&level, nullptr, 1, 1}; // a count without names
    EXPECT_EQ(DISP_E_NONAMEDARGS, InvokeWith(6, kPut, &params));
}

TEST_F(Dispatching, InitialisesTheResult)
{
    struct Row
    {
        DISPID id;
        WORD flags;
        HRESULT hr;
    };
    for (const Row& row : {Row{1, kCall, S_OK}, Row{99, kCall, DISP_E_MEMBERNOTFOUND}}) {
        SCOPED_TRACE(row.id);
        VARIANT result;
        result.vt = VT_BSTR;
        result.bstrVal = reinterpret_cast<BSTR>(1); // garbage that must not be freed
        DISPPARAMS none{};
        EXPECT_EQ(row.hr, m_gadget->Invoke(row.id, IID_NULL, 0, row.flags, &none, &result, nullptr,
                                           nullptr));
        EXPECT_EQ(VT_EMPTY, result.vt);
    }
}

TEST_F(Dispatching, HandsArgumentsOnInDeclaredOrder)
{
    Variant object;
    object.vt = VT_DISPATCH;
    object.pdispVal = com_ptr<IDispatch>(m_gadget.get()).detach();
    EXPECT_EQ(S_OK, Invoke(2, kCall, {I4(7), Words(OLESTR("seven")), object}));
    EXPECT_EQ("Take", m_gadget->m_sCalls);
    EXPECT_EQ(7, m_gadget->m_nCount);
    EXPECT_EQ(OLESTR("seven"), m_gadget->m_sText);
    EXPECT_EQ(m_gadget.get(), m_gadget->m_pObject);
}

TEST_F(Dispatching, CoercesArgumentsToTheirKind)
{
    const Variant n = I4(1);
    EXPECT_EQ(S_OK, Invoke(3, kCall, {Words(OLESTR("12")), Words(OLESTR("-3")), I4(4), I4(5), n}));
    EXPECT_EQ((std::vector<double>{12, -3, 4, 5, VARIANT_TRUE}), m_gadget->m_many);

    const Variant object = NoObject();
    EXPECT_EQ(S_OK, Invoke(2, kCall, {Words(OLESTR("8")), I4(9), object}));
    EXPECT_EQ(8, m_gadget->m_nCount);
    EXPECT_EQ(OLESTR("9"), m_gadget->m_sText);
}

TEST_F(Dispatching, TellsThePlaceOfAnArgumentThatCanNotBeCoerced)
{
    const Variant object = NoObject();
    struct Row
    {
        std::vector<Variant> arguments; // of Take
        UINT nArgument;                 // from the last
    };
    const Row kRows[] = {
        {{Words(OLESTR("seven")), Words(OLESTR("x")), object}, 2},
        {{I4(1), object, object}, 1},
        {{I4(1), Words(OLESTR("x")), Words(OLESTR("x"))}, 0},
        {{Words(OLESTR("seven")), object, I4(1)}, 2}, // the first of several
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.nArgument);
        EXPECT_EQ(DISP_E_TYPEMISMATCH, Invoke(2, kCall, row.arguments));
        EXPECT_EQ(row.nArgument, m_nArgument);
        EXPECT_EQ("", m_gadget->m_sCalls);
        EXPECT_EQ(S_OK, m_exception.scode);
    }
    EXPECT_EQ(DISP_E_TYPEMISMATCH, Invoke(6, kPut, {Words(OLESTR("high"))}));
    EXPECT_EQ(0u, m_nArgument);
    EXPECT_EQ(3, m_gadget->m_nLevel);
}

TEST_F(Dispatching, HandsAnyKindOnWhereAnyIsDeclared)
{
    EXPECT_EQ(S_OK, Invoke(4, kCall, {I4(5)}));
    EXPECT_EQ(VT_I4, m_gadget->m_nKind);
    EXPECT_EQ(S_OK, Invoke(4, kCall, {Words(OLESTR("x"))}));
    EXPECT_EQ(VT_BSTR, m_gadget->m_nKind);
    VARIANT inner = I4(6);
    VARIANT reference{};
    reference.vt = VT_BYREF | VT_VARIANT;
    reference.pvarVal = &inner;
    DISPPARAMS params{&reference, nullptr, 1, 0};
    EXPECT_EQ(S_OK, InvokeWith(4, kCall, &params));
    EXPECT_EQ(VT_I4, m_gadget->m_nKind);
    EXPECT_EQ(6, m_gadget->m_nCount);
}

TEST_F(Dispatching, WritesThroughReferencesOfTheDeclaredKindAlone)
{
    LONG nCount = 41;
    Bstr text(OLESTR("empty"));
    BSTR bsText = text.detach();
    VARIANT arguments[2]{}; // the last one first
    arguments[0].vt = VT_BYREF | VT_BSTR;
    arguments[0].pbstrVal = &bsText;
    arguments[1].vt = VT_BYREF | VT_I4;
    arguments[1].plVal = &nCount;
    DISPPARAMS params{arguments, nullptr, 2, 0};
    EXPECT_EQ(S_OK, InvokeWith(5, kCall, &params));
    EXPECT_EQ(42, nCount);
    EXPECT_EQ(OLESTR("filled"), TextOf(bsText));

    arguments[1].vt = VT_BYREF | VT_UI4;
    EXPECT_EQ(DISP_E_TYPEMISMATCH, InvokeWith(5, kCall, &params));
    EXPECT_EQ(1u, m_nArgument);
    arguments[1].vt = VT_I4;
    EXPECT_EQ(DISP_E_TYPEMISMATCH, InvokeWith(5, kCall, &params));
    EXPECT_EQ(42, nCount);
    SysFreeString(bsText);
}

TEST_F(Dispatching, ReadsPropertiesIntoTheResult)
{
    EXPECT_EQ(S_OK, Invoke(6, kGet));
    EXPECT_EQ(VT_I4, m_result.vt);
    EXPECT_EQ(3, m_result.lVal);
    EXPECT_EQ(S_OK, Invoke(7, kGet));
    ASSERT_EQ(VT_BSTR, m_result.vt);
    EXPECT_EQ(OLESTR("label"), TextOf(m_result.bstrVal));
    EXPECT_EQ(S_OK, Invoke(6, kPut, {I4(9)}));
    EXPECT_EQ(VT_EMPTY, m_result.vt);
    EXPECT_EQ(9, m_gadget->m_nLevel);
    EXPECT_EQ(S_OK, Invoke(6, kCall | kGet)); // the flags of some callers
    EXPECT_EQ(9, m_result.lVal);
}

TEST_F(Dispatching, GivesAResultWhateverTheFlags)
{
    for (WORD flags : {WORD(0), kCall, kGet, kPut}) {
        SCOPED_TRACE(flags);
        EXPECT_EQ(S_OK, Invoke(8, flags));
        ASSERT_EQ(VT_BSTR, m_result.vt);
        EXPECT_EQ(OLESTR("names"), TextOf(m_result.bstrVal));
    }
}

TEST_F(Dispatching, GivesTheResultOfTheOperation)
{
    m_gadget->m_hr = S_FALSE;
    EXPECT_EQ(S_FALSE, Invoke(1, kCall));
    EXPECT_EQ(S_FALSE, Invoke(6, kGet));
    EXPECT_EQ(3, m_result.lVal);
    EXPECT_EQ(S_OK, m_exception.scode);
}

TEST_F(Dispatching, FillsTheExceptionBlockWhenAnOperationFails)
{
    m_gadget->m_hr = E_ACCESSDENIED;
    for (DISPID id : {1, 6, 8}) {
        SCOPED_TRACE(id);
        EXPECT_EQ(E_ACCESSDENIED, Invoke(id, id == 1 ? kCall : kGet));
        EXPECT_EQ(E_ACCESSDENIED, m_exception.scode);
        EXPECT_EQ(VT_EMPTY, m_result.vt);
        EXPECT_EQ(kUnset, m_nArgument);
    }
}

TEST_F(Dispatching, DoesWithoutResultExceptionAndArgument)
{
    DISPPARAMS none{};
    Variant high = Words(OLESTR("high"));
    DISPPARAMS bad{&high, nullptr, 1, 0};
    const auto invoke = [&](DISPID id, WORD flags, DISPPARAMS& params) {
        return m_gadget->Invoke(id, IID_NULL, 0, flags, &params, nullptr, nullptr, nullptr);
    };
    EXPECT_EQ(S_OK, invoke(6, kGet, none));
    EXPECT_EQ(DISP_E_TYPEMISMATCH, invoke(6, kPut, bad));
    m_gadget->m_hr = E_FAIL;
    EXPECT_EQ(E_FAIL, invoke(1, kCall, none));
}

} // namespace
