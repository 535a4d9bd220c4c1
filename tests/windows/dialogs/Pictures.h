// Pictures of windows as they stand on the screen, for the documents and for a look.
#pragma once

#include <string>

#include "platform/component.h"

// Whether there is a screen to take pictures of.
bool HasScreen();

// Writes what is on the screen inside the rectangle of the window and of the menus that are open
// to NAME.bmp in the folder of pictures, 24 bits a pixel. False when anything fails.
bool TakePicture(HWND hWnd, const std::wstring& sName);
