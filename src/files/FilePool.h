// CFilePool: from file names to shared file handlers; one worker thread per file.
//
// One pool for the process. Names are compared exactly as given. Safe from any
// thread; nothing throws.
#pragma once

#include "platform/com_ptr.h"
#include "src/files/IFileHandler.h"

namespace Hesperon::specifics {

// The part of the pool that data parsers use; the class is in FilePoolImpl.h.
namespace FilePool {

// Counts living data parsers. The last ReleaseParser ends the worker threads, and
// returns when they have ended.
void AddParser();
void ReleaseParser();

// When no data parser is left: waits for a thread of the pool that released the last one.
// It may still be in its last steps, and the library must not be unloaded before they
// are done.
void AwaitThreads();

// The handler of a file, which is opened if need be (five attempts, 100 ms in all);
// null if it can't be opened. Returns when the handler is ready.
com_ptr<IFileHandler> AttachFile(string_view_t sName);

// Forgets the name, so that the next attach opens the file afresh; with bClose
// also closes the file under the handlers that live.
void ReleaseFile(string_view_t sName, bool bClose);

} // namespace FilePool

} // namespace Hesperon::specifics
