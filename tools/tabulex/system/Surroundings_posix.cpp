#include "tools/tabulex/system/Surroundings.h"

namespace tabulex {

std::vector<std::string> CommandLineArguments(int argc, char** argv)
{
    return {argv, argv + argc};
}

bool IsSystemChinese()
{
    return false;
}

} // namespace tabulex
