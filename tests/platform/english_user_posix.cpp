// Makes the tests independent of the locale they are started in. What depends on
// the environment reads it at its first use, which is after this.
#include <cstdlib>

#include <gtest/gtest.h>

namespace {

class EnglishUser : public testing::Environment
{
public:
    void SetUp() override { setenv("LC_ALL", "C", 1); }
};

[[maybe_unused]] const testing::Environment* const g_englishUser =
    testing::AddGlobalTestEnvironment(new EnglishUser);

} // namespace
