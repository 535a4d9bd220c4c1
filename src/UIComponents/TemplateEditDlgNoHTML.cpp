#include "src/UIComponents/TemplateEditDlgNoHTML.h"

#include "diagnostics/FaultmereClient.h"
#include "src/UIComponents/WhiteSpace.h"
#include "src/UIComponents/views/GuardedEvent.h"
#include "src/parsing/templates/TextTests.h"

namespace Hesperon::specifics::UILayer {

using namespace IQRL_TabulexConverter;

namespace {

constexpr LONG kRowGap = 3; // between rows, in units of the view

com_ptr<IRecordParser> CloneOfParser(IRecordParser* pParser)
{
    com_ptr<IDispatch> pClone;
    com_ptr<IRecordParser> pCloned;
    if (pParser && SUCCEEDED(pParser->Clone(pClone.put())))
        query(pClone.get(), pCloned);
    return pCloned;
}

} // namespace

CTemplateEditDlgNoHTML::CTemplateEditDlgNoHTML(string_view_t sTypeName,
                                               com_ptr<IRecordParser> pRecordParser, ULONG nField)
    : m_sTypeName(sTypeName), m_bsTypeName(m_sTypeName), m_pRecordParser(std::move(pRecordParser)),
      m_pRecordParserClone(CloneOfParser(m_pRecordParser.get())), m_nField(nField)
{
    FaultmereUtil::Assert(static_cast<bool>(m_pRecordParserClone), "m_pRecordParserClone");
}

LONG CTemplateEditDlgNoHTML::DoModal()
{
    return RunDialog(DialogTemplate, *this);
}

// ---- opening

void CTemplateEditDlgNoHTML::OnOpen(IDialogView& view)
{
    m_pView = &view;
    view.Centre();
    // A row is higher than its text, so that templates, mostly asterisks, don't touch.
    if (const LONG nHeight = view.RowHeight(TemplateList) + kRowGap; nHeight > kRowGap)
        view.SetRowHeight(TemplateList, nHeight);
    GuardedEvent([&] { FillList(); });
    UpdateOk();
    UpdateDelete();
}

void CTemplateEditDlgNoHTML::FillList()
{
    m_pView->ClearRows(TemplateList);
    LONG nCount = 0;
    if (!m_pRecordParserClone ||
        FAILED(m_pRecordParserClone->GetTemplateItemCount(m_bsTypeName.get(), &nCount)))
        return;
    for (LONG n = 0; n < nCount; ++n)
        AddTemplate(n);
}

// The row's data says whether the template is a built-in one.
void CTemplateEditDlgNoHTML::AddTemplate(LONG nItem)
{
    Bstr name;
    LONG bDefault = 0;
    if (SUCCEEDED(m_pRecordParserClone->GetTemplateItem(m_bsTypeName.get(), nItem, name.put(),
                                                        &bDefault)))
        m_pView->AddRow(TemplateList, name.str().c_str(), bDefault);
}

// ---- buttons

void CTemplateEditDlgNoHTML::UpdateOk()
{
    const bool bHasText = !TrimWhiteSpace(m_pView->Text(TemplateText)).empty();
    m_pView->SetEnabled(SmallDialogOk, bHasText);
}

void CTemplateEditDlgNoHTML::UpdateDelete()
{
    const LONG nRow = m_pView->Selected(TemplateList);
    m_pView->SetEnabled(TemplateDelete,
                        nRow != kNoRow && m_pView->RowData(TemplateList, nRow) == 0);
}

void CTemplateEditDlgNoHTML::DeleteTemplate()
{
    const LONG nRow = m_pView->Selected(TemplateList);
    if (nRow == kNoRow || !m_pRecordParserClone)
        return;
    const Bstr name(m_pView->RowText(TemplateList, nRow));
    if (FAILED(m_pRecordParserClone->RemoveTemplate(m_nField, name.get())))
        return;
    m_pView->SetText(TemplateText, OLESTR(""));
    m_pView->RemoveRow(TemplateList, nRow);
    UpdateOk();
    UpdateDelete();
}

// ---- events

// The keyboard tells what the user types from what is written here.
void CTemplateEditDlgNoHTML::OnText(LONG nControl)
{
    if (nControl != TemplateText || !m_pView || m_pView->Focus() != TemplateText)
        return;
    GuardedEvent(
        [&] { m_sTemplate = TrimWhiteSpace(m_pView->Text(TemplateText)).substr(0, kMaxText); });
    UpdateOk();
}

void CTemplateEditDlgNoHTML::OnSelect(LONG nControl)
{
    if (nControl != TemplateList || !m_pView)
        return;
    const LONG nRow = m_pView->Selected(TemplateList);
    if (nRow == kNoRow)
        return UpdateDelete();
    GuardedEvent([&] {
        // The copy: a row's text is good until the next call on the view.
        m_sTemplate = string_view_t(m_pView->RowText(TemplateList, nRow)).substr(0, kMaxText);
        m_pView->SetText(TemplateText, string_t(m_sTemplate).c_str());
    });
    UpdateOk();
    UpdateDelete();
}

void CTemplateEditDlgNoHTML::OnClick(LONG nControl)
{
    if (!m_pView)
        return;
    if (nControl == SmallDialogOk && m_pView->IsEnabled(SmallDialogOk))
        m_pView->End(kDialogOk);
    else if (nControl == SmallDialogCancel)
        m_pView->End(kDialogCancel);
    else if (nControl == TemplateDelete)
        GuardedEvent([&] { DeleteTemplate(); });
}

// A view that knows no default button reports Enter in this way.
void CTemplateEditDlgNoHTML::OnDefaultCommand()
{
    OnClick(SmallDialogOk);
}

} // namespace Hesperon::specifics::UILayer
