// Folders with what only a system with byte paths has in them: any name, links, pipes, and
// folders that may not be read.

#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/File.h"
#include "platform/Folders.h"
#include "src/UIComponents/controls/FolderList.h"
#include "src/UIComponents/controls/FolderView.h"
#include "tests/dialog/fakes/FakeViews.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Text.h"

using namespace Hesperon::specifics;
namespace fs = std::filesystem;

namespace {

std::vector<std::string> NamesIn(const fs::path& folder)
{
    std::unique_ptr<CFolderList> pList;
    EXPECT_EQ(CFolderList::Read(TextOfPath(folder), pList), S_OK);
    std::vector<std::string> names;
    for (std::size_t n = 0; pList && n < pList->Count(); ++n) {
        const FolderItem& item = pList->Item(n);
        names.push_back(Utf8(item.sName) + (item.bFolder ? "/" : ""));
    }
    return names;
}

// The superuser may read everything, so the process is somebody else while this lives.
class OrdinaryUser
{
public:
    OrdinaryUser() : m_user(geteuid()) { EXPECT_EQ(seteuid(m_user == 0 ? 65534 : m_user), 0); }
    ~OrdinaryUser() { EXPECT_EQ(seteuid(m_user), 0); }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

private:
    const uid_t m_user;
};

TEST(OddNames, AreShownEscapedAndFindTheirFiles)
{
    const TempFolder folder;
    const std::vector<std::string> names = {"a\nb",       "\x1B[31mred", "\x7F",
                                            "\xFF\xFEx",  "caf\xC3\xA9", "\xF0\x9F\x93\x88",
                                            "back\\slash"};
    for (const std::string& sName : names)
        std::ofstream(folder.Path() / sName) << "12345";
    EXPECT_THAT(NamesIn(folder.Path()),
                testing::UnorderedElementsAre("a\\x0Ab", "\\x1B[31mred", "\\x7F", "\\xFF\\xFEx",
                                              "caf\xC3\xA9", "\xF0\x9F\x93\x88", "back\\slash"));
    std::unique_ptr<CFolderList> pList;
    ASSERT_EQ(CFolderList::Read(TextOfPath(folder.Path()), pList), S_OK);
    for (std::size_t n = 0; n < pList->Count(); ++n) {
        const FolderItem& item = pList->Item(n);
        EXPECT_EQ(item.nSize, 5u) << Utf8(item.sName);
        string_t sFile;
        EXPECT_EQ(ResolveFile(item.sPath, sFile), S_OK);
        EXPECT_EQ(sFile, item.sPath);
        int nError = 0;
        EXPECT_TRUE(File::Open(item.sPath, nError).IsOpen());
    }
}

TEST(OddNames, OfFoldersCanBeOpened)
{
    const TempFolder folder;
    const fs::path odd = folder.Path() / "\xFF\n";
    fs::create_directory(odd);
    std::ofstream(odd / "x") << "x";
    EXPECT_THAT(NamesIn(odd), testing::ElementsAre("x"));
    EXPECT_EQ(Utf8(FolderName(TextOfPath(odd))), "\\xFF\\x0A");
}

TEST(Links, StandForWhatTheyLeadTo)
{
    const TempFolder folder;
    const fs::path path = fs::canonical(folder.Path());
    fs::create_directory(path / "real");
    std::ofstream(path / "real" / "file") << "12345";
    fs::create_symlink("real/file", path / "one");
    fs::create_symlink(path / "one", path / "two");
    fs::create_symlink("real", path / "folder");
    fs::create_symlink("nowhere", path / "broken");
    fs::create_symlink("circle", path / "circle");
    EXPECT_THAT(NamesIn(path),
                testing::ElementsAre("folder/", "real/", "broken", "circle", "one", "two"));
    string_t sFile;
    for (const char* szName : {"one", "two"}) {
        EXPECT_EQ(ResolveFile(TextOfPath(path / szName), sFile), S_OK);
        EXPECT_EQ(Utf8(sFile), (path / "real" / "file").string());
    }
    EXPECT_EQ(ResolveFile(TextOfPath(path / "folder"), sFile), E_INVALIDARG);
    EXPECT_EQ(ResolveFile(TextOfPath(path / "broken"), sFile), static_cast<HRESULT>(0x80070002));
    EXPECT_TRUE(FAILED(ResolveFile(TextOfPath(path / "circle"), sFile)));
    EXPECT_TRUE(IsFolder(TextOfPath(path / "folder")));
    // A folder behind a link keeps the way that led there.
    std::unique_ptr<CFolderList> pList;
    ASSERT_EQ(CFolderList::Read(TextOfPath(path / "folder"), pList), S_OK);
    EXPECT_EQ(pList->Parent(), TextOfPath(path));
    ASSERT_EQ(pList->Count(), 1u);
    EXPECT_EQ(pList->Item(0).nSize, 5u);
}

// The target starts from the folder that really holds the link, not from the one that leads there.
TEST(Links, BehindALinkedFolderLeadOnFromTheRealOne)
{
    const TempFolder folder;
    const fs::path path = fs::canonical(folder.Path());
    fs::create_directories(path / "data" / "deep");
    for (const fs::path& file : {path / "data" / "quotes.csv", path / "quotes.csv"})
        std::ofstream(file) << "12345";
    fs::create_symlink("../quotes.csv", path / "data" / "deep" / "link.csv");
    fs::create_symlink("data/deep", path / "short");
    string_t sFile;
    EXPECT_EQ(ResolveFile(TextOfPath(path / "short" / "link.csv"), sFile), S_OK);
    EXPECT_EQ(Utf8(sFile), (path / "data" / "quotes.csv").string());
}

TEST(FoldersPosix, ACurrentFolderThatHasGoneLeavesTheRoot)
{
    const TempFolder folder;
    const fs::path before = fs::current_path();
    fs::create_directory(folder.Path() / "gone");
    fs::current_path(folder.Path() / "gone");
    fs::remove(folder.Path() / "gone");
    com_ptr<CFolderViewCtrl> pCtrl;
    ASSERT_EQ(CreateObject(pCtrl), S_OK);
    dialog_test::FakeFolderView view("folder", nullptr, pCtrl->Events());
    pCtrl->Attach(&view);
    fs::current_path(before);
    EXPECT_EQ(view.m_sFolder, "/");
    pCtrl->Events().OnClose();
}

TEST(FoldersPosix, DontListPipes)
{
    const TempFolder folder;
    ASSERT_EQ(mkfifo((folder.Path() / "pipe").c_str(), 0600), 0);
    std::ofstream(folder.Path() / "file") << "x";
    EXPECT_THAT(NamesIn(folder.Path()), testing::ElementsAre("file"));
    string_t sFile;
    EXPECT_EQ(ResolveFile(TextOfPath(folder.Path() / "pipe"), sFile), E_INVALIDARG);
}

TEST(FoldersPosix, WithoutRightsAreRefused)
{
    const TempFolder folder;
    const fs::path closed = folder.Path() / "closed";
    fs::create_directory(closed);
    std::ofstream(closed / "file") << "x";
    fs::permissions(closed, fs::perms::none);
    {
        const OrdinaryUser user;
        std::unique_ptr<CFolderList> pList;
        EXPECT_EQ(CFolderList::Read(TextOfPath(closed), pList), E_ACCESSDENIED);
        EXPECT_EQ(CFolderList::Read(TextOfPath(closed / "below"), pList), E_ACCESSDENIED);
        string_t sFile;
        EXPECT_EQ(ResolveFile(TextOfPath(closed / "file"), sFile), E_ACCESSDENIED);
        EXPECT_THAT(NamesIn(folder.Path()), testing::ElementsAre("closed/"));
    }
    fs::permissions(closed, fs::perms::owner_all);
}

TEST(FoldersPosix, RelativePathsStartAtTheCurrentFolder)
{
    const TempFolder folder;
    std::ofstream(folder.Path() / "file") << "x";
    const fs::path before = fs::current_path();
    fs::current_path(folder.Path());
    const fs::path path = fs::current_path();
    string_t sFile;
    EXPECT_EQ(ResolveFile(OLESTR("file"), sFile), S_OK);
    EXPECT_EQ(sFile, TextOfPath(path / "file"));
    EXPECT_EQ(StartFolder(), TextOfPath(path));
    fs::current_path(before);
}

} // namespace
