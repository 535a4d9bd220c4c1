// What a native host sets once, before it creates objects: the process-wide
// choices that a Windows host makes through its locale and through resources.
#pragma once

#include "platform/component.h"

extern "C" {

enum TabulexLanguage
{
    TABULEX_LANGUAGE_CHINESE, // the component's string table as it stands
    TABULEX_LANGUAGE_ENGLISH, // the second table under the same ids
};

// Language of messages and display names. Chinese unless set.
TABULEX_API void TabulexSetLanguage(TabulexLanguage language);

// Code page in which text leaves files, by name ("windows-1252", "gbk", "utf-8")
// or number. E_INVALIDARG for an unknown one.
TABULEX_API HRESULT TabulexSetEncoding(const char* name);

// Where assertion and trace reports go: a file to append to, "-" for standard
// error, null or "" for nowhere, which is the default.
TABULEX_API void TabulexSetReportLog(const char* path);
}
