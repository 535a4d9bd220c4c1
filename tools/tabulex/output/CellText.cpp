#include "tools/tabulex/output/CellText.h"

#include <cmath>

#include "tools/tabulex/text/Digits.h"
#include "tools/tabulex/text/Text.h"

namespace tabulex {

namespace {

void AppendText(std::string& out, const VARIANT& cell)
{
    Variant text;
    if (cell.vt == VT_BSTR)
        AppendUtf8(out, TextOf(cell.bstrVal));
    else if (SUCCEEDED(VariantChangeType(&text, const_cast<VARIANT*>(&cell), 0, VT_BSTR)))
        AppendUtf8(out, TextOf(text.bstrVal));
}

} // namespace

char* PutCell(char* at, ColumnKind kind, const VARIANT& cell, DateText& dates)
{
    switch (cell.vt) {
    case VT_R8: // a number with too many digits has no value
        return std::isfinite(cell.dblVal) ? PutPrice(at, cell.dblVal) : at;
    case VT_I8:
        return PutWhole(at, cell.llVal);
    case VT_I2: // a day as conversions deliver it
        return PutText(at, dates.OfDay(static_cast<USHORT>(cell.iVal)));
    case VT_I4:
        return PutTimeOfDay(at, static_cast<unsigned>(cell.lVal));
    case VT_DATE:
        return kind == ColumnKind::Date ? PutText(at, dates.Of(cell.date))
                                        : PutTimeOfDay(at, TimeOfDay(cell.date));
    case VT_EMPTY:
        return at;
    default:
        return nullptr;
    }
}

void AppendCell(std::string& out, ColumnKind kind, const VARIANT& cell, DateText& dates)
{
    char text[kDigitsRoom];
    if (char* const end = PutCell(text, kind, cell, dates))
        out.append(text, end);
    else
        AppendText(out, cell);
}

void CellTexts::Make(const VARIANT& cell)
{
    std::string text;
    AppendText(text, cell);
    m_sText.clear();
    if (m_pfnForm)
        m_pfnForm(m_sText, text);
    else
        m_sText = std::move(text);
    m_bKept = cell.vt == VT_BSTR;
    if (m_bKept)
        m_last = TextOf(cell.bstrVal);
}

} // namespace tabulex
