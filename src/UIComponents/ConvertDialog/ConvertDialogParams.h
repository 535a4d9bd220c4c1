// SConvertDialogParams: what the import dialog is opened with.
//
// A position in one of the dialog's lists is a position in the list here. Everything outlives
// the dialog, and doesn't change meanwhile.
#pragma once

#include <vector>

#include "interfaces/IDataParser.h"
#include "interfaces/IDataParserEvents.h"
#include "platform/com_ptr.h"
#include "src/data/TemplateEntry.h"

namespace Hesperon::specifics {

struct SConvertDialogParams
{
    const std::vector<STemplateEntry>* pFieldTemplates = nullptr;
    const std::vector<STemplateEntry>* pResolutionTemplates = nullptr; // ids are resolutions
    const std::vector<STemplateEntry>* pTimeZoneTemplates = nullptr;
    com_ptr<IQRL_TabulexConverter::IDataParser> pDataParser;      // changed while the dialog runs
    com_ptr<IQRL_TabulexConverter::IDataParserEvents> pEventSink; // of the settings check
    string_t sFolder;                                             // last used; may be empty
    string_t sResolution, sField, sTimeZone;                      // the current choices
    LONG nResolutionSize = 0;
    LONG nMode = 0; // 1: the size can be typed
};

} // namespace Hesperon::specifics
