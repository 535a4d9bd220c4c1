#include "src/values/XMLPropertyListImpl.h"

#include <algorithm>

namespace Hesperon::specifics {

bool CXMLPropertyListImpl::Read(string_view_t sText)
{
    m_uiOpen = 0;
    return Scan(sText);
}

std::uint32_t CXMLPropertyListImpl::BitOf(string_view_t sName) const
{
    const auto at = std::ranges::find(m_elements, sName);
    return at == m_elements.end() ? 0 : std::uint32_t{1} << (at - m_elements.begin());
}

} // namespace Hesperon::specifics
