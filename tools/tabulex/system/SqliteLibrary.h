// Where the functions of SQLite come from: the tool is linked with them, or the system
// has them in a library that is found at run time.
#pragma once

namespace tabulex {

// False if there is no such library. None of the functions may be called then.
bool HasSqlite();

} // namespace tabulex
