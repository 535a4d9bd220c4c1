// What stands in the system's register of classes, HKEY_CLASSES_ROOT.
#pragma once

#include <map>
#include <set>

#include "platform/component.h"

// The keys directly under those in which a component leaves entries: the root itself,
// CLSID, AppID, TypeLib and Interface. With their paths.
std::set<string_t> KeysOfComponents();

// Everything under a key: each key by its path, with its default value, and each named
// value by its key's path, a colon and its name.
using Values = std::map<string_t, string_t>;
Values ValuesUnder(const string_t& key);

void WriteKey(const string_t& key, const string_t& value);
// A key that lasts until the system stops. No lasting key can be made under it.
void WriteVolatileKey(const string_t& key);
void DeleteKey(const string_t& key);
