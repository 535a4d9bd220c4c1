// CQRLDataGridViewCtrl: the preview of a file in a list, over a view that draws it.
//
// In text mode it shows the lines of the file, in one column and without a heading. Otherwise it
// shows the records, one column for each field, and the heading of a column opens the menu in
// which the user gives the column its type. It holds no rows: the view says which ones it is
// about to draw, and they are parsed then. IQRLDataGridViewCtrl.h documents the operations.
//
// A grid without a view is a control without a window: it keeps what it is told, and shows it
// when a view is attached.
//
// Threads: all calls come on the dialog's thread but RecordCountChange, which the file's worker
// makes. The last Release may come on that worker, too. Then the view has gone already: no view
// is called when a grid goes.
//
// Lifetime: a data parser that is put holds the grid, and the grid holds the parser, until the
// view goes (OnClose). A grid that never had a view is let go of by putting null.
#pragma once

#include <functional>

#include "interfaces/IDataChangeSink.h"
#include "interfaces/IDataParser.h"
#include "interfaces/IFileHandlerEvents.h"
#include "interfaces/IGridView.h"
#include "interfaces/IQRLDataGridViewCtrl.h"
#include "interfaces/IRecordParser.h"
#include "module/ComObject.h"
#include "module/OutValue.h"
#include "platform/threads/CriticalSection.h"
#include "src/UIComponents/controls/ColumnChange.h"
#include "src/UIComponents/controls/GridPage.h"
#include "src/UIComponents/controls/GridTint.h"

namespace Hesperon::specifics {

class CQRLDataGridViewCtrl
    : public ComObject<CQRLDataGridViewCtrl, Dual<IQRL_TabulexConverter::IQRLDataGridViewCtrl>,
                       Dual<IQRL_TabulexConverter::IFileHandlerEvents>>,
      private IQRL_TabulexConverter::IGridEvents
{
public:
    using OLE_COLOR = IQRL_TabulexConverter::OLE_COLOR;

    // ---- the view

    // What a view of this grid calls. A view may be made with it before it is attached.
    IQRL_TabulexConverter::IGridEvents& Events() { return *this; }
    // The view from now on until its OnClose; null for none.
    void Attach(IQRL_TabulexConverter::IGridView* pView);
    // Places the view, if there is one.
    void Move(const IQRL_TabulexConverter::ControlPlace& place);
    // Called when the user has given a column a type without templates, of which no sink hears.
    void ListenToPlainTypes(std::function<void()> listener);

    // ---- IQRLDataGridViewCtrl: stock properties

    HRESULT STDMETHODCALLTYPE put_AutoSize(VARIANT_BOOL newVal) override;
    HRESULT STDMETHODCALLTYPE get_AutoSize(VARIANT_BOOL* pVal) override;
    HRESULT STDMETHODCALLTYPE put_BackColor(OLE_COLOR newVal) override;
    HRESULT STDMETHODCALLTYPE get_BackColor(OLE_COLOR* pVal) override;
    HRESULT STDMETHODCALLTYPE put_BorderStyle(LONG newVal) override;
    HRESULT STDMETHODCALLTYPE get_BorderStyle(LONG* pVal) override;
    HRESULT STDMETHODCALLTYPE put_BorderWidth(LONG newVal) override;
    HRESULT STDMETHODCALLTYPE get_BorderWidth(LONG* pVal) override;
    HRESULT STDMETHODCALLTYPE put_Enabled(VARIANT_BOOL newVal) override;
    HRESULT STDMETHODCALLTYPE get_Enabled(VARIANT_BOOL* pVal) override;
    HRESULT STDMETHODCALLTYPE put_TabStop(VARIANT_BOOL newVal) override;
    HRESULT STDMETHODCALLTYPE get_TabStop(VARIANT_BOOL* pVal) override;

    // ---- IQRLDataGridViewCtrl

    HRESULT STDMETHODCALLTYPE get_DataParser(IDispatch** pVal) override;
    HRESULT STDMETHODCALLTYPE put_DataParser(IDispatch* newVal) override;
    HRESULT STDMETHODCALLTYPE NotifySourceDetach() override;
    HRESULT STDMETHODCALLTYPE get_TextMode(VARIANT_BOOL* pVal) override;
    HRESULT STDMETHODCALLTYPE put_TextMode(VARIANT_BOOL newVal) override;
    HRESULT STDMETHODCALLTYPE CreateFields() override;
    HRESULT STDMETHODCALLTYPE put_oncomplexfieldchange(VARIANT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Refresh() override;
    HRESULT STDMETHODCALLTYPE put_DataChangeSink(IDispatch* newVal) override;

    // ---- IFileHandlerEvents

    // Has the view show as many rows as there are records by now, unless fewer than 100 lines
    // have come since the last time. From any thread.
    HRESULT STDMETHODCALLTYPE RecordCountChange(ULONGLONG nNewCount,
                                                VARIANT_BOOL bComplete) override;
    HRESULT STDMETHODCALLTYPE PutData(VARIANT, ULONGLONG, ULONGLONG) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE ProcessRecord(ULONGLONG, BSTR, VARIANT_BOOL) override { return S_OK; }

private:
    using IDataParser = IQRL_TabulexConverter::IDataParser;
    using IRecordParser = IQRL_TabulexConverter::IRecordParser;

    // ---- IGridEvents

    void OnRange(LONG nFrom, LONG nTo) override;
    void CellText(LONG nRow, LONG nColumn, OLECHAR* pszText, LONG nMost) override;
    ULONG RowColour(LONG nRow) override;
    bool IsImported(LONG nRow) override;
    void OnHeaderPress(LONG nColumn) override;
    void OnClose() override;

    // ---- parsers and columns (QRLDataGridViewCtrl.cpp)

    // By which the data parser knows this grid as a listener.
    IDispatch* ListenerKey()
    {
        return static_cast<IQRL_TabulexConverter::IFileHandlerEvents*>(this);
    }
    HRESULT TakeParsers(IDispatch* pParser);
    void HoldParser(com_ptr<IDataParser> pParser);
    void OnCreateFields();
    void MakeFieldColumns();
    void MakeTextColumn();
    void ShowHeader(bool bShow);

    // ---- the menu of a heading (QRLDataGridViewCtrlEvents.cpp)

    HRESULT ChooseField(LONG nColumn);
    bool Change(ColumnChange& change, const FieldMenu& menu, const FieldChoice& choice);

    // ---- members; the lock is a leaf, and the dialog's thread reads without it

    CriticalSection m_lock;
    IQRL_TabulexConverter::IGridView* m_pView = nullptr; // written under the lock
    com_ptr<IDataParser> m_pDataParser;                  // written under the lock
    ULONGLONG m_nLastCount = 0; // lines at the last accepted RecordCountChange; under the lock

    com_ptr<IRecordParser> m_pRecordParser; // of m_pDataParser
    com_ptr<IQRL_TabulexConverter::IDataChangeSink> m_pDataChangeSink;
    std::function<void()> m_fnPlainType; // may be empty
    GridPage m_page;
    GridTint m_tint;
    bool m_bTextMode = false;
    bool m_bEnabled = true;

    // Kept for a container.
    bool m_bAutoSize = false, m_bTabStop = false;
    OLE_COLOR m_clrBack = 0;
    LONG m_nBorderStyle = 0, m_nBorderWidth = 0;
};

} // namespace Hesperon::specifics
