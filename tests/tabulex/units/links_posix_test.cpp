// Outputs whose names are links or devices.
#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tabulex/units/Cells.h"
#include "tests/tabulex/units/TestFolder.h"
#include "tools/tabulex/output/OutputFile.h"
#include "tools/tabulex/output/SqliteOutput.h"
#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/system/OutputPlace.h"

using namespace tabulex;
namespace fs = std::filesystem;

namespace {

OutputOptions DatabaseAt(const std::string& path)
{
    OutputOptions options;
    options.sPath = path;
    options.format = OutputFormat::Sqlite;
    options.oldTable = OldTable::Append;
    return options;
}

} // namespace

TEST(OutputFiles, ReplaceOrMakeWhatALinkLeadsTo)
{
    const TestFolder folder;
    std::ofstream(folder / "real.csv") << "old";
    fs::create_symlink("real.csv", folder / "second.csv");
    fs::create_symlink(folder / "second.csv", folder / "link.csv");
    fs::create_symlink("new.csv", folder / "early.csv");
    for (const auto& [name, target] :
         {std::pair("link.csv", "real.csv"), {"early.csv", "new.csv"}}) {
        SCOPED_TRACE(name);
        OutputFile file;
        ASSERT_TRUE(file.Open(folder / name));
        file.Write("new");
        EXPECT_TRUE(file.Commit());
        EXPECT_TRUE(fs::is_symlink(folder / name));
        EXPECT_EQ(ContentOf(folder / target), "new");
    }
}

TEST(OutputFiles, KeepThePermissionsOfWhatTheyReplace)
{
    const TestFolder folder;
    constexpr fs::perms kMode = fs::perms::owner_write | fs::perms::group_read;
    std::ofstream(folder / "out.csv") << "old";
    fs::permissions(folder / "out.csv", kMode);
    OutputFile file;
    ASSERT_TRUE(file.Open(folder / "out.csv"));
    EXPECT_TRUE(file.Commit());
    EXPECT_EQ(fs::status(folder / "out.csv").permissions(), kMode);
}

TEST(OutputFiles, DoNotReplaceWhatIsReadOnly)
{
    const TestFolder folder;
    std::ofstream(folder / "out.csv") << "old";
    fs::permissions(folder / "out.csv", fs::perms::owner_read);
    OutputFile file;
    EXPECT_FALSE(file.Open(folder / "out.csv"));
    EXPECT_EQ(file.FaultText(), "the file is read-only");
    EXPECT_EQ(ContentOf(folder / "out.csv"), "old");
}

TEST(OutputFiles, AreNotFoundInARingOfLinks)
{
    const TestFolder folder;
    fs::create_symlink("b", folder / "a");
    fs::create_symlink("a", folder / "b");
    OutputFile file;
    EXPECT_FALSE(file.Open(folder / "a"));
    EXPECT_EQ(file.FaultText(), "Too many levels of symbolic links");
}

TEST(Places, OfStreamsHaveTheirDescriptors)
{
    const TestFolder folder;
    fs::create_symlink("/dev/stdout", folder / "out");
    EXPECT_EQ(FindPlace("/dev/stdout").nStream, 1);
    EXPECT_EQ(FindPlace("/dev/fd/2").nStream, 2);
    EXPECT_EQ(FindPlace("/proc/self/fd/7").nStream, 7);
    EXPECT_EQ(FindPlace(folder / "out").nStream, 1);
    EXPECT_EQ(FindPlace("/dev/null").nStream, -1);
    EXPECT_EQ(FindPlace(folder / "1").nStream, -1);
    EXPECT_TRUE(AreSamePlace("-", folder / "out"));
    EXPECT_FALSE(AreSamePlace("-", "/dev/stderr"));
}

TEST(Places, AreTheSameByEveryName)
{
    const TestFolder folder;
    std::ofstream(folder / "a") << "text";
    fs::create_symlink("a", folder / "link");
    fs::create_hard_link(folder / "a", folder / "hard");
    fs::create_symlink("new", folder / "early");
    EXPECT_TRUE(AreSamePlace(folder / "a", folder / "./a"));
    EXPECT_TRUE(AreSamePlace(folder / "link", folder / "hard"));
    EXPECT_TRUE(AreSamePlace(folder / "early", folder / "new"));
    EXPECT_FALSE(AreSamePlace(folder / "a", folder / "new"));
}

TEST(OutputFiles, NoticeAFullDevice)
{
    if (!fs::exists("/dev/full"))
        GTEST_SKIP() << "no device that is always full";
    OutputFile file;
    ASSERT_TRUE(file.Open("/dev/full"));
    EXPECT_FALSE(file.HidesUntilCommit());
    file.Write("text");
    EXPECT_FALSE(file.Commit());
    EXPECT_EQ(file.FaultText(), "No space left on device");
}

TEST(SqliteLinks, AreFollowed)
{
    const TestFolder folder;
    fs::create_symlink("out.db", folder / "link.db");
    for (string_view_t symbol : {OLESTR("A"), OLESTR("B")}) {
        SqliteOutput output(DatabaseAt(folder / "link.db"), kColumns);
        output.Write(RowFor(symbol).data(), 1);
        ASSERT_TRUE(output.Commit()) << output.FaultText();
    }
    EXPECT_TRUE(fs::is_symlink(folder / "link.db"));
    SqliteDatabase database;
    ASSERT_TRUE(database.Open(folder / "out.db"));
    EXPECT_THAT(database.Texts("SELECT Symbol FROM quotes -- ?1", {}),
                testing::ElementsAre("A", "B"));
}

TEST(SqliteDevices, AreRefused)
{
    try {
        SqliteOutput(DatabaseAt("/dev/null"), kColumns);
        ADD_FAILURE() << "no fault";
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.status, ExitStatus::FileFault);
        EXPECT_THAT(fault.sMessage, testing::HasSubstr("isn't a regular file"));
    }
}
