// What a folder view shows.

#include <gtest/gtest.h>

#include "src/UIComponents/controls/FolderFilter.h"
#include "tests/support/Text.h"

using Hesperon::specifics::ShowsInFolder;

namespace {

struct ShownRow
{
    const char* szPath;
    bool bShown;
};

constexpr ShownRow kShownRows[] = {
    // things with a drive
    {"C:", true},
    {"C:\\", true},
    {"C:\\quotes", true},
    {"c:\\quotes\\a.csv", true},
    {"1:x", true},
    // the recycle bin, on any drive and in any case
    {"C:\\RECYCLED", false},
    {"D:\\Recycled", false},
    {"z:\\recycled", false},
    {"\\RECYCLED", false},
    {"C:\\RECYCLED\\", true},
    {"C:\\RECYCLED\\Dc1.txt", true},
    {"C:\\quotes\\RECYCLED", true}, // the whole rest is compared
    {"C:\\RECYCLED2", true},
    {"C:\\$RECYCLE.BIN", true},
    {"\\\\RECYCLED", true}, // "\RECYCLED" is after the first backslash
    // other machines
    {"\\\\server", true},
    {"\\\\server\\share\\a.csv", true},
    {"\\\\s", true},
    {"\\\\", false},
    {"\\x", false},
    // from the root of a system without drives
    {"/", true},
    {"/home/me", true},
    {"/RECYCLED", true},
    {"/odd\\RECYCLED", false},
    // things without a path
    {"", false},
    {":", false},
    {"C", false},
    {"quotes", false},
    {"quotes/a.csv", false},
    {"::{20D04FE0-3AEA-1069-A2D8-08002B30309D}", false},
};

TEST(FolderFilter, ShowsThingsOfTheFileSystemButTheRecycleBin)
{
    for (const ShownRow& row : kShownRows)
        EXPECT_EQ(ShowsInFolder(Wide(row.szPath), {}), row.bShown) << row.szPath;
}

// Any folder on the way is shown, whatever it is.
TEST(FolderFilter, ShowsTheFoldersOfTheChain)
{
    const string_t chain[] = {OLESTR("::{DESKTOP}"), OLESTR("C:\\"), OLESTR("C:\\RECYCLED")};
    for (const char* szPath : {"::{DESKTOP}", "::{desktop}", "C:\\", "c:\\recycled"})
        EXPECT_TRUE(ShowsInFolder(Wide(szPath), chain)) << szPath;
    EXPECT_FALSE(ShowsInFolder(OLESTR("::{NETWORK}"), chain));
    EXPECT_FALSE(ShowsInFolder(OLESTR("D:\\RECYCLED"), chain));
    EXPECT_TRUE(ShowsInFolder(OLESTR("C:\\quotes"), chain));
}

} // namespace
