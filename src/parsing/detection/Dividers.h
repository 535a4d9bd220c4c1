// The field dividers of a file.
#pragma once

#include <array>

#include "platform/component.h"

namespace Hesperon::specifics {

// The characters that can divide fields, weakest first: of those that occur in a record
// the last one in this list wins. Bit n of a mask stands for
// character n.
inline constexpr string_view_t kDividerCandidates = OLESTR(": ,;|\t");

class DividerSet
{
public:
    bool Contains(OLECHAR c) const { return c < m_is.size() && m_is[c]; }
    void Insert(OLECHAR c) { m_is[c] = true; } // REQUIRES: an ASCII character
    void Clear() { m_is = {}; }

    LONG Mask() const;
    static DividerSet FromMask(LONG nMask);
    bool operator==(const DividerSet&) const = default;

private:
    std::array<bool, 128> m_is{};
};

// The dividers that a record shows: the strongest candidate and the tab, and the blank too
// if it joins a date and a time. Without a candidate in the record the first is the
// character 0.
DividerSet FindDividers(string_view_t sRecord);

} // namespace Hesperon::specifics
