// The text of one delivered cell.
//
// VT_I2 is a day, as an unsigned number, and VT_I4 milliseconds since midnight; a VT_DATE is a day
// in a Date column and a time of day in every other. An empty cell gives nothing.
#pragma once

#include <string>

#include "platform/values.h"
#include "tools/tabulex/output/Column.h"
#include "tools/tabulex/text/Formats.h"

namespace tabulex {

// Appends the plain text of a cell, unquoted UTF-8.
void AppendCell(std::string& out, ColumnKind kind, const VARIANT& cell, DateText& dates);

// The same for a cell with a text of at most kDigitsRoom bytes, which is put at `at`, where there
// must be so much room. Gives its end; null for a cell of any other kind.
char* PutCell(char* at, ColumnKind kind, const VARIANT& cell, DateText& dates);

// The texts of a column's cells in the form that an output gives them, quoted or not. Neighbouring
// rows mostly have the same text, so the last one is kept. Used by one thread.
class CellTexts
{
public:
    // Appends the form of a text in UTF-8; null for the text itself.
    using Form = void (*)(std::string& out, std::string_view text);

    explicit CellTexts(Form pfnForm) : m_pfnForm(pfnForm) {}

    // Of a cell that PutCell doesn't take. Good until the next call.
    std::string_view Of(const VARIANT& cell)
    {
        if (cell.vt != VT_BSTR || !m_bKept || ::TextOf(cell.bstrVal) != m_last)
            Make(cell);
        return m_sText;
    }

private:
    void Make(const VARIANT& cell);

    Form m_pfnForm;
    bool m_bKept = false; // m_sText is that of m_last
    string_t m_last;
    std::string m_sText;
};

} // namespace tabulex
