// IqrlTabulexConvertor: the object through which a host drives everything.
//
// It holds the lists of fields, resolutions and time zones that the host knows, one
// data parser with its record parser and multipliers, and starts the sessions:
// conversions and enumerations, whose results reach the host's IqrlTabulexDataSink.
//
// For one thread, the host's, which must pump its messages while a session runs
// (NativeHost.h). Unless an operation says otherwise, S_OK is the only success, a null pointer
// gives E_POINTER, and an object without a data parser E_NOINTERFACE.
//
// Host ids of fields: 0 undefined, 31 Symbol, 421 Date, 422 Time, 232 Open, 233 High,
// 234 Low, 235 Close and Price, 249 Volume and Total Volume, 238 Up Volume, 239 Down
// Volume, 248 Unchanged Volume, 321 Up Ticks, 322 Down Ticks, 323 Unchanged Ticks,
// 324 Total Ticks, 253 Open Interest. On the way in 235 is Close and 249 is Volume.
//
// Host ids of resolutions: 0 none, 1 ticks and bars of ticks, 8 bars of a count, 9
// seconds, 2 minutes, 4 days, 5 weeks.
#pragma once

#include "platform/component.h"

namespace IQRL_TabulexConverter {

// Dual; dispids in docs/hosting.md and in the dispatch table.
struct IqrlTabulexConvertor : IDispatch
{
    // Opens the import dialog, modal to ParentWindow (0: the thread's active window).
    // Status is VARIANT_TRUE when it was confirmed, VARIANT_FALSE when it was
    // cancelled or can't be shown. Cancelling takes nothing back from the parsers.
    virtual HRESULT STDMETHODCALLTYPE DoAnalyse(VARIANT_BOOL* Status, LONG_PTR ParentWindow) = 0;
    // Converts the whole file to pReceiverSink (an IqrlTabulexDataSink) with a progress
    // box over ParentWindow. Returns at once; Commit or Rollback ends the session. The
    // settings aren't checked, and those of this object may change meanwhile. A failure
    // after the sink was taken also calls Rollback. For a file without a Date column
    // the sink hears nothing, not even an end: look for the column before.
    virtual HRESULT STDMETHODCALLTYPE DoConvert(IDispatch* pReceiverSink,
                                                LONG_PTR ParentWindow) = 0;
    // Delivers each symbol of the file once, in order of first appearance, as a VT_BSTR. A
    // null sink gives E_NOINTERFACE.
    virtual HRESULT STDMETHODCALLTYPE DoEnumSymbols(IDispatch* pReceiverSink) = 0;
    // Checks the settings, reports a fault to OnError of the sink, and converts Count
    // records from position StartPos without a progress box. Bad lines are skipped
    // silently.
    virtual HRESULT STDMETHODCALLTYPE DoConvertPortion(LONG_PTR hWnd, IDispatch* pReceiverSink,
                                                       ULONGLONG StartPos, ULONGLONG Count) = 0;
    // Reads the columns from the parser again; call it after SetField.
    virtual HRESULT STDMETHODCALLTYPE InitFieldsInfo() = 0;
    // Ends the session that was started with this very pointer. A conversion is rolled
    // back, an enumeration ends without a further call. S_FALSE: no such session runs.
    virtual HRESULT STDMETHODCALLTYPE Unadvise(IDispatch* pReceiverSink) = 0;
    // An independent object with the same lists and settings on the same open file.
    // E_INVALIDARG without a file.
    virtual HRESULT STDMETHODCALLTYPE Clone(IDispatch** newObj) = 0;
    // Checks the settings before a conversion. S_OK: good. S_FALSE: a fault was reported to
    // OnError of pEventSink, on this thread, or in a message box owned by hWnd.
    virtual HRESULT STDMETHODCALLTYPE CheckConverterSettings(LONG_PTR hWnd,
                                                             IDispatch* pEventSink) = 0;
    // Takes both choices if they fit the file; S_FALSE and no change where they don't.
    virtual HRESULT STDMETHODCALLTYPE SelectResolution(LONG ResolutionSizeTemplate,
                                                       LONG ResolutionTemplate) = 0;

    // ---- the host's lists; a name that is in the list already gives E_UNEXPECTED

    virtual HRESULT STDMETHODCALLTYPE AddFieldTemplate(LONG Id, BSTR FieldName) = 0;
    // Id is the host's. A second one for id 1 stands for bars of ticks; a third renames
    // the second. An unknown id renames the row for none.
    virtual HRESULT STDMETHODCALLTYPE AddResolutionTemplate(LONG Id, BSTR ResolutionName) = 0;
    virtual HRESULT STDMETHODCALLTYPE AddTimeZoneTemplate(LONG Id, BSTR TimeZoneName) = 0;

    // ---- columns, from 0; E_INVALIDARG for one that the file lacks

    virtual HRESULT STDMETHODCALLTYPE GetField(LONG Index, LONG* Id, BSTR* FieldTemplate) = 0;
    // Id 0 takes the column's type away; the template is then not looked at.
    virtual HRESULT STDMETHODCALLTYPE SetField(LONG Index, LONG Id, BSTR FieldTemplate) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_FieldCount(LONG* pVal) = 0;

    // ---- the parser and its settings

    // The object's own IDataParser.
    virtual HRESULT STDMETHODCALLTYPE get_DataParser(IDispatch** pVal) = 0;
    // VARIANT_TRUE when the file has what the chosen resolution needs.
    virtual HRESULT STDMETHODCALLTYPE get_ValidResolution(VARIANT_BOOL* pVal) = 0;
    // Put opens the file and finds its layout. S_FALSE: it can't be opened.
    virtual HRESULT STDMETHODCALLTYPE get_FileName(BSTR* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_FileName(BSTR newVal) = 0;
    // The user's settings as one string for the host to keep: templates of dates and
    // times, and the folder. Put adds to what is there; E_INVALIDARG for a text that is
    // no such document.
    virtual HRESULT STDMETHODCALLTYPE get_Environment(BSTR* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_Environment(BSTR newVal) = 0;
    // Choices by id. Get gives -1 and S_FALSE where none is made; put gives
    // E_UNEXPECTED for an id that isn't in the list.
    virtual HRESULT STDMETHODCALLTYPE get_FieldTemplate(LONG* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_FieldTemplate(LONG newVal) = 0;
    // Only records of this symbol are converted; empty for all.
    virtual HRESULT STDMETHODCALLTYPE get_SymbolName(BSTR* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_SymbolName(BSTR newVal) = 0;
    // Id 1 with a size of 1 is ticks, with any other size bars of ticks: put the size
    // first.
    virtual HRESULT STDMETHODCALLTYPE get_ResolutionTemplate(LONG* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_ResolutionTemplate(LONG newVal) = 0;
    // In units of the resolution: 5 for bars of five minutes.
    virtual HRESULT STDMETHODCALLTYPE get_ResolutionSizeTemplate(LONG* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_ResolutionSizeTemplate(LONG newVal) = 0;
    // A choice for the host to read; times aren't converted.
    virtual HRESULT STDMETHODCALLTYPE get_TimeZoneTemplate(LONG* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_TimeZoneTemplate(LONG newVal) = 0;
    // Import range, both ends inclusive: VT_DATE. Put gives S_FALSE when it was moved
    // to an end of the file's own range.
    virtual HRESULT STDMETHODCALLTYPE get_StartDateTime(VARIANT* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_StartDateTime(VARIANT newVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_EndDateTime(VARIANT* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_EndDateTime(VARIANT newVal) = 0;
    // Codes of transforms: 0x01 for times 1000000, 0x40 to 0x44 for times 100000 down to
    // 10, 0x45 for none, 0x49 for a tenth, 0x4D to 0x50 for a hundredth to a 100000th, 0x02
    // for a millionth. E_INVALIDARG for any other.
    virtual HRESULT STDMETHODCALLTYPE get_PriceMultiplier(BYTE* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_PriceMultiplier(BYTE newVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_VolumeMultiplier(BYTE* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_VolumeMultiplier(BYTE newVal) = 0;
    // 0 or 1, for the dialog. S_FALSE when it was so already; DISP_E_TYPEMISMATCH for
    // any other value.
    virtual HRESULT STDMETHODCALLTYPE put_Mode(LONG newVal) = 0;
    // Forgets the file's name, and after a DoConvert lets go of the file too, so that a
    // later FileName opens it again. Sessions that still read the file keep it.
    virtual HRESULT STDMETHODCALLTYPE ReleaseFile() = 0;
};

} // namespace IQRL_TabulexConverter

// {4C04A371-64F5-4E47-BB63-FDC6A6BD92E5}
template <>
inline constexpr GUID iid_of<IQRL_TabulexConverter::IqrlTabulexConvertor> = {
    0x4C04A371, 0x64F5, 0x4E47, {0xBB, 0x63, 0xFD, 0xC6, 0xA6, 0xBD, 0x92, 0xE5}};
