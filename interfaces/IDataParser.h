// IDataParser: one quote file joined to one record parser.
//
// Positions count data records from 0; lines count the lines of the file with
// content from 0. In normal direction the line of position n is HeaderOffset + n
// + (HasHeader ? 1 : 0); in inverted direction it is the file's line count - n - 1.
//
// Safe from any thread; every operation takes the object's lock. Unless an operation says
// otherwise, S_OK is the only success, and a null [out] pointer gives E_POINTER.
#pragma once

#include "platform/component.h"

namespace IQRL_TabulexConverter {

// Dual; dispids in docs/hosting.md and in the dispatch table.
struct IDataParser : IDispatch
{
    // ---- operations

    // Judges the settings before a conversion, without reading the file. S_OK: good.
    // S_FALSE: a fault was reported through IDataParserEvents::OnError of the sink or,
    // if that fails, in a message box owned by hWnd. E_NOINTERFACE: no such sink.
    virtual HRESULT STDMETHODCALLTYPE CheckConverterSettings(LONG_PTR hWnd,
                                                             IDispatch* pEventSink) = 0;
    // Reports each symbol of the file once to the sink.
    virtual HRESULT STDMETHODCALLTYPE StartEnumSymbols(IDispatch* pEventSink,
                                                       ULONG_PTR nTranId) = 0;
    // A new parser with the same settings on the same open file.
    virtual HRESULT STDMETHODCALLTYPE Clone(IDispatch** newObj) = 0;
    // Checks the settings, then converts Count records from position StartPos. A
    // Count of 0 or a start beyond the end of a complete file ends well at once.
    virtual HRESULT STDMETHODCALLTYPE StartConvertPortion(LONG_PTR hWnd, IDispatch* pEventSink,
                                                          ULONGLONG StartPos, ULONGLONG Count,
                                                          ULONG_PTR nTranId) = 0;
    // Data records known so far (lines less header); bComplete says whether these
    // are all. E_FAIL without a file.
    virtual HRESULT STDMETHODCALLTYPE GetCount(ULONGLONG* nCount, VARIANT_BOOL* bComplete) = 0;
    // A block of parsed records for display: VT_ARRAY|VT_VARIANT over two
    // dimensions, record (from nFrom) by field (from 0). Fields that don't parse
    // hold their text.
    virtual HRESULT STDMETHODCALLTYPE ParseRecords(VARIANT* v, ULONG nFrom, ULONG nCount) = 0;
    // Reads dates and direction again; with FindResolution also infers the layout
    // and the resolution again.
    virtual HRESULT STDMETHODCALLTYPE RefreshDateInfo(VARIANT_BOOL FindResolution) = 0;
    // Reads the file's size again, and with Erase forgets its line index; then as
    // RefreshDateInfo without inference.
    virtual HRESULT STDMETHODCALLTYPE InvalidateFileInfo(VARIANT_BOOL Erase) = 0;
    // Where a line lies in the file, from 0 to 1, to the nearest 1024 lines.
    virtual HRESULT STDMETHODCALLTYPE GetRelativePos(ULONGLONG nPosition, FLOAT* fRelative) = 0;
    // Converts the whole file to pEventSink (an IDataParserEvents) on the file's
    // worker thread; returns at once. nTranId is the number under which the run can
    // be cancelled.
    virtual HRESULT STDMETHODCALLTYPE StartConversion(IDispatch* pEventSink, ULONG_PTR nTranId) = 0;
    // Ends a running conversion with EndTransaction(VARIANT_FALSE).
    virtual HRESULT STDMETHODCALLTYPE AbortConversion() = 0;
    // Registers an IFileHandlerEvents for RecordCountChange.
    virtual HRESULT STDMETHODCALLTYPE AddFileEventHandler(IDispatch* pEventHandler) = 0;
    virtual HRESULT STDMETHODCALLTYPE RemoveFileEventHandler(IDispatch* pEventHandler) = 0;
    // Date and time of the record at position 0, and of the last record: VT_DATE.
    virtual HRESULT STDMETHODCALLTYPE GetMinDateTime(VARIANT* vDate) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetMaxDateTime(VARIANT* vDate) = 0;

    // ---- properties

    // Text of the record at Position, and of the file's last record.
    virtual HRESULT STDMETHODCALLTYPE get_CurrentRecord(BSTR* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_LastRecord(BSTR* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_FieldCount(ULONG* pVal) = 0;
    // Putting a name opens the file and works out its layout. S_FALSE: the file
    // can't be opened, and the parser then has none.
    virtual HRESULT STDMETHODCALLTYPE get_FileName(BSTR* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_FileName(BSTR newVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Position(ULONGLONG* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_Position(ULONGLONG newVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_RecordParser(IDispatch** pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_RecordParser(IDispatch* newVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_HasHeader(VARIANT_BOOL* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_HasHeader(VARIANT_BOOL newVal) = 0;
    // Number of lines before the data, or before the header if there is one.
    virtual HRESULT STDMETHODCALLTYPE get_HeaderOffset(ULONG* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_HeaderOffset(ULONG newVal) = 0;
    // True for a file whose last line is its earliest record. Putting VARIANT_TRUE
    // while it is set switches back.
    virtual HRESULT STDMETHODCALLTYPE get_InvertedDirection(VARIANT_BOOL* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_InvertedDirection(VARIANT_BOOL newVal) = 0;
    // Date range of a conversion, VT_DATE. A put outside the file's own range is
    // clamped to it and gives S_FALSE.
    virtual HRESULT STDMETHODCALLTYPE get_StartDateTime(VARIANT* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_StartDateTime(VARIANT newVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_EndDateTime(VARIANT* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_EndDateTime(VARIANT newVal) = 0;
    // Code page number of the file, 1252 at first. Putting it starts the detection
    // of the layout over; text is read in the process's ANSI code page.
    virtual HRESULT STDMETHODCALLTYPE get_Locale(ULONG* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_Locale(ULONG newVal) = 0;
    // Whether opening a file sets Locale from its bytes.
    virtual HRESULT STDMETHODCALLTYPE get_AutoDetectCodePage(VARIANT_BOOL* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_AutoDetectCodePage(VARIANT_BOOL newVal) = 0;
    // Whether bad lines are dropped without an error call.
    virtual HRESULT STDMETHODCALLTYPE get_DisableErrorNotify(VARIANT_BOOL* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_DisableErrorNotify(VARIANT_BOOL newVal) = 0;
    // Converts only records of this symbol; empty for all. A null put changes nothing.
    virtual HRESULT STDMETHODCALLTYPE get_SymbolName(BSTR* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_SymbolName(BSTR newVal) = 0;

    // Line count estimated from the file's size; OLE_E_BLANK without a file.
    virtual HRESULT STDMETHODCALLTYPE GetApproxCount(ULONGLONG* nCount) = 0;
};

} // namespace IQRL_TabulexConverter

// {520328C9-C10A-462E-9CCF-A15178E753A2}
template <>
inline constexpr GUID iid_of<IQRL_TabulexConverter::IDataParser> = {
    0x520328C9, 0xC10A, 0x462E, {0x9C, 0xCF, 0xA1, 0x51, 0x78, 0xE7, 0x53, 0xA2}};
