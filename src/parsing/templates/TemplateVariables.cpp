#include "src/parsing/templates/TemplateVariables.h"

#include "src/parsing/DataTypes.h"

namespace Hesperon::specifics {

namespace {

string_view_t LettersOf(unsigned uiType)
{
    switch (uiType) {
    case TypeDate:
        return OLESTR("dmy");
    case TypeTime:
        return OLESTR("fhmst");
    default:
        return {};
    }
}

} // namespace

void TemplateVariables::Declare(OLECHAR letter, tagMATHVALUE value)
{
    const int slot = SlotOf(letter);
    if (slot == kNoSlot)
        return;
    m_values[slot] = value;
    m_declared = static_cast<std::uint8_t>(m_declared | 1 << slot);
}

// Numbers always have their variable. Dates and times have those whose letters occur in the
// pattern, and the validity rules ask which of them must.
void TemplateVariables::Build(unsigned uiType, string_view_t sPattern)
{
    m_declared = 0;
    if (IsPriceType(uiType))
        Declare(OLESTR('f'), tagMATHVALUE::Double(0));
    if (IsWholeType(uiType))
        Declare(OLESTR('i'), tagMATHVALUE::Integer(0));
    for (OLECHAR letter : LettersOf(uiType))
        if (sPattern.find(letter) != sPattern.npos)
            Declare(letter, tagMATHVALUE::Integer(0));
}

} // namespace Hesperon::specifics
