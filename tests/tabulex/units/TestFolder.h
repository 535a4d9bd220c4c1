// TestFolder: a folder for one test, whose paths are UTF-8 like those of the tool.
#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "tests/support/TempFolder.h"
#include "tools/tabulex/system/Paths.h"

class TestFolder : public TempFolder
{
public:
    std::string operator/(const char* pszName) const
    {
        return tabulex::Utf8Of(Path() / tabulex::PathOf(pszName));
    }
    std::size_t Entries() const
    {
        return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(Path()),
                                                      std::filesystem::directory_iterator()));
    }
};

inline std::string ContentOf(const std::string& path)
{
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}
