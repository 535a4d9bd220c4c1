// GridPage: the records that a grid is about to draw, parsed.
//
// It is fetched anew for each paint, so a change of the parsers shows at the next one. Used on
// one thread.
#pragma once

#include "interfaces/IDataParser.h"
#include "platform/values.h"
#include "src/UIComponents/controls/GridCell.h"

namespace Hesperon::specifics {

class GridPage
{
public:
    // The records from nFrom to nTo, both of them, in place of those that are held. If one of
    // them can't be read the page is empty.
    void Fetch(IQRL_TabulexConverter::IDataParser& parser, LONG nFrom, LONG nTo);
    void Clear() { m_vPage.put(); }

    // Writes a field of a record, which counts from the file's first one. Nothing, and an empty
    // text, for a cell that the page doesn't have.
    void WriteCell(LONG nRecord, LONG nField, std::span<OLECHAR> buffer) const;

private:
    Variant m_vPage; // VT_ARRAY|VT_VARIANT, record by field
};

} // namespace Hesperon::specifics
