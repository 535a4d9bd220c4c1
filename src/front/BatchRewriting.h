// The form in which a host takes dates and times.
#pragma once

#include <span>

#include "platform/component.h"

namespace Hesperon::specifics {

// Puts the Date and Time columns of a batch into the host's form, in place: Date as the
// low 16 bits of its whole days (VT_I2), Time as milliseconds since midnight (VT_I4).
// hostIds has a column's host id in the order of the array's columns.
//
// E_INVALIDARG for an array of another shape, or where such a column holds anything but
// VT_DATE; then cells before that one are in the host's form already. A batch whose bounds
// don't start at 0 gives DISP_E_BADINDEX if it has a cell to rewrite.
HRESULT RewriteBatch(const VARIANT& vRecords, std::span<const LONG> hostIds);

} // namespace Hesperon::specifics
