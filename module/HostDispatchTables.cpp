// The dispatch tables of the interfaces that hosts call and implement. Dispids are
// fixed for good: hosts may have stored them.

#include "interfaces/IProgressBox.h"
#include "interfaces/IQRLGUITweak.h"
#include "interfaces/ISymbolEnumerator.h"
#include "interfaces/IqrlTabulexConvertor.h"
#include "interfaces/IqrlTabulexDataSink.h"
#include "module/Dispatch.h"
#include "module/DispatchRow.h"

using namespace IQRL_TabulexConverter;

template <>
std::span<const DispatchRow> DispatchTable<IqrlTabulexConvertor>()
{
    using I = IqrlTabulexConvertor;
    static constexpr DispatchRow kTable[] = {
        MethodRow<&I::DoAnalyse>(OLESTR("DoAnalyse"), 10,
                                 {OLESTR("Status"), OLESTR("ParentWindow")}),
        MethodRow<&I::DoConvert>(OLESTR("DoConvert"), 14,
                                 {OLESTR("pReceiverSink"), OLESTR("ParentWindow")}),
        MethodRow<&I::DoEnumSymbols>(OLESTR("DoEnumSymbols"), 19, {OLESTR("pReceiverSink")}),
        MethodRow<&I::DoConvertPortion>(
            OLESTR("DoConvertPortion"), 20,
            {OLESTR("hWnd"), OLESTR("pReceiverSink"), OLESTR("StartPos"), OLESTR("Count")}),
        MethodRow<&I::InitFieldsInfo>(OLESTR("InitFieldsInfo"), 22),
        MethodRow<&I::Unadvise>(OLESTR("Unadvise"), 23, {OLESTR("pReceiverSink")}),
        MethodRow<&I::Clone>(OLESTR("Clone"), 24, {OLESTR("newObj")}),
        MethodRow<&I::CheckConverterSettings>(OLESTR("CheckConverterSettings"), 27,
                                              {OLESTR("hWnd"), OLESTR("pEventSink")}),
        MethodRow<&I::SelectResolution>(
            OLESTR("SelectResolution"), 25,
            {OLESTR("ResolutionSizeTemplate"), OLESTR("ResolutionTemplate")}),
        MethodRow<&I::AddFieldTemplate>(OLESTR("AddFieldTemplate"), 4,
                                        {OLESTR("Id"), OLESTR("FieldName")}),
        MethodRow<&I::AddResolutionTemplate>(OLESTR("AddResolutionTemplate"), 6,
                                             {OLESTR("Id"), OLESTR("ResolutionName")}),
        MethodRow<&I::AddTimeZoneTemplate>(OLESTR("AddTimeZoneTemplate"), 9,
                                           {OLESTR("Id"), OLESTR("TimeZoneName")}),
        MethodRow<&I::GetField>(OLESTR("GetField"), 12,
                                {OLESTR("Index"), OLESTR("Id"), OLESTR("FieldTemplate")}),
        MethodRow<&I::SetField>(OLESTR("SetField"), 13,
                                {OLESTR("Index"), OLESTR("Id"), OLESTR("FieldTemplate")}),
        ReadOnlyRow<&I::get_FieldCount>(OLESTR("FieldCount"), 11),
        ReadOnlyRow<&I::get_DataParser>(OLESTR("DataParser"), 21),
        ReadOnlyRow<&I::get_ValidResolution>(OLESTR("ValidResolution"), 26),
        PropertyRow<&I::get_FileName, &I::put_FileName>(OLESTR("FileName"), 2),
        PropertyRow<&I::get_Environment, &I::put_Environment>(OLESTR("Environment"), 1),
        PropertyRow<&I::get_FieldTemplate, &I::put_FieldTemplate>(OLESTR("FieldTemplate"), 3),
        PropertyRow<&I::get_SymbolName, &I::put_SymbolName>(OLESTR("SymbolName"), 28),
        PropertyRow<&I::get_ResolutionTemplate, &I::put_ResolutionTemplate>(
            OLESTR("ResolutionTemplate"), 5),
        PropertyRow<&I::get_ResolutionSizeTemplate, &I::put_ResolutionSizeTemplate>(
            OLESTR("ResolutionSizeTemplate"), 7),
        PropertyRow<&I::get_TimeZoneTemplate, &I::put_TimeZoneTemplate>(OLESTR("TimeZoneTemplate"),
                                                                        8),
        PropertyRow<&I::get_StartDateTime, &I::put_StartDateTime>(OLESTR("StartDateTime"), 15),
        PropertyRow<&I::get_EndDateTime, &I::put_EndDateTime>(OLESTR("EndDateTime"), 16),
        PropertyRow<&I::get_PriceMultiplier, &I::put_PriceMultiplier>(OLESTR("PriceMultiplier"),
                                                                      17),
        PropertyRow<&I::get_VolumeMultiplier, &I::put_VolumeMultiplier>(OLESTR("VolumeMultiplier"),
                                                                        18),
        WriteOnlyRow<&I::put_Mode>(OLESTR("Mode"), 29),
        MethodRow<&I::ReleaseFile>(OLESTR("ReleaseFile"), 30),
    };
    return kTable;
}

template <>
std::span<const DispatchRow> DispatchTable<IQRLGUITweak>()
{
    using I = IQRLGUITweak;
    static constexpr DispatchRow kTable[] = {
        PropertyRow<&I::get_MenuStyle, &I::put_MenuStyle>(OLESTR("MenuStyle"), 1),
        PropertyRow<&I::get_MenuEffect, &I::put_MenuEffect>(OLESTR("MenuEffect"), 2),
        PropertyRow<&I::get_ResourceHandle, &I::put_ResourceHandle>(OLESTR("ResourceHandle"), 3),
        PropertyRow<&I::get_ModelessProgress, &I::put_ModelessProgress>(OLESTR("ModelessProgress"),
                                                                        4),
    };
    return kTable;
}

template <>
std::span<const DispatchRow> DispatchTable<IqrlTabulexDataSink>()
{
    using I = IqrlTabulexDataSink;
    static constexpr DispatchRow kTable[] = {
        MethodRow<&I::DataChanged>(OLESTR("DataChanged"), 1, {OLESTR("Data")}),
        MethodRow<&I::Commit>(OLESTR("Commit"), 2),
        MethodRow<&I::Rollback>(OLESTR("Rollback"), 3),
        MethodRow<&I::OnError>(OLESTR("OnError"), 4, {OLESTR("Description")}),
    };
    return kTable;
}

template <>
std::span<const DispatchRow> DispatchTable<ISymbolEnumerator>()
{
    using I = ISymbolEnumerator;
    static constexpr DispatchRow kTable[] = {
        PropertyRow<&I::get_DataParser, &I::put_DataParser>(OLESTR("DataParser"), 1),
        WriteOnlyRow<&I::put_Receiver>(OLESTR("Receiver"), 2),
        PropertyRow<&I::get_SymbolField, &I::put_SymbolField>(OLESTR("SymbolField"), 3),
        MethodRow<&I::Start>(OLESTR("Start"), 4),
    };
    return kTable;
}

template <>
std::span<const DispatchRow> DispatchTable<IProgressDlg>()
{
    using I = IProgressDlg;
    static constexpr DispatchRow kTable[] = {
        WriteOnlyRow<&I::put_onselectdebug>(OLESTR("onselectdebug"), 1),
        WriteOnlyRow<&I::put_onselectnormal>(OLESTR("onselectnormal"), 2),
    };
    return kTable;
}
