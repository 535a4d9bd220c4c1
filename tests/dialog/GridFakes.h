// Parsers of a test, and a grid with a view, for the tests of the preview grid.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <optional>

#include "src/UIComponents/controls/QRLDataGridViewCtrl.h"
#include "src/data/UnofferedRecordParser.h"
#include "src/values/TextArray.h"
#include "tests/dialog/fakes/FakeGrid.h"
#include "tests/support/Objects.h"
#include "tests/support/ReportLog.h"
#include "tests/support/UnusedDataParser.h"

namespace dialog_test {

using Hesperon::specifics::CQRLDataGridViewCtrl;

inline constexpr char kFailed[] = "(((HRESULT)(hr)) >= 0)"; // the assertion of a failed result

// Columns by name, and the date of a record that is a number. Calls that change something are
// written to the log, if there is one.
class GridRecordParser final : public Hesperon::specifics::UnofferedRecordParser<GridRecordParser>
{
public:
    CallLog* m_pLog = nullptr;
    std::vector<std::string> m_columns;                          // localized names of the types
    std::vector<std::string> m_types, m_typeTexts;               // what the resolution admits
    std::map<std::string, std::vector<std::string>> m_templates; // by type, "..." at the end
    std::string m_sTemplate, m_sName;                            // of every column
    std::map<std::string, HRESULT> m_failures;                   // by operation
    std::size_t m_nUnnamed = ~std::size_t(0);                    // column without a name

    HRESULT STDMETHODCALLTYPE Parse(BSTR bsRecord) override
    {
        m_sRecord = Utf8(TextOf(bsRecord));
        return ResultOf("Parse");
    }
    HRESULT STDMETHODCALLTYPE get_CurrentDateTime(VARIANT* pVal) override
    {
        if (const HRESULT hr = ResultOf("CurrentDateTime"); FAILED(hr))
            return hr;
        *pVal = Variant::FromDate(std::stod(m_sRecord)).detach();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_FieldCount(ULONG* pVal) override
    {
        *pVal = static_cast<ULONG>(m_columns.size());
        return ResultOf("FieldCount");
    }
    HRESULT STDMETHODCALLTYPE GetFieldNameLocalized(BSTR* bsName, ULONG nIndex) override
    {
        if (nIndex >= m_columns.size() || nIndex == m_nUnnamed)
            return E_FAIL;
        *bsName = NewBstr(Wide(m_columns[nIndex]));
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetFieldName(BSTR* bsName, ULONG) override
    {
        return Give("FieldName", bsName, m_sName);
    }
    HRESULT STDMETHODCALLTYPE GetFieldTemplate(BSTR* bsTemplate, ULONG) override
    {
        return Give("FieldTemplate", bsTemplate, m_sTemplate);
    }
    HRESULT STDMETHODCALLTYPE GetTypeNames(VARIANT* TypeNames) override
    {
        return Give("TypeNames", TypeNames, m_types);
    }
    HRESULT STDMETHODCALLTYPE GetTypeNamesLocalized(VARIANT* TypeNames) override
    {
        return Give("TypeNamesLocalized", TypeNames, m_typeTexts);
    }
    HRESULT STDMETHODCALLTYPE GetTemplates(VARIANT* Templates, BSTR bsTypeName) override
    {
        const auto found = m_templates.find(Utf8(TextOf(bsTypeName)));
        return found == m_templates.end() ? ResultOf("Templates")
                                          : Give("Templates", Templates, found->second);
    }
    HRESULT STDMETHODCALLTYPE SetFieldName(ULONG nField, BSTR bsName) override
    {
        return Told("SetFieldName", "type " + std::to_string(nField) + " " + Utf8(TextOf(bsName)));
    }
    HRESULT STDMETHODCALLTYPE SetFieldTemplate(BSTR bsTemplate, ULONG nField) override
    {
        return Told("SetFieldTemplate",
                    "template " + std::to_string(nField) + " " + Utf8(TextOf(bsTemplate)));
    }
    HRESULT STDMETHODCALLTYPE put_SmartResolutionEnabled(VARIANT_BOOL newVal) override
    {
        return Told("SmartResolution", newVal == VARIANT_TRUE ? "smart" : "not smart");
    }

private:
    HRESULT ResultOf(const std::string& sOperation) const
    {
        const auto found = m_failures.find(sOperation);
        return found == m_failures.end() ? S_OK : found->second;
    }
    HRESULT Told(const std::string& sOperation, const std::string& sCall)
    {
        if (m_pLog)
            m_pLog->Add("parser: " + sCall);
        return ResultOf(sOperation);
    }
    HRESULT Give(const std::string& sOperation, BSTR* pVal, const std::string& sText) const
    {
        const HRESULT hr = ResultOf(sOperation);
        *pVal = SUCCEEDED(hr) ? NewBstr(Wide(sText)) : nullptr;
        return hr;
    }
    HRESULT Give(const std::string& sOperation, VARIANT* pVal,
                 const std::vector<std::string>& texts) const
    {
        const HRESULT hr = ResultOf(sOperation);
        if (FAILED(hr))
            return hr;
        std::vector<string_t> wide;
        for (const std::string& sText : texts)
            wide.push_back(Wide(sText));
        const std::vector<string_view_t> views(wide.begin(), wide.end());
        *pVal = Hesperon::specifics::TextArray(views).detach();
        return hr;
    }

    std::string m_sRecord;
};

// Records as texts, and pages that the test makes.
class GridDataParser final : public UnusedDataParser<GridDataParser>
{
public:
    com_ptr<IDispatch> m_pRecordParser;
    std::vector<std::string> m_records;
    std::map<std::string, HRESULT> m_failures; // by operation
    std::function<HRESULT(VARIANT*, ULONG nFrom, ULONG nCount)> m_onPage;
    std::optional<ULONGLONG> m_nCount; // none: that of the records
    DATE m_start = 0, m_end = 0;
    std::vector<com_ptr<IDispatch>> m_listeners;
    int m_nAdded = 0;
    std::vector<ULONGLONG> m_positions; // that were put
    std::function<void()> m_onCount;    // called by GetCount

    HRESULT STDMETHODCALLTYPE get_RecordParser(IDispatch** pVal) override
    {
        *pVal = com_ptr<IDispatch>(m_pRecordParser).detach();
        return *pVal ? ResultOf("RecordParser") : E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE AddFileEventHandler(IDispatch* pListener) override
    {
        ++m_nAdded;
        m_listeners.emplace_back(pListener);
        return ResultOf("AddFileEventHandler");
    }
    HRESULT STDMETHODCALLTYPE RemoveFileEventHandler(IDispatch* pListener) override
    {
        std::erase_if(m_listeners, [=](const auto& p) { return p.get() == pListener; });
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetCount(ULONGLONG* nCount, VARIANT_BOOL* bComplete) override
    {
        if (m_onCount)
            m_onCount();
        *nCount = m_nCount.value_or(m_records.size());
        *bComplete = VARIANT_TRUE;
        return ResultOf("GetCount");
    }
    HRESULT STDMETHODCALLTYPE put_Position(ULONGLONG newVal) override
    {
        m_positions.push_back(newVal);
        return newVal < m_records.size() ? ResultOf("Position") : E_FAIL;
    }
    HRESULT STDMETHODCALLTYPE get_CurrentRecord(BSTR* pVal) override
    {
        *pVal = nullptr;
        const HRESULT hr = ResultOf("CurrentRecord");
        if (SUCCEEDED(hr))
            *pVal = NewBstr(Wide(m_records[static_cast<std::size_t>(m_positions.back())]));
        return hr;
    }
    HRESULT STDMETHODCALLTYPE ParseRecords(VARIANT* v, ULONG nFrom, ULONG nCount) override
    {
        return m_onPage ? m_onPage(v, nFrom, nCount) : E_FAIL;
    }
    HRESULT STDMETHODCALLTYPE get_StartDateTime(VARIANT* pVal) override
    {
        *pVal = Variant::FromDate(m_start).detach();
        return ResultOf("StartDateTime");
    }
    HRESULT STDMETHODCALLTYPE get_EndDateTime(VARIANT* pVal) override
    {
        *pVal = Variant::FromDate(m_end).detach();
        return ResultOf("EndDateTime");
    }

private:
    HRESULT ResultOf(const std::string& sOperation) const
    {
        const auto found = m_failures.find(sOperation);
        return found == m_failures.end() ? S_OK : found->second;
    }
};

// A listener of changes that writes its calls down.
class GridDataSink final : public ComObject<GridDataSink, Dual<IDataChangeSink>>
{
public:
    CallLog* m_pLog = nullptr;
    HRESULT STDMETHODCALLTYPE OnDataChanged() override
    {
        m_pLog->Add("sink");
        return S_OK;
    }
};

// A block of values, record by field, from a record on.
inline Variant GridBlock(ULONG nFrom, const std::vector<std::vector<Variant>>& rows)
{
    const ULONG nFields = rows.empty() ? 0 : static_cast<ULONG>(rows[0].size());
    SAFEARRAYBOUND bounds[] = {{static_cast<ULONG>(rows.size()), static_cast<LONG>(nFrom)},
                               {nFields, 0}};
    SAFEARRAY* array = SafeArrayCreate(VT_VARIANT, 2, bounds);
    for (ULONG i = 0; i < rows.size(); ++i)
        for (ULONG k = 0; k < nFields; ++k) {
            LONG indices[] = {static_cast<LONG>(nFrom + i), static_cast<LONG>(k)};
            SafeArrayPutElement(array, indices, const_cast<Variant*>(&rows[i][k]));
        }
    return Variant::FromArray(array, VT_VARIANT);
}

// A grid, and parsers for it. The view is made when a test asks for it, and closed at the end.
class GridTest : public testing::Test
{
protected:
    GridTest()
    {
        EXPECT_EQ(S_OK, CreateObject(m_pGrid));
        EXPECT_EQ(S_OK, CreateObject(m_pParser));
        EXPECT_EQ(S_OK, CreateObject(m_pRecords));
        m_pParser->m_pRecordParser = m_pRecords.get();
    }
    ~GridTest() override
    {
        CloseView();
        m_pGrid->put_DataParser(nullptr);
        m_pParser->m_listeners.clear();
    }

    void MakeView()
    {
        m_pView = std::make_unique<FakeGrid>("grid", &m_log, m_pGrid->Events());
        m_pGrid->Attach(m_pView.get());
        m_log.Take();
    }
    void CloseView()
    {
        if (m_pView)
            m_pGrid->Events().OnClose();
        m_pView.reset();
    }
    void PutParser() { ASSERT_EQ(S_OK, m_pGrid->put_DataParser(m_pParser.get())); }

    CallLog m_log;
    ReportLog m_reports;
    com_ptr<CQRLDataGridViewCtrl> m_pGrid;
    com_ptr<GridDataParser> m_pParser;
    com_ptr<GridRecordParser> m_pRecords;
    std::unique_ptr<FakeGrid> m_pView;
};

} // namespace dialog_test
