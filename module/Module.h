// The module: what lives in this library, and the table of what can be created.
#pragma once

#include <span>

#include "platform/component.h"

// Every living object and window, and every lock of a class factory, counts once.
void LockModule();
void UnlockModule();
LONG ModuleLockCount();

// Counts as long as it lives.
class ModuleLock
{
public:
    ModuleLock() { LockModule(); }
    ~ModuleLock() { UnlockModule(); }
    ModuleLock(const ModuleLock&) = delete;
    ModuleLock& operator=(const ModuleLock&) = delete;
};

struct ObjectMapEntry
{
    CLSID clsid;
    string_view_t sProgId; // version-independent form; ".1" makes the versioned one
    HRESULT (*pfnCreate)(REFIID riid, void** ppv);
    string_view_t sDescription = {}; // for the register; empty where the ProgID stands there
    bool bControl = false;           // can have a window in a container; the register says so
};

// Null for a class that isn't in the map.
const ObjectMapEntry* FindClass(std::span<const ObjectMapEntry> map, REFCLSID rclsid);

// An object of one of this library's classes, found in its own map rather than in the
// system's register. REGDB_E_CLASSNOTREG for any other. Defined beside the map.
HRESULT CreateOwnInstance(REFCLSID rclsid, REFIID riid, void** ppv);

// A factory for the entry, which must outlive it.
HRESULT CreateClassFactory(const ObjectMapEntry& entry, REFIID riid, void** ppv);
