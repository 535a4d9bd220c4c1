// The string table: every text for the user, by id, in the module's languages.
#pragma once

#include "platform/component.h"

enum class Language
{
    Chinese,
    English
};

// The language in which LoadResourceString answers from now on; Chinese at start.
void SetResourceLanguage(Language language);
Language ResourceLanguage();

// The text of an id; empty for an id that isn't in the table. The view stays good
// for the life of the process.
string_view_t LoadResourceString(unsigned nId);

// The text of an id with each "%s" replaced by the next argument, in order.
string_t FormatResourceString(unsigned nId, std::initializer_list<string_view_t> args);
