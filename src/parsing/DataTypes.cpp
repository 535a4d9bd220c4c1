// Tables: the default templates of a type, and the types that a resolution admits and requires. The
// rows of kResolutions stand in the order of the resolutions' numbers.

#include "src/parsing/DataTypes.h"

#include <algorithm>
#include <array>
#include <utility>

#include "Simples/interface/ResourceStrings.h"
#include "diagnostics/FaultmereClient.h"
#include "platform/text/Locale.h"
#include "src/parsing/templates/TextTests.h"

namespace Hesperon::specifics {

using IQRL_TabulexConverter::FieldType;
using IQRL_TabulexConverter::FieldTypeRow;
using IQRL_TabulexConverter::kFieldTypes;

namespace {

// ---- default templates ---------------------------------------------------------

// Detection takes the first that fits, so the order settles what an ambiguous text is:
// 01/02/03 starts with its year.
constexpr string_view_t kDateTemplates[] = {
    OLESTR("*y/*m/*d"),  OLESTR("*m/*d/*y"),  OLESTR("yyyymmdd"),  OLESTR("yymmdd"),
    OLESTR("*d.*m.*y"),  OLESTR("*d/*m/*y"),  OLESTR("*dmmyyyy"),  OLESTR("*dmmyy"),
    OLESTR("ddmmy*"),    OLESTR("*y-*m-*d"),  OLESTR("*y_*m_*d"),  OLESTR("*y *m *d"),
    OLESTR("*d-*m-*y"),  OLESTR("*d_*m_*y"),  OLESTR("*d *m *y"),  OLESTR("*m-*d-*y"),
    OLESTR("*m_*d_*y"),  OLESTR("*m *d *y"),  OLESTR("*dmmmyy"),   OLESTR("*dmmmyyyy"),
    OLESTR("*d mmm *y"), OLESTR("*d-mmm-*y"), OLESTR("*d_mmm_*y"), OLESTR("mmm,*d *y"),
    OLESTR("mmm_*d_*y"),
};
constexpr string_view_t kTimeTemplates[] = {
    OLESTR("*hmm"),           OLESTR("*hmmss"),      OLESTR("*h:mm"),         OLESTR("*h:*m"),
    OLESTR("*h:*m:*s"),       OLESTR("*h:*mtt@pm"),  OLESTR("*h:*m:*stt@pm"), OLESTR("*h:*m tt@pm"),
    OLESTR("*h:*m:*s tt@pm"), OLESTR("*h:*m:*s.*f"),
};
constexpr string_view_t kSymbolTemplates[] = {OLESTR("*")};
constexpr string_view_t kPriceTemplates[] = {OLESTR("*i.*f")};
constexpr string_view_t kWholeTemplates[] = {OLESTR("*i")};

std::span<const string_view_t> DefaultTemplatesOf(unsigned uiType)
{
    switch (uiType) {
    case TypeSymbol:
        return kSymbolTemplates;
    case TypeDate:
        return kDateTemplates;
    case TypeTime:
        return kTimeTemplates;
    default:
        break;
    }
    if (IsPriceType(uiType))
        return kPriceTemplates;
    return kWholeTemplates;
}

// ---- types by resolution -------------------------------------------------------

using TypeMask = std::uint32_t; // one bit per type

template <std::size_t N>
constexpr TypeMask MaskOf(const FieldType (&types)[N])
{
    TypeMask mask = 0;
    for (FieldType type : types)
        mask |= TypeMask{1} << type;
    return mask;
}

constexpr TypeMask kAllTypes = (TypeMask{1} << TYPES_COUNT) - 1;
constexpr TypeMask kTickTypes = MaskOf({TypeSymbol, TypeDate, TypeTime, TypePrice, TypeVolume});
constexpr TypeMask kBarTypes =
    MaskOf({TypeSymbol, TypeDate, TypeTime, TypeOpen, TypeHigh, TypeLow, TypeClose, TypeVolume,
            TypeUpVolume, TypeDownVolume, TypeUnchangedVolume, TypeUpTicks, TypeDownTicks,
            TypeUnchangedTicks, TypeTotalTicks});
constexpr TypeMask kDayTypes = kBarTypes | MaskOf({TypeOpenInterest});

constexpr unsigned kTickColumns[] = {TypeDate, TypeTime, TypePrice};
constexpr unsigned kBarColumns[] = {TypeDate, TypeTime, TypeOpen, TypeHigh, TypeLow, TypeClose};
constexpr unsigned kDayColumns[] = {TypeDate, TypeOpen, TypeHigh, TypeLow, TypeClose};

struct ResolutionRow
{
    TypeMask admitted;
    std::span<const unsigned> required;
};

constexpr std::array<ResolutionRow, RESOLUTIONS_COUNT> kResolutions = {{
    {kAllTypes, {}},
    {kTickTypes, kTickColumns},
    {kBarTypes, kBarColumns},
    {kBarTypes, kBarColumns},
    {kBarTypes, {}},
    {kBarTypes, kBarColumns},
    {kDayTypes, kDayColumns},
    {kDayTypes, kDayColumns},
}};

bool IsResolution(LONG nResolution)
{
    return nResolution >= 0 && nResolution < RESOLUTIONS_COUNT;
}

} // namespace

string_view_t TypeName(unsigned uiType)
{
    return uiType < TYPES_COUNT ? kFieldTypes[uiType].sName
                                : LoadResourceString(IDS_UNDEFINED_COLUMN);
}

string_view_t LocalizedTypeName(unsigned uiType)
{
    return LoadResourceString(uiType < TYPES_COUNT ? IDS_SYMBOL + uiType : IDS_UNDEFINED_COLUMN);
}

unsigned FindType(string_view_t sName)
{
    const auto row = std::ranges::find(kFieldTypes, sName, &FieldTypeRow::sName);
    return row == std::end(kFieldTypes) ? kNoType : static_cast<unsigned>(row - kFieldTypes);
}

bool IsValidType(unsigned uiType, LONG nResolution)
{
    const bool bType = FaultmereUtil::Assert(uiType < TYPES_COUNT, "uiType < TYPES_COUNT");
    const bool bResolution =
        FaultmereUtil::Assert(IsResolution(nResolution),
                              "static_cast<const T*>(this)->m_nResolution < RESOLUTIONS_COUNT");
    return bType && bResolution && (kResolutions[nResolution].admitted >> uiType & 1);
}

std::span<const unsigned> RequiredTypes(LONG nResolution)
{
    return IsResolution(nResolution) ? kResolutions[nResolution].required
                                     : std::span<const unsigned>();
}

// ---- CDataType -----------------------------------------------------------------

CDataType::CDataType(unsigned uiId) : m_uiId(uiId) {}

void CDataType::FillDefaultTemplates()
{
    m_templates.clear();
    if (!FaultmereUtil::Assert(m_uiId < TYPES_COUNT, "uiType < TYPES_COUNT"))
        return;
    const bool bDefault = m_uiId == TypeDate || m_uiId == TypeTime;
    for (string_view_t sTemplate : DefaultTemplatesOf(m_uiId))
        AddTemplate(sTemplate, bDefault);
}

// A template that is in the list keeps its place, and a default one stays a default one.
void CDataType::AddTemplate(string_view_t sTemplate, bool bDefault)
{
    if (sTemplate.empty())
        return;
    string_t sLower(sTemplate.substr(0, kMaxText));
    LowerCase(sLower);
    const int nIndex = FindTemplate(sLower);
    if (nIndex >= 0)
        ++m_templates[nIndex].nCount;
    else
        m_templates.push_back({std::move(sLower), 1, bDefault});
}

int CDataType::FindTemplate(string_view_t sTemplate) const
{
    const auto at = std::ranges::find(m_templates, sTemplate, &tagTEMPLATE::szTemplate);
    return at == m_templates.end() ? -1 : static_cast<int>(at - m_templates.begin());
}

void CDataType::RemoveTemplate(string_view_t sTemplate)
{
    const int nIndex = FindTemplate(sTemplate);
    if (nIndex >= 0 && !m_templates[nIndex].bDefault)
        m_templates.erase(m_templates.begin() + nIndex);
}

// ---- tables of types -----------------------------------------------------------

TypeTable DefaultTypes()
{
    TypeTable types;
    for (unsigned uiType = 0; uiType < TYPES_COUNT; ++uiType)
        types.emplace(uiType, CDataType(uiType)).first->second.FillDefaultTemplates();
    return types;
}

TypeTable AdmittedTypes(const TypeTable& types, LONG nResolution)
{
    TypeTable admitted;
    std::ranges::copy_if(types, std::inserter(admitted, admitted.end()),
                         [=](const auto& entry) { return IsValidType(entry.first, nResolution); });
    return admitted;
}

} // namespace Hesperon::specifics
