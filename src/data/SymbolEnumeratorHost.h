// The one thread of the process on which symbols are enumerated: one enumeration after
// the other, in the order in which they came, one record per step.
//
// The thread starts with the first enumeration and ends with the last front object. An
// enumeration that is under way then ends after its current step. It and those that wait are
// released, and their receivers aren't called. A front object that comes meanwhile gets a new
// thread, and doesn't wait for that step. A thread that was started without any front
// object waits for the next enumeration, and ends with the process.
//
// Safe from any thread. No lock is held while an enumeration is called or released.
#pragma once

#include "interfaces/IFileHandlerEvents.h"

namespace Hesperon::specifics::SymbolEnumeratorHost {

// A front object has been created.
void AddConvertor();
// A front object goes. For the last one this waits until the thread has ended, and dispatches
// the messages of the calling thread meanwhile, since a receiver may be waiting for that. On
// the enumerations' own thread it returns at once, and the thread ends after its current step.
// Call it while the front object still holds its data parser: whoever releases the last data
// parser of all waits for the threads of all files, and the enumerations' thread must not do
// that while a file's thread waits here.
void ReleaseConvertor();

// Ends the thread and waits for it, unless it is the caller. For when no object is left, and
// for the end of the process.
void EndThread();

// Puts an enumeration at the end of the list. Its ProcessRecord is called with positions from
// 0 on until it returns anything but S_OK. S_FALSE: the thread is being ended and no front
// object is left, so the enumeration wasn't taken. Throws if the thread can't be started.
HRESULT Add(IQRL_TabulexConverter::IFileHandlerEvents* pEvents);

} // namespace Hesperon::specifics::SymbolEnumeratorHost
