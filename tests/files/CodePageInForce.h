// CodePageInForce: bytes stand for the characters of this code page while it lives.
#pragma once

#include <gtest/gtest.h>

#include "platform/text/CodePage.h"

class CodePageInForce
{
public:
    explicit CodePageInForce(UINT nCodePage) { EXPECT_TRUE(SetAnsiCodePage(nCodePage)); }
    ~CodePageInForce() { SetAnsiCodePage(m_nBefore); }
    CodePageInForce(const CodePageInForce&) = delete;
    CodePageInForce& operator=(const CodePageInForce&) = delete;

private:
    const UINT m_nBefore = AnsiCodePage();
};
