// One row of a list that the host offers: fields, resolutions or time zones.
#pragma once

#include "platform/component.h"

namespace Hesperon::specifics {

struct STemplateEntry
{
    string_t sName; // of a resolution, possibly with a size after a "|"
    LONG nId;
};

} // namespace Hesperon::specifics
