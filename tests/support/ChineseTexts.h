// Texts are Chinese while it lives.
#pragma once

#include "Simples/interface/ResourceStrings.h"

class ChineseTexts
{
public:
    ChineseTexts() : m_before(ResourceHandle()) { SetResourceLanguage(Language::Chinese); }
    ~ChineseTexts() { SetResourceHandle(m_before); }
    ChineseTexts(const ChineseTexts&) = delete;
    ChineseTexts& operator=(const ChineseTexts&) = delete;

private:
    const LONG_PTR m_before;
};
