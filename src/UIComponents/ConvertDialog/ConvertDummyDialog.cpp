// Order matters while the dialog opens: the panes come from top to bottom, everything is off
// until the control has read a file, and the control comes when both grids are there.

#include "src/UIComponents/ConvertDialog/ConvertDummyDialog.h"

#include "diagnostics/FaultmereClient.h"
#include "src/UIComponents/controls/FolderList.h"
#include "src/UIComponents/views/GuardedEvent.h"

using namespace IQRL_TabulexConverter;

namespace Hesperon::specifics::UILayer {

CConvertDummyDialog::CConvertDummyDialog(const SConvertDialogParams& params)
    : m_sResolution(params.sResolution), m_sField(params.sField), m_sTimeZone(params.sTimeZone),
      m_nResolutionSize(params.nResolutionSize), m_sFolder(params.sFolder), m_params(params),
      m_convertCtrl(params, *this), m_filePicker(params, &m_convertCtrl),
      m_fileContentPane(&m_convertCtrl), m_dataSettingPane(params, m_convertCtrl)
{}

LONG CConvertDummyDialog::DoModal(LONG_PTR hwndParent)
{
    return DialogViews().Run(DialogImport, hwndParent, *this);
}

// ---- opening

// A failure leaves the dialog open with everything off, so that the user can still cancel.
void CConvertDummyDialog::OnOpen(IDialogView& view)
{
    m_pView = &view;
    GuardedEvent([&] { MakePanes(); });
    const HRESULT hr = m_convertCtrl.Initialize();
    view.Centre();
    OnResize();
    FaultmereUtil::Assert(hr == S_OK, "((HRESULT)0L)==hr__");
}

// A pane that can't be made leaves a hole.
void CConvertDummyDialog::MakePanes()
{
    m_filePicker.Create(*m_pView);
    m_layout.Add(m_filePicker.View(), Layout::OrdinalFilePicker);
    m_fileContentPane.Create(*m_pView);
    m_layout.Add(m_fileContentPane.View(), Layout::OrdinalFileContent);
    m_convertCtrl.SetFileContentGrid(m_fileContentPane.GetGrid().get());
    m_dataSettingPane.Create(*m_pView);
    m_layout.Add(m_dataSettingPane.View(), Layout::OrdinalSettings);
    SetControlsState(StateNone);
    m_dataDecodePane.Create(*m_pView);
    const com_ptr<CQRLDataGridViewCtrl> pGrid = m_dataDecodePane.GetGrid();
    m_convertCtrl.SetDataGrid(pGrid.get());
    if (pGrid)
        pGrid->ListenToPlainTypes([this] { m_convertCtrl.OnPlainTypeChosen(); });
    m_layout.Add(m_dataDecodePane.View(), Layout::OrdinalDecode);
}

void CConvertDummyDialog::OnResize()
{
    GuardedEvent([&] {
        if (m_pView)
            m_layout.Apply(m_pView->ClientArea());
    });
}

// ---- what the user does

// A button of a pane, reached by the keyboard, also comes here. The check may wait for the user,
// and the view may go meanwhile.
void CConvertDummyDialog::OnClick(LONG nControl)
{
    if (!m_pView)
        return;
    if (nControl == ImportCancel)
        m_pView->End(kDialogCancel);
    else if (nControl != ImportOk)
        m_dataSettingPane.OnClick(nControl);
    else if (CheckSettings() == S_OK && m_pView)
        m_pView->End(kDialogOk);
}

HRESULT CConvertDummyDialog::CheckSettings()
{
    if (!m_params.pDataParser || !m_params.pEventSink)
        return E_FAIL;
    return m_params.pDataParser->CheckConverterSettings(m_pView->Window(),
                                                        m_params.pEventSink.get());
}

// Enter on the button checks the settings too, and on purpose doesn't close.
void CConvertDummyDialog::OnDefaultCommand()
{
    if (!m_pView)
        return;
    GuardedEvent([&] {
        if (m_pView->Focus() == ImportOk)
            CheckSettings();
        else if (m_dataSettingPane.ApplyFocusedEdit() != 0)
            m_filePicker.OpenSelection();
    });
}

// ---- closing

// Once: what is told later has no controls to read.
void CConvertDummyDialog::OnDestroy()
{
    if (!m_pView)
        return;
    GuardedEvent([&] { ReadChoices(); });
    m_convertCtrl.Uninitialize();
    m_dataDecodePane.Close();
    m_dataSettingPane.Close();
    m_fileContentPane.Close();
    m_filePicker.Close();
    m_layout.Clear();
    m_pView = nullptr;
}

void CConvertDummyDialog::ReadChoices()
{
    constexpr std::size_t kLongestRoot = 3; // as "C:\", which says nothing
    Bstr sFile;
    if (const auto pParser = m_convertCtrl.DataParser())
        pParser->get_FileName(sFile.put());
    if (sFile.view().size() > kLongestRoot)
        m_sFolder = IsFolder(sFile.view()) ? sFile.view() : FolderPart(sFile.view());
    m_sField = m_dataSettingPane.Field();
    m_nResolutionSize = m_dataSettingPane.ResolutionSize();
    m_sResolution = m_dataSettingPane.Resolution();
    m_sTimeZone = m_dataSettingPane.TimeZone();
}

// ---- IUIControls: the code page is in the pane of the file's lines, all else in the settings

HRESULT CConvertDummyDialog::SetFileLanguage(ULONG nCodePage)
{
    return m_fileContentPane.SetFileLanguage(nCodePage);
}

HRESULT CConvertDummyDialog::SetControlsState(LONG nState)
{
    m_fileContentPane.EnableLanguage(nState == StateUnreadable || nState == StateReady);
    const HRESULT hr = m_dataSettingPane.SetControlsState(nState);
    if (FAILED(hr))
        return hr;
    m_pView->SetEnabled(ImportOk, nState == StateReady);
    return S_OK;
}

HRESULT CConvertDummyDialog::GetDateFirst(VARIANT* pDate)
{
    return m_dataSettingPane.GetDateFirst(pDate);
}

HRESULT CConvertDummyDialog::GetDateLast(VARIANT* pDate)
{
    return m_dataSettingPane.GetDateLast(pDate);
}

HRESULT CConvertDummyDialog::GetStartRow(ULONG* pnRow)
{
    return m_dataSettingPane.GetStartRow(pnRow);
}

HRESULT CConvertDummyDialog::SetDateFirst(const VARIANT& vDate)
{
    return m_dataSettingPane.SetDateFirst(vDate);
}

HRESULT CConvertDummyDialog::SetDateFormat(LONG nMode)
{
    return m_dataSettingPane.SetDateFormat(nMode);
}

HRESULT CConvertDummyDialog::SetDateLast(const VARIANT& vDate)
{
    return m_dataSettingPane.SetDateLast(vDate);
}

HRESULT CConvertDummyDialog::SetUseBarsEndTime(bool bChecked)
{
    return m_dataSettingPane.SetUseBarsEndTime(bChecked);
}

HRESULT CConvertDummyDialog::SetStartRow(ULONG nRow)
{
    return m_dataSettingPane.SetStartRow(nRow);
}

HRESULT CConvertDummyDialog::SetMultiPrice(const OLECHAR* pszName)
{
    return m_dataSettingPane.SetMultiPrice(pszName);
}

HRESULT CConvertDummyDialog::SetMultiVolume(const OLECHAR* pszName)
{
    return m_dataSettingPane.SetMultiVolume(pszName);
}

HRESULT CConvertDummyDialog::SetResolution(ULONG nSize, ULONG nIndex)
{
    return m_dataSettingPane.SetResolution(nSize, nIndex);
}

HRESULT CConvertDummyDialog::ShowUseBarsEndTime(bool bShow)
{
    return m_dataSettingPane.ShowUseBarsEndTime(bShow);
}

HRESULT CConvertDummyDialog::ResetStartRow()
{
    return m_dataSettingPane.ResetStartRow();
}

} // namespace Hesperon::specifics::UILayer
