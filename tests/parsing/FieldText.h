// Helpers for tests of columns: a parsed field's value in plain text.
#pragma once

#include <string>

#include "src/parsing/templates/IQDParseImpl.h"

// Lossy: units beyond ASCII become "{xxxx}".
std::string Shown(string_view_t sText);

Hesperon::specifics::CDataField Column(unsigned uiType, string_view_t sTemplate = {});

inline constexpr const char* kRefused = "refused";

// "2003-12-25" for a day, "09:30:15.005" for a time of day, digits for a number,
// kRefused if GetValue gives nothing.
std::string ShownValue(Hesperon::specifics::CDataField& field);

// The same for a fresh column that parses one text.
std::string Read(unsigned uiType, string_view_t sTemplate, string_view_t sText);
