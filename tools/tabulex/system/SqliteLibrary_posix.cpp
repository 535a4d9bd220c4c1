#include "tools/tabulex/system/SqliteLibrary.h"

namespace tabulex {

bool HasSqlite()
{
    return true;
}

} // namespace tabulex
