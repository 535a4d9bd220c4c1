// ConvertorSettings: what a host has chosen on its object, as one value that is copied
// whole: to a clone, to a session, to a check of the settings.
//
// What the parsers keep for themselves (file, dates, column types, multipliers) isn't in it.
#pragma once

#include <string>
#include <vector>

#include "platform/component.h"
#include "src/front/qrlHelperStructs.h"

namespace Hesperon::specifics {

// A column of the file as the host knows it.
struct NamedField
{
    string_t sName; // of its type
    LONG nHostId;   // HostFieldUndefined isn't delivered
};

struct ConvertorSettings
{
    TemplateList m_arFieldTemplates;
    TemplateList m_arResolutionTemplates; // ids are resolutions, not the host's values
    TemplateList m_arTimeZoneTemplates;
    LONG m_nResolutionSize = 0;
    std::vector<NamedField> m_arFields; // since the last InitFieldsInfo
    string_t m_sFolder;                 // last used in the dialog

    // Three rows for each list and the first as choice, if all lists are empty.
    void AddDefaultTemplates();
    // A second offer of ticks stands for bars of ticks: the host has one id for both. The
    // row of a resolution that was offered before gets the new name.
    HRESULT AddResolutionTemplate(LONG nHostValue, BSTR sName);
    // The resolution of a host value, to be chosen with the current size.
    LONG ChosenResolution(LONG nHostValue) const;
    // Takes the name of a resolution as choice; false where no row has it.
    bool ChooseResolution(LONG nResolution);
    // Name of a resolution as the host offered it, else the text for an unknown one.
    HRESULT GetResolutionName(LONG nResolution, BSTR* pName) const;
    // The delivered columns, in order.
    std::vector<LONG> DeliveredIds() const;
};

} // namespace Hesperon::specifics
