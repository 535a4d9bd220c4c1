// Short forms for reading what the component's objects give.
//
// A failing read gives the empty value; where failures matter, call the interface.
#pragma once

#include <string>
#include <vector>

#include "platform/values.h"
#include "tools/tabulex/text/Text.h"

namespace tabulex {

template <class Interface, class Value>
Value Get(Interface& object, HRESULT (STDMETHODCALLTYPE Interface::*get)(Value*))
{
    Value value{};
    return SUCCEEDED((object.*get)(&value)) ? value : Value{};
}

template <class Interface>
bool GetFlag(Interface& object, HRESULT (STDMETHODCALLTYPE Interface::*get)(VARIANT_BOOL*))
{
    return Get(object, get) != VARIANT_FALSE;
}

template <class Interface>
string_t GetText(Interface& object, HRESULT (STDMETHODCALLTYPE Interface::*get)(BSTR*))
{
    Bstr text;
    return SUCCEEDED((object.*get)(text.put())) ? text.str() : string_t();
}

// 0 where there is no date.
template <class Interface>
DATE GetDate(Interface& object, HRESULT (STDMETHODCALLTYPE Interface::*get)(VARIANT*))
{
    Variant value;
    return SUCCEEDED((object.*get)(value.put())) && value.vt == VT_DATE ? value.date : 0;
}

// The texts of a VT_ARRAY|VT_BSTR value; none for any other kind.
std::vector<std::string> TextsOf(const VARIANT& value);

// "0x80004005", for messages about failures that have no words.
std::string HexOf(HRESULT hr);

} // namespace tabulex
