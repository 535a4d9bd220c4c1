#include "tools/tabulex/import/ControlKinds.h"

#include <algorithm>

namespace tabulex {

using namespace IQRL_TabulexConverter;

namespace {

// The rows of a dialog stand together.
// Widths hold the longest text that is usual; a longer one is cut, and stands whole in its list.
constexpr ControlRow kControls[] = {
    {DialogImport, ImportLabel, ControlKind::Label, 0, 0, false},
    {DialogImport, ImportOk, ControlKind::Button, 0, 0, false},
    {DialogImport, ImportCancel, ControlKind::Button, 0, 0, false},

    {DialogContent, ContentLanguage, ControlKind::DropList, 30, ContentLanguageLabel, false},
    {DialogContent, ContentLanguageLabel, ControlKind::Label, 0, 0, false},

    {DialogSettings, SettingsSize, ControlKind::Edit, 5, 0, false},
    {DialogSettings, SettingsResolution, ControlKind::DropList, 12, 0, false},
    {DialogSettings, SettingsField, ControlKind::DropList, 10, 0, false},
    {DialogSettings, SettingsTimeZone, ControlKind::DropList, 10, 0, false},
    {DialogSettings, SettingsStartRow, ControlKind::Edit, 7, 0, false},
    {DialogSettings, SettingsPriceMultiplier, ControlKind::DropList, 9, 0, false},
    {DialogSettings, SettingsVolumeMultiplier, ControlKind::DropList, 9, 0, false},
    {DialogSettings, SettingsDateFirst, ControlKind::Date, 0, 0, false},
    {DialogSettings, SettingsDateLast, ControlKind::Date, 0, SettingsDateLastLabel, false},
    {DialogSettings, SettingsDateLastLabel, ControlKind::Label, 0, 0, false},
    {DialogSettings, SettingsDelimiters, ControlKind::Button, 0, 0, false},
    {DialogSettings, SettingsBarsEndTime, ControlKind::Check, 0, 0, false},

    {DialogDecode, DecodeLabel, ControlKind::Label, 0, 0, false},

    {DialogTemplate, TemplateText, ControlKind::Edit, 44, 0, true},
    {DialogTemplate, TemplateList, ControlKind::ListBox, 44, 0, true},
    {DialogTemplate, TemplateDelete, ControlKind::Button, 0, 0, true},
    {DialogTemplate, SmallDialogOk, ControlKind::Button, 0, 0, false},
    {DialogTemplate, SmallDialogCancel, ControlKind::Button, 0, 0, false},

    {DialogDelimiters, DelimiterLabel, ControlKind::Label, 0, 0, false},
    {DialogDelimiters, DelimiterSpace, ControlKind::Check, 16, 0, true},
    {DialogDelimiters, DelimiterTab, ControlKind::Check, 16, 0, false},
    {DialogDelimiters, DelimiterSemicolon, ControlKind::Check, 16, 0, true},
    {DialogDelimiters, DelimiterComma, ControlKind::Check, 16, 0, false},
    {DialogDelimiters, DelimiterColon, ControlKind::Check, 16, 0, true},
    {DialogDelimiters, DelimiterBar, ControlKind::Check, 16, 0, false},
    {DialogDelimiters, SmallDialogOk, ControlKind::Button, 0, 0, true},
    {DialogDelimiters, SmallDialogCancel, ControlKind::Button, 0, 0, false},
};

} // namespace

std::span<const ControlRow> ControlsOf(DialogId dialog)
{
    const auto first = std::ranges::find(kControls, dialog, &ControlRow::dialog);
    const auto last = std::find_if(first, std::end(kControls),
                                   [&](const ControlRow& row) { return row.dialog != dialog; });
    return {first, last};
}

ControlKind KindOf(DialogId dialog, LONG nControl)
{
    const auto rows = ControlsOf(dialog);
    const auto row = std::ranges::find(rows, nControl, &ControlRow::nControl);
    return row == rows.end() ? ControlKind::None : row->kind;
}

} // namespace tabulex
