// The dispatch tables of the dialog's controls, and of what they call. Dispids are fixed for
// good: hosts may have stored them. Those of stock properties are the system's own.

#include "interfaces/IDataChangeSink.h"
#include "interfaces/IFolderViewCtrl.h"
#include "interfaces/IQRLCommonCtrlContained.h"
#include "interfaces/IQRLDataGridViewCtrl.h"
#include "module/Dispatch.h"
#include "module/DispatchRow.h"

using namespace IQRL_TabulexConverter;

template <>
std::span<const DispatchRow> DispatchTable<IQRLDataGridViewCtrl>()
{
    using I = IQRLDataGridViewCtrl;
    static constexpr DispatchRow kTable[] = {
        PropertyRow<&I::get_AutoSize, &I::put_AutoSize>(OLESTR("AutoSize"), -500),
        PropertyRow<&I::get_BackColor, &I::put_BackColor>(OLESTR("BackColor"), -501),
        PropertyRow<&I::get_BorderStyle, &I::put_BorderStyle>(OLESTR("BorderStyle"), -504),
        PropertyRow<&I::get_BorderWidth, &I::put_BorderWidth>(OLESTR("BorderWidth"), -505),
        PropertyRow<&I::get_Enabled, &I::put_Enabled>(OLESTR("Enabled"), -514),
        PropertyRow<&I::get_TabStop, &I::put_TabStop>(OLESTR("TabStop"), -516),
        PropertyRow<&I::get_DataParser, &I::put_DataParser>(OLESTR("DataParser"), 1),
        MethodRow<&I::NotifySourceDetach>(OLESTR("NotifySourceDetach"), 2),
        PropertyRow<&I::get_TextMode, &I::put_TextMode>(OLESTR("TextMode"), 3),
        MethodRow<&I::CreateFields>(OLESTR("CreateFields"), 4),
        WriteOnlyRow<&I::put_oncomplexfieldchange>(OLESTR("oncomplexfieldchange"), 5),
        MethodRow<&I::Refresh>(OLESTR("Refresh"), 6),
        WriteOnlyRow<&I::put_DataChangeSink>(OLESTR("DataChangeSink"), 7),
    };
    return kTable;
}

template <>
std::span<const DispatchRow> DispatchTable<IFolderViewCtrl>()
{
    using I = IFolderViewCtrl;
    static constexpr DispatchRow kTable[] = {
        PropertyRow<&I::get_FileName, &I::put_FileName>(OLESTR("FileName"), 1),
        WriteOnlyRow<&I::put_onchange>(OLESTR("onchange"), 2),
        PropertyRow<&I::get_Folder, &I::put_Folder>(OLESTR("Folder"), 3),
        PropertyRow<&I::get_Title, &I::put_Title>(OLESTR("Title"), 4),
        PropertyRow<&I::get_disabled, &I::put_disabled>(OLESTR("disabled"), 5),
    };
    return kTable;
}

template <>
std::span<const DispatchRow> DispatchTable<IQRLCommonCtrlContained>()
{
    using I = IQRLCommonCtrlContained;
    static constexpr DispatchRow kTable[] = {
        MethodRow<&I::CreateControl>(OLESTR("CreateControl"), 1,
                                     {OLESTR("bsClassName"), OLESTR("bsWindowName"),
                                      OLESTR("Style"), OLESTR("ExStyle"), OLESTR("lParam"),
                                      OLESTR("SuperWndProc")}),
        MethodRow<&I::DefWindowProc0>(OLESTR("DefWindowProc0"), 2, {OLESTR("lResult")}),
        MethodRow<&I::DefWindowProcW>(OLESTR("DefWindowProcW"), 3,
                                      {OLESTR("pMsg"), OLESTR("lResult")}),
        ReadOnlyRow<&I::get_ControlHWND>(OLESTR("ControlHWND"), 4),
    };
    return kTable;
}

template <>
std::span<const DispatchRow> DispatchTable<IDataChangeSink>()
{
    static constexpr DispatchRow kTable[] = {
        MethodRow<&IDataChangeSink::OnDataChanged>(OLESTR("OnDataChanged"), 1),
    };
    return kTable;
}
