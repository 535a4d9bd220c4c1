// Tests of a text that columns, templates and detection share.
#pragma once

#include "platform/component.h"

namespace Hesperon::specifics {

inline constexpr std::size_t kMaxText = 511; // characters of a template, field or record

// Digits and ".,-+" only; true for the empty text.
bool IsFloatText(string_view_t sText);
// Digits and "-+" only. With bAllowFraction ".," may occur too, and only zeros may
// follow the first '.' or, if there is none, the first ','.
bool IsIntegerText(string_view_t sText, bool bAllowFraction);

// One of the ten template dividers ":/\.,=|-_ ", by the character's low byte.
bool IsTemplateDivider(OLECHAR c);
// Cuts trailing dividers off and keeps leading ones. A text of dividers alone stays.
string_view_t RemoveBoundaryDividers(string_view_t sText);

// Number of pairs of equal letters, ignoring case, each letter in one pair at most; a
// second text of one letter that occurs in the first counts as all of the first.
// REQUIRES: texts without zeros.
std::size_t FindMatchCount(string_view_t sFirst, string_view_t sSecond);

} // namespace Hesperon::specifics
