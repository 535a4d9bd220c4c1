// What a folder holds.

#include <algorithm>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/Folders.h"
#include "platform/Shell.h"
#include "src/UIComponents/controls/FolderList.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Text.h"

using namespace Hesperon::specifics;
namespace fs = std::filesystem;

namespace {

constexpr HRESULT kFileNotFound = static_cast<HRESULT>(0x80070002);

class FolderContents : public testing::Test
{
protected:
    FolderContents() : m_path(fs::canonical(m_folder.Path())) {}

    void File(const fs::path& name, const std::string& bytes = "x") const
    {
        std::ofstream(m_path / name, std::ios::binary) << bytes;
    }
    void Folder(const fs::path& name) const { fs::create_directory(m_path / name); }

    HRESULT Read() { return CFolderList::Read(TextOfPath(m_path), m_pList); }
    // Names, a folder's with a slash.
    std::vector<std::string> Names()
    {
        EXPECT_EQ(Read(), S_OK);
        std::vector<std::string> names;
        for (std::size_t n = 0; m_pList && n < m_pList->Count(); ++n) {
            const FolderItem& item = m_pList->Item(n);
            names.push_back(Utf8(item.sName) + (item.bFolder ? "/" : ""));
        }
        return names;
    }

    const TempFolder m_folder;
    const fs::path m_path;
    std::unique_ptr<CFolderList> m_pList;
};

TEST_F(FolderContents, AreSortedWithoutCaseAndFoldersFirst)
{
    for (const char* szName : {"b.txt", "A.txt", "a.csv", "C", "_x", "ab", "Ab2"})
        File(szName);
    for (const char* szName : {"z", "Y", "x1"})
        Folder(szName);
    EXPECT_THAT(Names(), testing::ElementsAre("x1/", "Y/", "z/", "_x", "a.csv", "A.txt", "ab",
                                              "Ab2", "b.txt", "C"));
}

TEST_F(FolderContents, OfAnEmptyFolderAreNone)
{
    EXPECT_THAT(Names(), testing::IsEmpty());
    EXPECT_EQ(m_pList->Path(), TextOfPath(m_path));
}

TEST_F(FolderContents, HaveWholePathsSizesAndTimes)
{
    File("quotes.csv", std::string(12345, 'x'));
    Folder("archive");
    // 2024-06-03 12:00 UTC, which is that day everywhere but far in the east and west
    const auto time = fs::file_time_type(std::chrono::file_clock::from_sys(
        std::chrono::sys_seconds(std::chrono::sys_days(std::chrono::year(2024) / 6 / 3)) +
        std::chrono::hours(12)));
    fs::last_write_time(m_path / "quotes.csv", time);
    ASSERT_EQ(Read(), S_OK);
    ASSERT_EQ(m_pList->Count(), 2u);
    EXPECT_EQ(m_pList->Item(0).nSize, 0u);
    const FolderItem& item = m_pList->Item(1);
    EXPECT_EQ(item.sPath, TextOfPath(m_path / "quotes.csv"));
    EXPECT_EQ(item.nSize, 12345u);
    EXPECT_NEAR(item.dtModified, 45446.5, 0.6);
    EXPECT_EQ(item.dtModified, LocalTime(time));
    EXPECT_GT(m_pList->Item(0).dtModified, 45446);
}

TEST_F(FolderContents, KeepWhatTheyWereWhenTheFileHasGone)
{
    File("gone");
    ASSERT_EQ(Read(), S_OK);
    fs::remove(m_path / "gone");
    EXPECT_EQ(m_pList->Item(0).nSize, 0u);
    EXPECT_EQ(m_pList->Item(0).dtModified, 0);
}

TEST_F(FolderContents, ChainRunsFromTheRootToTheFolder)
{
    Folder("a");
    Folder(fs::path("a") / "b");
    const fs::path folder = m_path / "a" / "b";
    ASSERT_EQ(CFolderList::Read(TextOfPath(folder), m_pList), S_OK);
    const auto chain = m_pList->Chain();
    ASSERT_GE(chain.size(), 3u);
    const auto above = FoldersAboveRoots();
    EXPECT_TRUE(std::ranges::equal(above, chain.first(above.size())));
    EXPECT_EQ(chain[above.size()], TextOfPath(folder.root_path()));
    EXPECT_EQ(chain[chain.size() - 3], TextOfPath(m_path));
    EXPECT_EQ(chain[chain.size() - 2], TextOfPath(m_path / "a"));
    EXPECT_EQ(chain.back(), TextOfPath(folder));
    EXPECT_EQ(m_pList->Parent(), TextOfPath(m_path / "a"));
    for (std::size_t n = above.size() + 1; n < chain.size(); ++n)
        EXPECT_EQ(PathOfText(chain[n]).parent_path(), PathOfText(chain[n - 1]));
}

TEST_F(FolderContents, RootHasNoParentButThoseOfTheShell)
{
    ASSERT_EQ(CFolderList::Read(TextOfPath(m_path.root_path()), m_pList), S_OK);
    const auto above = FoldersAboveRoots();
    EXPECT_EQ(m_pList->Chain().size(), above.size() + 1);
    EXPECT_EQ(m_pList->Parent(), above.empty() ? string_view_t() : above.back());
    EXPECT_EQ(FolderName(m_pList->Path()), TextOfPath(m_path.root_path()));
}

TEST_F(FolderContents, AboveTheRootsLeadDownAgain)
{
    const auto above = FoldersAboveRoots();
    for (std::size_t n = 0; n < above.size(); ++n) {
        ASSERT_EQ(CFolderList::Read(above[n], m_pList), S_OK);
        EXPECT_EQ(m_pList->Path(), above[n]);
        EXPECT_EQ(m_pList->Parent(), n ? above[n - 1] : string_view_t());
        EXPECT_FALSE(FolderName(above[n]).starts_with(OLESTR("::")));
        EXPECT_FALSE(FolderName(above[n]).empty());
        EXPECT_TRUE(IsFolder(above[n]));
        EXPECT_TRUE(PathExists(above[n]));
        string_t sFile;
        EXPECT_EQ(ResolveFile(above[n], sFile), E_INVALIDARG);
        ASSERT_GE(m_pList->Count(), 1u);
        const auto sWanted =
            n + 1 < above.size() ? string_t(above[n + 1]) : TextOfPath(m_path.root_path());
        bool bFound = false;
        for (std::size_t nItem = 0; nItem < m_pList->Count(); ++nItem) {
            EXPECT_TRUE(m_pList->Item(nItem).bFolder);
            bFound = bFound || m_pList->Item(nItem).sPath == sWanted;
        }
        EXPECT_TRUE(bFound);
    }
}

TEST(FolderPaths, TheRootsAreFolders)
{
    const std::vector<fs::path> roots = FileSystemRoots();
    EXPECT_FALSE(roots.empty());
    for (const fs::path& root : roots)
        EXPECT_EQ(root, root.root_path());
}

TEST_F(FolderContents, ArePutIntoOneSpelling)
{
    Folder("a");
    const string_t sFolder = TextOfPath(m_path / "a");
    for (const fs::path& path :
         {m_path / "a" / "", m_path / "." / "a", m_path / "a" / ".." / "a"}) {
        ASSERT_EQ(CFolderList::Read(TextOfPath(path), m_pList), S_OK);
        EXPECT_EQ(Utf8(m_pList->Path()), Utf8(sFolder));
    }
}

TEST_F(FolderContents, OfWhatIsNoFolderAreRefused)
{
    File("file");
    EXPECT_EQ(CFolderList::Read(TextOfPath(m_path / "file"), m_pList), E_INVALIDARG);
    EXPECT_EQ(CFolderList::Read(TextOfPath(m_path / "none"), m_pList), kFileNotFound);
    EXPECT_EQ(CFolderList::Read(TextOfPath(m_path / "file" / "x"), m_pList), kFileNotFound);
    EXPECT_EQ(CFolderList::Read(OLESTR(""), m_pList), E_INVALIDARG);
    EXPECT_EQ(CFolderList::Read(TextOfPath(m_path) + OLECHAR('\0') + OLESTR("x"), m_pList),
              E_INVALIDARG);
    EXPECT_EQ(m_pList, nullptr);
}

// ---- paths

TEST_F(FolderContents, PathsAreFoldersFilesOrNothing)
{
    File("file");
    EXPECT_TRUE(IsFolder(TextOfPath(m_path)));
    EXPECT_FALSE(IsFolder(TextOfPath(m_path / "file")));
    EXPECT_FALSE(IsFolder(TextOfPath(m_path / "none")));
    EXPECT_FALSE(IsFolder(OLESTR("")));
    EXPECT_TRUE(PathExists(TextOfPath(m_path)));
    EXPECT_TRUE(PathExists(TextOfPath(m_path / "file")));
    EXPECT_FALSE(PathExists(TextOfPath(m_path / "none")));
    EXPECT_FALSE(PathExists(OLESTR("")));
}

TEST_F(FolderContents, FilesAreResolved)
{
    File("file");
    string_t sFile;
    EXPECT_EQ(ResolveFile(TextOfPath(m_path / "." / "file"), sFile), S_OK);
    EXPECT_EQ(sFile, TextOfPath(m_path / "file"));
    sFile = OLESTR("before");
    EXPECT_EQ(ResolveFile(TextOfPath(m_path), sFile), E_INVALIDARG);
    EXPECT_EQ(ResolveFile(TextOfPath(m_path / "none"), sFile), kFileNotFound);
    EXPECT_EQ(ResolveFile(OLESTR(""), sFile), E_INVALIDARG);
    EXPECT_EQ(sFile, OLESTR("before"));
}

TEST(FolderPaths, FolderPartIsWhatStandsBeforeTheLastSeparator)
{
    EXPECT_EQ(FolderPart(OLESTR("/a/b/c.csv")), OLESTR("/a/b"));
    EXPECT_EQ(FolderPart(OLESTR("/c.csv")), OLESTR(""));
    EXPECT_EQ(FolderPart(OLESTR("c.csv")), OLESTR(""));
    EXPECT_EQ(FolderPart(OLESTR("")), OLESTR(""));
}

TEST(FolderPaths, TheStartFolderIsAFolder)
{
    EXPECT_TRUE(IsFolder(StartFolder())) << Utf8(StartFolder());
}

} // namespace
