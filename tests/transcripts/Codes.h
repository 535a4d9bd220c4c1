// Result codes as texts.
#pragma once

#include <string>

#include "platform/component.h"

namespace transcripts {

// "E_FAIL"; eight digits for a code without a name here.
std::string CodeName(HRESULT hr);

} // namespace transcripts
