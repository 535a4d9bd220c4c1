// What GiveOut stores for each kind of value, and who owns it afterwards.

#include <gtest/gtest.h>

#include "interfaces/IFileHandlerEvents.h"
#include "module/ComObject.h"
#include "module/OutValue.h"

using namespace Hesperon::specifics;
using namespace IQRL_TabulexConverter;

namespace {

class Listener final : public ComObject<Listener, Dual<IFileHandlerEvents>>
{
public:
    HRESULT STDMETHODCALLTYPE RecordCountChange(ULONGLONG, VARIANT_BOOL) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE PutData(VARIANT, ULONGLONG, ULONGLONG) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE ProcessRecord(ULONGLONG, BSTR, VARIANT_BOOL) override { return S_OK; }
};

} // namespace

TEST(GiveOut, ANullPointerIsRefusedAndNoValueIsMade)
{
    int nMade = 0;
    EXPECT_EQ(GiveOut(static_cast<LONG*>(nullptr), 1), E_POINTER);
    EXPECT_EQ(GiveOut(static_cast<LONG*>(nullptr), [&] { return ++nMade; }), E_POINTER);
    EXPECT_EQ(nMade, 0);
}

TEST(GiveOut, NumbersAreStored)
{
    LONG nLong = 0;
    EXPECT_EQ(GiveOut(&nLong, -7), S_OK);
    EXPECT_EQ(nLong, -7);
    ULONGLONG nBig = 0;
    EXPECT_EQ(GiveOut(&nBig, ~0ull), S_OK);
    EXPECT_EQ(nBig, ~0ull);
    EXPECT_EQ(GiveOut(&nLong, [] { return 8; }), S_OK);
    EXPECT_EQ(nLong, 8);
}

TEST(GiveOut, ABoolCrossesAs16Bits)
{
    VARIANT_BOOL bOut = VARIANT_FALSE;
    EXPECT_EQ(GiveOut(&bOut, true), S_OK);
    EXPECT_EQ(bOut, VARIANT_TRUE);
    EXPECT_EQ(GiveOut(&bOut, [] { return false; }), S_OK);
    EXPECT_EQ(bOut, VARIANT_FALSE);
}

TEST(GiveOut, ATextIsCopiedAndABstrHandedOver)
{
    Bstr sOut;
    const string_t sText = OLESTR("copy");
    EXPECT_EQ(GiveOut(sOut.put(), sText), S_OK);
    EXPECT_EQ(sOut.view(), OLESTR("copy"));

    Bstr sGiven(OLESTR("given"));
    const BSTR bsGiven = sGiven.get();
    EXPECT_EQ(GiveOut(sOut.put(), std::move(sGiven)), S_OK);
    EXPECT_EQ(sOut.get(), bsGiven);
    EXPECT_FALSE(sGiven);

    EXPECT_EQ(GiveOut(sOut.put(), Bstr()), S_OK);
    EXPECT_EQ(sOut.get(), nullptr);
}

TEST(GiveOut, AVariantIsHandedOverAndALastingOneCopied)
{
    Variant out;
    Variant given = Variant::FromText(OLESTR("text"));
    const BSTR bsGiven = given.bstrVal;
    EXPECT_EQ(GiveOut(out.put(), std::as_const(given)), S_OK);
    EXPECT_NE(out.bstrVal, bsGiven);
    EXPECT_EQ(TextOf(out.bstrVal), OLESTR("text"));
    EXPECT_EQ(GiveOut(out.put(), std::move(given)), S_OK);
    EXPECT_EQ(out.bstrVal, bsGiven);
    EXPECT_EQ(given.vt, VT_EMPTY);
}

TEST(GiveOut, AnObjectIsCountedOnceMoreForTheCaller)
{
    com_ptr<Listener> object;
    ASSERT_EQ(CreateObject(object), S_OK);
    IDispatch* pOut = nullptr;
    EXPECT_EQ(GiveOut(&pOut, object), S_OK);
    EXPECT_EQ(pOut, static_cast<IDispatch*>(object.get()));
    EXPECT_EQ(pOut->Release(), 1u);

    EXPECT_EQ(GiveOut(&pOut, com_ptr<Listener>()), S_OK);
    EXPECT_EQ(pOut, nullptr);
}
