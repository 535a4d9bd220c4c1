// GiveOut: how an operation hands out its value.
//
//   HRESULT CRecordParser::get_Resolution(LONG* pVal)
//   {
//       return Locked([&] { return GiveOut(pVal, m_state.m_nResolution); });
//   }
//
// A null pointer gives E_POINTER, else the value is stored and the result is S_OK. What an
// owner holds becomes the caller's: give it as Bstr, Variant or com_ptr. A value that costs
// something, or must not be made for a null pointer, comes from a function.
#pragma once

#include <concepts>
#include <type_traits>
#include <utility>

#include "platform/com_ptr.h"
#include "platform/values.h"

namespace Hesperon::specifics {

inline VARIANT_BOOL ToVariantBool(bool bValue)
{
    return bValue ? VARIANT_TRUE : VARIANT_FALSE;
}

namespace out_value_details {

template <class T>
inline constexpr bool kIsReference = false;
template <class I>
inline constexpr bool kIsReference<com_ptr<I>> = true;

// The value in the form in which it crosses an interface.
template <class T, class Value>
T Outward(Value&& value)
{
    using Given = std::remove_cvref_t<Value>;
    if constexpr (std::invocable<Value>)
        return Outward<T>(value());
    else if constexpr (std::same_as<T, VARIANT_BOOL> && std::same_as<Given, bool>)
        return ToVariantBool(value);
    else if constexpr (std::same_as<T, BSTR> && std::convertible_to<Value, string_view_t>)
        return NewBstr(value);
    else if constexpr (kIsReference<Given>)
        return com_ptr<std::remove_pointer_t<T>>(value.get()).detach();
    else if constexpr (std::same_as<Given, Bstr> || std::same_as<Given, Variant>)
        return Given(std::forward<Value>(value)).detach();
    else
        return std::forward<Value>(value);
}

} // namespace out_value_details

// For BSTR* also a text, which is copied, and for VARIANT_BOOL* a bool. Throws what making
// the value throws, and then stores nothing.
template <class T, class Value>
HRESULT GiveOut(T* pVal, Value&& value)
{
    if (!pVal)
        return E_POINTER;
    *pVal = out_value_details::Outward<T>(std::forward<Value>(value));
    return S_OK;
}

} // namespace Hesperon::specifics
