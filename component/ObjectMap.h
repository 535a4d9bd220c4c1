// The classes that the component can create.
#pragma once

#include "module/Module.h"

std::span<const ObjectMapEntry> ObjectMap();
