// Names and numbers of the dual interfaces. Hosts may have stored them.

#include <gtest/gtest.h>

#include <set>

#include "interfaces/IDataChangeSink.h"
#include "interfaces/IDataParser.h"
#include "interfaces/IDataParserEvents.h"
#include "interfaces/IFileHandlerEvents.h"
#include "interfaces/IFolderViewCtrl.h"
#include "interfaces/IProgressBox.h"
#include "interfaces/IQRLCommonCtrlContained.h"
#include "interfaces/IQRLDataGridViewCtrl.h"
#include "interfaces/IQRLGUITweak.h"
#include "interfaces/IRecordParser.h"
#include "interfaces/ISymbolEnumerator.h"
#include "interfaces/IValueMultiplier.h"
#include "interfaces/IqrlTabulexConvertor.h"
#include "interfaces/IqrlTabulexDataSink.h"
#include "module/Dispatch.h"
#include "module/DispatchRow.h"

using namespace IQRL_TabulexConverter;

namespace {

enum class Form
{
    Method,
    ReadOnly,
    WriteOnly,
    Property
};

struct Entry
{
    const OLECHAR* szName;
    DISPID id;
    Form form = Form::Method;
};

constexpr Form kReadOnly = Form::ReadOnly, kWriteOnly = Form::WriteOnly, kProperty = Form::Property;

constexpr Entry kDataParserEvents[] = {
    {OLESTR("PutRecords"), 1},        {OLESTR("EndTransaction"), 2}, {OLESTR("OnError"), 3},
    {OLESTR("GetResolutionName"), 4}, {OLESTR("OnError2"), 5},
};

constexpr Entry kDataParser[] = {
    {OLESTR("FileName"), 1, kProperty},
    {OLESTR("Position"), 2, kProperty},
    {OLESTR("FieldCount"), 4, kReadOnly},
    {OLESTR("RecordParser"), 5, kProperty},
    {OLESTR("GetCount"), 6},
    {OLESTR("CurrentRecord"), 7, kReadOnly},
    {OLESTR("ParseRecords"), 8},
    {OLESTR("HasHeader"), 9, kProperty},
    {OLESTR("AddFileEventHandler"), 10},
    {OLESTR("RemoveFileEventHandler"), 11},
    {OLESTR("StartConversion"), 12},
    {OLESTR("AbortConversion"), 13},
    {OLESTR("GetRelativePos"), 14},
    {OLESTR("HeaderOffset"), 15, kProperty},
    {OLESTR("GetMinDateTime"), 16},
    {OLESTR("GetMaxDateTime"), 17},
    {OLESTR("InvertedDirection"), 18, kProperty},
    {OLESTR("StartDateTime"), 19, kProperty},
    {OLESTR("EndDateTime"), 20, kProperty},
    {OLESTR("RefreshDateInfo"), 21},
    {OLESTR("LastRecord"), 22, kReadOnly},
    {OLESTR("CheckConverterSettings"), 23},
    {OLESTR("StartEnumSymbols"), 24},
    {OLESTR("Clone"), 25},
    {OLESTR("StartConvertPortion"), 26},
    {OLESTR("Locale"), 27, kProperty},
    {OLESTR("AutoDetectCodePage"), 28, kProperty},
    {OLESTR("InvalidateFileInfo"), 29},
    {OLESTR("DisableErrorNotify"), 30, kProperty},
    {OLESTR("SymbolName"), 31, kProperty},
    {OLESTR("GetApproxCount"), 32},
};

constexpr Entry kRecordParser[] = {
    {OLESTR("FieldCount"), 0x1, kReadOnly},
    {OLESTR("Parse"), 0x2},
    {OLESTR("IsHeader"), 0x3},
    {OLESTR("Reset"), 0x4},
    {OLESTR("DataParser"), 0x5, kProperty},
    {OLESTR("GetFieldName"), 0x6},
    {OLESTR("EventHandler"), 0x7, kProperty},
    {OLESTR("GetFieldValue"), 0x8},
    {OLESTR("GetTemplates"), 0x9},
    {OLESTR("SetTemplates"), 0xa},
    {OLESTR("GetTypeNames"), 0xb},
    {OLESTR("SetFieldName"), 0xc},
    {OLESTR("GetFieldTemplate"), 0xd},
    {OLESTR("SetFieldTemplate"), 0xe},
    {OLESTR("Environment"), 0xf, kProperty},
    {OLESTR("Resolution"), 0x10, kProperty},
    {OLESTR("SetResolutionTemplates"), 0x11},
    {OLESTR("ResolutionSize"), 0x12, kProperty},
    {OLESTR("RecalcResolutionSize"), 0x13},
    {OLESTR("LinesToSkip"), 0x14, kProperty},
    {OLESTR("GetFieldError"), 0x15},
    {OLESTR("CurrentDateTime"), 0x16, kReadOnly},
    {OLESTR("FindResolution"), 0x17},
    {OLESTR("IsValidResolution"), 0x18},
    {OLESTR("PriceMultiplier"), 0x19, kProperty},
    {OLESTR("VolumeMultiplier"), 0x1a, kProperty},
    {OLESTR("CheckResolution"), 0x1b},
    {OLESTR("LackedFields"), 0x1c, kReadOnly},
    {OLESTR("GetFieldText"), 0x1d},
    {OLESTR("Clone"), 0x1e},
    {OLESTR("GetFieldIndex"), 0x1f},
    {OLESTR("RemoveTemplate"), 0x20},
    {OLESTR("DuplicatedField"), 0x21, kReadOnly},
    {OLESTR("GetFieldType"), 0x22},
    {OLESTR("SetFieldType"), 0x23},
    {OLESTR("SmartResolutionEnabled"), 0x24, kProperty},
    {OLESTR("FieldDividers"), 0x25, kProperty},
    {OLESTR("UseBarsEndTime"), 0x26, kProperty},
    {OLESTR("GetTypeNamesLocalized"), 0x27},
    {OLESTR("GetFieldNameLocalized"), 0x28},
    {OLESTR("GetTemplateItemCount"), 0x29},
    {OLESTR("GetTemplateItem"), 0x2a},
    {OLESTR("RecreateFealds"), 0x2b},
};

constexpr Entry kValueMultiplier[] = {
    {OLESTR("ApplyTransform"), 1},
    {OLESTR("TransformNames"), 2, kReadOnly},
    {OLESTR("Current"), 3, kProperty},
};

constexpr Entry kFileHandlerEvents[] = {
    {OLESTR("RecordCountChange"), 1},
    {OLESTR("PutData"), 2},
    {OLESTR("ProcessRecord"), 3},
};

constexpr Entry kFileHandlerEvents2[] = {{OLESTR("StartPosition"), 1, kReadOnly}};

constexpr Entry kConvertor[] = {
    {OLESTR("Environment"), 1, kProperty},
    {OLESTR("FileName"), 2, kProperty},
    {OLESTR("FieldTemplate"), 3, kProperty},
    {OLESTR("AddFieldTemplate"), 4},
    {OLESTR("ResolutionTemplate"), 5, kProperty},
    {OLESTR("AddResolutionTemplate"), 6},
    {OLESTR("ResolutionSizeTemplate"), 7, kProperty},
    {OLESTR("TimeZoneTemplate"), 8, kProperty},
    {OLESTR("AddTimeZoneTemplate"), 9},
    {OLESTR("DoAnalyse"), 10},
    {OLESTR("FieldCount"), 11, kReadOnly},
    {OLESTR("GetField"), 12},
    {OLESTR("SetField"), 13},
    {OLESTR("DoConvert"), 14},
    {OLESTR("StartDateTime"), 15, kProperty},
    {OLESTR("EndDateTime"), 16, kProperty},
    {OLESTR("PriceMultiplier"), 17, kProperty},
    {OLESTR("VolumeMultiplier"), 18, kProperty},
    {OLESTR("DoEnumSymbols"), 19},
    {OLESTR("DoConvertPortion"), 20},
    {OLESTR("DataParser"), 21, kReadOnly},
    {OLESTR("InitFieldsInfo"), 22},
    {OLESTR("Unadvise"), 23},
    {OLESTR("Clone"), 24},
    {OLESTR("SelectResolution"), 25},
    {OLESTR("ValidResolution"), 26, kReadOnly},
    {OLESTR("CheckConverterSettings"), 27},
    {OLESTR("SymbolName"), 28, kProperty},
    {OLESTR("Mode"), 29, kWriteOnly},
    {OLESTR("ReleaseFile"), 30},
};

constexpr Entry kTweak[] = {
    {OLESTR("MenuStyle"), 1, kProperty},
    {OLESTR("MenuEffect"), 2, kProperty},
    {OLESTR("ResourceHandle"), 3, kProperty},
    {OLESTR("ModelessProgress"), 4, kProperty},
};

constexpr Entry kDataSink[] = {
    {OLESTR("DataChanged"), 1},
    {OLESTR("Commit"), 2},
    {OLESTR("Rollback"), 3},
    {OLESTR("OnError"), 4},
};

constexpr Entry kSymbolEnumerator[] = {
    {OLESTR("DataParser"), 1, kProperty},
    {OLESTR("Receiver"), 2, kWriteOnly},
    {OLESTR("SymbolField"), 3, kProperty},
    {OLESTR("Start"), 4},
};

constexpr Entry kGrid[] = {
    {OLESTR("AutoSize"), -500, kProperty},
    {OLESTR("BackColor"), -501, kProperty},
    {OLESTR("BorderStyle"), -504, kProperty},
    {OLESTR("BorderWidth"), -505, kProperty},
    {OLESTR("Enabled"), -514, kProperty},
    {OLESTR("TabStop"), -516, kProperty},
    {OLESTR("DataParser"), 1, kProperty},
    {OLESTR("NotifySourceDetach"), 2},
    {OLESTR("TextMode"), 3, kProperty},
    {OLESTR("CreateFields"), 4},
    {OLESTR("oncomplexfieldchange"), 5, kWriteOnly},
    {OLESTR("Refresh"), 6},
    {OLESTR("DataChangeSink"), 7, kWriteOnly},
};

constexpr Entry kFolderView[] = {
    {OLESTR("FileName"), 1, kProperty}, {OLESTR("onchange"), 2, kWriteOnly},
    {OLESTR("Folder"), 3, kProperty},   {OLESTR("Title"), 4, kProperty},
    {OLESTR("disabled"), 5, kProperty},
};

constexpr Entry kContained[] = {
    {OLESTR("CreateControl"), 1},
    {OLESTR("DefWindowProc0"), 2},
    {OLESTR("DefWindowProcW"), 3},
    {OLESTR("ControlHWND"), 4, kReadOnly},
};

constexpr Entry kDataChangeSink[] = {{OLESTR("OnDataChanged"), 1}};

DISPID IdOf(std::span<const DispatchRow> table, string_t sName)
{
    LPOLESTR name = sName.data();
    DISPID id = 0;
    DispatchGetIDsOfNames(table, &name, 1, &id);
    return id;
}

void Expect(std::span<const DispatchRow> table, std::span<const Entry> entries)
{
    EXPECT_EQ(entries.size(), table.size());
    std::set<DISPID> ids;
    for (const Entry& entry : entries) {
        const string_t sName = entry.szName;
        SCOPED_TRACE(std::string(sName.begin(), sName.end()));
        EXPECT_EQ(entry.id, IdOf(table, sName));
        const bool bGet = entry.form == Form::ReadOnly || entry.form == Form::Property;
        const bool bPut = entry.form == Form::WriteOnly || entry.form == Form::Property;
        const DISPID get = bGet ? entry.id : DISPID_UNKNOWN;
        const DISPID put = bPut ? entry.id : DISPID_UNKNOWN;
        EXPECT_EQ(get, IdOf(table, OLESTR("get_") + sName));
        EXPECT_EQ(put, IdOf(table, OLESTR("put_") + sName));
        EXPECT_TRUE(ids.insert(entry.id).second);
    }
}

TEST(DispatchNumbers, OfTheDataParsersEvents)
{
    Expect(DispatchTable<IDataParserEvents>(), kDataParserEvents);
}

TEST(DispatchNumbers, OfTheDataParser)
{
    Expect(DispatchTable<IDataParser>(), kDataParser);
}

TEST(DispatchNumbers, OfTheRecordParser)
{
    Expect(DispatchTable<IRecordParser>(), kRecordParser);
}

TEST(DispatchNumbers, OfTheValueMultiplier)
{
    Expect(DispatchTable<IValueMultiplier>(), kValueMultiplier);
}

TEST(DispatchNumbers, OfTheFilesEvents)
{
    Expect(DispatchTable<IFileHandlerEvents>(), kFileHandlerEvents);
    Expect(DispatchTable<IFileHandlerEvents2>(), kFileHandlerEvents2);
}

TEST(DispatchNumbers, OfTheConvertor)
{
    Expect(DispatchTable<IqrlTabulexConvertor>(), kConvertor);
}

TEST(DispatchNumbers, OfTheTweaks)
{
    Expect(DispatchTable<IQRLGUITweak>(), kTweak);
}

TEST(DispatchNumbers, OfTheDataSink)
{
    Expect(DispatchTable<IqrlTabulexDataSink>(), kDataSink);
}

TEST(DispatchNumbers, OfTheDialogsControls)
{
    Expect(DispatchTable<IQRLDataGridViewCtrl>(), kGrid);
    Expect(DispatchTable<IFolderViewCtrl>(), kFolderView);
    Expect(DispatchTable<IQRLCommonCtrlContained>(), kContained);
    Expect(DispatchTable<IDataChangeSink>(), kDataChangeSink);
}

// Each interface refuses more arguments than its own widest operation takes.
TEST(DispatchNumbers, WidestOperationsAreCountedForEachInterface)
{
    struct Row
    {
        std::span<const DispatchRow> table;
        UINT nMost;
    };
    const Row kRows[] = {
        {DispatchTable<IQRLCommonCtrlContained>(), 6}, {DispatchTable<IDataParser>(), 5},
        {DispatchTable<IqrlTabulexConvertor>(), 4},    {DispatchTable<IQRLDataGridViewCtrl>(), 1},
        {DispatchTable<IFolderViewCtrl>(), 1},         {DispatchTable<IDataChangeSink>(), 0},
    };
    for (const Row& row : kRows) {
        VARIANT arguments[7]{};
        DISPPARAMS params{arguments, nullptr, row.nMost + 1, 0};
        const auto invoke = [&] {
            return DispatchInvoke(row.table, nullptr, 99, DISPATCH_METHOD, &params, nullptr,
                                  nullptr, nullptr);
        };
        EXPECT_EQ(DISP_E_BADPARAMCOUNT, invoke()) << row.nMost;
        params.cArgs = row.nMost;
        EXPECT_EQ(DISP_E_MEMBERNOTFOUND, invoke()) << row.nMost;
    }
}

TEST(DispatchNumbers, OfTheSymbolEnumerator)
{
    Expect(DispatchTable<ISymbolEnumerator>(), kSymbolEnumerator);
}

} // namespace
