// What stands in a cell of the preview grid.
//
// Safe from any thread. A buffer gets a terminator, and a text that is too long for it is cut.
#pragma once

#include <span>

#include "platform/component.h"

namespace Hesperon::specifics {

// Copies a text.
void WriteText(string_view_t sText, std::span<OLECHAR> buffer);

// Writes a value of a record:
//
//   VT_DATE                DateText below
//   VT_BSTR                the text between quotation marks; both marks always stay
//   VT_R8, VT_I8, VT_UI8   the number in the user's locale
//
// Any other kind leaves the cell empty and is reported.
void WriteValue(const VARIANT& value, std::span<OLECHAR> buffer);

// A date, or a time of day if the value has no whole days, as the user's locale writes them. The
// milliseconds of a time follow the seconds after a point and without leading zeros. Empty for a
// value that the calendar refuses.
string_t DateText(DATE value);

} // namespace Hesperon::specifics
