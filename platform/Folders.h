// What a list of files needs of the system beside std::filesystem: path texts, local times, and
// where to begin.
//
// A path text is UTF-16 by the rule of File.h, so that each name of the system has one and
// finds its way back. Safe from any thread.
#pragma once

#include <filesystem>

#include "platform/component.h"

std::filesystem::path PathOfText(string_view_t sPath);
string_t TextOfPath(const std::filesystem::path& path);

// The user's local time, in whole seconds; 0 for a time that can't be expressed.
DATE LocalTime(std::filesystem::file_time_type time);

// Where a user looks for files first: the desktop on Windows, the current folder elsewhere.
// Empty where the system can't say.
string_t StartFolder();
