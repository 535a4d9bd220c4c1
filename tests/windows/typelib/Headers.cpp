#include "tests/windows/typelib/Headers.h"

#include <cstring>

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

using namespace IQRL_TabulexConverter;

namespace {

// A pointer to a virtual member holds, one too high, its offset in the table.
template <class Pointer>
unsigned SlotOf(Pointer member)
{
    std::size_t nPlace = 0;
    std::memcpy(&nPlace, &member, sizeof nPlace);
    return static_cast<unsigned>((nPlace - 1) / sizeof(void*));
}

// The slot after an interface's last one.
template <class Interface>
unsigned SlotsOf()
{
    struct Longer : Interface
    {
        virtual void Behind() = 0;
    };
    return SlotOf(&Longer::Behind);
}

template <class I, class... Arguments>
Member MemberOf(string_view_t sName, HRESULT (STDMETHODCALLTYPE I::*member)(Arguments...))
{
    return {sName, SlotOf(member), {dispatch_details::KindOf<Arguments>()...}};
}

#define MEMBER(name) MemberOf(OLESTR(#name), &I::name)

// In the header's order.
template <class Interface>
std::vector<Member> MembersOf();

template <>
std::vector<Member> MembersOf<IqrlTabulexConvertor>()
{
    using I = IqrlTabulexConvertor;
    return {
        MEMBER(DoAnalyse),
        MEMBER(DoConvert),
        MEMBER(DoEnumSymbols),
        MEMBER(DoConvertPortion),
        MEMBER(InitFieldsInfo),
        MEMBER(Unadvise),
        MEMBER(Clone),
        MEMBER(CheckConverterSettings),
        MEMBER(SelectResolution),
        MEMBER(AddFieldTemplate),
        MEMBER(AddResolutionTemplate),
        MEMBER(AddTimeZoneTemplate),
        MEMBER(GetField),
        MEMBER(SetField),
        MEMBER(get_FieldCount),
        MEMBER(get_DataParser),
        MEMBER(get_ValidResolution),
        MEMBER(get_FileName),
        MEMBER(put_FileName),
        MEMBER(get_Environment),
        MEMBER(put_Environment),
        MEMBER(get_FieldTemplate),
        MEMBER(put_FieldTemplate),
        MEMBER(get_SymbolName),
        MEMBER(put_SymbolName),
        MEMBER(get_ResolutionTemplate),
        MEMBER(put_ResolutionTemplate),
        MEMBER(get_ResolutionSizeTemplate),
        MEMBER(put_ResolutionSizeTemplate),
        MEMBER(get_TimeZoneTemplate),
        MEMBER(put_TimeZoneTemplate),
        MEMBER(get_StartDateTime),
        MEMBER(put_StartDateTime),
        MEMBER(get_EndDateTime),
        MEMBER(put_EndDateTime),
        MEMBER(get_PriceMultiplier),
        MEMBER(put_PriceMultiplier),
        MEMBER(get_VolumeMultiplier),
        MEMBER(put_VolumeMultiplier),
        MEMBER(put_Mode),
        MEMBER(ReleaseFile),
    };
}

template <>
std::vector<Member> MembersOf<IQRLGUITweak>()
{
    using I = IQRLGUITweak;
    return {
        MEMBER(get_MenuStyle),        MEMBER(put_MenuStyle),        MEMBER(get_MenuEffect),
        MEMBER(put_MenuEffect),       MEMBER(get_ResourceHandle),   MEMBER(put_ResourceHandle),
        MEMBER(get_ModelessProgress), MEMBER(put_ModelessProgress),
    };
}

template <>
std::vector<Member> MembersOf<IqrlTabulexDataSink>()
{
    using I = IqrlTabulexDataSink;
    return {
        MEMBER(DataChanged),
        MEMBER(Commit),
        MEMBER(Rollback),
        MEMBER(OnError),
    };
}

template <>
std::vector<Member> MembersOf<IDataParser>()
{
    using I = IDataParser;
    return {
        MEMBER(CheckConverterSettings),
        MEMBER(StartEnumSymbols),
        MEMBER(Clone),
        MEMBER(StartConvertPortion),
        MEMBER(GetCount),
        MEMBER(ParseRecords),
        MEMBER(RefreshDateInfo),
        MEMBER(InvalidateFileInfo),
        MEMBER(GetRelativePos),
        MEMBER(StartConversion),
        MEMBER(AbortConversion),
        MEMBER(AddFileEventHandler),
        MEMBER(RemoveFileEventHandler),
        MEMBER(GetMinDateTime),
        MEMBER(GetMaxDateTime),
        MEMBER(get_CurrentRecord),
        MEMBER(get_LastRecord),
        MEMBER(get_FieldCount),
        MEMBER(get_FileName),
        MEMBER(put_FileName),
        MEMBER(get_Position),
        MEMBER(put_Position),
        MEMBER(get_RecordParser),
        MEMBER(put_RecordParser),
        MEMBER(get_HasHeader),
        MEMBER(put_HasHeader),
        MEMBER(get_HeaderOffset),
        MEMBER(put_HeaderOffset),
        MEMBER(get_InvertedDirection),
        MEMBER(put_InvertedDirection),
        MEMBER(get_StartDateTime),
        MEMBER(put_StartDateTime),
        MEMBER(get_EndDateTime),
        MEMBER(put_EndDateTime),
        MEMBER(get_Locale),
        MEMBER(put_Locale),
        MEMBER(get_AutoDetectCodePage),
        MEMBER(put_AutoDetectCodePage),
        MEMBER(get_DisableErrorNotify),
        MEMBER(put_DisableErrorNotify),
        MEMBER(get_SymbolName),
        MEMBER(put_SymbolName),
        MEMBER(GetApproxCount),
    };
}

template <>
std::vector<Member> MembersOf<IRecordParser>()
{
    using I = IRecordParser;
    return {
        MEMBER(Parse),
        MEMBER(Clone),
        MEMBER(Reset),
        MEMBER(RemoveTemplate),
        MEMBER(FindResolution),
        MEMBER(CheckResolution),
        MEMBER(RecalcResolutionSize),
        MEMBER(IsHeader),
        MEMBER(IsValidResolution),
        MEMBER(GetTypeNames),
        MEMBER(GetFieldValue),
        MEMBER(SetResolutionTemplates),
        MEMBER(GetFieldError),
        MEMBER(GetFieldText),
        MEMBER(GetFieldIndex),
        MEMBER(GetTemplates),
        MEMBER(SetTemplates),
        MEMBER(GetFieldName),
        MEMBER(SetFieldName),
        MEMBER(GetFieldTemplate),
        MEMBER(SetFieldTemplate),
        MEMBER(GetFieldType),
        MEMBER(SetFieldType),
        MEMBER(get_FieldCount),
        MEMBER(get_CurrentDateTime),
        MEMBER(get_LackedFields),
        MEMBER(get_DuplicatedField),
        MEMBER(get_DataParser),
        MEMBER(put_DataParser),
        MEMBER(get_EventHandler),
        MEMBER(put_EventHandler),
        MEMBER(get_Environment),
        MEMBER(put_Environment),
        MEMBER(get_Resolution),
        MEMBER(put_Resolution),
        MEMBER(get_ResolutionSize),
        MEMBER(put_ResolutionSize),
        MEMBER(get_LinesToSkip),
        MEMBER(put_LinesToSkip),
        MEMBER(get_PriceMultiplier),
        MEMBER(put_PriceMultiplier),
        MEMBER(get_VolumeMultiplier),
        MEMBER(put_VolumeMultiplier),
        MEMBER(get_SmartResolutionEnabled),
        MEMBER(put_SmartResolutionEnabled),
        MEMBER(get_FieldDividers),
        MEMBER(put_FieldDividers),
        MEMBER(get_UseBarsEndTime),
        MEMBER(put_UseBarsEndTime),
        MEMBER(GetTypeNamesLocalized),
        MEMBER(GetFieldNameLocalized),
        MEMBER(GetTemplateItemCount),
        MEMBER(GetTemplateItem),
        MEMBER(RecreateFealds),
    };
}

template <>
std::vector<Member> MembersOf<IDataParserEvents>()
{
    using I = IDataParserEvents;
    return {
        MEMBER(PutRecords),        MEMBER(EndTransaction), MEMBER(OnError),
        MEMBER(GetResolutionName), MEMBER(OnError2),
    };
}

template <>
std::vector<Member> MembersOf<IFileHandlerEvents>()
{
    using I = IFileHandlerEvents;
    return {
        MEMBER(RecordCountChange),
        MEMBER(PutData),
        MEMBER(ProcessRecord),
    };
}

template <>
std::vector<Member> MembersOf<IFileHandlerEvents2>()
{
    using I = IFileHandlerEvents2;
    return {
        MEMBER(get_StartPosition),
    };
}

template <>
std::vector<Member> MembersOf<ISymbolEnumerator>()
{
    using I = ISymbolEnumerator;
    return {
        MEMBER(get_DataParser),  MEMBER(put_DataParser),  MEMBER(put_Receiver),
        MEMBER(get_SymbolField), MEMBER(put_SymbolField), MEMBER(Start),
    };
}

template <>
std::vector<Member> MembersOf<IValueMultiplier>()
{
    using I = IValueMultiplier;
    return {
        MEMBER(ApplyTransform),
        MEMBER(get_TransformNames),
        MEMBER(get_Current),
        MEMBER(put_Current),
    };
}

template <>
std::vector<Member> MembersOf<IProgressDlg>()
{
    using I = IProgressDlg;
    return {
        MEMBER(put_onselectdebug),
        MEMBER(put_onselectnormal),
    };
}

template <>
std::vector<Member> MembersOf<IQRLDataGridViewCtrl>()
{
    using I = IQRLDataGridViewCtrl;
    return {
        MEMBER(put_AutoSize),
        MEMBER(get_AutoSize),
        MEMBER(put_BackColor),
        MEMBER(get_BackColor),
        MEMBER(put_BorderStyle),
        MEMBER(get_BorderStyle),
        MEMBER(put_BorderWidth),
        MEMBER(get_BorderWidth),
        MEMBER(put_Enabled),
        MEMBER(get_Enabled),
        MEMBER(put_TabStop),
        MEMBER(get_TabStop),
        MEMBER(get_DataParser),
        MEMBER(put_DataParser),
        MEMBER(NotifySourceDetach),
        MEMBER(get_TextMode),
        MEMBER(put_TextMode),
        MEMBER(CreateFields),
        MEMBER(put_oncomplexfieldchange),
        MEMBER(Refresh),
        MEMBER(put_DataChangeSink),
    };
}

template <>
std::vector<Member> MembersOf<IFolderViewCtrl>()
{
    using I = IFolderViewCtrl;
    return {
        MEMBER(get_FileName), MEMBER(put_FileName), MEMBER(put_onchange),
        MEMBER(get_Folder),   MEMBER(put_Folder),   MEMBER(get_Title),
        MEMBER(put_Title),    MEMBER(get_disabled), MEMBER(put_disabled),
    };
}

template <>
std::vector<Member> MembersOf<IQRLCommonCtrlContained>()
{
    using I = IQRLCommonCtrlContained;
    return {
        MEMBER(CreateControl),
        MEMBER(DefWindowProc0),
        MEMBER(DefWindowProcW),
        MEMBER(get_ControlHWND),
    };
}

template <class Interface>
Description DescriptionOf(string_view_t sName)
{
    return {sName, iid_of<Interface>, MembersOf<Interface>(), SlotsOf<Interface>(),
            DispatchTable<Interface>()};
}

#define DESCRIPTION(Interface) DescriptionOf<Interface>(OLESTR(#Interface))

} // namespace

const std::vector<Description>& Descriptions()
{
    static const std::vector<Description> all = {
        DESCRIPTION(IqrlTabulexConvertor), DESCRIPTION(IQRLGUITweak),
        DESCRIPTION(IqrlTabulexDataSink),  DESCRIPTION(IDataParser),
        DESCRIPTION(IRecordParser),        DESCRIPTION(IDataParserEvents),
        DESCRIPTION(IFileHandlerEvents),   DESCRIPTION(IFileHandlerEvents2),
        DESCRIPTION(ISymbolEnumerator),    DESCRIPTION(IValueMultiplier),
        DESCRIPTION(IProgressDlg),         DESCRIPTION(IQRLDataGridViewCtrl),
        DESCRIPTION(IFolderViewCtrl),      DESCRIPTION(IQRLCommonCtrlContained),
    };
    return all;
}
