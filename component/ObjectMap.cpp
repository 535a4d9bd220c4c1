#include "component/ObjectMap.h"

#include "interfaces/ClassIds.h"
#include "module/ComObject.h"
#include "src/DataParser.h"
#include "src/RecordParser.h"
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
    };
    return kMap;
}
