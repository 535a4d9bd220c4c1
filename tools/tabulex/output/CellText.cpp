#include "tools/tabulex/output/CellText.h"

#include <cmath>

#include "platform/values.h"
#include "tools/tabulex/text/Text.h"

namespace tabulex {

namespace {

void AppendConverted(std::string& out, const VARIANT& cell)
{
    Variant text;
    if (SUCCEEDED(VariantChangeType(&text, const_cast<VARIANT*>(&cell), 0, VT_BSTR)))
        AppendUtf8(out, TextOf(text.bstrVal));
}

} // namespace

void AppendCell(std::string& out, ColumnKind kind, const VARIANT& cell, DateText& dates)
{
    switch (cell.vt) {
    case VT_R8:
        if (std::isfinite(cell.dblVal)) // a number with too many digits has no value
            AppendPrice(out, cell.dblVal);
        break;
    case VT_I8:
        AppendWhole(out, cell.llVal);
        break;
    case VT_I2: // a day as conversions deliver it
        out += dates.Of(static_cast<USHORT>(cell.iVal));
        break;
    case VT_I4:
        AppendTimeOfDay(out, cell.lVal);
        break;
    case VT_DATE:
        if (kind == ColumnKind::Date)
            out += dates.Of(cell.date);
        else
            AppendTime(out, cell.date);
        break;
    case VT_BSTR:
        AppendUtf8(out, TextOf(cell.bstrVal));
        break;
    case VT_EMPTY:
        break;
    default:
        AppendConverted(out, cell);
    }
}

} // namespace tabulex
