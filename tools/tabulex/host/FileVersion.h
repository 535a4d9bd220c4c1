// FileVersion: whether a file is still the one that was opened, by its time of change.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "tools/tabulex/host/Host.h"
#include "tools/tabulex/system/Fault.h"

namespace tabulex {

// Empty where the system doesn't tell.
using FileVersion = std::optional<std::filesystem::file_time_type>;

FileVersion VersionOf(const Host& host);

// The file was written to, or another one stands under its name, since that version.
std::optional<Fault> FindChange(const Host& host, const FileVersion& version);

} // namespace tabulex
