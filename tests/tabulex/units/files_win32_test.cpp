// Files on a system whose names ignore case, where devices have names and a file in use can't
// be replaced.
#include <fstream>
#include <functional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/component.h"
#include "tests/tabulex/units/Cells.h"
#include "tests/tabulex/units/TestFolder.h"
#include "tools/tabulex/output/OutputFile.h"
#include "tools/tabulex/output/SqliteOutput.h"
#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/system/Files.h"
#include "tools/tabulex/system/SqliteLibrary.h"

using namespace tabulex;

TEST(Names, DoNotDifferByTheCaseOfLetters)
{
    EXPECT_TRUE(AreSameName("out.csv", "OUT.csv"));
    EXPECT_TRUE(AreSameName("\xC3\xA9.csv", "\xC3\x89.csv"));
    EXPECT_FALSE(AreSameName("out.csv", "out.cs"));
    EXPECT_FALSE(AreSameName("\xE8\x82\xA1.csv", "\xE7\xA5\xA8.csv"));
}

TEST(OutputFiles, AreWrittenToADeviceDirectly)
{
    OutputFile file;
    ASSERT_TRUE(file.Open("NUL"));
    EXPECT_FALSE(file.HidesUntilCommit());
    EXPECT_TRUE(file.Write("text"));
    EXPECT_TRUE(file.Commit());
}

TEST(OutputFiles, LeaveAFileInUseAsItIs)
{
    const TestFolder folder;
    std::ofstream user(folder / "out.csv");
    OutputFile file;
    ASSERT_TRUE(file.Open(folder / "out.csv"));
    EXPECT_FALSE(file.Commit());
    EXPECT_EQ(file.FaultText(), "Permission denied");
    EXPECT_EQ(folder.Entries(), 1u);
}

TEST(SystemErrors, AreOneLineWithoutItsEnd)
{
    const std::string text = SystemErrorText(ERROR_ACCESS_DENIED);
    EXPECT_NE(text, "");
    EXPECT_THAT(text, testing::Not(testing::EndsWith("\n")));
    EXPECT_EQ(SystemErrorText(0x2FFFFFFF), ""); // no error has this number
}

TEST(SqliteWithoutALibrary, IsReportedAndLeavesNothing)
{
    if (HasSqlite())
        GTEST_SKIP() << "the library is there";
    const TestFolder folder;
    OutputOptions options;
    options.sPath = folder / "out.db";
    options.format = OutputFormat::Sqlite;
    const auto check = [&] { CheckSqliteOutput(options, kColumns); };
    const auto write = [&] { SqliteOutput(options, kColumns); };
    for (const std::function<void()>& action : {std::function<void()>(check), {write}}) {
        try {
            action();
            ADD_FAILURE() << "no fault";
        } catch (const Fault& fault) {
            EXPECT_EQ(fault.status, ExitStatus::FileFault);
            EXPECT_THAT(fault.sMessage, testing::HasSubstr("winsqlite3.dll, is missing"));
        }
    }
    EXPECT_EQ(folder.Entries(), 0u);
}
