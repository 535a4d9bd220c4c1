// Text of a file in one of the encodings that its publishers use.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tabulex {

// The bytes as UTF-8; empty if they can't be text of that encoding, or the system doesn't know
// it. Names are those that --encoding takes.
std::optional<std::string> DecodeBytes(std::string_view bytes, std::string_view encoding);

// A sequence that the end of the bytes cuts off counts as whole.
bool IsUtf8(std::string_view bytes);

bool IsAscii(std::string_view bytes);

} // namespace tabulex
