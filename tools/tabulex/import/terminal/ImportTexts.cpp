// The English lines of a page are as long as 80 columns allow; a Chinese character takes two.

#include "tools/tabulex/import/terminal/ImportTexts.h"

#include <cstddef>

namespace tabulex {

namespace {

struct TextRow
{
    ImportText text;
    const char* pszEnglish;
    const char* pszChinese;
};

constexpr TextRow kTexts[] = {
    {ImportText::Title, "TabulexConverter - import", "TabulexConverter - 导入"},
    {ImportText::HelpKey, "F1 help", "F1 帮助"},
    {ImportText::FileHint, "Enter open  Backspace up  v details",
     "Enter 打开  Backspace 上级  v 详细"},
    {ImportText::FrozenHint, "this file is set", "文件已定"},
    {ImportText::RecordOf, "record {} of {}", "记录 {} / {}"},
    {ImportText::Imported, "# = will be imported", "# = 将被导入"},
    {ImportText::Keys, "Tab 1-4 pane  Arrows move  Enter choose  h column menu  g record",
     "Tab 1-4 窗格  方向键 移动  Enter 选择  h 列菜单  g 记录"},
    {ImportText::FewKeys, "Tab 1-4 pane  Enter choose  h column  g record",
     "Tab 1-4 窗格  Enter 选择  h 列  g 记录"},
    {ImportText::OkKey, "F10 import", "F10 导入"},
    {ImportText::CancelKey, "Esc cancel", "Esc 取消"},
    {ImportText::Ready, "Ready. F10 checks the settings and imports.",
     "就绪。F10 检查设置并导入。"},
    {ImportText::NoFile, "Choose a file: arrows and Enter.", "请选择文件：方向键和 Enter。"},
    {ImportText::NoDates,
     "No dates are found: set a Date column (h), the dividers (F4) or the start row.",
     "找不到日期：请设置日期列 (h)、分隔符 (F4) 或起始行。"},
    {ImportText::NotReady,
     "Not ready: the dates can't be read, or no resolution fits. Try the columns (h), F3, F4 or "
     "the start row.",
     "未就绪：无法读取日期，或没有合适的周期。请检查列 (h)、F3、F4 或起始行。"},
    {ImportText::Waiting, "Reading...", "正在读取..."},
    {ImportText::NoFolder, "'{}' can't be opened.", "无法打开“{}”。"},
    {ImportText::LayoutAnew,
     "A date or a time has all columns found anew: types chosen before are lost.",
     "选择日期或时间会重新检测所有列：之前选择的类型将丢失。"},
    {ImportText::GoTo, "Go to record: ", "转到记录："},
    {ImportText::Parent, "../", "../"},
    {ImportText::TooSmall,
     "The import dialog needs {} columns and {} rows; enlarge the terminal, "
     "or press Esc.",
     "导入对话框需要 {} 列 {} 行；请放大终端，或按 Esc。"},
    {ImportText::Help,
     "Tab, Shift-Tab   next pane, and next control in the settings\n"
     "1 2 3 4          the pane of this number\n"
     "arrows, PgUp, PgDn, Home, End   move and scroll\n"
     "Enter            open a folder or choose a file; apply an edit; open a list\n"
     "Backspace, v     parent folder; names or details\n"
     "blank            drop a list down, toggle a box\n"
     "F3               code page of the file\n"
     "F4               dividers between fields\n"
     "h                type of the column\n"
     "g                go to a record by its number\n"
     "F10, Ctrl-Enter  check the settings, and import\n"
     "Esc, Ctrl-C      cancel",
     "Tab, Shift-Tab   下一窗格；设置中为下一控件\n"
     "1 2 3 4          该编号的窗格\n"
     "方向键, PgUp, PgDn, Home, End   移动和滚动\n"
     "Enter            打开文件夹或选择文件；应用编辑；打开列表\n"
     "Backspace, v     上级文件夹；名称或详细信息\n"
     "空格             打开列表，切换复选框\n"
     "F3               文件语系\n"
     "F4               字段分隔符\n"
     "h                列的类型\n"
     "g                按编号转到记录\n"
     "F10, Ctrl-Enter  检查设置并导入\n"
     "Esc, Ctrl-C      取消"},
    {ImportText::Records, "Records: ", "记录："},
    {ImportText::Elapsed, "Elapsed: ", "已用时间："},
    {ImportText::Remaining, "Remaining: ", "剩余时间："},
    {ImportText::BadLine, "Line {}: ", "第 {} 行："},
    {ImportText::BadLineField, "Line {}, field {}: ", "第 {} 行，字段 {}："},
    {ImportText::BadLineKeys, "s skip   a skip all   c cancel", "s 跳过   a 全部跳过   c 取消"},
    {ImportText::ProgressKeys, "Esc cancel", "Esc 取消"},
    {ImportText::Converting, "Import", "导入"},
};

// A row for each, in their order.
constexpr bool AreInOrder()
{
    std::size_t n = 0;
    for (const TextRow& row : kTexts)
        if (static_cast<std::size_t>(row.text) != n++)
            return false;
    return n == static_cast<std::size_t>(ImportText::Count);
}
static_assert(AreInOrder());

bool g_bChineseTexts = false;

} // namespace

void SetImportLanguage(bool bChinese)
{
    g_bChineseTexts = bChinese;
}

const char* TextOf(ImportText text)
{
    const TextRow& row = kTexts[static_cast<std::size_t>(text)];
    return g_bChineseTexts ? row.pszChinese : row.pszEnglish;
}

} // namespace tabulex
