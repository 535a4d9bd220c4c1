// CFilePool: from file names to shared file handlers; one worker thread a file.
//
// One pool for the process. Names are compared exactly as given. Safe from any
// thread; nothing throws.
#pragma once

#include "platform/com_ptr.h"
#include "src/files/IFileHandler.h"

namespace Hesperon::specifics {

// The part of the pool that data parsers use; the class stands in the .cpp's own
// header, FilePoolImpl.h.
namespace FilePool {

// Counts a living data parser. With the last one gone the worker threads end and
// ReleaseParser returns when they have.
void AddParser();
void ReleaseParser();

// Without data parsers: waits for the thread that let go of the last one, if that was one
// of the pool's own. It may be in its last steps, and code of the library must not go
// before it has.
void AwaitThreads();

// The handler of a file, opened if need be (five attempts, 100 ms in all); null if
// it can't be. Returns when the handler is ready.
com_ptr<IFileHandler> AttachFile(string_view_t sName);

// Forgets the name, so that the next attach opens the file afresh; with bClose
// also closes the file under the handlers that live.
void ReleaseFile(string_view_t sName, bool bClose);

} // namespace FilePool

} // namespace Hesperon::specifics
