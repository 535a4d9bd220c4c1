// Names of code pages.
#pragma once

#include <string>

#include "platform/component.h"

// The name that the system's converters know a code page by; one that they don't
// know for a number without a page.
std::string ConverterName(UINT nCodePage);
