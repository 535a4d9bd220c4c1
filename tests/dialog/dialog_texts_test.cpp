// The labels of the dialogs in both languages.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "interfaces/IProgressView.h"
#include "interfaces/NativeHost.h"
#include "tests/support/ChineseTexts.h"
#include "tests/support/Text.h"

using namespace IQRL_TabulexConverter;

namespace {

struct LabelRow
{
    DialogId dialog;
    LONG nControl;
    const char* szChinese;
    const char* szEnglish;
};

constexpr LabelRow kLabels[] = {
    {DialogImport, kWholeView, "ASCII 数据导入", "Import ASCII data"},
    {DialogImport, ImportLabel, "选择欲导入的ASCII文件：", "Select the ASCII file to import:"},
    {DialogImport, ImportOk, "确认", "OK"},
    {DialogImport, ImportCancel, "取消", "Cancel"},
    {DialogFolder, 32772, "向上", "Up"},
    {DialogFolder, 32773, "视图", "View"},
    {DialogFolder, 32774, "图标", "Icons"},
    {DialogFolder, 32775, "小图标", "Small icons"},
    {DialogFolder, 32776, "列表", "List"},
    {DialogFolder, 32777, "详细信息", "Details"},
    {DialogContent, kWholeView, "已选择的文件的目录：", "Selected file:"},
    {DialogContent, 214, "文件语系：", "File language:"},
    {DialogContent, 216, "文件语系：", "File language:"},
    {DialogSettings, kWholeView, "已选择文件的特定设置：", "Settings of the selected file:"},
    {DialogSettings, 222, "周期：", "Period:"},
    {DialogSettings, 226, "字段：", "Fields:"},
    {DialogSettings, 228, "时区：", "Time zone:"},
    {DialogSettings, 230, "起始列：", "Start row:"},
    {DialogSettings, 232, "价格倍数：", "Price multiplier:"},
    {DialogSettings, 234, "成交量倍数：", "Volume multiplier:"},
    {DialogSettings, 236, "开始日期:", "Start date:"},
    {DialogSettings, 238, "结束日期:", "End date:"},
    {DialogSettings, 239, "结束日期:", "End date:"},
    {DialogSettings, 240, "分隔符...", "Delimiters..."},
    {DialogSettings, 242, "使用bar结束时间", "Use end time of bars"},
    {DialogDecode, kWholeView, "根据内容检测或重新定义全部字段：",
     "Check the columns found, or set them anew:"},
    {DialogDecode, 214, "根据内容检测或重新定义全部字段：",
     "Check the columns found, or set them anew:"},
    {DialogTemplate, kWholeView, "编辑模板", "Edit template"},
    {DialogTemplate, 450, "指定模版:", "Template:"},
    {DialogTemplate, 452, "或选择已有模板并且根据需求做相应修改",
     "Or choose one and change it as needed"},
    {DialogTemplate, 454, "删除", "Delete"},
    {DialogTemplate, 1, "确认", "OK"},
    {DialogTemplate, 2, "取消", "Cancel"},
    {DialogDelimiters, kWholeView, "分隔符", "Delimiters"},
    {DialogDelimiters, DelimiterLabel, "设置字段分隔符：", "Field delimiters:"},
    {DialogDelimiters, 203, "空格", "Space"},
    {DialogDelimiters, 204, " Tab", " Tab"},
    {DialogDelimiters, 205, " ;", " ;"},
    {DialogDelimiters, 206, " ,", " ,"},
    {DialogDelimiters, 207, " :", " :"},
    {DialogDelimiters, 208, " |", " |"},
    {DialogDelimiters, 1, "确认", "OK"},
    {DialogDelimiters, 2, "取消", "Cancel"},
    {DialogProgress, kWholeView, "ASCII 数据导入", "Import ASCII data"},
    {DialogProgress, ProgressFileName, "转换文件：", "Converting:"},
    {DialogProgress, ProgressRecords, "处理过的记录：", "Records processed:"},
    {DialogProgress, ProgressElapsed, "已用时间：", "Elapsed:"},
    {DialogProgress, ProgressRemaining, "估计时间：", "Remaining:"},
    {DialogProgress, ProgressErrorLineLabel, "行：", "Line:"},
    {DialogProgress, ProgressErrorFieldLabel, "字段：", "Field:"},
    {DialogProgress, ProgressErrorLabel, "错误：", "Error:"},
    {DialogProgress, ProgressErrorText, "无", "None"},
    {DialogProgress, ProgressSkip, "跳过", "Skip"},
    {DialogProgress, ProgressSkipAll, "全部跳过", "Skip all"},
    {DialogProgress, ProgressCancel, "取消", "Cancel"},
};

TEST(DialogTexts, StandInBothLanguages)
{
    const ChineseTexts chinese;
    for (const LabelRow& row : kLabels) {
        TabulexSetLanguage(TABULEX_LANGUAGE_CHINESE);
        EXPECT_EQ(Utf8(TabulexDialogText(row.dialog, row.nControl)), row.szChinese);
        TabulexSetLanguage(TABULEX_LANGUAGE_ENGLISH);
        EXPECT_EQ(Utf8(TabulexDialogText(row.dialog, row.nControl)), row.szEnglish);
    }
}

TEST(DialogTexts, AreEmptyForControlsWithoutOne)
{
    const ChineseTexts chinese;
    for (const LONG nControl : {-2, 224, 999})
        EXPECT_EQ(Utf8(TabulexDialogText(DialogSettings, nControl)), "") << nControl;
    EXPECT_EQ(Utf8(TabulexDialogText(DialogFolder, kWholeView)), "");
    EXPECT_EQ(Utf8(TabulexDialogText(static_cast<DialogId>(0), kWholeView)), "");
}

// A view may keep them while the language changes.
TEST(DialogTexts, StayGoodAndAreTheSameEachTime)
{
    const ChineseTexts chinese;
    const OLECHAR* const pszText = TabulexDialogText(DialogImport, ImportOk);
    EXPECT_EQ(TabulexDialogText(DialogTemplate, SmallDialogOk), pszText);
    TabulexSetLanguage(TABULEX_LANGUAGE_ENGLISH);
    EXPECT_EQ(Utf8(TabulexDialogText(DialogImport, ImportOk)), "OK");
    EXPECT_EQ(Utf8(pszText), "确认");
}

TEST(DialogTexts, OfTheStringTableAreTheAgreedOnes)
{
    const ChineseTexts chinese;
    EXPECT_EQ(Utf8(LoadResourceString(115)), "N/A");
    EXPECT_EQ(Utf8(LoadResourceString(142)), "自定义...");
    EXPECT_EQ(Utf8(LoadResourceString(32772)), "向上\n向上");
    EXPECT_EQ(Utf8(LoadResourceString(32773)), "视图\n视图");
    SetResourceLanguage(Language::English);
    EXPECT_EQ(Utf8(LoadResourceString(115)), "N/A");
    EXPECT_EQ(Utf8(LoadResourceString(142)), "Custom...");
    EXPECT_EQ(Utf8(LoadResourceString(32772)), "Up\nUp");
    EXPECT_EQ(Utf8(LoadResourceString(32773)), "View\nView");
}

} // namespace
