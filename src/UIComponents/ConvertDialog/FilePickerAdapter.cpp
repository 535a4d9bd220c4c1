#include "module/Guarded.h"
#include "src/UIComponents/ConvertDialog/FileContentAdapter.h"
#include "src/values/CaseFold.h"

namespace Hesperon::specifics::UILayer {

using namespace IQRL_TabulexConverter;

namespace {

constexpr ControlPlace kFirstPlace = {0, 0, 300, 300};
constexpr std::size_t kNoFolderLength = 3; // "C:\" and what is shorter stand for no folder

string_t FileOf(IDataParser* pParser)
{
    Bstr name;
    return pParser && SUCCEEDED(pParser->get_FileName(name.put())) ? name.str() : string_t();
}

// What was remembered may be a file. A folder that has gone is handed on as it is.
string_view_t StartFolderOf(string_view_t sFolder)
{
    if (sFolder.size() <= kNoFolderLength)
        return {};
    return PathExists(sFolder) && !IsFolder(sFolder) ? FolderPart(sFolder) : sFolder;
}

} // namespace

CFilePickerAdapter::CFilePickerAdapter(const SConvertDialogParams& params,
                                       notify::IFileEventSink* pSink)
    : m_sFolder(params.sFolder), m_pSink(pSink), m_sFileName(FileOf(params.pDataParser.get()))
{}

HRESULT CFilePickerAdapter::Create(IDialogView& parent)
{
    return Guarded([&] {
        com_ptr<CFolderViewCtrl> pFolderView;
        if (const HRESULT hr = CreateObject(pFolderView); FAILED(hr))
            return hr;
        m_pFolderView = pFolderView;
        m_wndHost = parent.MakeFolderView(pFolderView->Events());
        if (!m_wndHost)
            return E_FAIL;
        return Connect();
    });
}

// The view gets its folder list last, so that no other folder than the one that is wanted is
// read.
HRESULT CFilePickerAdapter::Connect()
{
    if (const HRESULT hr = CreateObject(m_pCallBack); FAILED(hr))
        return hr;
    m_pCallBack->SetFunction([this] { OnFolderViewChange(); });
    VARIANT vCallBack{};
    vCallBack.vt = VT_DISPATCH;
    vCallBack.pdispVal = m_pCallBack.get();
    m_pFolderView->put_onchange(vCallBack);
    if (!m_sFileName.empty()) {
        m_pFolderView->put_FileName(Bstr(m_sFileName).get());
        m_pFolderView->put_disabled(1);
    } else {
        m_pFolderView->put_Folder(Bstr(StartFolderOf(m_sFolder)).get());
    }
    m_pFolderView->Attach(m_wndHost);
    m_pFolderView->Move(kFirstPlace);
    return S_OK;
}

void CFilePickerAdapter::Move(const ControlPlace& place)
{
    if (m_wndHost)
        m_wndHost->Move(kWholeView, place);
}

void CFilePickerAdapter::OpenSelection()
{
    if (m_wndHost)
        m_pFolderView->OpenSelection();
}

void CFilePickerAdapter::Close()
{
    m_wndHost = nullptr;
    if (m_pCallBack)
        m_pCallBack->SetFunction({});
}

void CFilePickerAdapter::OnFolderViewChange()
{
    Bstr name;
    if (!m_wndHost || FAILED(m_pFolderView->get_FileName(name.put())) ||
        EqualIgnoringCase(name.view(), m_sFileName))
        return;
    m_sFileName = name.str();
    if (m_pSink) // with a name of its own: the sink may bring about the next change
        m_pSink->OnFileSelected(name.str().c_str());
}

} // namespace Hesperon::specifics::UILayer
