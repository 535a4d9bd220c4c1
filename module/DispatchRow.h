// The rows of a dispatch table, and how a member's signature becomes one.
//
// By value: BYTE VT_UI1, LONG VT_I4, ULONG VT_UI4, 64-bit integers VT_I8 and VT_UI8, FLOAT
// VT_R4, VARIANT_BOOL VT_BOOL, BSTR VT_BSTR, IDispatch* VT_DISPATCH, VARIANT any
// kind. A pointer to one of these is the same kind by reference.
#pragma once

#include <array>
#include <concepts>
#include <initializer_list>
#include <tuple>
#include <utility>

#include "platform/values.h"

inline constexpr std::size_t kMaxDispatchArguments = 6;

// Calls an operation with its coerced arguments, in declared order.
struct DispatchCall
{
    HRESULT (*pfnCall)(void* pInterface, VARIANT* arguments) = nullptr;
    std::array<VARTYPE, kMaxDispatchArguments> kinds{};
    UINT nArguments = 0;
};

struct DispatchRow
{
    enum class Kind
    {
        Method,
        Property,
        Result // an operation whose only argument is the result, whatever the flags
    };

    string_view_t sName;
    DISPID nId;
    Kind kind;
    DispatchCall call; // methods, and the put of a property
    HRESULT (*pfnGet)(void* pInterface, VARIANT* result) = nullptr; // the rest; VT_EMPTY on failure
    std::array<string_view_t, kMaxDispatchArguments> arguments{};
};

namespace dispatch_details {

template <class T>
constexpr VARTYPE KindOf()
{
    if constexpr (std::same_as<T, BSTR>)
        return VT_BSTR;
    else if constexpr (std::same_as<T, IDispatch*>)
        return VT_DISPATCH;
    else if constexpr (std::is_pointer_v<T>)
        return static_cast<VARTYPE>(VT_BYREF | KindOf<std::remove_pointer_t<T>>());
    else if constexpr (std::same_as<T, VARIANT>)
        return VT_VARIANT;
    else if constexpr (std::same_as<T, FLOAT>)
        return VT_R4;
    else if constexpr (std::same_as<T, VARIANT_BOOL>)
        return VT_BOOL;
    else {
        static_assert(std::same_as<T, BYTE> ||
                      (std::integral<T> && (sizeof(T) == 4 || sizeof(T) == 8)));
        if constexpr (sizeof(T) == 1)
            return VT_UI1;
        else if constexpr (sizeof(T) == 4)
            return std::is_signed_v<T> ? VT_I4 : VT_UI4;
        else
            return std::is_signed_v<T> ? VT_I8 : VT_UI8;
    }
}

// The payload of a value that has T's kind.
template <class T>
T Payload(const VARIANT& value)
{
    if constexpr (std::same_as<T, BSTR>)
        return value.bstrVal;
    else if constexpr (std::same_as<T, IDispatch*>)
        return value.pdispVal;
    else if constexpr (std::is_pointer_v<T>)
        return static_cast<T>(value.byref);
    else if constexpr (std::same_as<T, VARIANT>)
        return value;
    else if constexpr (std::same_as<T, FLOAT>)
        return value.fltVal;
    else if constexpr (std::same_as<T, VARIANT_BOOL>)
        return value.boolVal;
    else if constexpr (sizeof(T) == 1)
        return value.bVal;
    else if constexpr (sizeof(T) == 4)
        return static_cast<T>(value.lVal);
    else
        return static_cast<T>(value.llVal);
}

template <class T>
void SetPayload(VARIANT& value, T payload)
{
    if constexpr (std::same_as<T, VARIANT>)
        value = payload;
    else {
        value.vt = KindOf<T>();
        if constexpr (std::same_as<T, BSTR>)
            value.bstrVal = payload;
        else if constexpr (std::same_as<T, IDispatch*>)
            value.pdispVal = payload;
        else if constexpr (std::same_as<T, FLOAT>)
            value.fltVal = payload;
        else if constexpr (std::same_as<T, VARIANT_BOOL>)
            value.boolVal = payload;
        else if constexpr (sizeof(T) == 1)
            value.bVal = payload;
        else if constexpr (sizeof(T) == 4)
            value.lVal = static_cast<LONG>(payload);
        else
            value.llVal = static_cast<LONGLONG>(payload);
    }
}

template <auto Member>
struct Thunk;

template <class I, class... Args, HRESULT (STDMETHODCALLTYPE I::*Member)(Args...)>
struct Thunk<Member>
{
    static HRESULT Call(void* pInterface, [[maybe_unused]] VARIANT* arguments)
    {
        return [&]<std::size_t... i>(std::index_sequence<i...>)
        {
            return (static_cast<I*>(pInterface)->*Member)(Payload<Args>(arguments[i])...);
        }
        (std::index_sequence_for<Args...>());
    }

    static HRESULT Get(void* pInterface, VARIANT* result)
    {
        using Value = std::remove_pointer_t<std::tuple_element_t<0, std::tuple<Args...>>>;
        Value value{};
        const HRESULT hr = (static_cast<I*>(pInterface)->*Member)(&value);
        if (SUCCEEDED(hr))
            SetPayload<Value>(*result, value);
        return hr;
    }

    static constexpr DispatchCall AsCall()
    {
        static_assert(sizeof...(Args) <= kMaxDispatchArguments);
        return {&Call, {KindOf<Args>()...}, sizeof...(Args)};
    }
};

constexpr std::array<string_view_t, kMaxDispatchArguments>
Names(std::initializer_list<string_view_t> names)
{
    std::array<string_view_t, kMaxDispatchArguments> result{};
    std::size_t i = 0;
    for (string_view_t name : names)
        result[i++] = name;
    return result;
}

} // namespace dispatch_details

template <auto Member>
constexpr DispatchRow MethodRow(string_view_t sName, DISPID nId,
                                std::initializer_list<string_view_t> arguments = {})
{
    return {sName,
            nId,
            DispatchRow::Kind::Method,
            dispatch_details::Thunk<Member>::AsCall(),
            nullptr,
            dispatch_details::Names(arguments)};
}

template <auto Get, auto Put>
constexpr DispatchRow PropertyRow(string_view_t sName, DISPID nId)
{
    return {sName,
            nId,
            DispatchRow::Kind::Property,
            dispatch_details::Thunk<Put>::AsCall(),
            &dispatch_details::Thunk<Get>::Get,
            {}};
}

template <auto Get>
constexpr DispatchRow ReadOnlyRow(string_view_t sName, DISPID nId)
{
    return {sName, nId, DispatchRow::Kind::Property, {}, &dispatch_details::Thunk<Get>::Get, {}};
}

template <auto Put>
constexpr DispatchRow WriteOnlyRow(string_view_t sName, DISPID nId)
{
    return {sName,   nId, DispatchRow::Kind::Property, dispatch_details::Thunk<Put>::AsCall(),
            nullptr, {}};
}

template <auto Get>
constexpr DispatchRow ResultRow(string_view_t sName, DISPID nId, string_view_t sArgument)
{
    return {sName,
            nId,
            DispatchRow::Kind::Result,
            {},
            &dispatch_details::Thunk<Get>::Get,
            dispatch_details::Names({sArgument})};
}
