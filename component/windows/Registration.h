// The component in the system's register: classes with their ProgIDs, the application's
// identifier, and the type library.
#pragma once

#include "platform/component.h"

// {4B305237-89F6-48B2-BF61-99C15FC7C339}
inline constexpr GUID kApplicationId = {
    0x4B305237, 0x89F6, 0x48B2, {0xBF, 0x61, 0x99, 0xC1, 0x5F, 0xC7, 0xC3, 0x39}};
// {7A1C54D3-2E0B-4C61-9C0D-6D0C2E1B3F48}
inline constexpr GUID kTypeLibraryId = {
    0x7A1C54D3, 0x2E0B, 0x4C61, {0x9C, 0x0D, 0x6D, 0x0C, 0x2E, 0x1B, 0x3F, 0x48}};

// Registers everything, or stops at the first failure and gives that. Needs the right to
// write for all users.
HRESULT RegisterComponent(HMODULE hModule);
// Takes out whatever is there, and gives the first failure.
HRESULT UnregisterComponent(HMODULE hModule);
