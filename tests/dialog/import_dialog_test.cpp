// The import dialog as a whole, over fake parsers and fake views.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "src/UIComponents/ConvertDialog/ConvertDummyDialog.h"
#include "tests/dialog/fakes/FakeParsers.h"
#include "tests/dialog/fakes/FakeViews.h"
#include "tests/support/ReportLog.h"
#include "tests/support/TempFolder.h"

using namespace dialog_test;
using namespace Hesperon::specifics;
using Hesperon::specifics::UILayer::CConvertDummyDialog;

namespace {

struct NoParserEvents : ComObject<NoParserEvents, Dual<IQRL_TabulexConverter::IDataParserEvents>>
{
    HRESULT STDMETHODCALLTYPE PutRecords(VARIANT, ULONGLONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EndTransaction(VARIANT_BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE OnError(VARIANT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetResolutionName(LONG, BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE OnError2(LONG_PTR, LONG, BSTR) override { return E_NOTIMPL; }
};

class ImportDialog : public testing::Test
{
protected:
    ImportDialog()
    {
        MakeParsers(m_script, m_pData, m_pRecords);
        com_ptr<NoParserEvents> pEvents;
        CreateObject(pEvents);
        m_params.pFieldTemplates = &m_rows;
        m_params.pResolutionTemplates = &m_resolutions;
        m_params.pTimeZoneTemplates = &m_rows;
        m_params.pDataParser = m_pData.as<IQRL_TabulexConverter::IDataParser>();
        m_params.pEventSink = pEvents.as<IQRL_TabulexConverter::IDataParserEvents>();
        m_params.sResolution = OLESTR("former resolution");
        m_params.sFolder = OLESTR("former folder");
    }

    // Runs the dialog; the user does this.
    LONG Run(std::function<void(FakeDialog&)> user)
    {
        m_views.m_onRun = std::move(user);
        m_pDialog = std::make_unique<CConvertDummyDialog>(m_params);
        return m_pDialog->DoModal(7);
    }
    // Counts the checks of the settings since the last call.
    int Checks()
    {
        const Calls calls = m_script.Take();
        return static_cast<int>(std::count(calls.begin(), calls.end(), "check 4711"));
    }

    Script m_script;
    CallLog m_viewLog;
    FakeViews m_views{&m_viewLog};
    std::vector<STemplateEntry> m_rows = {{OLESTR("First"), 0}, {OLESTR("Second"), 1}};
    std::vector<STemplateEntry> m_resolutions = {{OLESTR("None"), 0}, {OLESTR("Minutes|5"), 5}};
    SConvertDialogParams m_params;
    com_ptr<FakeData> m_pData;
    com_ptr<FakeRecords> m_pRecords;
    std::unique_ptr<CConvertDummyDialog> m_pDialog;
};

TEST_F(ImportDialog, OpensItsPanesFromTopToBottom)
{
    Run([&](FakeDialog& dialog) {
        EXPECT_EQ(dialog.m_dialog, DialogImport);
        EXPECT_EQ(dialog.m_hwndParent, 7);
        ASSERT_TRUE(dialog.m_pFolderView);
        EXPECT_EQ(dialog.m_pFolderView->Place(kWholeView), (ControlPlace{15, 15, 840, 251}));
        EXPECT_EQ(dialog.Pane(DialogContent).Place(kWholeView), (ControlPlace{15, 251, 840, 358}));
        EXPECT_EQ(dialog.Pane(DialogSettings).Place(kWholeView), (ControlPlace{15, 358, 840, 440}));
        EXPECT_EQ(dialog.Pane(DialogDecode).Place(kWholeView), (ControlPlace{15, 440, 840, 553}));
        EXPECT_TRUE(dialog.Pane(DialogContent).m_pGrid);
        EXPECT_TRUE(dialog.Pane(DialogDecode).m_pGrid);
        EXPECT_FALSE(dialog.IsEnabled(ImportOk)) << "until a file is read";
        EXPECT_THAT(m_viewLog.Take(), testing::Contains("dialog: centre"));
        dialog.Resize(300, 555);
        EXPECT_EQ(dialog.Pane(DialogDecode).Place(kWholeView), (ControlPlace{15, 417, 285, 515}));
    });
}

TEST_F(ImportDialog, OkClosesOnlyWithGoodSettings)
{
    EXPECT_EQ(Run([&](FakeDialog& dialog) {
                  m_script.m_results["check"] = S_FALSE;
                  dialog.Click(ImportOk);
                  EXPECT_EQ(dialog.m_nResult, 0);
                  m_script.m_results["check"] = E_FAIL;
                  dialog.Click(ImportOk);
                  EXPECT_EQ(dialog.m_nResult, 0);
                  m_script.m_results.clear();
                  dialog.Click(ImportOk);
                  EXPECT_EQ(dialog.m_nResult, kDialogOk);
              }),
              kDialogOk);
    EXPECT_EQ(Checks(), 3);
}

TEST_F(ImportDialog, OkWithoutASinkDoesNothing)
{
    m_params.pEventSink.reset();
    EXPECT_EQ(Run([&](FakeDialog& dialog) { dialog.Click(ImportOk); }), kDialogCancel);
    EXPECT_EQ(Checks(), 0);
}

TEST_F(ImportDialog, CancelAlwaysCloses)
{
    EXPECT_EQ(Run([&](FakeDialog& dialog) {
                  dialog.Click(ImportCancel);
                  EXPECT_EQ(dialog.m_nResult, kDialogCancel);
              }),
              kDialogCancel);
    EXPECT_EQ(Checks(), 0);
}

TEST_F(ImportDialog, EnterOnOkChecksAndStays)
{
    Run([&](FakeDialog& dialog) {
        dialog.PressEnter(0, ImportOk);
        EXPECT_EQ(dialog.m_nResult, 0);
    });
    EXPECT_EQ(Checks(), 1);
}

TEST_F(ImportDialog, EnterInAnEditAppliesIt)
{
    m_pData->m_nCount = 100;
    Run([&](FakeDialog& dialog) {
        dialog.Pane(DialogSettings).Type(SettingsStartRow, "5");
        m_script.Take();
        dialog.PressEnter(DialogSettings, SettingsStartRow);
        EXPECT_EQ(dialog.m_nResult, 0);
    });
    EXPECT_EQ(Checks(), 0);
}

TEST_F(ImportDialog, EnterElsewhereOpensTheSelection)
{
    const TempFolder folder;
    std::filesystem::create_directory(folder.Path() / "sub");
    m_params.sFolder = Wide(folder.Path().string());
    Run([&](FakeDialog& dialog) {
        FakeFolderView& view = *dialog.m_pFolderView;
        EXPECT_EQ(view.m_sFolder, folder.Path().string());
        view.Pick("sub");
        dialog.PressEnter(DialogSettings, SettingsField);
        EXPECT_EQ(view.m_sFolder, (folder.Path() / "sub").string());
    });
    EXPECT_EQ(Checks(), 0);
}

TEST_F(ImportDialog, AButtonOfAPaneReachedByEnterIsHandedToIt)
{
    int nDelimiters = 0;
    Run([&](FakeDialog& dialog) {
        if (dialog.m_dialog == DialogDelimiters)
            ++nDelimiters;
        else
            dialog.Click(SettingsDelimiters);
    });
    EXPECT_EQ(nDelimiters, 1);
}

TEST_F(ImportDialog, TheChoicesAreReadWhateverTheResult)
{
    for (const LONG nButton : {LONG{ImportOk}, LONG{ImportCancel}}) {
        Run([&](FakeDialog& dialog) {
            m_pData->m_sFile = "/quotes/es/file.csv";
            FakePane& pane = dialog.Pane(DialogSettings);
            pane.Choose(SettingsResolution, 1);
            pane.Choose(SettingsField, 0);
            pane.Choose(SettingsTimeZone, 0);
            dialog.Click(nButton);
        });
        EXPECT_EQ(m_pDialog->m_sFolder, OLESTR("/quotes/es"));
        EXPECT_EQ(m_pDialog->m_sResolution, OLESTR("Minutes|5"));
        EXPECT_EQ(m_pDialog->m_nResolutionSize, 5);
        EXPECT_EQ(m_pDialog->m_sField, OLESTR("First"));
        EXPECT_EQ(m_pDialog->m_sTimeZone, OLESTR("First"));
        m_pData->m_sFile.clear();
    }
}

TEST_F(ImportDialog, WithoutAFileTheFolderStays)
{
    Run([](FakeDialog&) {});
    EXPECT_EQ(m_pDialog->m_sFolder, OLESTR("former folder"));
    EXPECT_EQ(m_pDialog->m_sResolution, OLESTR("None")) << "what is selected";
    EXPECT_EQ(m_pDialog->m_nResolutionSize, 0);
}

TEST_F(ImportDialog, AFileThatIsAFolderIsItsOwnFolder)
{
    const TempFolder folder;
    Run([&](FakeDialog&) { m_pData->m_sFile = folder.Path().string(); });
    EXPECT_EQ(m_pDialog->m_sFolder, Wide(folder.Path().string()));
}

TEST_F(ImportDialog, APaneThatLacksLeavesAHole)
{
    for (const LONG nPane :
         {LONG{DialogFolder}, LONG{DialogContent}, LONG{DialogSettings}, LONG{DialogDecode}}) {
        m_views.m_onMade = [=](FakeDialog& dialog) { dialog.m_refused = {nPane}; };
        EXPECT_EQ(Run([&](FakeDialog& dialog) {
                      EXPECT_EQ(dialog.m_panes.contains(nPane), false);
                      dialog.Click(ImportCancel);
                  }),
                  kDialogCancel)
            << nPane;
    }
}

TEST_F(ImportDialog, OpensAlsoWithoutAParser)
{
    const ReportLog reports;
    m_params.pDataParser.reset();
    EXPECT_EQ(Run([](FakeDialog& dialog) {
                  EXPECT_FALSE(dialog.IsEnabled(ImportOk));
                  dialog.Click(ImportOk);
              }),
              kDialogCancel);
    EXPECT_THAT(reports.Texts(), testing::Contains("((HRESULT)0L)==hr__"));
}

TEST_F(ImportDialog, ThatCannotBeSetUpKeepsTheChoices)
{
    m_views.m_bRefuse = true;
    EXPECT_EQ(Run([](FakeDialog&) {}), kDialogFailed);
    EXPECT_EQ(m_pDialog->m_sResolution, OLESTR("former resolution"));
    EXPECT_EQ(m_pDialog->m_sFolder, OLESTR("former folder"));
}

// State 1 needs the code page and the delimiters, state 0 nothing but the picker.
TEST_F(ImportDialog, AStateEnablesLanguageAndOk)
{
    struct
    {
        LONG nState;
        bool bLanguage, bOk;
    } const kRows[] = {{0, false, false}, {1, true, false}, {2, true, true}, {0, false, false}};
    Run([&](FakeDialog& dialog) {
        for (const auto& row : kRows) {
            EXPECT_EQ(m_pDialog->SetControlsState(row.nState), S_OK);
            EXPECT_EQ(dialog.Pane(DialogContent).IsEnabled(ContentLanguage), row.bLanguage);
            EXPECT_EQ(dialog.IsEnabled(ImportOk), row.bOk);
        }
    });
    m_views.m_onMade = [](FakeDialog& dialog) { dialog.m_refused = {DialogSettings}; };
    Run([&](FakeDialog& dialog) {
        dialog.SetEnabled(ImportOk, false);
        EXPECT_EQ(m_pDialog->SetControlsState(2), OLE_E_BLANK);
        EXPECT_TRUE(dialog.Pane(DialogContent).IsEnabled(ContentLanguage)) << "already set";
        EXPECT_FALSE(dialog.IsEnabled(ImportOk));
    });
}

// ---- a view that goes before its time

TEST_F(ImportDialog, MayGoWhileTheCheckShowsItsMessage)
{
    m_pData->m_sFile = "/quotes/es/file.csv";
    Run([&](FakeDialog& dialog) {
        m_pData->m_onCheck = [&] { dialog.Events().OnDestroy(); };
        dialog.Click(ImportOk);
        EXPECT_EQ(dialog.m_nResult, 0) << "there is nothing left to end";
    });
    EXPECT_EQ(m_pDialog->m_sFolder, OLESTR("/quotes/es"));
}

TEST_F(ImportDialog, MayGoWhileTheDelimitersAreChosen)
{
    FakeDialog* pImport = nullptr;
    Run([&](FakeDialog& dialog) {
        if (dialog.m_dialog == DialogDelimiters) {
            pImport->Events().OnDestroy();
            m_script.Take();
            return dialog.Click(SmallDialogOk);
        }
        pImport = &dialog;
        dialog.Pane(DialogSettings).Click(SettingsDelimiters);
        EXPECT_THAT(m_script.Take(), testing::IsEmpty());
    });
}

TEST_F(ImportDialog, KeepsItsChoicesWhateverItIsToldAfterItsEnd)
{
    Run([](FakeDialog& dialog) {
        dialog.Pane(DialogSettings).Choose(SettingsField, 0);
        dialog.Events().OnDestroy();
        dialog.Click(ImportOk);
        dialog.Click(ImportCancel);
        dialog.Click(SettingsDelimiters);
        dialog.PressEnter(0, ImportOk);
        dialog.Resize(300, 555);
        EXPECT_EQ(dialog.m_nResult, 0);
    });
    EXPECT_EQ(m_pDialog->m_sField, OLESTR("First")) << "Run has told of the end once more";
    EXPECT_EQ(Checks(), 0);
}

} // namespace
