// What a scanner calls, in plain text: "+NAME" for a start, "-NAME" for an end,
// "'text'" for characters; then "ok", or "broken" where the text wasn't read to its end.
#pragma once

#include <string>

#include "platform/component.h"

std::string Heard(string_view_t sDocument);

// The same by a second, plain implementation, one character at a time.
std::string PlainlyHeard(string_view_t sDocument);
