// Files whose names are in any language.
#include <cerrno>

#include <gtest/gtest.h>

#include "tests/tabulex/TestFolder.h"
#include "tools/tabulex/output/OutputFile.h"
#include "tools/tabulex/system/Files.h"
#include "tools/tabulex/system/Paths.h"

using namespace tabulex;

namespace {

constexpr const char* kName =
    "\xE8\x82\xA1\xE7\xA5\xA8 \xC3\xA9.csv"; // no code page has all of these

bool Put(const std::string& path, FileMode mode, std::string_view text)
{
    std::FILE* file = OpenFile(path, mode);
    if (!file)
        return false;
    const bool bWritten = std::fwrite(text.data(), 1, text.size(), file) == text.size();
    return std::fclose(file) == 0 && bWritten;
}

std::string ReadBack(const std::string& path)
{
    char text[100];
    std::FILE* file = OpenFile(path, FileMode::Read);
    if (!file)
        return "(none)";
    const std::size_t nRead = std::fread(text, 1, sizeof text, file);
    std::fclose(file);
    return std::string(text, nRead);
}

} // namespace

TEST(Files, AreWrittenAnewOrAppendedTo)
{
    const TestFolder folder;
    const std::string path = folder / kName;
    EXPECT_TRUE(Put(path, FileMode::WriteNew, "a\nb\x1A"));
    EXPECT_TRUE(Put(path, FileMode::Append, "c\r\n"));
    EXPECT_EQ(ReadBack(path), "a\nb\x1A"
                              "c\r\n");
    EXPECT_TRUE(Put(path, FileMode::Write, "d"));
    EXPECT_EQ(ReadBack(path), "d");
    EXPECT_EQ(std::filesystem::file_size(PathOf(path)), 1u);
}

TEST(Files, AreNotMadeWhereTheNameIsTaken)
{
    const TestFolder folder;
    ASSERT_TRUE(Put(folder / kName, FileMode::WriteNew, "old"));
    errno = 0;
    EXPECT_FALSE(Put(folder / kName, FileMode::WriteNew, "new"));
    EXPECT_EQ(errno, EEXIST);
    EXPECT_EQ(ReadBack(folder / kName), "old");
}

TEST(Files, AreNoFolders)
{
    const TestFolder folder;
    errno = 0;
    EXPECT_EQ(OpenFile(folder / "", FileMode::Write), nullptr);
    EXPECT_EQ(errno, EISDIR);
    errno = 0;
    EXPECT_EQ(OpenFile(folder / "missing/file", FileMode::Read), nullptr);
    EXPECT_EQ(errno, ENOENT);
}

TEST(Files, AppearUnderNamesInAnyLanguage)
{
    const TestFolder folder;
    for (const char* pszText : {"first", "second"}) {
        OutputFile file;
        ASSERT_TRUE(file.Open(folder / kName)) << file.FaultText();
        file.Write(pszText);
        EXPECT_TRUE(file.Commit()) << file.FaultText();
        EXPECT_EQ(ReadBack(folder / kName), pszText);
    }
    const auto entry = std::filesystem::directory_iterator(PathOf(folder / ""))->path();
    EXPECT_EQ(Utf8Of(entry.filename()), kName);
    EXPECT_EQ(folder.Entries(), 1u);
}
