#include "src/data/DeliveredFields.h"

#include <algorithm>
#include <span>

#include "diagnostics/FaultmereClient.h"
#include "src/values/LockedArray.h"

using FaultmereUtil::Assert;
using FaultmereUtil::AssertOk;

namespace Hesperon::specifics {

// The array begins with the name of no type, so an id is one less than the place in it.
LONG Name2Type(const VARIANT& vTypeNames, BSTR bsName)
{
    if (!Assert(bsName != nullptr, "bsName") || vTypeNames.vt != (VT_ARRAY | VT_BSTR))
        return -1;
    const LockedArray<BSTR> names(vTypeNames.parray);
    const auto name = std::ranges::find(names.Elements(), TextOf(bsName), &TextOf);
    const auto nPosition = name == names.Elements().end() ? 0 : name - names.Elements().begin();
    return static_cast<LONG>(nPosition) - 1;
}

HRESULT FindDeliveredFields(IQRL_TabulexConverter::IRecordParser* pRecordParser,
                            const VARIANT& vTypeNames, std::vector<ULONG>& fields)
{
    fields.clear();
    ULONG nFields = 0;
    HRESULT hr = pRecordParser ? pRecordParser->get_FieldCount(&nFields) : E_FAIL;
    for (ULONG i = 0; SUCCEEDED(hr) && i < nFields; ++i) {
        Bstr sName;
        hr = pRecordParser->GetFieldName(sName.put(), i);
        if (SUCCEEDED(hr) && Name2Type(vTypeNames, sName.get()) != -1)
            fields.push_back(i);
    }
    return AssertOk(hr);
}

} // namespace Hesperon::specifics
