// TemplateVariables: the variables that one column's template declares.
//
// A flat table with a fixed slot for each letter, so that matching neither searches nor
// allocates. Which letters a template may declare depends on the column's type:
// Date d, m, y; Time f, h, m, s, t; prices f; whole numbers i.
#pragma once

#include <array>
#include <cstdint>

#include "platform/component.h"
#include "src/parsing/templates/MathValue.h"

namespace Hesperon::specifics {

class TemplateVariables
{
public:
    // Slots are for the matcher, which looks a letter up once, when a template is set.
    static constexpr int kSlots = 8;
    static constexpr int kNoSlot = -1;
    static constexpr int SlotOf(OLECHAR letter);

    // Forgets all variables and declares those of a type's pattern (the template
    // up to '@'): integer 0, for a price double 0.
    void Build(unsigned uiType, string_view_t sPattern);
    bool IsEmpty() const { return m_declared == 0; }
    bool Declares(OLECHAR letter) const
    {
        const int slot = SlotOf(letter);
        return slot != kNoSlot && (m_declared >> slot & 1);
    }

    // Null for a letter that isn't declared.
    tagMATHVALUE* Find(OLECHAR letter)
    {
        return Declares(letter) ? &m_values[SlotOf(letter)] : nullptr;
    }
    // The integer of a letter, 0 if it isn't declared.
    LONGLONG IntegerOr0(OLECHAR letter) const
    {
        return Declares(letter) && m_values[SlotOf(letter)].IsInteger()
                   ? m_values[SlotOf(letter)].nValue
                   : 0;
    }
    tagMATHVALUE& At(int slot) { return m_values[slot]; }
    void ResetToZero() { m_values.fill(tagMATHVALUE::Integer(0)); }

private:
    void Declare(OLECHAR letter, tagMATHVALUE value);

    std::array<tagMATHVALUE, kSlots> m_values{};
    std::uint8_t m_declared = 0; // one bit per slot
};

// A switch, so that the slot of a literal is known to the compiler.
constexpr int TemplateVariables::SlotOf(OLECHAR letter)
{
    switch (letter) {
    case OLESTR('d'):
        return 0;
    case OLESTR('f'):
        return 1;
    case OLESTR('h'):
        return 2;
    case OLESTR('i'):
        return 3;
    case OLESTR('m'):
        return 4;
    case OLESTR('s'):
        return 5;
    case OLESTR('t'):
        return 6;
    case OLESTR('y'):
        return 7;
    default:
        return kNoSlot;
    }
}

} // namespace Hesperon::specifics
