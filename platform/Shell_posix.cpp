#include "platform/Shell.h"

std::span<const string_view_t> FoldersAboveRoots()
{
    return {};
}

string_t NameAboveRoots(string_view_t)
{
    return {};
}

std::vector<std::filesystem::path> FileSystemRoots()
{
    return {"/"};
}

std::filesystem::path LinkTarget(const std::filesystem::path&)
{
    return {};
}
