// What record parsing knows of field types and resolutions: their names, which types a
// resolution admits and requires, and the template lists. Their ids and internal names
// are facts of interfaces/FieldsAndResolutions.h.
#pragma once

#include <map>
#include <span>
#include <string>
#include <vector>

#include "interfaces/FieldsAndResolutions.h"
#include "platform/component.h"
#include "src/parsing/templates/IQDParseImpl.h"

namespace Hesperon::specifics {

using enum IQRL_TabulexConverter::FieldType;
using enum IQRL_TabulexConverter::Resolution;
using IQRL_TabulexConverter::IsPriceType;
using IQRL_TabulexConverter::IsVolumeType;
using IQRL_TabulexConverter::IsWholeType;
using IQRL_TabulexConverter::kNoField;
using IQRL_TabulexConverter::kWholeRecord;

// Internal name, such as "Up Volume"; the text for an undefined column for an id
// out of range.
string_view_t TypeName(unsigned uiType);
// The same in the user's language.
string_view_t LocalizedTypeName(unsigned uiType);
// Id of an internal name, compared exactly; kNoType for none.
unsigned FindType(string_view_t sName);

// Whether a resolution admits a type. One that is out of range is reported as a fault of
// the program, and the result is false.
bool IsValidType(unsigned uiType, LONG nResolution);
// The types that a resolution can't do without, in the order in which missing ones are
// reported; empty for resolutions 0 and 4 and those out of range.
std::span<const unsigned> RequiredTypes(LONG nResolution);

// The host's name of a resolution without the size that may stand after its last "|".
inline string_view_t WithoutSize(string_view_t sName)
{
    return sName.substr(0, sName.rfind(OLECHAR('|')));
}

struct tagTEMPLATE
{
    string_t szTemplate;
    unsigned nCount; // how often it was added
    bool bDefault;   // a default template can't be removed
};

// One field type with its templates, in the order in which detection tries them.
class CDataType
{
public:
    CDataType() = default;
    explicit CDataType(unsigned uiId);

    unsigned Id() const { return m_uiId; }
    const std::vector<tagTEMPLATE>& Templates() const { return m_templates; }

    // Empties the list and adds the type's default templates.
    void FillDefaultTemplates();
    // Cut at kMaxText and lower-cased. An empty one is ignored, one that is there is
    // counted.
    void AddTemplate(string_view_t sTemplate, bool bDefault);
    // Index of the exact text, -1 for none.
    int FindTemplate(string_view_t sTemplate) const;
    // Erases the exact text unless it is a default one.
    void RemoveTemplate(string_view_t sTemplate);

private:
    unsigned m_uiId = kNoType;
    std::vector<tagTEMPLATE> m_templates;
};

using TypeTable = std::map<unsigned, CDataType>;

// All 18 types with their default templates.
TypeTable DefaultTypes();
// Those of `types` that the resolution admits.
TypeTable AdmittedTypes(const TypeTable& types, LONG nResolution);

} // namespace Hesperon::specifics
