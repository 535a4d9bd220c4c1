// The menu library on this system: when it comes and goes, which is at the load and the unload of
// this module, and what windows ask of it. It changes only looks, and may be absent or lack an
// entry: the calls do nothing then.
#pragma once

#include "platform/component.h"

#include <commctrl.h>

namespace MenuLibrary {

// It lies beside the module.
void Load(HMODULE hModule);
void Free();

// Menus that open over this window are drawn flat.
void SetFlatMenu(HWND hWnd);

// Chooses the loader of the images that are loaded next; 0 for the library's own. Gives the
// former one, 0 without the library.
LONG SelectImageLoaderId(LONG nLoader);

// The images of a toolbar's buttons, from a module's resources. The caller destroys the list.
// Null without the library.
HIMAGELIST LoadImagesFromToolbar(UINT nToolbar, HINSTANCE hModule);

} // namespace MenuLibrary
