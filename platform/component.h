// The component value layer: HRESULT, GUID, IUnknown, IDispatch, BSTR, VARIANT,
// SAFEARRAY and the calls on them.
//
// On Windows these are the system's own. Elsewhere component_posix.h declares
// the same names with the same numbers, layouts and meanings, as far as this
// library uses them.
//
// Text is UTF-16 in OLECHAR units: wchar_t on Windows, char16_t elsewhere. Write
// literals as OLESTR("...") so that both spellings compile.
#pragma once

#if defined(_WIN32)
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <oleauto.h>
// Common words that the system's headers define as macros.
#undef far
#undef interface
#undef near
#define TABULEX_API
#else
#include "platform/component_posix.h"
#endif

#include <string>
#include <string_view>

using string_t = std::basic_string<OLECHAR>;
using string_view_t = std::basic_string_view<OLECHAR>;

// Identifier of an interface; each interface header specialises it.
template <class Interface>
inline constexpr GUID iid_of{};

template <>
inline constexpr GUID iid_of<IUnknown> = {
    0x00000000, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
template <>
inline constexpr GUID iid_of<IClassFactory> = {
    0x00000001, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
template <>
inline constexpr GUID iid_of<IDispatch> = {
    0x00020400, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
template <>
inline constexpr GUID iid_of<ISupportErrorInfo> = {
    0xDF0B3D60, 0x548F, 0x101B, {0x8E, 0x65, 0x08, 0x00, 0x2B, 0x2B, 0xD1, 0x19}};
