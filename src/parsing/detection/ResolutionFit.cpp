#include "src/parsing/detection/ResolutionFit.h"

#include <algorithm>

#include "src/parsing/templates/NumberText.h"

namespace Hesperon::specifics {
namespace {

// A resolution may be offered by several names; the first one counts.
auto FindOffer(const ParserState& state, LONG nResolution)
{
    return std::ranges::find(state.m_resolutionTemplates, nResolution, &ResolutionTemplate::nId);
}

} // namespace

bool IsOffered(const ParserState& state, LONG nResolution)
{
    return FindOffer(state, nResolution) != state.m_resolutionTemplates.end();
}

// A size that isn't a number, or is negative, counts as none.
LONG HostSize(const ParserState& state, LONG nResolution)
{
    const auto offered = FindOffer(state, nResolution);
    if (offered == state.m_resolutionTemplates.end())
        return 0;
    const std::size_t nBar = offered->sName.rfind('|');
    if (nBar == string_t::npos)
        return 0;
    return std::max<LONG>(0, TextToInt32(string_view_t(offered->sName).substr(nBar + 1)));
}

unsigned LackingType(const ParserState& state, LONG nResolution)
{
    for (unsigned uiType : RequiredTypes(nResolution))
        if (state.Index(uiType) == kNoColumn)
            return uiType;
    return kNoType;
}

unsigned DuplicatedType(const ParserState& state)
{
    const auto& fields = state.m_fields;
    for (auto field = fields.begin(); field != fields.end(); ++field) {
        const unsigned uiType = field->GetType();
        const auto isSame = [=](const CDataField& other) { return other.GetType() == uiType; };
        if (uiType != kNoType && std::any_of(field + 1, fields.end(), isSame))
            return uiType;
    }
    return kNoType;
}

} // namespace Hesperon::specifics
