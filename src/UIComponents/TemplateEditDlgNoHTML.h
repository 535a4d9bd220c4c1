// CTemplateEditDlgNoHTML: the small dialog in which the user writes a template of a date or time
// column, or takes one of those that the parser has stored.
//
//   CTemplateEditDlgNoHTML dialog(OLESTR("Date"), pRecordParser, nColumn);
//   if (dialog.DoModal() == kDialogOk)
//       Use(dialog.m_sTemplate);
//
// It works on a clone of the parser, so a template that the user deletes here is gone from this
// dialog only: the parser that was given still has it, and offers it the next time. The clone
// keeps an uncounted link to the data parser, which must outlive the dialog.
//
// Used by one thread.
#pragma once

#include "interfaces/IRecordParser.h"
#include "platform/com_ptr.h"
#include "platform/values.h"
#include "src/UIComponents/views/DialogViews.h"

namespace Hesperon::specifics::UILayer {

class CTemplateEditDlgNoHTML final : private IDialogEvents
{
public:
    using IRecordParser = IQRL_TabulexConverter::IRecordParser;

    // sTypeName is the internal name of a type. A parser that can't be cloned is reported; the
    // list is empty then.
    CTemplateEditDlgNoHTML(string_view_t sTypeName, com_ptr<IRecordParser> pRecordParser,
                           ULONG nField);

    // Over the active window: kDialogOk, kDialogCancel, or kDialogFailed without views.
    LONG DoModal();

    // The template chosen, without white space at its ends if it was typed, 511 characters at
    // most. What stands here before DoModal stays until the user types or chooses another; it
    // isn't shown.
    string_t m_sTemplate;

private:
    // ---- IDialogEvents
    void OnOpen(IDialogView& view) override;
    void OnDefaultCommand() override;
    void OnDestroy() override { m_pView = nullptr; }
    void OnText(LONG nControl) override;
    void OnSelect(LONG nControl) override;
    void OnClick(LONG nControl) override;
    void OnDate(LONG) override {}
    void OnResize() override {}

    void FillList();
    void AddTemplate(LONG nItem);
    void DeleteTemplate();
    void UpdateOk();
    void UpdateDelete();

    const string_t m_sTypeName;
    const Bstr m_bsTypeName; // the same
    const com_ptr<IRecordParser> m_pRecordParser;
    com_ptr<IRecordParser> m_pRecordParserClone; // null if there is none
    const ULONG m_nField;
    IDialogView* m_pView = nullptr; // while it runs
};

} // namespace Hesperon::specifics::UILayer
