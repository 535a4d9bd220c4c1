// The language and the code page of a process whose program has chosen none.
#pragma once

// English and UTF-8 in the place of what the program hasn't chosen by TabulexSetLanguage and
// TabulexSetEncoding. From any thread; later calls do nothing.
void SetProcessDefaults();
