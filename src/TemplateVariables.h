// TemplateVariables: the variables that one column's template declares.
//
// A flat table with a fixed slot a letter, so that matching neither searches nor
// allocates. Which letters a template may declare depends on the column's type:
// Date d, m, y; Time f, h, m, s, t; prices f; whole numbers i.
#pragma once

#include <array>
#include <cstdint>

#include "platform/component.h"
#include "src/MathValue.h"

namespace Hesperon::specifics {

class TemplateVariables
{
public:
    // Slots are for the matcher, which looks a letter up once a template.
    static constexpr int kNoSlot = -1;
    static constexpr int SlotOf(OLECHAR letter)
    {
        const std::size_t at = kLetters.find(letter);
        return at == kLetters.npos ? kNoSlot : static_cast<int>(at);
    }

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
    tagMATHVALUE& At(int slot) { return m_values[slot]; }
    void ResetToZero() { m_values.fill(tagMATHVALUE::Integer(0)); }

private:
    static constexpr string_view_t kLetters = OLESTR("dfhimsty");

    void Declare(OLECHAR letter, tagMATHVALUE value);

    std::array<tagMATHVALUE, kLetters.size()> m_values{};
    std::uint8_t m_declared = 0; // a bit a slot
};

} // namespace Hesperon::specifics
