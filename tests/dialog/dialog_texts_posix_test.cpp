// The labels of the dialogs from a host's own table of strings.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/StringTable.h"
#include "src/UIComponents/views/DialogTexts.h"
#include "tests/support/ChineseTexts.h"
#include "tests/support/ReportLog.h"
#include "tests/support/Text.h"

using namespace IQRL_TabulexConverter;
using Hesperon::specifics::UILayer::DialogText;

namespace {

TEST(DialogTextsOfAHost, StandInItsTable)
{
    const ChineseTexts chinese;
    static constexpr TabulexString kStrings[] = {
        {1001, OLESTR("Jawohl")}, {32772, OLESTR("Hoch")}, {32773, OLESTR("Ansicht\n")}};
    static constexpr TabulexStringTable kTable{kStrings, std::size(kStrings)};
    SetResourceHandle(reinterpret_cast<LONG_PTR>(&kTable));
    ReportLog reports;
    EXPECT_EQ(Utf8(DialogText(DialogImport, ImportOk)), "Jawohl");
    EXPECT_EQ(Utf8(DialogText(DialogImport, ImportCancel)), ""); // the table lacks it
    EXPECT_EQ(Utf8(DialogText(DialogFolder, FolderUp)), "Hoch"); // without a break all of it
    EXPECT_THAT(reports.Texts(), testing::IsEmpty());
    EXPECT_EQ(Utf8(DialogText(DialogFolder, FolderModes)), ""); // nothing after the break
    EXPECT_THAT(reports.Texts(), testing::ElementsAre("!sTip.IsEmpty()"));
}

} // namespace
