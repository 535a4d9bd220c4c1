// Run by the build: writes files that are made from the definition of the command line.
//   tabulex_generate bash|zsh|fish OUTPUT
//   tabulex_generate man OUTPUT TEMPLATE
#include <cstdio>
#include <exception>
#include <fstream>
#include <sstream>

#include <fmt/format.h>

#include "tools/tabulex/completion/Completion.h"
#include "tools/tabulex/manual/ManualPage.h"

using namespace tabulex;

namespace {

std::string ContentOf(const char* pszPath)
{
    std::ifstream file(pszPath, std::ios::binary);
    file.exceptions(std::ios::failbit | std::ios::badbit);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

void Write(const char* pszPath, const std::string& text)
{
    std::ofstream file(pszPath, std::ios::binary);
    file.exceptions(std::ios::failbit | std::ios::badbit);
    file << text << std::flush;
}

std::string Generate(const std::string& kind, const char* pszTemplate)
{
    const CommandTree tree = ReadCommandTree();
    if (kind == "bash")
        return BashCompletion(tree);
    if (kind == "zsh")
        return ZshCompletion(tree);
    if (kind == "fish")
        return FishCompletion(tree);
    if (kind == "man" && pszTemplate)
        return ManualPage(tree, ContentOf(pszTemplate));
    throw std::invalid_argument("usage: tabulex_generate bash|zsh|fish|man OUTPUT [TEMPLATE]");
}

} // namespace

int main(int argc, char** argv)
{
    try {
        if (argc < 3)
            throw std::invalid_argument("an output is needed");
        Write(argv[2], Generate(argv[1], argc > 3 ? argv[3] : nullptr));
        return 0;
    } catch (const std::exception& fault) {
        fmt::print(stderr, "tabulex_generate: {}\n", fault.what());
        return 1;
    }
}
