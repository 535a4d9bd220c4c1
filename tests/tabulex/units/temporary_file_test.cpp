// Files that are removed with their object.
#include <filesystem>
#include <set>
#include <thread>

#include <gtest/gtest.h>

#include "tools/tabulex/output/TemporaryFile.h"
#include "tools/tabulex/system/FileBytes.h"
#include "tools/tabulex/system/Files.h"
#include "tools/tabulex/system/Paths.h"
#include "tools/tabulex/system/SpillFile.h"

using namespace tabulex;

// Who opens a file by its name may still hold the one before.
TEST(SpillFiles, HaveNamesThatAreNeverUsedAgain)
{
    std::set<std::string> names;
    for (int i = 0; i < 40; ++i) {
        SpillFile file;
        file.Write(std::to_string(i));
        EXPECT_TRUE(names.insert(file.Path()).second) << file.Path();
        EXPECT_EQ(FileBytes(file.Path()).Size(), std::to_string(i).size());
    }
}
namespace fs = std::filesystem;

TEST(TemporaryFiles, HoldTheirContentAndGo)
{
    std::string path;
    {
        const TemporaryFile file("text\n");
        path = file.Path();
        EXPECT_EQ(fs::file_size(PathOf(path)), 5u);
    }
    EXPECT_FALSE(fs::exists(PathOf(path)));
}

TEST(TemporaryFiles, GoAlsoWhereTheirReaderClosesThemLate)
{
    std::string path;
    std::thread reader;
    {
        const TemporaryFile file("text");
        path = file.Path();
        std::FILE* opened = OpenFile(path, FileMode::Read);
        ASSERT_NE(opened, nullptr);
        reader = std::thread([opened] {
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
            std::fclose(opened);
        });
    }
    reader.join();
    EXPECT_FALSE(fs::exists(PathOf(path)));
}
