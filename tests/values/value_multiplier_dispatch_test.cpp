// IValueMultiplier by number.

#include <gtest/gtest.h>

#include <vector>

#include "tests/values/multipliers.h"

namespace {

using namespace IQRL_TabulexConverter;

constexpr DISPID kApplyTransform = 1, kTransformNames = 2, kCurrent = 3;
constexpr UINT kUnset = 77;

class ValueMultiplierDispatch : public testing::Test
{
protected:
    // Arguments in the order of rgvarg. A put carries the name that marks it.
    HRESULT Invoke(DISPID id, WORD flags, std::vector<VARIANT> arguments)
    {
        DISPID put = DISPID_PROPERTYPUT;
        const bool bNamed = flags == DISPATCH_PROPERTYPUT && !arguments.empty();
        DISPPARAMS params{arguments.data(), bNamed ? &put : nullptr,
                          static_cast<UINT>(arguments.size()), bNamed ? 1u : 0u};
        return Invoke(id, flags, &params);
    }
    HRESULT Invoke(DISPID id, WORD flags, DISPPARAMS* params)
    {
        m_nArgument = kUnset;
        m_exception = EXCEPINFO{};
        return m_dispatch->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, params, m_result.put(),
                                  &m_exception, &m_nArgument);
    }
    HRESULT IdOf(string_t sName, DISPID& id)
    {
        OLECHAR* szName = sName.data();
        return m_dispatch->GetIDsOfNames(IID_NULL, &szName, 1, LOCALE_USER_DEFAULT, &id);
    }

    com_ptr<Hesperon::specifics::CqrlValueMultiplier> m_object = NewMultiplier();
    com_ptr<IDispatch> m_dispatch = m_object.as<IDispatch>();
    Variant m_result;
    EXCEPINFO m_exception{};
    UINT m_nArgument = kUnset;
};

TEST_F(ValueMultiplierDispatch, NamesHaveTheirNumbers)
{
    struct Row
    {
        const OLECHAR* szName;
        DISPID id;
    };
    constexpr Row kRows[] = {
        {OLESTR("Value"), 0},
        {OLESTR("ApplyTransform"), 1},
        {OLESTR("TransformNames"), 2},
        {OLESTR("pVal"), 0},
        {OLESTR("get_TransformNames"), 2},
        {OLESTR("Current"), 3},
        {OLESTR("get_Current"), 3},
        {OLESTR("put_Current"), 3},
        {OLESTR("VALUE"), 0},
        {OLESTR("applytransform"), 1},
        {OLESTR("PUT_current"), 3},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(testing::PrintToString(string_t(row.szName)));
        DISPID id = -7;
        EXPECT_EQ(S_OK, IdOf(row.szName, id));
        EXPECT_EQ(row.id, id);
    }
}

TEST_F(ValueMultiplierDispatch, OtherNamesAreUnknown)
{
    for (const OLECHAR* szName :
         {OLESTR(""), OLESTR("Currently"), OLESTR("put_TransformNames"), OLESTR("get_Value"),
          OLESTR("get_ApplyTransform"), OLESTR("newVal"), OLESTR("SetCode")}) {
        SCOPED_TRACE(testing::PrintToString(string_t(szName)));
        DISPID id = -7;
        EXPECT_EQ(DISP_E_UNKNOWNNAME, IdOf(szName, id));
        EXPECT_EQ(DISPID_UNKNOWN, id);
    }
}

TEST_F(ValueMultiplierDispatch, EachNameOfAListIsLookedUpInTheWholeTable)
{
    string_t sNames[] = {OLESTR("ApplyTransform"), OLESTR("Value"), OLESTR("pVal"),
                         OLESTR("Current")};
    OLECHAR* names[] = {sNames[0].data(), sNames[1].data(), sNames[2].data(), sNames[3].data()};
    DISPID ids[4] = {-7, -7, -7, -7};
    EXPECT_EQ(S_OK, m_dispatch->GetIDsOfNames(IID_NULL, names, 4, LOCALE_USER_DEFAULT, ids));
    EXPECT_EQ(1, ids[0]);
    EXPECT_EQ(0, ids[1]);
    EXPECT_EQ(0, ids[2]);
    EXPECT_EQ(3, ids[3]);
}

// Every fault that is found before an operation is called.
TEST_F(ValueMultiplierDispatch, WrongCallsAreRefused)
{
    VARIANT value = IntegerValue(7);
    VARIANT byReference{};
    byReference.vt = VT_BYREF | VT_VARIANT;
    byReference.pvarVal = &value;
    Variant object;
    object.vt = VT_DISPATCH;
    object.pdispVal = m_object.as<IDispatch>().detach();
    struct Row
    {
        DISPID id;
        WORD flags;
        std::vector<VARIANT> arguments;
        HRESULT hr;
        UINT nArgument;
    };
    constexpr WORD kCall = DISPATCH_METHOD, kGet = DISPATCH_PROPERTYGET,
                   kPut = DISPATCH_PROPERTYPUT;
    const Row kRows[] = {
        {kApplyTransform, kCall, {byReference, byReference}, DISP_E_BADPARAMCOUNT, kUnset},
        {kApplyTransform, kCall, {}, DISP_E_BADPARAMCOUNT, kUnset},
        {kApplyTransform, kCall, {value}, DISP_E_TYPEMISMATCH, 0},
        {kApplyTransform, kCall, {object}, DISP_E_TYPEMISMATCH, 0},
        {kTransformNames, kGet, {value}, DISP_E_BADPARAMCOUNT, kUnset},
        {kCurrent, kGet, {value}, DISP_E_BADPARAMCOUNT, kUnset},
        {kCurrent, kPut, {}, DISP_E_BADPARAMCOUNT, kUnset},
        {kCurrent, kPut, {object}, DISP_E_TYPEMISMATCH, 0},
        {kCurrent, kCall, {}, DISP_E_MEMBERNOTFOUND, kUnset},
        {kCurrent, 0, {}, DISP_E_MEMBERNOTFOUND, kUnset},
        {0, kCall, {}, DISP_E_MEMBERNOTFOUND, kUnset},
        {4, kGet, {}, DISP_E_MEMBERNOTFOUND, kUnset},
        {-1, kGet, {}, DISP_E_MEMBERNOTFOUND, kUnset},
        {99, kCall, {value, value}, DISP_E_BADPARAMCOUNT, kUnset},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(&row - kRows);
        EXPECT_EQ(row.hr, Invoke(row.id, row.flags, row.arguments));
        EXPECT_EQ(row.nArgument, m_nArgument);
        EXPECT_EQ(S_OK, m_exception.scode); // no operation failed
        EXPECT_EQ(VT_EMPTY, m_result.vt);
    }
    EXPECT_EQ(7, value.llVal);
    EXPECT_EQ(string_t(OLESTR("1")), CurrentOf(*m_object.get()));
}

TEST_F(ValueMultiplierDispatch, WithoutParametersThereIsNoCall)
{
    EXPECT_EQ(DISP_E_BADVARTYPE, Invoke(kCurrent, DISPATCH_PROPERTYGET, nullptr));
}

TEST_F(ValueMultiplierDispatch, ApplyTransformChangesTheCallersValue)
{
    m_object->SetCode(0x43);
    VARIANT value = IntegerValue(7);
    VARIANT byReference{};
    byReference.vt = VT_BYREF | VT_VARIANT;
    byReference.pvarVal = &value;
    EXPECT_EQ(S_OK, Invoke(kApplyTransform, DISPATCH_METHOD, {byReference}));
    EXPECT_EQ(700, value.llVal);
}

TEST_F(ValueMultiplierDispatch, TransformNamesGoToTheResult)
{
    for (const WORD flags : {DISPATCH_PROPERTYGET, DISPATCH_METHOD}) {
        SCOPED_TRACE(flags);
        EXPECT_EQ(S_OK, Invoke(kTransformNames, flags, std::vector<VARIANT>()));
        ASSERT_EQ(8200, m_result.vt);
        LONG i = 12;
        Bstr name;
        EXPECT_EQ(S_OK, SafeArrayGetElement(m_result.parray, &i, name.put()));
        EXPECT_EQ(string_t(OLESTR("1/1000000")), name.str());
    }
}

TEST_F(ValueMultiplierDispatch, CurrentIsPutAndGot)
{
    Variant name = Variant::FromText(OLESTR("1/100"));
    EXPECT_EQ(S_OK, Invoke(kCurrent, DISPATCH_PROPERTYPUT, {name}));
    EXPECT_EQ(S_OK, Invoke(kCurrent, DISPATCH_PROPERTYGET, std::vector<VARIANT>()));
    ASSERT_EQ(VT_BSTR, m_result.vt);
    EXPECT_EQ(string_t(OLESTR("1/100")), string_t(TextOf(m_result.bstrVal)));
}

TEST_F(ValueMultiplierDispatch, CurrentIsPutFromANumber)
{
    EXPECT_EQ(S_OK, Invoke(kCurrent, DISPATCH_PROPERTYPUT, {Variant::FromI4(1000)}));
    EXPECT_EQ(string_t(OLESTR("1000")), CurrentOf(*m_object.get()));
}

TEST_F(ValueMultiplierDispatch, CurrentIsPutFromAStringByReference)
{
    Bstr name(OLESTR("10"));
    BSTR text = name.get();
    VARIANT byReference{};
    byReference.vt = VT_BYREF | VT_BSTR;
    byReference.pbstrVal = &text;
    EXPECT_EQ(S_OK, Invoke(kCurrent, DISPATCH_PROPERTYPUT, {byReference}));
    EXPECT_EQ(string_t(OLESTR("10")), CurrentOf(*m_object.get()));
}

TEST_F(ValueMultiplierDispatch, AFailedOperationFillsTheExceptionBlock)
{
    Variant name = Variant::FromText(OLESTR("abc"));
    EXPECT_EQ(E_INVALIDARG, Invoke(kCurrent, DISPATCH_PROPERTYPUT, {name}));
    EXPECT_EQ(E_INVALIDARG, m_exception.scode);
    EXPECT_EQ(kUnset, m_nArgument);
}

TEST_F(ValueMultiplierDispatch, ResultExceptionAndArgumentMayBeLeftOut)
{
    DISPPARAMS none{};
    EXPECT_EQ(S_OK, m_dispatch->Invoke(kCurrent, IID_NULL, 0, DISPATCH_PROPERTYGET, &none, nullptr,
                                       nullptr, nullptr));
    Variant name = Variant::FromText(OLESTR("abc"));
    DISPPARAMS params{&name, nullptr, 1, 0};
    EXPECT_EQ(E_INVALIDARG, m_dispatch->Invoke(kCurrent, IID_NULL, 0, DISPATCH_PROPERTYPUT, &params,
                                               nullptr, nullptr, nullptr));
}

TEST_F(ValueMultiplierDispatch, TypeInformationHasOneIndex)
{
    ITypeInfo* pInfo = nullptr;
    EXPECT_EQ(DISP_E_BADINDEX, m_dispatch->GetTypeInfo(1, 0, &pInfo));
    EXPECT_EQ(E_POINTER, m_dispatch->GetTypeInfo(0, 0, nullptr));
    EXPECT_EQ(nullptr, pInfo);
    EXPECT_EQ(E_POINTER, m_dispatch->GetTypeInfoCount(nullptr));
}

TEST_F(ValueMultiplierDispatch, TheObjectAnswersForItsInterfaces)
{
    EXPECT_TRUE(m_dispatch.as<IValueMultiplier>());
    EXPECT_TRUE(m_dispatch.as<IUnknown>());
    EXPECT_FALSE(m_dispatch.as<IClassFactory>());
}

} // namespace
