// Which names are the same.
#include <gtest/gtest.h>

#include "tools/tabulex/system/Files.h"

TEST(Names, DifferByTheCaseOfLetters)
{
    EXPECT_TRUE(tabulex::AreSameName("out.csv", "out.csv"));
    EXPECT_FALSE(tabulex::AreSameName("out.csv", "OUT.csv"));
}
