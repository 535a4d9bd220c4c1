// WindowMessage: a message of a window, with what it carries.
//
//   inline constexpr WindowMessage<const VARIANT&> WM_SINK_DATA{kUserMessage + 100};
//   inline constexpr WindowMessage<ULONG> WM_COUNT{kUserMessage + 101};
//
//   const LONG_PTR nResult = WM_SINK_DATA.Send(hWnd, vBatch);
//   WM_COUNT.Post(hWnd, 12);
//
//   switch (nMessage) { // in the window
//   case WM_SINK_DATA:
//       return Take(WM_SINK_DATA.First(wParam));
//
// A message has at most two parts, the first in wParam and the second in lParam: a number
// as itself, a reference or a pointer as its address. What an address points at is valid
// only while the sender waits; so a message with one can be sent and not posted.
#pragma once

#include <cstddef>
#include <memory>
#include <tuple>
#include <type_traits>

#include "platform/threads/MessageWindow.h"

template <class... Parts>
class WindowMessage
{
    static_assert(sizeof...(Parts) <= 2);

public:
    explicit constexpr WindowMessage(UINT nMessage) : m_nMessage(nMessage) {}

    constexpr operator UINT() const { return m_nMessage; }

    // Waits until the message has been handled and gives the result; 0 where the window has
    // gone.
    LONG_PTR Send(WindowHandle hWnd, Parts... parts) const
    {
        const Words words = Pack(parts...);
        return SendWindowMessage(hWnd, m_nMessage, words.wParam, words.lParam);
    }
    // False where the window has gone.
    bool Post(WindowHandle hWnd, Parts... parts) const
    {
        static_assert((std::is_integral_v<Parts> && ...), "only numbers outlive the call");
        const Words words = Pack(parts...);
        return PostWindowMessage(hWnd, m_nMessage, words.wParam, words.lParam);
    }

    // The parts of a message that has come.
    static decltype(auto) First(ULONG_PTR wParam) { return Unpack<Part<0>>(wParam); }
    static decltype(auto) Second(LONG_PTR lParam)
    {
        return Unpack<Part<1>>(static_cast<ULONG_PTR>(lParam));
    }

private:
    struct Words
    {
        ULONG_PTR wParam = 0;
        LONG_PTR lParam = 0;
    };

    template <std::size_t n>
    using Part = std::tuple_element_t<n, std::tuple<Parts...>>;

    static Words Pack(const Parts&... parts)
    {
        const ULONG_PTR words[] = {Word<Parts>(parts)..., 0, 0};
        return {words[0], static_cast<LONG_PTR>(words[1])};
    }

    template <class T>
    static ULONG_PTR Word(const std::remove_reference_t<T>& part)
    {
        if constexpr (std::is_reference_v<T>)
            return reinterpret_cast<ULONG_PTR>(std::addressof(part));
        else if constexpr (std::is_pointer_v<T>)
            return reinterpret_cast<ULONG_PTR>(part);
        else
            return static_cast<ULONG_PTR>(part);
    }

    template <class T>
    static T Unpack(ULONG_PTR nWord)
    {
        if constexpr (std::is_reference_v<T>)
            return *reinterpret_cast<std::remove_reference_t<T>*>(nWord);
        else if constexpr (std::is_pointer_v<T>)
            return reinterpret_cast<T>(nWord);
        else
            return static_cast<T>(nWord);
    }

    UINT m_nMessage;
};
