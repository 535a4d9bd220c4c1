// Texts that a host has of its own, with one under 141: "Who knows".
#pragma once

#include "platform/component.h"

// What IQRLGUITweak::ResourceHandle takes; stays good until the end of the process.
LONG_PTR HostStrings();
