// What a view asks of its grid, and what the user does with a heading.
//
// The menu of a heading and the template editor wait for the user, and dispatch messages
// meanwhile: the dialog may close the view, or the file may get another layout. The grid keeps
// itself and the record parser alive, and looks for its view again after each of them.

#include "diagnostics/FaultmereClient.h"
#include "module/Guarded.h"
#include "src/UIComponents/controls/QRLDataGridViewCtrl.h"
#include "src/UIComponents/views/GuardedEvent.h"

using namespace IQRL_TabulexConverter;
using FaultmereUtil::Assert;

namespace Hesperon::specifics {

// ---- drawing

void CQRLDataGridViewCtrl::OnRange(LONG nFrom, LONG nTo)
{
    m_page.Clear();
    if (m_bTextMode || !m_pDataParser)
        return;
    GuardedEvent([&] {
        m_page.Fetch(*m_pDataParser.get(), nFrom, nTo);
        m_tint.ReadRange(*m_pDataParser.get());
    });
}

void CQRLDataGridViewCtrl::CellText(LONG nRow, LONG nColumn, OLECHAR* pszText, LONG nMost)
{
    if (!pszText || nMost <= 0)
        return;
    const std::span buffer(pszText, static_cast<std::size_t>(nMost));
    WriteText({}, buffer);
    GuardedEvent([&] {
        if (!m_bTextMode) {
            if (m_pView && nColumn < m_pView->ColumnCount())
                m_page.WriteCell(nRow, nColumn, buffer);
        } else if (Assert(bool(m_pDataParser), "m_pDataParser")) {
            Bstr sRecord;
            if (SUCCEEDED(ReadRecord(*m_pDataParser.get(), nRow, sRecord.put())))
                WriteText(sRecord.view(), buffer);
        }
    });
}

ULONG CQRLDataGridViewCtrl::RowColour(LONG nRow)
{
    constexpr ULONG kWhite = 0x00FFFFFF;
    if (!m_pView)
        return kWhite;
    const ULONG nWindow = m_pView->Colour(ColourWindow);
    return IsImported(nRow) ? BlendColours(nWindow, m_pView->Colour(ColourHighlight)) : nWindow;
}

bool CQRLDataGridViewCtrl::IsImported(LONG nRow)
{
    if (m_bTextMode || !m_pDataParser || !m_pRecordParser)
        return false;
    const HRESULT hr = Guarded([&] {
        return IsRecordIn(m_tint, *m_pDataParser.get(), *m_pRecordParser.get(), nRow) ? S_OK
                                                                                      : S_FALSE;
    });
    return hr == S_OK;
}

// ---- headings

void CQRLDataGridViewCtrl::OnHeaderPress(LONG nColumn)
{
    if (m_bTextMode || !m_pView || !m_pRecordParser)
        return;
    const com_ptr<CQRLDataGridViewCtrl> pSelf(this);
    Guarded([&] { return ChooseField(nColumn); });
}

HRESULT CQRLDataGridViewCtrl::ChooseField(LONG nColumn)
{
    ColumnChange change(m_pRecordParser, static_cast<ULONG>(nColumn));
    std::vector<FieldMenuType> types;
    const HRESULT hr = change.Read(types);
    if (FAILED(hr))
        return hr;
    const FieldMenu menu(std::move(types), change.Column());
    const FieldChoice choice = menu.Choice(m_pView->TrackMenu(menu.Items(), nColumn));
    if (!m_pView || !Change(change, menu, choice) || !m_pView)
        return S_FALSE;
    if (Bstr sHeading; SUCCEEDED(change.ReadHeading(sHeading)))
        m_pView->SetColumnText(nColumn, sHeading.str().c_str());
    m_pView->Invalidate(true);
    const auto listener = m_fnPlainType; // it may end the dialog
    if (choice.kind == FieldChoice::Kind::Plain && listener)
        listener();
    return S_OK;
}

// False where the column stays as it is.
bool CQRLDataGridViewCtrl::Change(ColumnChange& change, const FieldMenu& menu,
                                  const FieldChoice& choice)
{
    using Kind = FieldChoice::Kind;
    if (choice.kind == Kind::Nothing)
        return false;
    const FieldMenuType& type = menu.Type(choice);
    if (choice.kind == Kind::Plain) {
        change.SetType(type);
        return true;
    }
    string_t sTemplate;
    if (choice.kind == Kind::Template)
        sTemplate = type.templates[choice.nTemplate];
    else if (!change.EditTemplate(type, sTemplate) || !m_pView)
        return false;
    const auto pSink = m_pDataChangeSink;
    change.SetTemplate(type, sTemplate, pSink.get());
    return true;
}

// ---- end

// The data parser, or whoever has made the view, may hold the last reference.
void CQRLDataGridViewCtrl::OnClose()
{
    const com_ptr<CQRLDataGridViewCtrl> pSelf(this);
    com_ptr<IDataParser> pParser;
    {
        LockGuard lock(m_lock);
        m_pView = nullptr;
        std::swap(m_pDataParser, pParser);
    }
    if (pParser)
        pParser->RemoveFileEventHandler(ListenerKey());
    m_pRecordParser.reset();
    m_page.Clear();
    m_fnPlainType = nullptr;
}

} // namespace Hesperon::specifics
