// CConvertCtrl: the mediator of the import dialog, where what the user chooses meets the
// parsers.
//
// The panes report each action through the three sinks. The control changes the data parser and
// the record parser at once, and pushes the result back through IUIControls; the grids show it
// at their next paint. Nothing is taken back when the dialog is cancelled.
//
// A dialog's life: the two grids are handed over, Initialize, any number of events,
// Uninitialize. All of it on the dialog's thread, but for OnRecordCountChanged, which posts to
// that thread.
#pragma once

#include <atomic>

#include "LocalRPC/ActiveObject.h"
#include "interfaces/IQRLDataGridViewCtrl.h"
#include "interfaces/IRecordParser.h"
#include "src/UIComponents/ConvertDialog/ConvertDialogParams.h"
#include "src/UIComponents/Windowless/DataChangeEvent.h"
#include "src/UIComponents/Windowless/FileEventHandler.h"
#include "src/UIComponents/Windowless/UIControls.h"

namespace Hesperon::specifics::DataFlow {

class CConvertCtrl final : public notify::IFileEventSink,
                           public notify::IDataSettingEventSink,
                           public notify::IDataChangeEventSink
{
public:
    using IDataParser = IQRL_TabulexConverter::IDataParser;
    using IRecordParser = IQRL_TabulexConverter::IRecordParser;
    using Grid = IQRL_TabulexConverter::IQRLDataGridViewCtrl;

    // Both outlive the control.
    CConvertCtrl(const SConvertDialogParams& params, UILayer::IUIControls& controls);
    ~CConvertCtrl();
    CConvertCtrl(const CConvertCtrl&) = delete;
    CConvertCtrl& operator=(const CConvertCtrl&) = delete;

    // E_UNEXPECTED, and no change, for null.
    HRESULT SetFileContentGrid(com_ptr<Grid> pGrid); // shows raw lines
    HRESULT SetDataGrid(com_ptr<Grid> pGrid);        // shows records

    // After the panes have been made. Takes the parser of the parameters, and shows its file if
    // it has one. E_UNEXPECTED without a parser.
    HRESULT Initialize();
    // No event comes from a parser any more. The grids keep what they have.
    void Uninitialize();

    // The parser under edit; null before Initialize and after Uninitialize.
    com_ptr<IDataParser> DataParser() const { return m_pDataParser; }
    // A column has got a type without templates, which sets the range of dates back.
    void OnPlainTypeChosen() { __sync_dates(); }

    // ---- IFileEventSink

    void OnFileSelected(const OLECHAR* pszPath) override;
    void OnRecordCountChanged() override; // on any thread

    // ---- IDataSettingEventSink

    void OnFileLanguageChanged(ULONG nCodePage) override;
    void OnDateFirstChanged(const VARIANT& vDate) override;
    void OnDateLastChanged(const VARIANT& vDate) override;
    void OnMultiPriceChanged(const OLECHAR* pszName) override;
    void OnMultiVolumeChanged(const OLECHAR* pszName) override;
    void OnResolutionSizeChanged(const LONG nSize) override;
    void OnResolutionTypeChanged(const int nIndex) override;
    void OnDelimitersClicked() override;
    void OnStartRowChanged(const ULONG nRow) override;
    void OnUseBarsEndTimeChanged(bool bChecked) override;

    // ---- IDataChangeEventSink

    void OnDataChanged() override;

private:
    void __init_parsers();
    HRESULT __init_events();
    HRESULT __init_parser_side(VARIANT_BOOL& bHasHeader);
    void __show_settings(VARIANT_BOOL bHasHeader);
    void __init_grids();
    void __take_record_parser();
    void __show_multipliers();
    template <class Extractor>
    void __show_multiplier(HRESULT (UILayer::IUIControls::*setName)(const OLECHAR*));
    void __open_text_parser(BSTR bsPath);

    void __attach_views(int nAttempt);
    bool __create_data_columns();
    void __hand_count_to_text_grid();
    void __post_attach(int nAttempt);

    HRESULT __sync_dates();
    HRESULT __sync_controls();
    HRESULT __sync_resolution(LONG nResolution);
    HRESULT __sync_date_format(LONG nResolution);
    void __refresh();

    void __take_size_of_name(string_view_t sName);
    void __push_dates();
    void __apply_start_row(const ULONG nRow);
    void __skip_lines(ULONG nRow, bool bHasHeader);
    void __show_file_dates();
    void __recreate_columns(VARIANT_BOOL bHasHeader, ULONG nLinesToSkip);
    HRESULT __change_delimiters();
    HRESULT __apply_delimiters(LONG nDividers);
    HRESULT __apply_shown_row();
    HRESULT __push_shown_dates();
    HRESULT __retype_columns(LONG& nResolution);
    // What the parser has, as it is shown; the failure of the first read that fails.
    HRESULT __shown_row(ULONG& nRow);
    HRESULT __show_start_row();

    const SConvertDialogParams& m_pParams;
    com_ptr<Grid> m_pTextGrid;
    com_ptr<Grid> m_pDataGrid;
    com_ptr<IDataParser> m_pTextParser; // the control's own, for the raw lines
    com_ptr<IDataParser> m_pDataParser;
    com_ptr<IRecordParser> m__recParser; // that of m_pDataParser
    com_ptr<CFileEventHandler> m_pFileEvents;
    com_ptr<CDataChangeEvent> m_pDataEvents;
    bool m_bViewsAttached = false;             // both grids show the current file
    bool m_bStartRowTyped = false;             // since the current file was chosen
    std::atomic<bool> m_bAttachPosted = false; // a posted __attach_views hasn't begun
    LocalRPC::CActiveObject_WndMsg m_worker;
    UILayer::IUIControls& m_pControls;
};

} // namespace Hesperon::specifics::DataFlow
