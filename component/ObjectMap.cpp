#include "component/ObjectMap.h"

#include "interfaces/ClassIds.h"
#include "module/ComObject.h"
#include "src/UIComponents/ProgressDlgNoHTML.h"
#include "src/UIComponents/controls/ControlClasses.h"
#include "src/data/DataParser.h"
#include "src/data/FakeRecordParser.h"
#include "src/data/SymbolEnumerator.h"
#include "src/front/qrlDataParserEventsProxy.h"
#include "src/front/qrlTabulexConvertor.h"
#include "src/parsing/RecordParser.h"
#include "src/values/qrlValueMultiplier.h"

using namespace Hesperon::specifics;
using namespace IQRL_TabulexConverter;

// A ProgID has at most 39 characters, at which that of the events' proxy is cut.
std::span<const ObjectMapEntry> ObjectMap()
{
    static constexpr ObjectMapEntry kMap[] = {
        {CLSID_CRecordParser, OLESTR("TabulexConverter.RecordParser"), &CreateClass<CRecordParser>},
        {CLSID_CDataParser, OLESTR("TabulexConverter.DataParser"), &CreateClass<CDataParser>},
        {CLSID_CqrlValueMultiplier, OLESTR("CqrlValueMultiplier.CqrlValueMultiplier"),
         &CreateClass<CqrlValueMultiplier>},
        {CLSID_CqrlTabulexConvertor, OLESTR("TabulexConverter.qrlTabulexConvertor"),
         &CreateClass<CqrlTabulexConvertor>},
        {CLSID_CqrlDataParserEventsProxy, OLESTR("CqrlDataParserEventsProxy.CqrlDataParse"),
         &CreateClass<CqrlDataParserEventsProxy>},
        {CLSID_CProgressDlgNoHTML, OLESTR("CProgressDlgNoHTML.CProgressDlgNoHTML"),
         &CreateClass<UILayer::CProgressDlgNoHTML>},
        {CLSID_CQRLDataGridViewCtrl,
         OLESTR("TabulexConverter.QRLDataGridViewCtrl"),
         &CreateGridControl,
         {},
         true},
        {CLSID_CFolderViewCtrl,
         OLESTR("TabulexConverter.FolderViewCtrl"),
         &CreateFolderControl,
         {},
         true},
        {CLSID_CQRLCommonCtrlContained,
         OLESTR("TabulexConverter.QRLCommonCtrlContained"),
         &CreateContainedControl,
         {},
         true},
        {CLSID_CSymbolEnumerator, OLESTR("TabulexConverter.SymbolEnumerator"),
         &CreateClass<CSymbolEnumerator>},
        {CLSID_CFakeRecordParser, OLESTR("TabulexConverter.FakeRecordParser"),
         &CreateClass<CFakeRecordParser>, OLESTR("CFakeRecordParser Object")},
    };
    return kMap;
}

HRESULT CreateOwnInstance(REFCLSID rclsid, REFIID riid, void** ppv)
{
    *ppv = nullptr;
    const ObjectMapEntry* entry = FindClass(ObjectMap(), rclsid);
    return entry ? entry->pfnCreate(riid, ppv) : REGDB_E_CLASSNOTREG;
}
