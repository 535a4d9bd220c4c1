// The file picker of the import dialog.

#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/Folders.h"
#include "src/UIComponents/ConvertDialog/FileContentAdapter.h"
#include "tests/dialog/fakes/FakeViews.h"
#include "tests/support/TempFolder.h"
#include "tests/support/UnusedDataParser.h"

using namespace dialog_test;
using Hesperon::specifics::SConvertDialogParams;
using Hesperon::specifics::UILayer::CCallBack;
using Hesperon::specifics::UILayer::CFilePickerAdapter;
namespace fs = std::filesystem;

namespace {

class FileNameParser final : public UnusedDataParser<FileNameParser>
{
public:
    fs::path m_file;

    HRESULT STDMETHODCALLTYPE get_FileName(BSTR* pVal) override
    {
        *pVal = NewBstr(TextOfPath(m_file));
        return S_OK;
    }
};

class PickedFiles final : public Hesperon::specifics::notify::IFileEventSink
{
public:
    std::vector<fs::path> m_files;
    std::function<void()> m_onFile;

    void OnFileSelected(const OLECHAR* pszPath) override
    {
        const fs::path file = PathOfText(pszPath);
        m_files.push_back(file);
        if (m_onFile)
            m_onFile();
        // The text is good until the call returns, whatever the call brought about.
        EXPECT_EQ(PathOfText(pszPath), file);
    }
    void OnRecordCountChanged() override { ADD_FAILURE(); }
};

// quotes/ with a.csv, b.csv and sub/
class FilePicker : public testing::Test
{
protected:
    FilePicker()
        : m_quotes(fs::canonical(m_folder.Path()) / "quotes"), m_pParser(new FileNameParser)
    {
        fs::create_directories(m_quotes / "sub");
        for (const char* szName : {"a.csv", "b.csv"})
            std::ofstream(m_quotes / szName) << "x";
        m_params.pDataParser = com_ptr<IDataParser>(m_pParser.get());
        m_params.sFolder = TextOfPath(m_quotes);
    }
    ~FilePicker()
    {
        if (m_pPicker)
            m_pPicker->Close();
        m_dialog.CloseChildren();
    }

    HRESULT Create()
    {
        m_pPicker.emplace(m_params, &m_sink);
        return m_pPicker->Create(m_dialog);
    }
    FakeFolderView& View() { return *m_dialog.m_pFolderView; }
    fs::path ShownFolder() { return PathOfText(Wide(View().m_sFolder)); }

    const TempFolder m_folder;
    const fs::path m_quotes;
    com_ptr<FileNameParser> m_pParser;
    SConvertDialogParams m_params;
    PickedFiles m_sink;
    NoDialogEvents m_events;
    FakeDialog m_dialog{DialogImport, 0, nullptr, m_events};
    std::optional<CFilePickerAdapter> m_pPicker;
};

TEST_F(FilePicker, ShowsTheFolderLastUsed)
{
    ASSERT_EQ(Create(), S_OK);
    EXPECT_EQ(ShownFolder(), m_quotes);
    EXPECT_FALSE(View().m_bFrozen);
    EXPECT_EQ(View().Place(kWholeView), (ControlPlace{0, 0, 300, 300}));
    EXPECT_EQ(m_pPicker->View(), m_dialog.m_pFolderView.get());
    m_pPicker->Move({15, 15, 500, 200});
    EXPECT_EQ(View().Place(kWholeView), (ControlPlace{15, 15, 500, 200}));
    EXPECT_THAT(m_sink.m_files, testing::IsEmpty());
}

TEST_F(FilePicker, ShowsTheFolderOfAFileLastUsed)
{
    m_params.sFolder = TextOfPath(m_quotes / "b.csv");
    ASSERT_EQ(Create(), S_OK);
    EXPECT_EQ(ShownFolder(), m_quotes);
    EXPECT_EQ(View().m_sSelected, "");
}

// The view starts wherever its own choice lies.
TEST_F(FilePicker, AFolderOfThreeCharactersOrFewerIsNone)
{
    const fs::path root = m_quotes.root_path(); // a folder that could be shown
    for (const string_t& sFolder : {string_t(), TextOfPath(root), string_t(OLESTR("C:\\"))}) {
        m_params.sFolder = sFolder;
        ASSERT_EQ(Create(), S_OK);
        EXPECT_EQ(ShownFolder(), PathOfText(StartFolder())) << Utf8(sFolder);
        EXPECT_FALSE(View().m_bFrozen);
    }
}

TEST_F(FilePicker, AFolderThatHasGoneIsNoFailure)
{
    m_params.sFolder = TextOfPath(m_quotes / "none");
    ASSERT_EQ(Create(), S_OK);
    EXPECT_EQ(ShownFolder(), PathOfText(StartFolder()));
}

// ---- picking

TEST_F(FilePicker, ReportsEachOtherFile)
{
    ASSERT_EQ(Create(), S_OK);
    View().Pick("a.csv");
    View().Pick("b.csv");
    View().Pick("b.csv");
    EXPECT_THAT(m_sink.m_files, testing::ElementsAre(m_quotes / "a.csv", m_quotes / "b.csv"));
}

TEST_F(FilePicker, ReportsNoFileAsAnEmptyNameAndThenTheSameFileAgain)
{
    ASSERT_EQ(Create(), S_OK);
    View().Pick("a.csv");
    View().Pick("sub");
    m_pPicker->OpenSelection();
    EXPECT_EQ(ShownFolder(), m_quotes / "sub");
    View().Events().OnCommand(FolderUp);
    View().Pick("a.csv");
    EXPECT_THAT(m_sink.m_files,
                testing::ElementsAre(m_quotes / "a.csv", fs::path(), m_quotes / "a.csv"));
}

TEST_F(FilePicker, ANameThatDiffersByCaseOnlyIsTheSame)
{
    ASSERT_EQ(Create(), S_OK);
    View().Pick("a.csv");
    fs::rename(m_quotes / "a.csv", m_quotes / "x");
    std::ofstream(m_quotes / "A.CSV") << "x";
    View().Events().OnSelection(TextOfPath(m_quotes / "A.CSV").c_str());
    EXPECT_THAT(m_sink.m_files, testing::ElementsAre(m_quotes / "a.csv"));
}

TEST_F(FilePicker, TheSinkMayBringAboutTheNextChange)
{
    ASSERT_EQ(Create(), S_OK);
    m_sink.m_onFile = [&] {
        if (m_sink.m_files.size() == 1)
            View().Pick("b.csv");
    };
    View().Pick("a.csv");
    EXPECT_THAT(m_sink.m_files, testing::ElementsAre(m_quotes / "a.csv", m_quotes / "b.csv"));
}

// ---- a parser that has a file

TEST_F(FilePicker, AFileThatIsSetIsShownAndCannotBeExchanged)
{
    m_pParser->m_file = m_quotes / "b.csv";
    m_params.sFolder = TextOfPath(m_quotes / "sub");
    ASSERT_EQ(Create(), S_OK);
    EXPECT_EQ(ShownFolder(), m_quotes);
    EXPECT_EQ(PathOfText(Wide(View().m_sSelected)), m_quotes / "b.csv");
    EXPECT_TRUE(View().m_bFrozen);
    View().Pick("a.csv");
    m_pPicker->OpenSelection();
    View().Events().OnCommand(FolderUp);
    EXPECT_EQ(ShownFolder(), m_quotes);
    EXPECT_THAT(m_sink.m_files, testing::IsEmpty());
}

TEST_F(FilePicker, AFileThatHasGoneFreezesTheViewAllTheSame)
{
    m_pParser->m_file = m_quotes / "none.csv";
    ASSERT_EQ(Create(), S_OK);
    EXPECT_TRUE(View().m_bFrozen);
    EXPECT_EQ(ShownFolder(), PathOfText(StartFolder()));
    EXPECT_THAT(m_sink.m_files, testing::IsEmpty());
}

// ---- failures and the end

TEST_F(FilePicker, WithoutAViewCreationFails)
{
    m_dialog.m_refused.insert(DialogFolder);
    EXPECT_EQ(Create(), E_FAIL);
    EXPECT_EQ(m_pPicker->View(), nullptr);
    m_pPicker->Move({0, 0, 1, 1});
    m_pPicker->OpenSelection();
}

TEST_F(FilePicker, WithoutAParserThereIsNoFile)
{
    m_params.pDataParser.reset();
    ASSERT_EQ(Create(), S_OK);
    EXPECT_FALSE(View().m_bFrozen);
}

TEST_F(FilePicker, ClosedItReportsNothing)
{
    ASSERT_EQ(Create(), S_OK);
    m_pPicker->Close();
    EXPECT_EQ(m_pPicker->View(), nullptr);
    View().Pick("a.csv");
    EXPECT_THAT(m_sink.m_files, testing::IsEmpty());
}

// ---- the callback

TEST(CallBack, CallsItsFunctionForAnyDispid)
{
    com_ptr<CCallBack> pCallBack;
    ASSERT_EQ(CreateObject(pCallBack), S_OK);
    int nCalls = 0;
    const auto invoke = [&](DISPID id, WORD nFlags) {
        return pCallBack->Invoke(id, IID_NULL, 0, nFlags, nullptr, nullptr, nullptr, nullptr);
    };
    EXPECT_EQ(invoke(0, DISPATCH_METHOD), S_OK); // without a function
    pCallBack->SetFunction([&] { ++nCalls; });
    EXPECT_EQ(invoke(0, DISPATCH_METHOD), S_OK);
    EXPECT_EQ(invoke(-5, 0), S_OK);
    EXPECT_EQ(invoke(77, DISPATCH_PROPERTYGET), S_OK);
    EXPECT_EQ(nCalls, 3);
    pCallBack->SetFunction({});
    EXPECT_EQ(invoke(0, DISPATCH_METHOD), S_OK);
    EXPECT_EQ(nCalls, 3);
}

TEST(CallBack, LetsNoExceptionOutAndMayReplaceItsFunction)
{
    com_ptr<CCallBack> pCallBack;
    ASSERT_EQ(CreateObject(pCallBack), S_OK);
    const auto invoke = [&] {
        return pCallBack->Invoke(0, IID_NULL, 0, DISPATCH_METHOD, nullptr, nullptr, nullptr,
                                 nullptr);
    };
    pCallBack->SetFunction([] { throw std::bad_alloc(); });
    EXPECT_EQ(invoke(), E_OUTOFMEMORY);
    pCallBack->SetFunction([&] { pCallBack->SetFunction({}); });
    EXPECT_EQ(invoke(), S_OK);
}

TEST(CallBack, HasNoNamesAndNoTypes)
{
    com_ptr<CCallBack> pCallBack;
    ASSERT_EQ(CreateObject(pCallBack), S_OK);
    OLECHAR name[] = OLESTR("Invoke");
    LPOLESTR pszName = name;
    DISPID id = 0;
    EXPECT_EQ(pCallBack->GetIDsOfNames(IID_NULL, &pszName, 1, 0, &id), DISP_E_UNKNOWNNAME);
    UINT nInfos = 7;
    EXPECT_EQ(pCallBack->GetTypeInfoCount(&nInfos), S_OK);
    EXPECT_EQ(nInfos, 0u);
    EXPECT_EQ(pCallBack->GetTypeInfoCount(nullptr), E_POINTER);
    ITypeInfo* pInfo = nullptr;
    EXPECT_EQ(pCallBack->GetTypeInfo(0, 0, &pInfo), DISP_E_BADINDEX);
    com_ptr<IDispatch> pDispatch;
    EXPECT_EQ(query(pCallBack.get(), pDispatch), S_OK);
}

} // namespace
