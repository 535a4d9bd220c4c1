#include "tools/tabulex/account/Warnings.h"

#include <algorithm>

#include <fmt/format.h>

namespace tabulex {

void Warnings::Add(std::string_view code, std::string text, std::optional<ULONGLONG> nLine)
{
    m_console.FileWarning(m_sFile, text);
    m_all.push_back({code, std::move(text), nLine});
}

bool Warnings::Has(std::string_view code) const
{
    return std::ranges::find(m_all, code, &Warning::code) != m_all.end();
}

} // namespace tabulex
