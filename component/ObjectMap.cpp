#include "component/ObjectMap.h"

#include "interfaces/ClassIds.h"
#include "module/ComObject.h"
#include "src/DataParser.h"
#include "src/FakeRecordParser.h"
#include "src/RecordParser.h"
#include "src/SymbolEnumerator.h"
#include "src/UIComponents/ProgressDlgNoHTML.h"
#include "src/qrlDataParserEventsProxy.h"
#include "src/qrlTabulexConvertor.h"
#include "src/qrlValueMultiplier.h"

using namespace Hesperon::specifics;
using namespace IQRL_TabulexConverter;

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
        {CLSID_CSymbolEnumerator, OLESTR("TabulexConverter.SymbolEnumerator"),
         &CreateClass<CSymbolEnumerator>},
        {CLSID_CFakeRecordParser, OLESTR("TabulexConverter.FakeRecordParser"),
         &CreateClass<CFakeRecordParser>},
    };
    return kMap;
}

HRESULT CreateOwnInstance(REFCLSID rclsid, REFIID riid, void** ppv)
{
    *ppv = nullptr;
    const ObjectMapEntry* entry = FindClass(ObjectMap(), rclsid);
    return entry ? entry->pfnCreate(riid, ppv) : REGDB_E_CLASSNOTREG;
}
