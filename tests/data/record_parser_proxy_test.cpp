// The proxy through which a file's worker reaches a record parser.

#include <gtest/gtest.h>

#include "src/data/RecordParserProxy.h"
#include "tests/data/FakeRecordParser.h"
#include "tests/support/Objects.h"

using namespace Hesperon::specifics;

namespace {

TEST(RecordParserProxyTest, CallsReachTheTargetUntilTheLinkIsCut)
{
    com_ptr<FakeRecordParser> target;
    com_ptr<CRecordParserProxy> proxy;
    CreateObject(target);
    CreateObject(proxy);
    proxy->Attach(target.get());
    EXPECT_EQ(RefsOf(target.get()), 1u);
    ULONG nIndex = 7;
    EXPECT_EQ(proxy->GetFieldIndex(TypeClose, &nIndex), S_OK);
    EXPECT_EQ(nIndex, 1u);
    target->hrParse = S_FALSE;
    EXPECT_EQ(proxy->Parse(Bstr(OLESTR("1,2")).get()), S_FALSE);
    EXPECT_EQ(target->parsed, std::vector<string_t>{OLESTR("1,2")});
    proxy->Detach();
    nIndex = 7;
    EXPECT_EQ(proxy->GetFieldIndex(TypeClose, &nIndex), S_OK);
    EXPECT_EQ(nIndex, 7u);
    EXPECT_EQ(proxy->Parse(nullptr), S_OK);
    EXPECT_EQ(target->parsed.size(), 1u);
}

TEST(RecordParserProxyTest, CutProxyAnswersSomeCallsAndRefusesTheOthers)
{
    com_ptr<CRecordParserProxy> proxy;
    CreateObject(proxy);
    VARIANT v{};
    LONG n = 7;
    ULONG u = 7;
    BSTR s = nullptr;
    IDispatch* p = nullptr;
    VARIANT_BOOL b = 7;
    const std::pair<const char*, HRESULT> passedOn[] = {
        {"Parse", proxy->Parse(s)},
        {"Clone", proxy->Clone(&p)},
        {"RemoveTemplate", proxy->RemoveTemplate(0, s)},
        {"CheckResolution", proxy->CheckResolution(v, &s, nullptr)},
        {"IsValidResolution", proxy->IsValidResolution()},
        {"GetFieldText", proxy->GetFieldText(s, 0, &s)},
        {"GetFieldIndex", proxy->GetFieldIndex(0, &u)},
        {"GetFieldType", proxy->GetFieldType(0, &n)},
        {"SetFieldType", proxy->SetFieldType(0, 1)},
        {"LackedFields", proxy->get_LackedFields(&v)},
        {"DuplicatedField", proxy->get_DuplicatedField(&s)},
        {"get PriceMultiplier", proxy->get_PriceMultiplier(&p)},
        {"put PriceMultiplier", proxy->put_PriceMultiplier(nullptr)},
        {"get VolumeMultiplier", proxy->get_VolumeMultiplier(&p)},
        {"put VolumeMultiplier", proxy->put_VolumeMultiplier(nullptr)},
        {"get SmartResolutionEnabled", proxy->get_SmartResolutionEnabled(&b)},
        {"put SmartResolutionEnabled", proxy->put_SmartResolutionEnabled(VARIANT_TRUE)},
        {"get FieldDividers", proxy->get_FieldDividers(&n)},
        {"put FieldDividers", proxy->put_FieldDividers(4)},
        {"get UseBarsEndTime", proxy->get_UseBarsEndTime(&b)},
        {"put UseBarsEndTime", proxy->put_UseBarsEndTime(VARIANT_TRUE)},
    };
    for (const auto& [szWhat, hr] : passedOn)
        EXPECT_EQ(hr, S_OK) << szWhat;
    EXPECT_TRUE(n == 7 && u == 7 && b == 7 && !s && !p && v.vt == VT_EMPTY);
    const std::pair<const char*, HRESULT> refused[] = {
        {"Reset", proxy->Reset()},
        {"FindResolution", proxy->FindResolution(s)},
        {"IsHeader", proxy->IsHeader(s)},
        {"GetFieldValue", proxy->GetFieldValue(&v, 0)},
        {"FieldCount", proxy->get_FieldCount(&u)},
        {"CurrentDateTime", proxy->get_CurrentDateTime(&v)},
        {"Resolution", proxy->get_Resolution(&n)},
        {"RecreateFealds", proxy->RecreateFealds()},
    };
    for (const auto& [szWhat, hr] : refused)
        EXPECT_EQ(hr, E_NOTIMPL) << szWhat;
}

} // namespace
