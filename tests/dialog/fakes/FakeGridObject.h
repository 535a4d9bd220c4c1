// A grid as the control sees it, without rows.
#pragma once

#include "interfaces/IFileHandlerEvents.h"
#include "interfaces/IQRLDataGridViewCtrl.h"
#include "module/ComObject.h"
#include "platform/values.h"
#include "tests/dialog/fakes/Scripted.h"

namespace dialog_test {

class FakeGridObject
    : public ComObject<FakeGridObject, Dual<IQRL_TabulexConverter::IQRLDataGridViewCtrl>,
                       Dual<IQRL_TabulexConverter::IFileHandlerEvents>>
{
public:
    Script* m_pScript = nullptr;
    std::string m_sName; // "records" or "lines"
    com_ptr<IDispatch> m_pParser;
    com_ptr<IDispatch> m_pSink;
    int m_nCreateFailures = 0; // calls of CreateFields that fail first

    HRESULT STDMETHODCALLTYPE put_AutoSize(VARIANT_BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_AutoSize(VARIANT_BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_BackColor(ULONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_BackColor(ULONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_BorderStyle(LONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_BorderStyle(LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_BorderWidth(LONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_BorderWidth(LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_Enabled(VARIANT_BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Enabled(VARIANT_BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_TabStop(VARIANT_BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_TabStop(VARIANT_BOOL*) override { return E_NOTIMPL; }

    HRESULT STDMETHODCALLTYPE get_DataParser(IDispatch** pVal) override
    {
        *pVal = com_ptr<IDispatch>(m_pParser).detach();
        return m_pParser ? S_OK : E_POINTER;
    }
    HRESULT STDMETHODCALLTYPE put_DataParser(IDispatch* newVal) override
    {
        m_pParser = com_ptr<IDispatch>(newVal);
        return Told("parser");
    }
    HRESULT STDMETHODCALLTYPE NotifySourceDetach() override { return Told("detach"); }
    HRESULT STDMETHODCALLTYPE get_TextMode(VARIANT_BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_TextMode(VARIANT_BOOL newVal) override
    {
        return Told(newVal == VARIANT_TRUE ? "text mode" : "data mode");
    }
    HRESULT STDMETHODCALLTYPE CreateFields() override
    {
        const HRESULT hr = Told("columns");
        return m_nCreateFailures > 0 && m_nCreateFailures-- > 0 ? E_POINTER : hr;
    }
    HRESULT STDMETHODCALLTYPE put_oncomplexfieldchange(VARIANT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Refresh() override { return Told("repaint"); }
    HRESULT STDMETHODCALLTYPE put_DataChangeSink(IDispatch* newVal) override
    {
        m_pSink = com_ptr<IDispatch>(newVal);
        return Told("sink");
    }
    HRESULT STDMETHODCALLTYPE RecordCountChange(ULONGLONG nNewCount,
                                                VARIANT_BOOL bComplete) override
    {
        return Told("count " + std::to_string(nNewCount) + (bComplete ? " complete" : ""));
    }
    HRESULT STDMETHODCALLTYPE PutData(VARIANT, ULONGLONG, ULONGLONG) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE ProcessRecord(ULONGLONG, BSTR, VARIANT_BOOL) override { return S_OK; }

private:
    HRESULT Told(const std::string& sCall) { return m_pScript->Done(m_sName + ": " + sCall); }
};

} // namespace dialog_test
