// Paths as the tool keeps them: UTF-8, whatever form the system's own have.
//
// Where the system's are bytes, they come through as they are.
#pragma once

#include <filesystem>
#include <string>

namespace tabulex {

inline std::filesystem::path PathOf(const std::string& path)
{
    return std::u8string(path.begin(), path.end());
}

inline std::string Utf8Of(const std::filesystem::path& path)
{
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

} // namespace tabulex
