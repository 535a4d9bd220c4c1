// Files whose names are in any language.
#include <cerrno>

#include <gtest/gtest.h>

#include "tests/tabulex/units/TestFolder.h"
#include "tools/tabulex/output/OutputFile.h"
#include "tools/tabulex/system/Descriptors.h"
#include "tools/tabulex/system/Files.h"
#include "tools/tabulex/system/Paths.h"
#include "tools/tabulex/system/Staging.h"

using namespace tabulex;

namespace {

constexpr const char* kName =
    "\xE8\x82\xA1\xE7\xA5\xA8 \xC3\xA9.csv"; // no code page has all of these

bool Append(const std::string& path, std::string_view text)
{
    std::FILE* file = OpenFile(path, FileMode::Append);
    if (!file)
        return false;
    const bool bWritten = std::fwrite(text.data(), 1, text.size(), file) == text.size();
    return std::fclose(file) == 0 && bWritten;
}

bool Stage(const std::string& path, std::string_view text)
{
    const int nFile = CreateStaged(path);
    return nFile >= 0 && WriteAll(nFile, text) && CloseFile(nFile);
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

TEST(Files, AreAppendedTo)
{
    const TestFolder folder;
    const std::string path = folder / kName;
    EXPECT_TRUE(Append(path, "a\nb\x1A"));
    EXPECT_TRUE(Append(path, "c\r\n"));
    EXPECT_EQ(ReadBack(path), "a\nb\x1A"
                              "c\r\n");
}

TEST(Files, AreStagedInThePlaceOfWhatWasLeftBehind)
{
    const TestFolder folder;
    ASSERT_TRUE(Append(folder / kName, "left behind"));
    EXPECT_TRUE(Stage(folder / kName, "new"));
    EXPECT_EQ(ReadBack(folder / kName), "new");
}

TEST(Files, AreNotStagedWhereARunIsWriting)
{
    const TestFolder folder;
    int nFile = CreateStaged(folder / kName);
    ASSERT_GE(nFile, 0);
    EXPECT_TRUE(WriteAll(nFile, "old"));
    errno = 0;
    EXPECT_FALSE(Stage(folder / kName, "new"));
    EXPECT_EQ(errno, EEXIST);
    EXPECT_EQ(ReadBack(folder / kName), "old");
    RemoveStaged(nFile, folder / kName);
    EXPECT_EQ(nFile, -1);
    EXPECT_EQ(folder.Entries(), 0u);
}

TEST(Files, AreNoFolders)
{
    const TestFolder folder;
    errno = 0;
    EXPECT_EQ(OpenFile(folder / "", FileMode::Append), nullptr);
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
