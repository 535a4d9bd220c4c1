// What the system's shell adds to its files: folders above the roots, and links that are files.
//
// Where the file system has several roots, such as drives, they lie in folders of the shell. These
// have names like "::{...}", which stand in the place of paths. A system with one root has no such
// folders, and no links but those of the file system.
//
// On Windows for threads that have called CoInitialize.
#pragma once

#include <filesystem>
#include <span>
#include <vector>

#include "platform/component.h"

// From the top down; the roots lie in the last one.
std::span<const string_view_t> FoldersAboveRoots();

// What the user calls such a folder; empty for any other.
string_t NameAboveRoots(string_view_t sFolder);

// The roots that are there now.
std::vector<std::filesystem::path> FileSystemRoots();

// What a link file leads to, whether that is still there or not. Empty for what is no such file,
// and for one that leads to nothing in the file system.
std::filesystem::path LinkTarget(const std::filesystem::path& path);
