// Type names and template lists of a record parser. The lists belong to the object, and a clone has
// a copy: what one adds the other doesn't see.

#include "src/parsing/EnvironmentDocument.h"
#include "src/parsing/RecordParser.h"
#include "src/values/TextArray.h"

namespace Hesperon::specifics {
namespace {

constexpr string_view_t kEditorEntry = OLESTR("..."); // opens the template editor

using NameOf = string_view_t (*)(unsigned);

// The name of an undefined column, then those of the types that are admitted.
Variant AdmittedNames(LONG nResolution, NameOf nameOf)
{
    std::vector<string_view_t> names = {nameOf(kNoType)};
    for (unsigned uiType = 0; uiType < TYPES_COUNT; ++uiType)
        if (IsValidType(uiType, nResolution))
            names.push_back(nameOf(uiType));
    return TextArray(names);
}

// Only dates and times have lists that a host can see.
const CDataType* ListedType(const TypeTable& types, string_view_t sName)
{
    const unsigned uiType = FindType(sName);
    return uiType == TypeDate || uiType == TypeTime ? &types.at(uiType) : nullptr;
}

} // namespace

HRESULT CRecordParser::GetTypeNames(VARIANT* TypeNames)
{
    if (!TypeNames)
        return E_POINTER;
    return Locked([&] {
        *TypeNames = AdmittedNames(m_state.m_nResolution, &TypeName).detach();
        return S_OK;
    });
}

HRESULT CRecordParser::GetTypeNamesLocalized(VARIANT* TypeNames)
{
    if (!TypeNames)
        return E_POINTER;
    return Locked([&] {
        *TypeNames = AdmittedNames(m_state.m_nResolution, &LocalizedTypeName).detach();
        return S_OK;
    });
}

HRESULT CRecordParser::GetTemplates(VARIANT* Templates, BSTR bsTypeName)
{
    if (!Templates)
        return E_POINTER;
    return Locked([&] {
        const CDataType* type = ListedType(m_state.m_types, TextOf(bsTypeName));
        if (!type)
            return S_OK;
        std::vector<string_view_t> texts;
        for (const tagTEMPLATE& entry : type->Templates())
            texts.push_back(entry.szTemplate);
        texts.push_back(kEditorEntry);
        *Templates = TextArray(texts).detach();
        return S_OK;
    });
}

HRESULT CRecordParser::SetTemplates(VARIANT, BSTR)
{
    return E_NOTIMPL;
}

HRESULT CRecordParser::GetTemplateItemCount(BSTR bsTypeName, LONG* nCount)
{
    if (!bsTypeName || !nCount)
        return E_INVALIDARG;
    return Locked([&] {
        const CDataType* type = ListedType(m_state.m_types, TextOf(bsTypeName));
        if (!type)
            return TYPE_E_ELEMENTNOTFOUND;
        *nCount = static_cast<LONG>(type->Templates().size());
        return S_OK;
    });
}

HRESULT CRecordParser::GetTemplateItem(BSTR bsTypeName, LONG nIndex, BSTR* bsName, LONG* bDefault)
{
    if (!bsTypeName || !bsName || !bDefault)
        return E_INVALIDARG;
    return Locked([&] {
        const CDataType* type = ListedType(m_state.m_types, TextOf(bsTypeName));
        if (!type)
            return TYPE_E_ELEMENTNOTFOUND;
        if (nIndex < 0 || nIndex >= static_cast<LONG>(type->Templates().size()))
            return DISP_E_BADINDEX;
        const tagTEMPLATE& entry = type->Templates()[nIndex];
        *bsName = NewBstr(entry.szTemplate);
        *bDefault = entry.bDefault;
        return S_OK;
    });
}

// A column that uses the template keeps it.
HRESULT CRecordParser::RemoveTemplate(ULONG nField, BSTR Template)
{
    return WithColumn(nField, E_INVALIDARG, [&](const CDataField& field) {
        const unsigned uiType = field.GetType();
        if (uiType == TypeDate || uiType == TypeTime)
            m_state.m_types[uiType].RemoveTemplate(TextOf(Template));
        return S_OK;
    });
}

HRESULT CRecordParser::get_Environment(BSTR* pVal)
{
    if (!pVal)
        return E_POINTER;
    return Locked([&] {
        *pVal = NewBstr(WriteTemplates(m_state.m_types));
        return S_OK;
    });
}

// Lists aren't emptied first: what is read is added to them.
HRESULT CRecordParser::put_Environment(BSTR newVal)
{
    return Locked([&] { return ReadTemplates(TextOf(newVal), m_state.m_types) ? S_OK : S_FALSE; });
}

} // namespace Hesperon::specifics
