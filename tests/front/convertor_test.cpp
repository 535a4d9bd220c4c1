// The host's object: lists, ids, choices, fields, copies.

#include "tests/front/HostStrings.h"
#include "tests/front/Messages.h"
#include "tests/front/ScriptedHost.h"

#include "interfaces/FieldsAndResolutions.h"
#include "interfaces/IDataParser.h"
#include "interfaces/IDataParserEvents.h"
#include "interfaces/IQRLGUITweak.h"
#include "interfaces/IRecordParser.h"
#include "src/data/UnofferedRecordParser.h"

using namespace IQRL_TabulexConverter;

namespace {

using Strings = std::vector<std::string>;

class Convertor : public FrontFixture
{
protected:
    com_ptr<IRecordParser> Records(IqrlTabulexConvertor& object)
    {
        com_ptr<IDispatch> pData, pRecords;
        EXPECT_EQ(object.get_DataParser(pData.put()), S_OK);
        EXPECT_EQ(pData.as<IDataParser>()->get_RecordParser(pRecords.put()), S_OK);
        return pRecords.as<IRecordParser>();
    }
    LONG Slot()
    {
        LONG nSlot = -1;
        Records(*front.get())->get_Resolution(&nSlot);
        return nSlot;
    }
    static LONG Get(IqrlTabulexConvertor& object,
                    HRESULT (STDMETHODCALLTYPE IqrlTabulexConvertor::*get)(LONG*),
                    HRESULT hrExpected = S_OK)
    {
        LONG nValue = 0;
        EXPECT_EQ((object.*get)(&nValue), hrExpected);
        return nValue;
    }
    static com_ptr<IqrlTabulexConvertor> Bare()
    {
        com_ptr<IqrlTabulexConvertor> object;
        CreateOwnInstance(CLSID_CqrlTabulexConvertor, iid_of<IqrlTabulexConvertor>,
                          object.put_void());
        return object;
    }
    static HRESULT Add(IqrlTabulexConvertor& object, LONG nId, const OLECHAR* pszName)
    {
        return object.AddResolutionTemplate(nId, Bstr(pszName).get());
    }
    static std::string ResolutionName(IqrlTabulexConvertor& object, LONG nSlot)
    {
        com_ptr<IDataParserEvents> pEvents;
        EXPECT_EQ(query(&object, pEvents), S_OK);
        Bstr sName;
        EXPECT_EQ(pEvents->GetResolutionName(nSlot, sName.put()), S_OK);
        return Utf8(sName.view());
    }
    static std::string Field(IqrlTabulexConvertor& object, LONG nIndex, LONG& nId)
    {
        Bstr sTemplate;
        EXPECT_EQ(object.GetField(nIndex, &nId, sTemplate.put()), S_OK);
        return Utf8(sTemplate.view());
    }
};

// ---- lists

TEST_F(Convertor, SecondOfferOfTicksIsForBarsOfTicksAndAThirdRenamesIt)
{
    const auto object = Bare();
    EXPECT_EQ(Add(*object.get(), HostResolutionTicks, OLESTR("A")), S_OK);
    EXPECT_EQ(Add(*object.get(), HostResolutionTicks, OLESTR("B")), S_OK);
    EXPECT_EQ(ResolutionName(*object.get(), ResolutionTick), "A");
    EXPECT_EQ(ResolutionName(*object.get(), ResolutionTickBars), "B");
    EXPECT_EQ(Add(*object.get(), HostResolutionTicks, OLESTR("C")), S_OK);
    EXPECT_EQ(ResolutionName(*object.get(), ResolutionTick), "A");
    EXPECT_EQ(ResolutionName(*object.get(), ResolutionTickBars), "C");
    EXPECT_EQ(Add(*object.get(), HostResolutionTicks, OLESTR("B")),
              S_OK); // no row has this name any more
}

TEST_F(Convertor, OfferOfAnUnknownResolutionRenamesTheRowForNone)
{
    const auto object = Bare();
    EXPECT_EQ(ResolutionName(*object.get(), ResolutionNone), kNoResolutionName);
    EXPECT_EQ(Add(*object.get(), 77, OLESTR("Odd")), S_OK);
    EXPECT_EQ(ResolutionName(*object.get(), ResolutionNone), "Odd");
}

TEST_F(Convertor, NameThatIsThereIsRefused)
{
    EXPECT_EQ(Add(*front.get(), HostResolutionMinutes, OLESTR("Days")), E_UNEXPECTED);
    EXPECT_EQ(Add(*front.get(), HostResolutionMinutes, OLESTR("days")), S_OK); // case matters
    for (auto add :
         {&IqrlTabulexConvertor::AddFieldTemplate, &IqrlTabulexConvertor::AddTimeZoneTemplate}) {
        EXPECT_EQ((*front.get().*add)(7, Bstr(OLESTR("One")).get()), S_OK);
        EXPECT_EQ((*front.get().*add)(8, Bstr(OLESTR("One")).get()), E_UNEXPECTED);
        EXPECT_EQ((*front.get().*add)(7, Bstr(OLESTR("Two")).get()), S_OK); // ids needn't differ
        EXPECT_EQ((*front.get().*add)(9, nullptr), E_POINTER);
    }
    EXPECT_EQ(front->AddResolutionTemplate(HostResolutionMinutes, nullptr), E_POINTER);
}

TEST_F(Convertor, ChoicesGoByIdAndAreNoneAtFirst)
{
    EXPECT_EQ(Get(*front.get(), &IqrlTabulexConvertor::get_FieldTemplate, S_FALSE), -1);
    EXPECT_EQ(Get(*front.get(), &IqrlTabulexConvertor::get_TimeZoneTemplate, S_FALSE), -1);
    EXPECT_EQ(front->put_FieldTemplate(7), E_UNEXPECTED);
    front->AddFieldTemplate(7, Bstr(OLESTR("One")).get());
    front->AddTimeZoneTemplate(-3, Bstr(OLESTR("Zone")).get());
    EXPECT_EQ(front->put_FieldTemplate(7), S_OK);
    EXPECT_EQ(front->put_TimeZoneTemplate(-3), S_OK);
    EXPECT_EQ(Get(*front.get(), &IqrlTabulexConvertor::get_FieldTemplate), 7);
    EXPECT_EQ(Get(*front.get(), &IqrlTabulexConvertor::get_TimeZoneTemplate), -3);
}

// ---- resolutions

struct SlotRow
{
    LONG nHostValue;
    LONG nSize;
    LONG nSlot;
};

class ConvertorSlots : public Convertor, public testing::WithParamInterface<SlotRow>
{};

TEST_P(ConvertorSlots, StandForTheHostsValues)
{
    const auto [nHostValue, nSize, nSlot] = GetParam();
    EXPECT_EQ(front->put_ResolutionSizeTemplate(nSize), S_OK);
    EXPECT_EQ(front->put_ResolutionTemplate(nHostValue), nHostValue ? S_FALSE : S_OK); // no file
    EXPECT_EQ(Slot(), nSlot);
    EXPECT_EQ(Get(*front.get(), &IqrlTabulexConvertor::get_ResolutionTemplate), nHostValue);
}

INSTANTIATE_TEST_SUITE_P(Values, ConvertorSlots,
                         testing::Values(SlotRow{0, 1, 0}, SlotRow{1, 1, 1}, SlotRow{1, 5, 2},
                                         SlotRow{8, 5, 3}, SlotRow{9, 5, 4}, SlotRow{2, 5, 5},
                                         SlotRow{4, 1, 6}, SlotRow{5, 1, 7}));

TEST_F(Convertor, SizeDividesTicksFromBarsOfTicks)
{
    front->put_ResolutionSizeTemplate(1);
    front->put_ResolutionTemplate(HostResolutionTicks);
    EXPECT_EQ(Slot(), 1);
    EXPECT_EQ(front->put_ResolutionSizeTemplate(5), S_OK);
    EXPECT_EQ(Slot(), 2);
    EXPECT_EQ(Get(*front.get(), &IqrlTabulexConvertor::get_ResolutionSizeTemplate), 5);
    EXPECT_EQ(front->put_ResolutionSizeTemplate(1), S_OK);
    EXPECT_EQ(Slot(), 1);
}

TEST_F(Convertor, ResolutionThatIsntOfferedIsRefused)
{
    const auto object = Bare();
    EXPECT_EQ(object->put_ResolutionTemplate(HostResolutionMinutes), E_UNEXPECTED);
    EXPECT_EQ(Get(*object.get(), &IqrlTabulexConvertor::get_ResolutionTemplate, S_FALSE), -1);
}

TEST_F(Convertor, FileNameTakesWhatTheParserFound)
{
    const TempFile file(Minutes(50));
    ASSERT_EQ(Open(*front.get(), file), S_OK);
    EXPECT_EQ(Get(*front.get(), &IqrlTabulexConvertor::get_ResolutionTemplate), 2);
    EXPECT_EQ(Get(*front.get(), &IqrlTabulexConvertor::get_ResolutionSizeTemplate), 1);
    EXPECT_EQ(Get(*front.get(), &IqrlTabulexConvertor::get_FieldCount), 7);
    VARIANT_BOOL bValid = VARIANT_FALSE;
    EXPECT_EQ(front->get_ValidResolution(&bValid), S_OK);
    EXPECT_EQ(bValid, VARIANT_TRUE);
}

TEST_F(Convertor, FileThatCantBeOpenedGivesTheParsersAnswer)
{
    EXPECT_EQ(front->put_FileName(Bstr(OLESTR("/no/such/file")).get()), S_FALSE);
}

TEST_F(Convertor, PairThatDoesntFitLeavesNoTrace)
{
    const TempFile file("1990-01-01,12:34:56,1.5,7\n1990-01-01,12:34:57,1.5,7\n"
                        "1990-01-01,12:34:59,1.5,7\n1990-01-02,12:00:00,1.5,7\n");
    ASSERT_EQ(Open(*front.get(), file), S_OK);
    ASSERT_EQ(Get(*front.get(), &IqrlTabulexConvertor::get_ResolutionTemplate), 1);
    EXPECT_EQ(front->SelectResolution(1, 99), S_FALSE);
    EXPECT_EQ(front->SelectResolution(5, HostResolutionMinutes), S_FALSE); // four prices are wanted
    EXPECT_EQ(Get(*front.get(), &IqrlTabulexConvertor::get_ResolutionTemplate), 1);
    EXPECT_EQ(Get(*front.get(), &IqrlTabulexConvertor::get_ResolutionSizeTemplate), 1);
    EXPECT_EQ(Slot(), 1);
    EXPECT_EQ(front->SelectResolution(1, HostResolutionTicks), S_OK);
}

TEST_F(Convertor, SelectResolutionNeedsAFile)
{
    EXPECT_EQ(front->SelectResolution(1, HostResolutionMinutes), S_FALSE);
}

// ---- fields

TEST_F(Convertor, FieldsHaveTheHostsIds)
{
    const TempFile file("Symbol,Date,Time,Open,High,Low,Close,Volume\n" + Minutes(50, "ABC"));
    ASSERT_EQ(Open(*front.get(), file), S_OK);
    std::vector<LONG> ids;
    for (LONG i = 0; i < Get(*front.get(), &IqrlTabulexConvertor::get_FieldCount); ++i) {
        ids.push_back(0);
        Field(*front.get(), i, ids.back());
    }
    EXPECT_EQ(ids, (std::vector<LONG>{31, 421, 422, 232, 233, 234, 235, 249}));
    LONG nId = 0;
    Bstr sTemplate;
    EXPECT_EQ(front->GetField(8, &nId, sTemplate.put()), E_INVALIDARG);
    EXPECT_EQ(front->GetField(-1, &nId, sTemplate.put()), E_INVALIDARG);
    EXPECT_EQ(front->GetField(0, nullptr, sTemplate.put()), E_POINTER);
    EXPECT_EQ(front->GetField(0, &nId, nullptr), E_POINTER);
}

TEST_F(Convertor, IdsThatTwoTypesShareNameTheFirst)
{
    const TempFile file(Minutes(50));
    ASSERT_EQ(Open(*front.get(), file), S_OK);
    const auto records = Records(*front.get());
    const auto name = [&](ULONG nField) {
        Bstr sName;
        records->GetFieldName(sName.put(), nField);
        return Utf8(sName.view());
    };
    EXPECT_EQ(front->SetField(2, HostFieldClose, nullptr), S_OK);
    EXPECT_EQ(name(2), "Close");
    EXPECT_EQ(front->SetField(2, HostFieldVolume, nullptr), S_OK);
    EXPECT_EQ(name(2), "Volume");
}

TEST_F(Convertor, SetFieldShowsAfterInitFieldsInfo)
{
    const TempFile file(Minutes(50));
    ASSERT_EQ(Open(*front.get(), file), S_OK);
    LONG nId = 0;
    const std::string sDate = Field(*front.get(), 0, nId);
    EXPECT_FALSE(sDate.empty());
    EXPECT_EQ(front->SetField(6, HostFieldUndefined, Bstr(OLESTR("ignored")).get()), S_OK);
    Field(*front.get(), 6, nId);
    EXPECT_EQ(nId, 249);
    EXPECT_EQ(front->InitFieldsInfo(), S_OK);
    Field(*front.get(), 6, nId);
    EXPECT_EQ(nId, 0);
    EXPECT_EQ(front->SetField(0, HostFieldDate, Bstr(OLESTR("*y-*m-*d")).get()), S_OK);
    EXPECT_EQ(Field(*front.get(), 0, nId), "*y-*m-*d");
    EXPECT_EQ(nId, 421);
}

// A record parser that writes down the calls that change a field.
class NotingRecordParser : public Hesperon::specifics::UnofferedRecordParser<NotingRecordParser>
{
public:
    Strings calls;

    HRESULT STDMETHODCALLTYPE put_DataParser(IDispatch*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE SetFieldName(ULONG nField, BSTR bsName) override
    {
        return Note("name", nField, bsName);
    }
    HRESULT STDMETHODCALLTYPE SetFieldTemplate(BSTR bsTemplate, ULONG nField) override
    {
        return Note("template", nField, bsTemplate);
    }

private:
    HRESULT Note(const char* pszWhat, ULONG nField, BSTR bsText)
    {
        calls.push_back(pszWhat + (" " + std::to_string(nField)) + " " + Utf8(TextOf(bsText)));
        return S_OK;
    }
};

TEST_F(Convertor, IdForNoTypeLeavesTheTemplate)
{
    com_ptr<NotingRecordParser> records;
    ASSERT_EQ(CreateObject(records), S_OK);
    com_ptr<IDispatch> pData;
    ASSERT_EQ(front->get_DataParser(pData.put()), S_OK);
    ASSERT_EQ(pData.as<IDataParser>()->put_RecordParser(records.get()), S_OK);
    const Bstr sTemplate(OLESTR("*d.*m.*y"));
    EXPECT_EQ(front->SetField(3, HostFieldDate, sTemplate.get()), S_OK);
    EXPECT_EQ(records->calls, (Strings{"name 3 Date", "template 3 *d.*m.*y"}));
    records->calls.clear();
    EXPECT_EQ(front->SetField(3, HostFieldUndefined, sTemplate.get()), S_OK);
    EXPECT_EQ(records->calls, Strings{"name 3 " + std::string(kUndefinedType)});
}

// ---- small properties

TEST_F(Convertor, ModeIsZeroOrOne)
{
    EXPECT_EQ(front->put_Mode(0), S_FALSE);
    EXPECT_EQ(front->put_Mode(2), static_cast<HRESULT>(0x80020005));
    EXPECT_EQ(front->put_Mode(1), S_OK);
    EXPECT_EQ(front->put_Mode(1), S_FALSE);
}

TEST_F(Convertor, MultipliersGoByTheirCodes)
{
    BYTE nCode = 0;
    EXPECT_EQ(front->get_PriceMultiplier(&nCode), S_OK);
    EXPECT_EQ(nCode, 0x45);
    EXPECT_EQ(front->put_PriceMultiplier(0x43), S_OK);
    EXPECT_EQ(front->put_VolumeMultiplier(0x49), S_OK);
    EXPECT_EQ(front->get_PriceMultiplier(&nCode), S_OK);
    EXPECT_EQ(nCode, 0x43);
    EXPECT_EQ(front->put_PriceMultiplier(0x99), E_INVALIDARG);
}

TEST_F(Convertor, AnalyseWithoutADialogIsNotConfirmed)
{
    const TempFile file(Minutes(50));
    ASSERT_EQ(Open(*front.get(), file), S_OK);
    VARIANT_BOOL bStatus = VARIANT_TRUE;
    EXPECT_EQ(front->DoAnalyse(&bStatus, 0), S_OK);
    EXPECT_EQ(bStatus, VARIANT_FALSE);
    EXPECT_EQ(Get(*front.get(), &IqrlTabulexConvertor::get_FieldCount), 7);
    EXPECT_EQ(front->DoAnalyse(nullptr, 0), E_POINTER);
}

TEST_F(Convertor, TweaksAreKept)
{
    com_ptr<IQRLGUITweak> tweak;
    ASSERT_EQ(query(front.get(), tweak), S_OK);
    VARIANT_BOOL bModeless = VARIANT_TRUE;
    EXPECT_EQ(tweak->get_ModelessProgress(&bModeless), S_OK);
    EXPECT_EQ(bModeless, VARIANT_FALSE);
    EXPECT_EQ(tweak->put_ModelessProgress(5), S_OK);
    EXPECT_EQ(tweak->get_ModelessProgress(&bModeless), S_OK);
    EXPECT_EQ(static_cast<USHORT>(bModeless), 0xFFFF);
    std::thread([&] {
        EXPECT_EQ(tweak->get_ModelessProgress(&bModeless), S_OK);
        EXPECT_EQ(bModeless, VARIANT_FALSE);
    }).join();
    tweak->put_ModelessProgress(VARIANT_FALSE);
}

TEST_F(Convertor, TextsComeFromTheResourcesThatAHostPutsInPlace)
{
    com_ptr<IQRLGUITweak> tweak;
    ASSERT_EQ(query(front.get(), tweak), S_OK);
    LONG_PTR nOwn = 0;
    EXPECT_EQ(tweak->get_ResourceHandle(&nOwn), S_OK);
    EXPECT_EQ(tweak->put_ResourceHandle(HostStrings()), S_OK);
    EXPECT_EQ(ResolutionName(*front.get(), 99), "Who knows");
    EXPECT_EQ(tweak->put_ResourceHandle(nOwn), S_OK);
    EXPECT_EQ(ResolutionName(*front.get(), 99), kUnknownResolution);
}

TEST_F(Convertor, EnvironmentCarriesTheFolderAndTheTemplates)
{
    const Bstr sText(OLESTR("<ENVIRONMENT><TABULEXCONVERTOR_ENVIRONMENT><PATH>\" c:\\data \"</PATH>"
                            "</TABULEXCONVERTOR_ENVIRONMENT><RECORD_PARSER_ENVIRONMENT><TYPE>"
                            "<NAME>\"Date\"</NAME><TEMPLATE>\"*d~*m~*y\"</TEMPLATE></TYPE>"
                            "</RECORD_PARSER_ENVIRONMENT></ENVIRONMENT>"));
    EXPECT_EQ(front->put_Environment(sText.get()), S_OK);
    Bstr sBack;
    EXPECT_EQ(front->get_Environment(sBack.put()), S_OK);
    const std::string back = Utf8(sBack.view());
    EXPECT_THAT(back, testing::StartsWith("<ENVIRONMENT>\r\n<TABULEXCONVERTOR_ENVIRONMENT>\r\n"
                                          "<PATH>\" c:\\data \"</PATH>\r\n<RECT><LEFT>0</LEFT>"));
    EXPECT_THAT(back, testing::HasSubstr("<TEMPLATE>\"*d~*m~*y\"</TEMPLATE>"));
    EXPECT_THAT(back, testing::EndsWith("</RECORD_PARSER_ENVIRONMENT>\r\n</ENVIRONMENT>\r\n"));
    EXPECT_EQ(front->put_Environment(Bstr(OLESTR("no document")).get()), E_INVALIDARG);
    EXPECT_EQ(front->put_Environment(Bstr(OLESTR("<A></A> stray")).get()), E_INVALIDARG);
}

// ---- copies and files

TEST_F(Convertor, CopyNeedsAFile)
{
    com_ptr<IDispatch> copy;
    EXPECT_EQ(front->Clone(copy.put()), E_INVALIDARG);
    EXPECT_EQ(front->Clone(nullptr), E_POINTER);
}

TEST_F(Convertor, CopyHasTheSettingsAndGoesItsOwnWay)
{
    const TempFile file(Minutes(50));
    ASSERT_EQ(Open(*front.get(), file), S_OK);
    front->AddFieldTemplate(7, Bstr(OLESTR("One")).get());
    front->put_FieldTemplate(7);
    front->put_PriceMultiplier(0x43);
    com_ptr<IDispatch> object;
    ASSERT_EQ(front->Clone(object.put()), S_OK);
    const auto copy = object.as<IqrlTabulexConvertor>();
    EXPECT_EQ(Get(*copy.get(), &IqrlTabulexConvertor::get_FieldTemplate), 7);
    EXPECT_EQ(Get(*copy.get(), &IqrlTabulexConvertor::get_FieldCount), 7);
    EXPECT_EQ(Get(*copy.get(), &IqrlTabulexConvertor::get_ResolutionTemplate), 2);
    BYTE nCode = 0;
    copy->get_PriceMultiplier(&nCode);
    EXPECT_EQ(nCode, 0x43);
    copy->put_PriceMultiplier(0x45);
    copy->SelectResolution(5, HostResolutionMinutes);
    front->get_PriceMultiplier(&nCode);
    EXPECT_EQ(nCode, 0x43);
    EXPECT_EQ(Get(*front.get(), &IqrlTabulexConvertor::get_ResolutionSizeTemplate), 1);
}

TEST_F(Convertor, ReleasedFileIsOpenedAfresh)
{
    EXPECT_EQ(front->ReleaseFile(), E_FAIL); // there is none
    const TempFile file(Minutes(50));
    ASSERT_EQ(Open(*front.get(), file), S_OK);
    EXPECT_EQ(front->ReleaseFile(), S_OK);
    const auto other = NewFront();
    EXPECT_EQ(Open(*other.get(), file), S_OK);
    EXPECT_EQ(Get(*other.get(), &IqrlTabulexConvertor::get_FieldCount), 7);
}

TEST_F(Convertor, CheckTellsTheHostOnItsOwnThread)
{
    EXPECT_EQ(front->CheckConverterSettings(0, sink.get()), S_FALSE);
    EXPECT_EQ(sink->transcript, Strings{kBadDateRangeFault}); // no dates yet
    const TempFile file(Minutes(50));
    ASSERT_EQ(Open(*front.get(), file), S_OK);
    sink->transcript.clear();
    EXPECT_EQ(front->CheckConverterSettings(0, sink.get()), S_OK);
    EXPECT_EQ(sink->transcript, Strings{});
    EXPECT_EQ(front->CheckConverterSettings(0, front.get()), E_NOINTERFACE);
}

// ---- by number

TEST_F(Convertor, ServesAHostThatKnowsItsNumbersOnly)
{
    const TempFile file(Minutes(50));
    const auto invoke = [&](DISPID id, WORD flags, std::vector<VARIANT> args, VARIANT* result) {
        DISPID put = DISPID_PROPERTYPUT;
        DISPPARAMS params{args.data(), &put, static_cast<UINT>(args.size()),
                          flags == DISPATCH_PROPERTYPUT ? 1u : 0u};
        return front->Invoke(id, iid_of<IUnknown>, 0, flags, &params, result, nullptr, nullptr);
    };
    const Variant name = Variant::FromText(file.Name());
    EXPECT_EQ(invoke(2, DISPATCH_PROPERTYPUT, {name}, nullptr), S_OK);
    Variant count;
    EXPECT_EQ(invoke(11, DISPATCH_PROPERTYGET, {}, count.put()), S_OK);
    EXPECT_EQ(count.lVal, 7);
    EXPECT_EQ(invoke(29, DISPATCH_PROPERTYGET, {}, count.put()), DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(invoke(29, DISPATCH_PROPERTYPUT, {Variant::FromText(OLESTR("1"))}, nullptr), S_OK);
    EXPECT_EQ(invoke(31, DISPATCH_METHOD, {}, nullptr), DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(invoke(17, DISPATCH_PROPERTYPUT, {Variant::FromI4(0x43)}, nullptr), S_OK);
    Variant code;
    EXPECT_EQ(invoke(17, DISPATCH_PROPERTYGET, {}, code.put()), S_OK);
    EXPECT_EQ(code.vt, VT_UI1);
    EXPECT_EQ(code.bVal, 0x43);
}

} // namespace
