// There is none here.

#include "module/MenuLibrary.h"

void MenuLibrary::EnableKelmstyle(LONG) {}

void MenuLibrary::SetMenuEffect(LONG) {}
