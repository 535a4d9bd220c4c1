// The string table: every text for the user, by id.
//
// All texts come from the one module-wide resource handle, which stands for the
// component's own texts in one of its languages, or for a host's. Safe from any thread.
#pragma once

#include "Simples/interface/ResourceModule.h"

// The ids of the component's own texts. A host's table may hold others.
enum StringId : unsigned
{
#define STRING(name, id, text) name = (id),
#include "Simples/interface/StringTable.inc"
#undef STRING
};

// Where texts come from; the component's own Chinese ones at start.
LONG_PTR ResourceHandle();
// 0 stands for the Chinese ones.
void SetResourceHandle(LONG_PTR nHandle);

inline void SetResourceLanguage(Language language)
{
    SetResourceHandle(OwnStrings(language));
}

// The text of an id; empty for an id that isn't in the table. The view is valid as
// long as the table.
string_view_t LoadResourceString(unsigned nId);

// The text of an id with each "%s" replaced by the next argument, in order.
string_t FormatResourceString(unsigned nId, std::initializer_list<string_view_t> args);
