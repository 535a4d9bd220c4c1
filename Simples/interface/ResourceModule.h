// Where texts are kept: in a module's resources on Windows, in a table in memory elsewhere.
// A handle stands for one such place.
#pragma once

#include "platform/component.h"

enum class Language
{
    Chinese,
    English
};

// The component's own texts in a language. Windows: the English ones are a module of their
// own, TabulexConverterEnglish.dll beside the component's, and where that is missing the
// Chinese ones stand in for them.
LONG_PTR OwnStrings(Language language);

// The text of an id; empty for an id that isn't there. The view is valid as long as the
// place that the handle stands for.
string_view_t StringAt(LONG_PTR nHandle, unsigned nId);
