// Link files of the shell.

#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/Folders.h"
#include "platform/Shell.h"
#include "src/UIComponents/controls/FolderView.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Text.h"
#include "tests/support/WriteLink.h"

using namespace Hesperon::specifics;
namespace fs = std::filesystem;

namespace {

// 目标/ with 行情.csv, and beside it links to both and to a file that has gone.
class LinkFiles : public testing::Test
{
protected:
    LinkFiles() : m_path(fs::canonical(m_folder.Path())), m_file(m_path / L"目标" / L"行情.csv")
    {
        CoInitialize(nullptr);
        fs::create_directory(m_file.parent_path());
        std::ofstream(m_file) << "x";
        EXPECT_TRUE(WriteLink(m_path / L"文件.lnk", m_file));
        EXPECT_TRUE(WriteLink(m_path / "folder.LNK", m_file.parent_path()));
        EXPECT_TRUE(WriteLink(m_path / "gone.lnk", m_path / "gone.csv"));
        std::ofstream(m_path / "broken.lnk") << "no link";
        EXPECT_EQ(CreateObject(m_pCtrl), S_OK);
    }
    ~LinkFiles()
    {
        m_pCtrl.reset();
        CoUninitialize();
    }

    // As its view reports the selection.
    std::string FileOfSelection(const fs::path& path)
    {
        m_pCtrl->Events().OnSelection(TextOfPath(path).c_str());
        Bstr file;
        EXPECT_EQ(m_pCtrl->get_FileName(file.put()), S_OK);
        return Utf8(file.view());
    }
    std::string Folder()
    {
        Bstr folder;
        EXPECT_EQ(m_pCtrl->get_Folder(folder.put()), S_OK);
        return Utf8(folder.view());
    }
    static std::string Text(const fs::path& path) { return Utf8(TextOfPath(path)); }

    const TempFolder m_folder;
    const fs::path m_path;
    const fs::path m_file;
    com_ptr<CFolderViewCtrl> m_pCtrl;
};

TEST_F(LinkFiles, LeadToWhatTheyWereMadeFor)
{
    EXPECT_EQ(LinkTarget(m_path / L"文件.lnk"), m_file);
    EXPECT_EQ(LinkTarget(m_path / "folder.LNK"), m_file.parent_path());
    EXPECT_EQ(LinkTarget(m_path / "gone.lnk"), m_path / "gone.csv");
    for (const fs::path& other :
         {m_path / "broken.lnk", m_path / "none.lnk", m_path, m_file, fs::path()})
        EXPECT_EQ(LinkTarget(other), fs::path()) << other;
}

TEST_F(LinkFiles, StandForTheirFileWhenTheyArePicked)
{
    EXPECT_EQ(FileOfSelection(m_path / L"文件.lnk"), Text(m_file));
    EXPECT_EQ(FileOfSelection(m_path / "folder.LNK"), "");
}

TEST_F(LinkFiles, StandForTheirFileWhenTheyArePut)
{
    EXPECT_EQ(m_pCtrl->put_FileName(Bstr(TextOfPath(m_path / L"文件.lnk")).get()), S_OK);
    EXPECT_EQ(Folder(), Text(m_file.parent_path()));
    EXPECT_EQ(m_pCtrl->put_FileName(Bstr(TextOfPath(m_path / "folder.LNK")).get()), E_INVALIDARG);
    EXPECT_EQ(m_pCtrl->put_FileName(Bstr(TextOfPath(m_path / "gone.lnk")).get()),
              static_cast<HRESULT>(0x80070002));
    EXPECT_EQ(Folder(), Text(m_file.parent_path()));
}

TEST_F(LinkFiles, ToAFolderOpenIt)
{
    EXPECT_EQ(FileOfSelection(m_path / "folder.LNK"), "");
    m_pCtrl->OpenSelection();
    EXPECT_EQ(Folder(), Text(m_file.parent_path()));
    EXPECT_TRUE(IsFolder(TextOfPath(m_path / "folder.LNK")));
}

} // namespace
