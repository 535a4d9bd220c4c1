// Path texts, local times and the folder where a user begins.

#include <chrono>
#include <cmath>

#include <gtest/gtest.h>

#include "platform/Folders.h"

namespace {

std::filesystem::file_time_type FileTime(std::chrono::sys_seconds time)
{
    return std::filesystem::file_time_type(std::chrono::file_clock::from_sys(time));
}

TEST(Folders, PathsAndTheirTextsGoBothWays)
{
    for (const string_view_t sPath : {OLESTR(""), OLESTR("quotes"), OLESTR("\u8D27\u5E01.csv"),
                                      OLESTR("\U0001F4C8.csv"), OLESTR("a b")})
        EXPECT_EQ(TextOfPath(PathOfText(sPath)), sPath);
}

// Whatever the time zone is: no day there is more than one away from that of the world.
TEST(Folders, TimesOfFilesAreLocal)
{
    using namespace std::chrono;
    const sys_days day = year(2024) / 6 / 3; // 45446
    const DATE noon = LocalTime(FileTime(day + hours(12)));
    EXPECT_NEAR(noon, 45446.5, 0.6);
    EXPECT_NEAR(LocalTime(FileTime(day + hours(12) + seconds(90))) - noon, 90 / 86400., 1e-7);
    EXPECT_NEAR(std::remainder(noon * 96, 1), 0, 1e-4); // a whole quarter of an hour
}

TEST(Folders, TimesBeforeTheEpochHaveDatesToo)
{
    using namespace std::chrono;
    const sys_days day = year(1960) / 2 / 29; // 21975
    EXPECT_NEAR(LocalTime(FileTime(day + hours(12))), 21975.5, 0.6);
}

TEST(Folders, TheStartFolderIsWhole)
{
    const std::filesystem::path folder = PathOfText(StartFolder());
    EXPECT_TRUE(folder.is_absolute());
    EXPECT_TRUE(std::filesystem::is_directory(folder));
}

} // namespace
