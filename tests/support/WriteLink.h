// WriteLink: makes a link file of the shell.
#pragma once

#include <filesystem>

// For threads that have called CoInitialize. False if it can't be made.
bool WriteLink(const std::filesystem::path& link, const std::filesystem::path& target);
