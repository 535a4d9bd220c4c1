// The one thread of the process on which symbols are enumerated: one enumeration after
// the other, in the order in which they came, and a record a step.
//
// The thread starts with the first enumeration and ends with the last front object. An
// enumeration that is under way then is cut off behind its step; it and those that wait
// are let go of, and their receivers hear nothing. Without any front object the thread
// waits for the next enumeration, and ends with the process.
//
// Safe from any thread. Enumerations are called and let go of without any lock.
#pragma once

#include "interfaces/IFileHandlerEvents.h"

namespace Hesperon::specifics::SymbolEnumeratorHost {

// Counts a living front object.
void AddConvertor();
// The last one waits for the thread to end, and dispatches the messages of the calling
// thread meanwhile, since a receiver may be waiting for that. On the enumerations' own
// thread it returns at once, and the thread ends behind the step that it is in. Call it
// while the front object still holds its data parser: the enumerations' thread waits for
// the threads of all files when it lets go of the last data parser of all, and must not
// do so while one of them waits here.
void ReleaseConvertor();

// Ends the thread, and waits for it, unless it is the caller. For when no object lives any
// more, and at the end of the process.
void EndThread();

// Puts an enumeration at the end of the list: its ProcessRecord is called with positions
// from 0 on until it gives anything but S_OK. S_FALSE: the thread is being ended, and the
// enumeration wasn't taken. Throws where the thread can't be started.
HRESULT Add(IQRL_TabulexConverter::IFileHandlerEvents* pEvents);

} // namespace Hesperon::specifics::SymbolEnumeratorHost
