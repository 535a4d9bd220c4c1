// ReadFailure: why a file can't be opened or read, and the texts that go with it.
//
// Thrown within the reader only; the entries hand it to the program as text.
#pragma once

#include <string>

#include "platform/component.h"

namespace Hesperon::reader {

struct ReadFailure
{
    std::string sMessage; // UTF-8, English, or in the language that the process has chosen
    ULONGLONG nLine = 0;  // from 1; 0 where no line is to blame
};

// UTF-8. A lone surrogate, which no text has, becomes U+FFFD.
std::string ToUtf8(string_view_t text);
// Bytes that are no UTF-8 become U+FFFD.
string_t FromUtf8(std::string_view bytes);

// Throws where a call of the component has failed.
void Require(HRESULT hr, const char* pszWhat);

} // namespace Hesperon::reader
