// What can be read from the names of code pages, without asking the system.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "platform/component.h"

struct CodePageName
{
    UINT nCodePage;
    const char* name;
};

// Registered names that don't contain the number of their page, with the number. Where a
// page stands twice, the first name is the exact one.
std::span<const CodePageName> RegisteredCodePages();

// Upper and lower case, and '-', '_' and blanks, don't count in a name.
std::string PlainName(std::string_view name);

// The number of a registered name; 0 for others.
UINT RegisteredCodePage(std::string_view name);

// The number at the end of "936", "cp936", "windows-936" and "ibm-936", whether there is such
// a page or not; 0 for other names.
UINT CodePageInName(std::string_view name);
