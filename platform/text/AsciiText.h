// The part of a text that is ASCII, which most of a quote file is: widened without the
// converter of its code page.
#pragma once

#include <cstddef>
#include <string_view>

#include "platform/component.h"

// Bytes in front that are below 0x80.
std::size_t AsciiPrefix(std::string_view bytes);

// Each byte as the unit of its value, appended to `out`.
void AppendAscii(std::string_view bytes, string_t& out);
