// What the host's object knows of its host: the lists of what the host offers, and
// the numbers by which the host calls fields and resolutions.
#pragma once

#include <string>
#include <vector>

#include "interfaces/FieldsAndResolutions.h"
#include "platform/component.h"

namespace Hesperon::specifics {

// One row of a host's list.
struct STemplateEntry
{
    string_t sName;
    LONG nId;
};

// A list as the host built it up: names are unique, ids need not be.
class CTemplateList
{
public:
    bool IsEmpty() const { return m_rows.empty(); }
    const std::vector<STemplateEntry>& Rows() const { return m_rows; }

    void Append(string_view_t sName, LONG nId) { m_rows.push_back({string_t(sName), nId}); }
    // The first row of a name (exact compare) or an id; null for none.
    const STemplateEntry* FindName(string_view_t sName) const;
    const STemplateEntry* FindId(LONG nId) const;
    STemplateEntry* FindId(LONG nId);

private:
    std::vector<STemplateEntry> m_rows;
};

// Host id of the field type at a position of the record parser's list of names, in
// which 0 is the undefined type; 0 for a position behind the list.
LONG HostFieldId(std::size_t nPosition);
// The first position of a host id; -1 for none.
LONG FieldPosition(LONG nHostId);

// Host value of a resolution (0 to 7); a report is made, and 0 given, for any other.
LONG TabulexResolution2qrlResolution(LONG nResolution);
// The first resolution of a host value, 0 for an unknown one. Host value 1 stands for
// ticks and for bars of ticks, and gives the first.
LONG ResolutionSlot(LONG nHostValue);

} // namespace Hesperon::specifics
