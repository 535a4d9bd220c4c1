// IRecordParser: turns one text record into typed field values, and works the
// layout (dividers, columns, templates, resolution) out by itself from the first
// record after Reset.
//
// Type ids are 0 to 17 and -1 for an unassigned column, resolution ids 0 to 7;
// both tables stand in docs/templates.md. Type names are the internal ones, such
// as "Up Volume". Fields count from 0 in file order. Safe from any thread.
#pragma once

#include "platform/component.h"

namespace IQRL_TabulexConverter {

// Dual.
struct IRecordParser : IDispatch
{
    // ---- operations

    // Parses a record into the columns. The first one after Reset is not parsed but used
    // to find the layout. At most 511 characters are looked at.
    virtual HRESULT STDMETHODCALLTYPE Parse(BSTR bsRecord) = 0;
    virtual HRESULT STDMETHODCALLTYPE Clone(IDispatch** newObj) = 0;
    // Forgets the layout.
    virtual HRESULT STDMETHODCALLTYPE Reset() = 0;
    // Takes a template that isn't a default one from the list of the column's type.
    virtual HRESULT STDMETHODCALLTYPE RemoveTemplate(ULONG nField, BSTR Template) = 0;
    // Infers layout and resolution from this record and the file of DataParser.
    virtual HRESULT STDMETHODCALLTYPE FindResolution(BSTR bsRecord) = 0;
    // Compares the record last parsed with the date before it (VT_DATE). S_FALSE: it
    // breaks the order or the resolution, and ResolutionError says how.
    virtual HRESULT STDMETHODCALLTYPE CheckResolution(VARIANT LastDateTime, BSTR* ResolutionError,
                                                      IDispatch* pHost) = 0;
    // Does nothing; S_FALSE. Keeps its place in the interface.
    virtual HRESULT STDMETHODCALLTYPE RecalcResolutionSize() = 0;
    // S_OK if no field of the text looks like data.
    virtual HRESULT STDMETHODCALLTYPE IsHeader(BSTR bsRecord) = 0;
    // S_OK if each field that the resolution needs exists and no type occurs twice.
    virtual HRESULT STDMETHODCALLTYPE IsValidResolution() = 0;
    // The name of an unassigned column, then those of the admitted types:
    // VT_ARRAY|VT_BSTR.
    virtual HRESULT STDMETHODCALLTYPE GetTypeNames(VARIANT* TypeNames) = 0;
    // Value of a field of the record last parsed. S_FALSE: the field doesn't parse, or
    // its value is of another kind than the column's type asks for, and Value is its text.
    virtual HRESULT STDMETHODCALLTYPE GetFieldValue(VARIANT* Value, ULONG nField) = 0;
    // The resolutions that may be inferred: VT_ARRAY|VT_I4 ids and, in the same
    // order, VT_ARRAY|VT_BSTR names, a name optionally followed by "|size".
    virtual HRESULT STDMETHODCALLTYPE SetResolutionTemplates(VARIANT vIDs, VARIANT vNames) = 0;
    // Why a field doesn't parse. S_FALSE: it does.
    virtual HRESULT STDMETHODCALLTYPE GetFieldError(BSTR* bsError, ULONG nField) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetFieldText(BSTR bsRecord, ULONG nField, BSTR* bsField) = 0;
    // First column of a type; 0xFFFFFFFF and S_FALSE if there is none.
    virtual HRESULT STDMETHODCALLTYPE GetFieldIndex(LONG DataType, ULONG* Index) = 0;
    // Templates of "Date" or "Time", then "...": VT_ARRAY|VT_BSTR. Other types
    // succeed and write nothing.
    virtual HRESULT STDMETHODCALLTYPE GetTemplates(VARIANT* Templates, BSTR bsTypeName) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetTemplates(VARIANT Templates, BSTR bsTypeName) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetFieldName(BSTR* bsName, ULONG nIndex) = 0;
    // Sets the column's type by its name; an unknown or null one unassigns it. Then the
    // data parser reads its dates again. E_INVALIDARG, and no reading, for a column that
    // isn't there.
    virtual HRESULT STDMETHODCALLTYPE SetFieldName(ULONG nField, BSTR bsName) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetFieldTemplate(BSTR* bsTemplate, ULONG nField) = 0;
    // For Date and Time; other columns are left alone, with S_OK. The template is cut at
    // 511 characters and joins the list of its type. Then the data parser reads its dates
    // again and, with SmartResolutionEnabled, first infers layout and resolution around
    // all Date and Time columns as they stand.
    virtual HRESULT STDMETHODCALLTYPE SetFieldTemplate(BSTR bsTemplate, ULONG nField) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetFieldType(ULONG nField, LONG* nType) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetFieldType(ULONG nField, LONG nType) = 0;

    // ---- properties

    virtual HRESULT STDMETHODCALLTYPE get_FieldCount(ULONG* pVal) = 0;
    // Date and time of the record last parsed: VT_DATE.
    virtual HRESULT STDMETHODCALLTYPE get_CurrentDateTime(VARIANT* pVal) = 0;
    // Names of the fields that the resolution needs and the file lacks:
    // VT_ARRAY|VT_BSTR.
    virtual HRESULT STDMETHODCALLTYPE get_LackedFields(VARIANT* pVal) = 0;
    // Type name that two columns have; empty if there is none.
    virtual HRESULT STDMETHODCALLTYPE get_DuplicatedField(BSTR* pVal) = 0;
    // The file's data parser and the event handler are not counted: whoever puts
    // them must put null before they are destroyed.
    virtual HRESULT STDMETHODCALLTYPE get_DataParser(IDispatch** pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_DataParser(IDispatch* newVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_EventHandler(IDispatch** pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_EventHandler(IDispatch* newVal) = 0;
    // The template lists as a document that a later put reads back.
    virtual HRESULT STDMETHODCALLTYPE get_Environment(BSTR* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_Environment(BSTR newVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Resolution(LONG* pVal) = 0;
    // Builds the columns anew with the types that the resolution admits; dates and times
    // stay as they are. The value in force changes nothing; one out of range is
    // E_INVALIDARG. S_FALSE if the first record can't be read or shows no columns: the
    // resolution is set, and there are no columns then.
    virtual HRESULT STDMETHODCALLTYPE put_Resolution(LONG newVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_ResolutionSize(LONG* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_ResolutionSize(LONG newVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_LinesToSkip(ULONG* pVal) = 0;
    // Finds the layout anew from the first record after these lines; dates and times stay
    // as they are, and header lines are no longer looked for. S_FALSE if no columns are
    // found. E_FAIL if the file has no such record: the number is kept, and so are the
    // columns.
    virtual HRESULT STDMETHODCALLTYPE put_LinesToSkip(ULONG newVal) = 0;
    // IValueMultiplier objects; E_NOINTERFACE from a get of none.
    virtual HRESULT STDMETHODCALLTYPE get_PriceMultiplier(IDispatch** pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_PriceMultiplier(IDispatch* newVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_VolumeMultiplier(IDispatch** pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_VolumeMultiplier(IDispatch* newVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_SmartResolutionEnabled(VARIANT_BOOL* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_SmartResolutionEnabled(VARIANT_BOOL newVal) = 0;
    // Mask of the dividers: 1 ':', 2 blank, 4 ',', 8 ';', 16 '|', 32 tab.
    virtual HRESULT STDMETHODCALLTYPE get_FieldDividers(LONG* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_FieldDividers(LONG newVal) = 0;
    // Adds the bar size to each time stamp of minute bars.
    virtual HRESULT STDMETHODCALLTYPE get_UseBarsEndTime(VARIANT_BOOL* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_UseBarsEndTime(VARIANT_BOOL newVal) = 0;

    // ---- later operations

    virtual HRESULT STDMETHODCALLTYPE GetTypeNamesLocalized(VARIANT* TypeNames) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetFieldNameLocalized(BSTR* bsName, ULONG nIndex) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetTemplateItemCount(BSTR bsTypeName, LONG* nCount) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetTemplateItem(BSTR bsTypeName, LONG nIndex, BSTR* bsName,
                                                      LONG* bDefault) = 0;
    // Builds the columns again with the current dividers.
    virtual HRESULT STDMETHODCALLTYPE RecreateFealds() = 0;
};

} // namespace IQRL_TabulexConverter

// {8210A262-F112-4A03-828B-7693B35B57E4}
template <>
inline constexpr GUID iid_of<IQRL_TabulexConverter::IRecordParser> = {
    0x8210A262, 0xF112, 0x4A03, {0x82, 0x8B, 0x76, 0x93, 0xB3, 0x5B, 0x57, 0xE4}};
