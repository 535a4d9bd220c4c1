// The fake record parser, for a data parser that only reads lines.

#include <gtest/gtest.h>

#include "interfaces/ClassIds.h"
#include "interfaces/IDataParser.h"
#include "src/data/FakeRecordParser.h"
#include "tests/support/TempFile.h"
#include "tests/support/Text.h"

using namespace Hesperon::specifics;
using namespace IQRL_TabulexConverter;

namespace {

com_ptr<IRecordParser> NewFake()
{
    com_ptr<IRecordParser> result;
    EXPECT_EQ(CreateOwnInstance(CLSID_CFakeRecordParser, iid_of<IRecordParser>, result.put_void()),
              S_OK);
    return result;
}

TEST(FakeRecordParserTest, SucceedsInWhatReadingLinesCallsAndOffersNothingElse)
{
    const auto fake = NewFake();
    VARIANT v{};
    v.vt = VT_I2;
    LONG n = 7;
    ULONG u = 7;
    BSTR s = nullptr;
    IDispatch* p = nullptr;
    VARIANT_BOOL b = 7;
    const struct
    {
        const char* szMethod;
        HRESULT hr;
        HRESULT expected;
    } rows[] = {
        {"Parse", fake->Parse(s), S_OK},
        {"Reset", fake->Reset(), S_OK},
        {"FindResolution", fake->FindResolution(s), S_OK},
        {"IsValidResolution", fake->IsValidResolution(), S_OK},
        {"GetFieldError", fake->GetFieldError(&s, 0), S_OK},
        {"put DataParser", fake->put_DataParser(nullptr), S_OK},
        {"get PriceMultiplier", fake->get_PriceMultiplier(&p), S_OK},
        {"put PriceMultiplier", fake->put_PriceMultiplier(nullptr), S_OK},
        {"get VolumeMultiplier", fake->get_VolumeMultiplier(&p), S_OK},
        {"put VolumeMultiplier", fake->put_VolumeMultiplier(nullptr), S_OK},
        {"get UseBarsEndTime", fake->get_UseBarsEndTime(&b), S_OK},
        {"put UseBarsEndTime", fake->put_UseBarsEndTime(VARIANT_TRUE), S_OK},
        {"Clone without a place", fake->Clone(nullptr), E_POINTER},
        {"RemoveTemplate", fake->RemoveTemplate(0, s), E_NOTIMPL},
        {"CheckResolution", fake->CheckResolution(v, &s, nullptr), E_NOTIMPL},
        {"RecalcResolutionSize", fake->RecalcResolutionSize(), E_NOTIMPL},
        {"IsHeader", fake->IsHeader(s), E_NOTIMPL},
        {"GetTypeNames", fake->GetTypeNames(&v), E_NOTIMPL},
        {"GetFieldValue", fake->GetFieldValue(&v, 0), E_NOTIMPL},
        {"SetResolutionTemplates", fake->SetResolutionTemplates(v, v), E_NOTIMPL},
        {"GetFieldText", fake->GetFieldText(s, 0, &s), E_NOTIMPL},
        {"GetFieldIndex", fake->GetFieldIndex(0, &u), E_NOTIMPL},
        {"GetTemplates", fake->GetTemplates(&v, s), E_NOTIMPL},
        {"SetTemplates", fake->SetTemplates(v, s), E_NOTIMPL},
        {"GetFieldName", fake->GetFieldName(&s, 0), E_NOTIMPL},
        {"SetFieldName", fake->SetFieldName(0, s), E_NOTIMPL},
        {"GetFieldTemplate", fake->GetFieldTemplate(&s, 0), E_NOTIMPL},
        {"SetFieldTemplate", fake->SetFieldTemplate(s, 0), E_NOTIMPL},
        {"GetFieldType", fake->GetFieldType(0, &n), E_NOTIMPL},
        {"SetFieldType", fake->SetFieldType(0, 1), E_NOTIMPL},
        {"FieldCount", fake->get_FieldCount(&u), E_NOTIMPL},
        {"CurrentDateTime", fake->get_CurrentDateTime(&v), E_NOTIMPL},
        {"LackedFields", fake->get_LackedFields(&v), E_NOTIMPL},
        {"DuplicatedField", fake->get_DuplicatedField(&s), E_NOTIMPL},
        {"get DataParser", fake->get_DataParser(&p), E_NOTIMPL},
        {"get EventHandler", fake->get_EventHandler(&p), E_NOTIMPL},
        {"put EventHandler", fake->put_EventHandler(nullptr), E_NOTIMPL},
        {"get Environment", fake->get_Environment(&s), E_NOTIMPL},
        {"put Environment", fake->put_Environment(s), E_NOTIMPL},
        {"get Resolution", fake->get_Resolution(&n), E_NOTIMPL},
        {"put Resolution", fake->put_Resolution(5), E_NOTIMPL},
        {"get ResolutionSize", fake->get_ResolutionSize(&n), E_NOTIMPL},
        {"put ResolutionSize", fake->put_ResolutionSize(5), E_NOTIMPL},
        {"get LinesToSkip", fake->get_LinesToSkip(&u), E_NOTIMPL},
        {"put LinesToSkip", fake->put_LinesToSkip(1), E_NOTIMPL},
        {"get SmartResolutionEnabled", fake->get_SmartResolutionEnabled(&b), E_NOTIMPL},
        {"put SmartResolutionEnabled", fake->put_SmartResolutionEnabled(b), E_NOTIMPL},
        {"get FieldDividers", fake->get_FieldDividers(&n), E_NOTIMPL},
        {"put FieldDividers", fake->put_FieldDividers(4), E_NOTIMPL},
        {"GetTypeNamesLocalized", fake->GetTypeNamesLocalized(&v), E_NOTIMPL},
        {"GetFieldNameLocalized", fake->GetFieldNameLocalized(&s, 0), E_NOTIMPL},
        {"GetTemplateItemCount", fake->GetTemplateItemCount(s, &n), E_NOTIMPL},
        {"GetTemplateItem", fake->GetTemplateItem(s, 0, &s, &n), E_NOTIMPL},
        {"RecreateFealds", fake->RecreateFealds(), E_NOTIMPL},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.hr, row.expected) << row.szMethod;
    // Nothing was written anywhere.
    EXPECT_EQ(v.vt, VT_I2);
    EXPECT_EQ(n, 7);
    EXPECT_EQ(u, 7u);
    EXPECT_EQ(s, nullptr);
    EXPECT_EQ(p, nullptr);
    EXPECT_EQ(b, 7);
}

TEST(FakeRecordParserTest, CloneIsANewFake)
{
    const auto fake = NewFake();
    com_ptr<IDispatch> pObject;
    ASSERT_EQ(fake->Clone(pObject.put()), S_OK);
    const auto clone = pObject.as<IRecordParser>();
    ASSERT_TRUE(clone);
    EXPECT_FALSE(clone == fake);
    EXPECT_EQ(clone->Parse(nullptr), S_OK);
    EXPECT_EQ(clone->IsHeader(nullptr), E_NOTIMPL);
}

TEST(FakeRecordParserTest, DataParserReadsLinesThroughIt)
{
    ASSERT_TRUE(SetAnsiCodePage(kLatinCodePage));
    const TempFile file("2003-01-02,5\n2003-01-01,4\nno record at all\n");
    com_ptr<IDataParser> parser;
    ASSERT_EQ(CreateOwnInstance(CLSID_CDataParser, iid_of<IDataParser>, parser.put_void()), S_OK);
    ASSERT_EQ(parser->put_RecordParser(NewFake().get()), S_OK);
    ASSERT_EQ(parser->put_FileName(Bstr(file.Name()).get()), S_OK);
    for (const auto& [nPosition, sLine] : {std::pair<ULONGLONG, const char*>{2, "no record at all"},
                                           {0, "2003-01-02,5"},
                                           {1, "2003-01-01,4"}}) {
        Bstr sRecord;
        EXPECT_EQ(parser->put_Position(nPosition), S_OK);
        EXPECT_EQ(parser->get_CurrentRecord(sRecord.put()), S_OK);
        EXPECT_EQ(Utf8(sRecord.view()), sLine);
    }
    // Without dates the file runs forwards.
    VARIANT_BOOL bInverted = VARIANT_TRUE;
    EXPECT_EQ(parser->get_InvertedDirection(&bInverted), S_OK);
    EXPECT_EQ(bInverted, VARIANT_FALSE);
    ULONG nFields = 0;
    EXPECT_EQ(parser->get_FieldCount(&nFields), E_NOTIMPL);
}

} // namespace
