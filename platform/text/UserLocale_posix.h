// The locale that the environment asks for, read without touching the process's
// own locale.
#pragma once

#include <string>
#include <string_view>

#include "platform/component.h"

// The value of LC_ALL, of the category ("LC_TIME" ...) or of LANG, whichever is
// the first that is set and not empty; empty if none is.
std::string EnvironmentLocale(const char* category);

// Language and country of a locale value, "en_US" where it names none: of
// "zh_CN.GBK@pinyin" it is "zh_CN", of "C", "POSIX" and "" it is "en_US".
std::string LocaleName(std::string_view locale);

// The code page that text has in a locale: that of its encoding where it names
// one, else the one that its language uses on Windows, 1252 for most.
UINT LocaleCodePage(std::string_view locale);
