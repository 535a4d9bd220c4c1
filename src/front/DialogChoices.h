// What passes between the host's settings and the import dialog.
#pragma once

#include "src/UIComponents/ConvertDialog/ConvertDummyDialog.h"
#include "src/front/ConvertorSettings.h"

namespace Hesperon::specifics {

// The lists, the choices and the folder. The lists stay those of the settings, which outlive the
// result.
SConvertDialogParams DialogParams(const ConvertorSettings& settings);

// What the user has confirmed.
void TakeChoices(const UILayer::CConvertDummyDialog& dialog, ConvertorSettings& settings);

} // namespace Hesperon::specifics
