// Whether the settings of a data parser can be converted at all. The state of the parsers is
// looked at, never the file.
#pragma once

#include "interfaces/IDataParserEvents.h"
#include "interfaces/IRecordParser.h"
#include "src/data/DateWithStatus.h"

namespace Hesperon::specifics {

// What is checked. Null for no record parser.
struct CheckedSettings
{
    IQRL_TabulexConverter::IRecordParser* pRecordParser;
    const DateWithStatus& dtStart;
    const DateWithStatus& dtEnd;
};

// The first fault is reported to the sink in one sentence or, where the sink refuses it, to
// the person at the window: S_FALSE then. Settings that are good give the result of the sink's
// GetResolutionName; E_NOINTERFACE for a sink without IDataParserEvents.
HRESULT CheckSettings(const CheckedSettings& settings, LONG_PTR hWnd, IDispatch* pEventSink);

} // namespace Hesperon::specifics
