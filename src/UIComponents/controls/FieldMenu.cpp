// Numbers of items: 2000 + i is the plain type i; 2000 + 100 * (i + 1) + j is template j of
// type i, and the number after its last template is the editor's.

#include "src/UIComponents/controls/FieldMenu.h"

#include <cstdint>

#include "Simples/interface/ResourceStrings.h"
#include "src/values/CaseFold.h"

namespace Hesperon::specifics {

namespace {

constexpr std::size_t kFirstId = 2000;
constexpr std::size_t kGroup = 100; // numbers of the plain types, and of each type's templates

LONG PlainId(std::size_t nType)
{
    return static_cast<LONG>(kFirstId + nType);
}

LONG TemplateId(std::size_t nType, std::size_t nTemplate)
{
    return static_cast<LONG>(kFirstId + kGroup * (nType + 1) + nTemplate);
}

} // namespace

FieldMenu::FieldMenu(std::vector<FieldMenuType> types, const ColumnField& column)
    : m_types(std::move(types)), m_sCustom(LoadResourceString(IDS_CUSTOM_TEMPLATE)),
      m_templateItems(m_types.size())
{
    for (std::size_t i = 0; i < m_types.size(); ++i) {
        const bool bPlain = m_types[i].templates.empty();
        if (i > 0 && bPlain != m_types[i - 1].templates.empty())
            m_items.push_back({});
        Item item{.pszText = m_types[i].sText.c_str()};
        if (bPlain) {
            item.nId = PlainId(i);
        } else {
            m_templateItems[i] = TemplateItems(i, column);
            item.items = m_templateItems[i];
        }
        m_items.push_back(item);
    }
}

std::vector<FieldMenu::Item> FieldMenu::TemplateItems(std::size_t nType,
                                                      const ColumnField& column) const
{
    const FieldMenuType& type = m_types[nType];
    const bool bOwn = type.sName == column.sName;
    std::vector<Item> items;
    for (std::size_t j = 0; j < type.templates.size(); ++j)
        items.push_back(
            {.pszText = type.templates[j].c_str(),
             .nId = TemplateId(nType, j),
             .bChecked = bOwn && EqualIgnoringCase(type.templates[j], column.sTemplate)});
    items.push_back({});
    items.push_back({.pszText = m_sCustom.c_str(), .nId = TemplateId(nType, items.size() - 1)});
    return items;
}

FieldChoice FieldMenu::Choice(LONG nId) const
{
    using Kind = FieldChoice::Kind;
    if (nId < PlainId(0))
        return {};
    const std::size_t nNumber = static_cast<std::size_t>(nId) - kFirstId;
    const bool bPlain = nNumber < kGroup;
    const std::size_t nType = bPlain ? nNumber : nNumber / kGroup - 1;
    if (nType >= m_types.size() || bPlain != m_types[nType].templates.empty())
        return {};
    if (bPlain)
        return {Kind::Plain, nType, 0};
    const std::size_t nTemplate = nNumber % kGroup;
    const std::size_t nTemplates = m_types[nType].templates.size();
    if (nTemplate > nTemplates)
        return {};
    return {nTemplate == nTemplates ? Kind::Custom : Kind::Template, nType, nTemplate};
}

string_t MenuText(const OLECHAR* pszText)
{
    constexpr std::uintptr_t kLastId = 0xFFFF;
    const auto nAddress = reinterpret_cast<std::uintptr_t>(pszText);
    if (nAddress > kLastId)
        return pszText;
    return nAddress == 0 ? string_t()
                         : string_t(LoadResourceString(static_cast<unsigned>(nAddress)));
}

} // namespace Hesperon::specifics
