#include "tools/tabulex/system/SqliteLibrary.h"

#include <sqlite3.h>

#include "platform/component.h"

// Windows has had SQLite since its version 10, under a name of its own; on older ones a user
// may have put the library beside the program. Here are the functions that the tool calls,
// under their own names; each passes the call on.

namespace {

HMODULE Load()
{
    const HMODULE hSystem =
        LoadLibraryExW(L"winsqlite3.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    return hSystem ? hSystem
                   : LoadLibraryExW(L"sqlite3.dll", nullptr, LOAD_LIBRARY_SEARCH_APPLICATION_DIR);
}

FARPROC Find(const char* pszName)
{
    static const HMODULE hLibrary = Load();
    return hLibrary ? GetProcAddress(hLibrary, pszName) : nullptr;
}

template <class Function>
Function* Find(const char* pszName)
{
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(Find(pszName)));
}

} // namespace

// A library that has the newest of the functions has all of them.
bool tabulex::HasSqlite()
{
    return Find("sqlite3_system_errno") != nullptr;
}

int sqlite3_bind_double(sqlite3_stmt* statement, int nParameter, double value)
{
    static const auto function = Find<decltype(sqlite3_bind_double)>("sqlite3_bind_double");
    return function(statement, nParameter, value);
}

int sqlite3_bind_int64(sqlite3_stmt* statement, int nParameter, sqlite3_int64 value)
{
    static const auto function = Find<decltype(sqlite3_bind_int64)>("sqlite3_bind_int64");
    return function(statement, nParameter, value);
}

int sqlite3_bind_null(sqlite3_stmt* statement, int nParameter)
{
    static const auto function = Find<decltype(sqlite3_bind_null)>("sqlite3_bind_null");
    return function(statement, nParameter);
}

int sqlite3_bind_text(sqlite3_stmt* statement, int nParameter, const char* pText, int nBytes,
                      void (*pfnFree)(void*))
{
    static const auto function = Find<decltype(sqlite3_bind_text)>("sqlite3_bind_text");
    return function(statement, nParameter, pText, nBytes, pfnFree);
}

int sqlite3_busy_timeout(sqlite3* database, int nMilliseconds)
{
    static const auto function = Find<decltype(sqlite3_busy_timeout)>("sqlite3_busy_timeout");
    return function(database, nMilliseconds);
}

int sqlite3_close(sqlite3* database)
{
    static const auto function = Find<decltype(sqlite3_close)>("sqlite3_close");
    return function(database);
}

const unsigned char* sqlite3_column_text(sqlite3_stmt* statement, int nColumn)
{
    static const auto function = Find<decltype(sqlite3_column_text)>("sqlite3_column_text");
    return function(statement, nColumn);
}

int sqlite3_errcode(sqlite3* database)
{
    static const auto function = Find<decltype(sqlite3_errcode)>("sqlite3_errcode");
    return function(database);
}

const char* sqlite3_errmsg(sqlite3* database)
{
    static const auto function = Find<decltype(sqlite3_errmsg)>("sqlite3_errmsg");
    return function(database);
}

int sqlite3_exec(sqlite3* database, const char* pszSql, int (*pfnRow)(void*, int, char**, char**),
                 void* pContext, char** ppszError)
{
    static const auto function = Find<decltype(sqlite3_exec)>("sqlite3_exec");
    return function(database, pszSql, pfnRow, pContext, ppszError);
}

int sqlite3_finalize(sqlite3_stmt* statement)
{
    static const auto function = Find<decltype(sqlite3_finalize)>("sqlite3_finalize");
    return function(statement);
}

int sqlite3_open_v2(const char* pszPath, sqlite3** ppDatabase, int nFlags, const char* pszSystem)
{
    static const auto function = Find<decltype(sqlite3_open_v2)>("sqlite3_open_v2");
    return function(pszPath, ppDatabase, nFlags, pszSystem);
}

int sqlite3_prepare_v2(sqlite3* database, const char* pSql, int nBytes, sqlite3_stmt** ppStatement,
                       const char** ppTail)
{
    static const auto function = Find<decltype(sqlite3_prepare_v2)>("sqlite3_prepare_v2");
    return function(database, pSql, nBytes, ppStatement, ppTail);
}

int sqlite3_reset(sqlite3_stmt* statement)
{
    static const auto function = Find<decltype(sqlite3_reset)>("sqlite3_reset");
    return function(statement);
}

int sqlite3_step(sqlite3_stmt* statement)
{
    static const auto function = Find<decltype(sqlite3_step)>("sqlite3_step");
    return function(statement);
}

int sqlite3_system_errno(sqlite3* database)
{
    static const auto function = Find<decltype(sqlite3_system_errno)>("sqlite3_system_errno");
    return function(database);
}
