// The string table: every text for the user, by id.
//
// All texts come from the one module-wide resource handle, which stands for a table
// of the component's own languages or of a host's. Safe from any thread.
#pragma once

#include "platform/StringTable.h"

enum class Language
{
    Chinese,
    English
};

// The component's own table of a language.
const TabulexStringTable& OwnStrings(Language language);

// Address of the table from which texts are loaded; that of the Chinese one at start.
LONG_PTR ResourceHandle();
// 0 stands for the Chinese one.
void SetResourceHandle(LONG_PTR nHandle);

inline void SetResourceLanguage(Language language)
{
    SetResourceHandle(reinterpret_cast<LONG_PTR>(&OwnStrings(language)));
}

// The text of an id; empty for an id that isn't in the table. The view stays good
// as long as the table.
string_view_t LoadResourceString(unsigned nId);

// The text of an id with each "%s" replaced by the next argument, in order.
string_t FormatResourceString(unsigned nId, std::initializer_list<string_view_t> args);
