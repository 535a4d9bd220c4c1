#include "tools/tabulex/SqliteLibrary.h"

namespace tabulex {

bool HasSqlite()
{
    return true;
}

} // namespace tabulex
