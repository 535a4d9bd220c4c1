// The dispatch tables of the dual interfaces. Dispids are fixed for good: hosts
// may have stored them.

#include "interfaces/IDataParser.h"
#include "interfaces/IDataParserEvents.h"
#include "interfaces/IFileHandlerEvents.h"
#include "interfaces/IRecordParser.h"
#include "interfaces/IValueMultiplier.h"
#include "module/Dispatch.h"
#include "module/DispatchRow.h"

using namespace IQRL_TabulexConverter;

template <>
std::span<const DispatchRow> DispatchTable<IFileHandlerEvents>()
{
    using I = IFileHandlerEvents;
    static constexpr DispatchRow kTable[] = {
        MethodRow<&I::RecordCountChange>(OLESTR("RecordCountChange"), 1,
                                         {OLESTR("nNewCount"), OLESTR("bComplete")}),
        MethodRow<&I::PutData>(OLESTR("PutData"), 2,
                               {OLESTR("vFields"), OLESTR("nFrom"), OLESTR("nCount")}),
        MethodRow<&I::ProcessRecord>(OLESTR("ProcessRecord"), 3,
                                     {OLESTR("nIndex"), OLESTR("bsRecord"), OLESTR("bComplete")}),
    };
    return kTable;
}

template <>
std::span<const DispatchRow> DispatchTable<IFileHandlerEvents2>()
{
    static constexpr DispatchRow kTable[] = {
        ReadOnlyRow<&IFileHandlerEvents2::get_StartPosition>(OLESTR("StartPosition"), 1),
    };
    return kTable;
}

template <>
std::span<const DispatchRow> DispatchTable<IDataParserEvents>()
{
    using I = IDataParserEvents;
    static constexpr DispatchRow kTable[] = {
        MethodRow<&I::PutRecords>(OLESTR("PutRecords"), 1,
                                  {OLESTR("vRecords"), OLESTR("nRecCountWithSkeeped")}),
        MethodRow<&I::EndTransaction>(OLESTR("EndTransaction"), 2, {OLESTR("bResult")}),
        MethodRow<&I::OnError>(OLESTR("OnError"), 3, {OLESTR("Description")}),
        MethodRow<&I::GetResolutionName>(OLESTR("GetResolutionName"), 4,
                                         {OLESTR("Resolution"), OLESTR("Name")}),
        MethodRow<&I::OnError2>(
            OLESTR("OnError2"), 5,
            {OLESTR("lptrLineNum"), OLESTR("lptrFieldNum"), OLESTR("bsDescription")}),
    };
    return kTable;
}

template <>
std::span<const DispatchRow> DispatchTable<IValueMultiplier>()
{
    using I = IValueMultiplier;
    static constexpr DispatchRow kTable[] = {
        MethodRow<&I::ApplyTransform>(OLESTR("ApplyTransform"), 1, {OLESTR("Value")}),
        ResultRow<&I::get_TransformNames>(OLESTR("TransformNames"), 2, OLESTR("pVal")),
        PropertyRow<&I::get_Current, &I::put_Current>(OLESTR("Current"), 3),
    };
    return kTable;
}

template <>
std::span<const DispatchRow> DispatchTable<IDataParser>()
{
    using I = IDataParser;
    static constexpr DispatchRow kTable[] = {
        MethodRow<&I::CheckConverterSettings>(OLESTR("CheckConverterSettings"), 23,
                                              {OLESTR("hWnd"), OLESTR("pEventSink")}),
        MethodRow<&I::StartEnumSymbols>(OLESTR("StartEnumSymbols"), 24,
                                        {OLESTR("pEventSink"), OLESTR("nTranId")}),
        MethodRow<&I::Clone>(OLESTR("Clone"), 25, {OLESTR("newObj")}),
        MethodRow<&I::StartConvertPortion>(OLESTR("StartConvertPortion"), 26,
                                           {OLESTR("hWnd"), OLESTR("pEventSink"),
                                            OLESTR("StartPos"), OLESTR("Count"),
                                            OLESTR("nTranId")}),
        MethodRow<&I::GetCount>(OLESTR("GetCount"), 6, {OLESTR("nCount"), OLESTR("bComplete")}),
        MethodRow<&I::ParseRecords>(OLESTR("ParseRecords"), 8,
                                    {OLESTR("v"), OLESTR("nFrom"), OLESTR("nCount")}),
        MethodRow<&I::RefreshDateInfo>(OLESTR("RefreshDateInfo"), 21, {OLESTR("FindResolution")}),
        MethodRow<&I::InvalidateFileInfo>(OLESTR("InvalidateFileInfo"), 29, {OLESTR("Erase")}),
        MethodRow<&I::GetRelativePos>(OLESTR("GetRelativePos"), 14,
                                      {OLESTR("nPosition"), OLESTR("fRelative")}),
        MethodRow<&I::StartConversion>(OLESTR("StartConversion"), 12,
                                       {OLESTR("pEventSink"), OLESTR("nTranId")}),
        MethodRow<&I::AbortConversion>(OLESTR("AbortConversion"), 13),
        MethodRow<&I::AddFileEventHandler>(OLESTR("AddFileEventHandler"), 10,
                                           {OLESTR("pEventHandler")}),
        MethodRow<&I::RemoveFileEventHandler>(OLESTR("RemoveFileEventHandler"), 11,
                                              {OLESTR("pEventHandler")}),
        MethodRow<&I::GetMinDateTime>(OLESTR("GetMinDateTime"), 16, {OLESTR("vDate")}),
        MethodRow<&I::GetMaxDateTime>(OLESTR("GetMaxDateTime"), 17, {OLESTR("vDate")}),
        ReadOnlyRow<&I::get_CurrentRecord>(OLESTR("CurrentRecord"), 7),
        ReadOnlyRow<&I::get_LastRecord>(OLESTR("LastRecord"), 22),
        ReadOnlyRow<&I::get_FieldCount>(OLESTR("FieldCount"), 4),
        PropertyRow<&I::get_FileName, &I::put_FileName>(OLESTR("FileName"), 1),
        PropertyRow<&I::get_Position, &I::put_Position>(OLESTR("Position"), 2),
        PropertyRow<&I::get_RecordParser, &I::put_RecordParser>(OLESTR("RecordParser"), 5),
        PropertyRow<&I::get_HasHeader, &I::put_HasHeader>(OLESTR("HasHeader"), 9),
        PropertyRow<&I::get_HeaderOffset, &I::put_HeaderOffset>(OLESTR("HeaderOffset"), 15),
        PropertyRow<&I::get_InvertedDirection, &I::put_InvertedDirection>(
            OLESTR("InvertedDirection"), 18),
        PropertyRow<&I::get_StartDateTime, &I::put_StartDateTime>(OLESTR("StartDateTime"), 19),
        PropertyRow<&I::get_EndDateTime, &I::put_EndDateTime>(OLESTR("EndDateTime"), 20),
        PropertyRow<&I::get_Locale, &I::put_Locale>(OLESTR("Locale"), 27),
        PropertyRow<&I::get_AutoDetectCodePage, &I::put_AutoDetectCodePage>(
            OLESTR("AutoDetectCodePage"), 28),
        PropertyRow<&I::get_DisableErrorNotify, &I::put_DisableErrorNotify>(
            OLESTR("DisableErrorNotify"), 30),
        PropertyRow<&I::get_SymbolName, &I::put_SymbolName>(OLESTR("SymbolName"), 31),
        MethodRow<&I::GetApproxCount>(OLESTR("GetApproxCount"), 32, {OLESTR("nCount")}),
    };
    return kTable;
}

template <>
std::span<const DispatchRow> DispatchTable<IRecordParser>()
{
    using I = IRecordParser;
    static constexpr DispatchRow kTable[] = {
        MethodRow<&I::Parse>(OLESTR("Parse"), 0x2, {OLESTR("bsRecord")}),
        MethodRow<&I::Clone>(OLESTR("Clone"), 0x1e, {OLESTR("newObj")}),
        MethodRow<&I::Reset>(OLESTR("Reset"), 0x4),
        MethodRow<&I::RemoveTemplate>(OLESTR("RemoveTemplate"), 0x20,
                                      {OLESTR("nField"), OLESTR("Template")}),
        MethodRow<&I::FindResolution>(OLESTR("FindResolution"), 0x17, {OLESTR("bsRecord")}),
        MethodRow<&I::CheckResolution>(
            OLESTR("CheckResolution"), 0x1b,
            {OLESTR("LastDateTime"), OLESTR("ResolutionError"), OLESTR("pHost")}),
        MethodRow<&I::RecalcResolutionSize>(OLESTR("RecalcResolutionSize"), 0x13),
        MethodRow<&I::IsHeader>(OLESTR("IsHeader"), 0x3, {OLESTR("bsRecord")}),
        MethodRow<&I::IsValidResolution>(OLESTR("IsValidResolution"), 0x18),
        MethodRow<&I::GetTypeNames>(OLESTR("GetTypeNames"), 0xb, {OLESTR("TypeNames")}),
        MethodRow<&I::GetFieldValue>(OLESTR("GetFieldValue"), 0x8,
                                     {OLESTR("Value"), OLESTR("nField")}),
        MethodRow<&I::SetResolutionTemplates>(OLESTR("SetResolutionTemplates"), 0x11,
                                              {OLESTR("vIDs"), OLESTR("vNames")}),
        MethodRow<&I::GetFieldError>(OLESTR("GetFieldError"), 0x15,
                                     {OLESTR("bsError"), OLESTR("nField")}),
        MethodRow<&I::GetFieldText>(OLESTR("GetFieldText"), 0x1d,
                                    {OLESTR("bsRecord"), OLESTR("nField"), OLESTR("bsField")}),
        MethodRow<&I::GetFieldIndex>(OLESTR("GetFieldIndex"), 0x1f,
                                     {OLESTR("DataType"), OLESTR("Index")}),
        MethodRow<&I::GetTemplates>(OLESTR("GetTemplates"), 0x9,
                                    {OLESTR("Templates"), OLESTR("bsTypeName")}),
        MethodRow<&I::SetTemplates>(OLESTR("SetTemplates"), 0xa,
                                    {OLESTR("Templates"), OLESTR("bsTypeName")}),
        MethodRow<&I::GetFieldName>(OLESTR("GetFieldName"), 0x6,
                                    {OLESTR("bsName"), OLESTR("nIndex")}),
        MethodRow<&I::SetFieldName>(OLESTR("SetFieldName"), 0xc,
                                    {OLESTR("nField"), OLESTR("bsName")}),
        MethodRow<&I::GetFieldTemplate>(OLESTR("GetFieldTemplate"), 0xd,
                                        {OLESTR("bsTemplate"), OLESTR("nField")}),
        MethodRow<&I::SetFieldTemplate>(OLESTR("SetFieldTemplate"), 0xe,
                                        {OLESTR("bsTemplate"), OLESTR("nField")}),
        MethodRow<&I::GetFieldType>(OLESTR("GetFieldType"), 0x22,
                                    {OLESTR("nField"), OLESTR("nType")}),
        MethodRow<&I::SetFieldType>(OLESTR("SetFieldType"), 0x23,
                                    {OLESTR("nField"), OLESTR("nType")}),
        ReadOnlyRow<&I::get_FieldCount>(OLESTR("FieldCount"), 0x1),
        ReadOnlyRow<&I::get_CurrentDateTime>(OLESTR("CurrentDateTime"), 0x16),
        ReadOnlyRow<&I::get_LackedFields>(OLESTR("LackedFields"), 0x1c),
        ReadOnlyRow<&I::get_DuplicatedField>(OLESTR("DuplicatedField"), 0x21),
        PropertyRow<&I::get_DataParser, &I::put_DataParser>(OLESTR("DataParser"), 0x5),
        PropertyRow<&I::get_EventHandler, &I::put_EventHandler>(OLESTR("EventHandler"), 0x7),
        PropertyRow<&I::get_Environment, &I::put_Environment>(OLESTR("Environment"), 0xf),
        PropertyRow<&I::get_Resolution, &I::put_Resolution>(OLESTR("Resolution"), 0x10),
        PropertyRow<&I::get_ResolutionSize, &I::put_ResolutionSize>(OLESTR("ResolutionSize"), 0x12),
        PropertyRow<&I::get_LinesToSkip, &I::put_LinesToSkip>(OLESTR("LinesToSkip"), 0x14),
        PropertyRow<&I::get_PriceMultiplier, &I::put_PriceMultiplier>(OLESTR("PriceMultiplier"),
                                                                      0x19),
        PropertyRow<&I::get_VolumeMultiplier, &I::put_VolumeMultiplier>(OLESTR("VolumeMultiplier"),
                                                                        0x1a),
        PropertyRow<&I::get_SmartResolutionEnabled, &I::put_SmartResolutionEnabled>(
            OLESTR("SmartResolutionEnabled"), 0x24),
        PropertyRow<&I::get_FieldDividers, &I::put_FieldDividers>(OLESTR("FieldDividers"), 0x25),
        PropertyRow<&I::get_UseBarsEndTime, &I::put_UseBarsEndTime>(OLESTR("UseBarsEndTime"), 0x26),
        MethodRow<&I::GetTypeNamesLocalized>(OLESTR("GetTypeNamesLocalized"), 0x27,
                                             {OLESTR("TypeNames")}),
        MethodRow<&I::GetFieldNameLocalized>(OLESTR("GetFieldNameLocalized"), 0x28,
                                             {OLESTR("bsName"), OLESTR("nIndex")}),
        MethodRow<&I::GetTemplateItemCount>(OLESTR("GetTemplateItemCount"), 0x29,
                                            {OLESTR("bsTypeName"), OLESTR("nCount")}),
        MethodRow<&I::GetTemplateItem>(
            OLESTR("GetTemplateItem"),
            0x2a, {OLESTR("bsTypeName"), OLESTR("nIndex"), OLESTR("bsName"), OLESTR("bDefault")}),
        MethodRow<&I::RecreateFealds>(OLESTR("RecreateFealds"), 0x2b),
    };
    return kTable;
}
