// Which fields of a record are delivered: those that have a type.
#pragma once

#include <vector>

#include "interfaces/IRecordParser.h"
#include "platform/values.h"

namespace Hesperon::specifics {

// Type id of an internal type name, by the names that IRecordParser::GetTypeNames gave: the
// first of them stands for no type. -1 for that one and for a name that isn't there. A null
// name is reported.
LONG Name2Type(const VARIANT& vTypeNames, BSTR bsName);

// Indices of the delivered fields, in the order of the fields. A failure is reported.
HRESULT FindDeliveredFields(IQRL_TabulexConverter::IRecordParser* pRecordParser,
                            const VARIANT& vTypeNames, std::vector<ULONG>& fields);

} // namespace Hesperon::specifics
