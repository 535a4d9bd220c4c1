// What the host's object knows of its host: the lists of what the host offers with the
// choice in each, and the numbers by which the host calls fields and resolutions.
#pragma once

#include <string>
#include <vector>

#include "interfaces/FieldsAndResolutions.h"
#include "platform/component.h"
#include "platform/values.h"
#include "src/data/TemplateEntry.h"

namespace Hesperon::specifics {

// A list as the host built it up, and the name that was chosen from it. Names are unique,
// ids need not be.
class TemplateList
{
public:
    bool IsEmpty() const { return m_rows.empty(); }
    const std::vector<STemplateEntry>& Rows() const { return m_rows; }

    void Append(string_view_t sName, LONG nId) { m_rows.push_back({string_t(sName), nId}); }
    // The first row of a name (exact compare) or an id; null for none.
    const STemplateEntry* FindName(string_view_t sName) const;
    const STemplateEntry* FindId(LONG nId) const;
    STemplateEntry* FindId(LONG nId);

    // E_POINTER for no name, E_UNEXPECTED for one that a row has already.
    HRESULT CheckNewName(BSTR sName) const;
    // The same, and appends the row.
    HRESULT Add(LONG nId, BSTR sName);

    // Id of the chosen row; -1 and S_FALSE where no row has the chosen name.
    HRESULT GetChoice(LONG* pVal) const;
    // E_UNEXPECTED, and no change, where no row has the id.
    HRESULT PutChoice(LONG nId);
    void Choose(string_view_t sName) { m_sChoice = sName; }
    const string_t& Choice() const { return m_sChoice; } // its name

private:
    std::vector<STemplateEntry> m_rows;
    string_t m_sChoice; // empty before the first choice
};

// Host id of the field type at a position of the record parser's list of names, in
// which 0 is the undefined type; 0 for a position after the list's end.
LONG HostFieldId(std::size_t nPosition);
// The first position of a host id; -1 for none.
LONG FieldPosition(LONG nHostId);

// Names of the field types, by position, with the host's ids.
class HostTypeNames
{
public:
    // What IRecordParser::GetTypeNames gave: VT_ARRAY|VT_BSTR. Any other value has no names.
    explicit HostTypeNames(Variant vTypeNames = {}) : m_vTypeNames(std::move(vTypeNames)) {}

    // 0 for a name that isn't there; a null one is reported too.
    LONG HostIdOf(BSTR bsName) const;
    // Null for an id that isn't there.
    Bstr NameOf(LONG nHostId) const;

private:
    Variant m_vTypeNames; // never changes
};

// Host value of a resolution (0 to 7); any other is reported and gives 0.
LONG TabulexResolution2qrlResolution(LONG nResolution);
// The first resolution of a host value, 0 for an unknown one. Host value 1 stands for
// ticks and for bars of ticks, and gives the first.
LONG ResolutionSlot(LONG nHostValue);

} // namespace Hesperon::specifics
