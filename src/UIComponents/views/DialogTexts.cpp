// One table from (dialog, control) to the string table's id. A text of the string table needn't
// end in a zero, and a host may take its table away; so texts are kept here, each one once.

#include "src/UIComponents/views/DialogTexts.h"

#include <algorithm>
#include <mutex>
#include <new>
#include <set>

#include "Simples/interface/ResourceStrings.h"
#include "diagnostics/FaultmereClient.h"
#include "interfaces/IProgressView.h"
#include "platform/threads/CriticalSection.h"

namespace Hesperon::specifics::UILayer {

using namespace IQRL_TabulexConverter;

namespace {

struct TextRow
{
    DialogId dialog;
    LONG nControl;
    StringId id;
};

constexpr TextRow kTexts[] = {
    {DialogImport, kWholeView, IDS_IMPORT},
    {DialogImport, ImportLabel, IDS_SELECT_FILE},
    {DialogImport, ImportOk, IDS_OK},
    {DialogImport, ImportCancel, IDS_CANCEL},

    {DialogFolder, FolderUp, IDS_FOLDER_UP},
    {DialogFolder, FolderModes, IDS_FOLDER_VIEW},
    {DialogFolder, FolderIcons, IDS_ICONS},
    {DialogFolder, FolderSmallIcons, IDS_SMALL_ICONS},
    {DialogFolder, FolderNames, IDS_LIST},
    {DialogFolder, FolderDetails, IDS_DETAILS},

    {DialogContent, kWholeView, IDS_SELECTED_FILE},
    {DialogContent, ContentLanguageLabel, IDS_FILE_LANGUAGE},
    {DialogContent, ContentLanguage, IDS_FILE_LANGUAGE},

    {DialogSettings, kWholeView, IDS_FILE_SETTINGS},
    {DialogSettings, SettingsSize, IDS_RESOLUTION},
    {DialogSettings, SettingsField, IDS_FIELDS},
    {DialogSettings, SettingsTimeZone, IDS_TIME_ZONE},
    {DialogSettings, SettingsStartRow, IDS_START_ROW},
    {DialogSettings, SettingsPriceMultiplier, IDS_PRICE_MULTIPLIER},
    {DialogSettings, SettingsVolumeMultiplier, IDS_VOLUME_MULTIPLIER},
    {DialogSettings, SettingsDateFirst, IDS_DATE_FIRST},
    {DialogSettings, SettingsDateLast, IDS_DATE_LAST},
    {DialogSettings, SettingsDateLastLabel, IDS_DATE_LAST},
    {DialogSettings, SettingsDelimiters, IDS_DELIMITERS_BUTTON},
    {DialogSettings, SettingsBarsEndTime, IDS_BARS_END_TIME},

    {DialogDecode, kWholeView, IDS_CHECK_COLUMNS},
    {DialogDecode, DecodeLabel, IDS_CHECK_COLUMNS},

    {DialogTemplate, kWholeView, IDS_EDIT_TEMPLATE},
    {DialogTemplate, TemplateText, IDS_TEMPLATE},
    {DialogTemplate, TemplateList, IDS_TEMPLATE_LIST},
    {DialogTemplate, TemplateDelete, IDS_DELETE},
    {DialogTemplate, SmallDialogOk, IDS_OK},
    {DialogTemplate, SmallDialogCancel, IDS_CANCEL},

    {DialogDelimiters, kWholeView, IDS_DELIMITERS},
    {DialogDelimiters, DelimiterLabel, IDS_SET_DELIMITERS},
    {DialogDelimiters, DelimiterSpace, IDS_DELIMITER_SPACE},
    {DialogDelimiters, DelimiterTab, IDS_DELIMITER_TAB},
    {DialogDelimiters, DelimiterSemicolon, IDS_DELIMITER_SEMICOLON},
    {DialogDelimiters, DelimiterComma, IDS_DELIMITER_COMMA},
    {DialogDelimiters, DelimiterColon, IDS_DELIMITER_COLON},
    {DialogDelimiters, DelimiterBar, IDS_DELIMITER_BAR},
    {DialogDelimiters, SmallDialogOk, IDS_OK},
    {DialogDelimiters, SmallDialogCancel, IDS_CANCEL},

    {DialogProgress, kWholeView, IDS_IMPORT},
    {DialogProgress, ProgressFileName, IDS_CONVERTING},
    {DialogProgress, ProgressRecords, IDS_RECORDS},
    {DialogProgress, ProgressElapsed, IDS_ELAPSED},
    {DialogProgress, ProgressRemaining, IDS_REMAINING},
    {DialogProgress, ProgressErrorLineLabel, IDS_ERROR_LINE},
    {DialogProgress, ProgressErrorFieldLabel, IDS_ERROR_FIELD},
    {DialogProgress, ProgressErrorLabel, IDS_ERROR},
    {DialogProgress, ProgressErrorText, IDS_NO_ERROR}, // what stands there at first
    {DialogProgress, ProgressSkip, IDS_SKIP},
    {DialogProgress, ProgressSkipAll, IDS_SKIP_ALL},
    {DialogProgress, ProgressCancel, IDS_CANCEL},
};

constexpr bool IsTip(StringId id)
{
    return id == IDS_FOLDER_UP || id == IDS_FOLDER_VIEW;
}

// The string table has a button's two texts in one, by a line break: the second is the tip.
string_view_t TipOf(string_view_t sText)
{
    const std::size_t nBreak = sText.find(OLECHAR('\n'));
    const string_view_t sTip = nBreak == sText.npos ? sText : sText.substr(nBreak + 1);
    FaultmereUtil::Assert(!sTip.empty(), "!sTip.IsEmpty()");
    return sTip;
}

// Never freed before the process ends. There are as many as the languages have texts.
const OLECHAR* Kept(string_view_t sText)
{
    static CriticalSection lock;
    static std::set<string_t, std::less<>> texts; // guarded by lock
    const LockGuard guard(lock);
    auto text = texts.find(sText);
    if (text == texts.end())
        text = texts.emplace(sText).first;
    return text->c_str();
}

} // namespace

const OLECHAR* DialogText(DialogId dialog, LONG nControl)
{
    const auto* row = std::ranges::find_if(
        kTexts, [&](const TextRow& r) { return r.dialog == dialog && r.nControl == nControl; });
    if (row == std::end(kTexts))
        return OLESTR("");
    const string_view_t sText = LoadResourceString(row->id);
    try {
        return Kept(IsTip(row->id) ? TipOf(sText) : sText);
    } catch (const std::bad_alloc&) {
        return OLESTR("");
    }
}

} // namespace Hesperon::specifics::UILayer
