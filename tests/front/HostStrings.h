// A host's own string table. It has one text: "Who knows", with id 141.
#pragma once

#include "platform/component.h"

// What IQRLGUITweak::ResourceHandle takes; stays good until the end of the process.
LONG_PTR HostStrings();
