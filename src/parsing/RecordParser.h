// CRecordParser: turns one text record into typed field values, and works the
// layout of the file out by itself. See interfaces/IRecordParser.h for the contract.
//
// Threads: each object has one recursive lock, which guards its state. Operations that may
// call the data parser take the data parser's lock first; see LinkLock.h.
#pragma once

#include <memory>

#include "interfaces/IFileHandlerEvents.h"
#include "interfaces/IRecordParser.h"
#include "interfaces/IValueMultiplier.h"
#include "module/ComObject.h"
#include "module/Guarded.h"
#include "src/parsing/IBatchLock.h"
#include "src/parsing/LinkLock.h"
#include "src/parsing/ParserState.h"
#include "src/parsing/detection/LayoutDetection.h"
#include "src/parsing/plan/RowPlan.h"

namespace Hesperon::specifics {

class CRecordParser final
    : public ComObject<CRecordParser, Dual<IQRL_TabulexConverter::IRecordParser>, IBatchLock>,
      private SampleParser
{
public:
    // ---- parsing (RecordParser.cpp)
    HRESULT STDMETHODCALLTYPE Parse(BSTR bsRecord) override;
    HRESULT STDMETHODCALLTYPE Clone(IDispatch** newObj) override;
    HRESULT STDMETHODCALLTYPE Reset() override;
    HRESULT STDMETHODCALLTYPE RecreateFealds() override;
    HRESULT STDMETHODCALLTYPE IsHeader(BSTR bsRecord) override;

    // ---- resolution (RecordParserResolution.cpp)
    HRESULT STDMETHODCALLTYPE FindResolution(BSTR bsRecord) override;
    HRESULT STDMETHODCALLTYPE CheckResolution(VARIANT LastDateTime, BSTR* ResolutionError,
                                              IDispatch* pHost) override;
    HRESULT STDMETHODCALLTYPE RecalcResolutionSize() override;
    HRESULT STDMETHODCALLTYPE IsValidResolution() override;
    HRESULT STDMETHODCALLTYPE SetResolutionTemplates(VARIANT vIDs, VARIANT vNames) override;
    HRESULT STDMETHODCALLTYPE get_LackedFields(VARIANT* pVal) override;
    HRESULT STDMETHODCALLTYPE get_DuplicatedField(BSTR* pVal) override;
    HRESULT STDMETHODCALLTYPE get_Resolution(LONG* pVal) override;
    HRESULT STDMETHODCALLTYPE put_Resolution(LONG newVal) override;
    HRESULT STDMETHODCALLTYPE get_ResolutionSize(LONG* pVal) override;
    HRESULT STDMETHODCALLTYPE put_ResolutionSize(LONG newVal) override;
    HRESULT STDMETHODCALLTYPE get_SmartResolutionEnabled(VARIANT_BOOL* pVal) override;
    HRESULT STDMETHODCALLTYPE put_SmartResolutionEnabled(VARIANT_BOOL newVal) override;
    HRESULT STDMETHODCALLTYPE get_UseBarsEndTime(VARIANT_BOOL* pVal) override;
    HRESULT STDMETHODCALLTYPE put_UseBarsEndTime(VARIANT_BOOL newVal) override;

    // ---- values (RecordParserValues.cpp)
    HRESULT STDMETHODCALLTYPE GetFieldValue(VARIANT* Value, ULONG nField) override;
    HRESULT STDMETHODCALLTYPE GetFieldError(BSTR* bsError, ULONG nField) override;
    HRESULT STDMETHODCALLTYPE GetFieldText(BSTR bsRecord, ULONG nField, BSTR* bsField) override;
    HRESULT STDMETHODCALLTYPE get_CurrentDateTime(VARIANT* pVal) override;
    HRESULT STDMETHODCALLTYPE get_PriceMultiplier(IDispatch** pVal) override;
    HRESULT STDMETHODCALLTYPE put_PriceMultiplier(IDispatch* newVal) override;
    HRESULT STDMETHODCALLTYPE get_VolumeMultiplier(IDispatch** pVal) override;
    HRESULT STDMETHODCALLTYPE put_VolumeMultiplier(IDispatch* newVal) override;

    // ---- columns (RecordParserColumns.cpp)
    HRESULT STDMETHODCALLTYPE GetFieldIndex(LONG DataType, ULONG* Index) override;
    HRESULT STDMETHODCALLTYPE GetFieldName(BSTR* bsName, ULONG nIndex) override;
    HRESULT STDMETHODCALLTYPE GetFieldNameLocalized(BSTR* bsName, ULONG nIndex) override;
    HRESULT STDMETHODCALLTYPE SetFieldName(ULONG nField, BSTR bsName) override;
    HRESULT STDMETHODCALLTYPE GetFieldTemplate(BSTR* bsTemplate, ULONG nField) override;
    HRESULT STDMETHODCALLTYPE SetFieldTemplate(BSTR bsTemplate, ULONG nField) override;
    HRESULT STDMETHODCALLTYPE GetFieldType(ULONG nField, LONG* nType) override;
    HRESULT STDMETHODCALLTYPE SetFieldType(ULONG nField, LONG nType) override;
    HRESULT STDMETHODCALLTYPE get_FieldCount(ULONG* pVal) override;
    HRESULT STDMETHODCALLTYPE get_FieldDividers(LONG* pVal) override;
    HRESULT STDMETHODCALLTYPE put_FieldDividers(LONG newVal) override;

    // ---- types and templates (RecordParserTypes.cpp)
    HRESULT STDMETHODCALLTYPE GetTypeNames(VARIANT* TypeNames) override;
    HRESULT STDMETHODCALLTYPE GetTypeNamesLocalized(VARIANT* TypeNames) override;
    HRESULT STDMETHODCALLTYPE GetTemplates(VARIANT* Templates, BSTR bsTypeName) override;
    HRESULT STDMETHODCALLTYPE SetTemplates(VARIANT Templates, BSTR bsTypeName) override;
    HRESULT STDMETHODCALLTYPE GetTemplateItemCount(BSTR bsTypeName, LONG* nCount) override;
    HRESULT STDMETHODCALLTYPE GetTemplateItem(BSTR bsTypeName, LONG nIndex, BSTR* bsName,
                                              LONG* bDefault) override;
    HRESULT STDMETHODCALLTYPE RemoveTemplate(ULONG nField, BSTR Template) override;
    HRESULT STDMETHODCALLTYPE get_Environment(BSTR* pVal) override;
    HRESULT STDMETHODCALLTYPE put_Environment(BSTR newVal) override;

    // ---- what detection decided (RecordParser.cpp)

    // Off at first. While it is on, each run of the detection replaces the notes.
    void KeepDetectionReport(bool bKeep);
    std::vector<DetectionNote> GetDetectionNotes();

    // ---- IBatchLock
    bool STDMETHODCALLTYPE EnterBatch() override;
    void STDMETHODCALLTYPE LeaveBatch() override { m_cs.unlock(); }
    RowPlan* STDMETHODCALLTYPE PlanRows(std::span<const ULONG> fields) override;

    // ---- links; a data parser and an event handler aren't counted (RecordParser.cpp)
    HRESULT STDMETHODCALLTYPE get_DataParser(IDispatch** pVal) override;
    HRESULT STDMETHODCALLTYPE put_DataParser(IDispatch* newVal) override;
    HRESULT STDMETHODCALLTYPE get_EventHandler(IDispatch** pVal) override;
    HRESULT STDMETHODCALLTYPE put_EventHandler(IDispatch* newVal) override;
    HRESULT STDMETHODCALLTYPE get_LinesToSkip(ULONG* pVal) override;
    HRESULT STDMETHODCALLTYPE put_LinesToSkip(ULONG newVal) override;

private:
    // Runs a body under the lock; an exception becomes a result code.
    template <class Body>
    HRESULT Locked(Body body) noexcept
    {
        return Guarded([&] {
            LockGuard lock(m_cs);
            return body();
        });
    }

    // The same for a body that may call the data parser.
    template <class Body>
    HRESULT LockedWithLink(Body body) noexcept
    {
        return Guarded([&] {
            LinkLock lock(m_cs, m_state.m_pDataParser);
            return body();
        });
    }

    // Runs a body on a column under the lock; hrBadIndex if there is no such column.
    template <class Body>
    HRESULT WithColumn(ULONG nField, HRESULT hrBadIndex, Body body) noexcept
    {
        return Locked([&]() -> HRESULT {
            if (nField >= m_state.m_fields.size())
                return hrBadIndex;
            return body(m_state.m_fields[nField]);
        });
    }

    // SampleParser; Parse goes through it too
    HRESULT ParseSample(string_view_t sRecord) override;
    HRESULT SampleValue(std::size_t nColumn, VARIANT* pValue) override;

    HRESULT Detect(DetectionCause cause, string_view_t sRecord = {});
    HRESULT ValueOf(std::size_t nField, VARIANT* pValue);

    CriticalSection m_cs; // guards all members below
    ParserState m_state;
    DetectionReport m_report;
    IQRL_TabulexConverter::IFileHandlerEvents* m_pEventHandler = nullptr; // not counted
    com_ptr<IQRL_TabulexConverter::IValueMultiplier> m_pPriceMultiplier;  // null: values stay
    com_ptr<IQRL_TabulexConverter::IValueMultiplier> m_pVolumeMultiplier;
    std::unique_ptr<RowPlan> m_pPlan; // of the last batch; null before the first
};

} // namespace Hesperon::specifics
