#include "tools/tabulex/explain/Shown.h"

#include <fmt/format.h>

#include "tools/tabulex/text/Text.h"

namespace tabulex {

namespace {

constexpr std::size_t kMostShown = 40; // characters

} // namespace

std::string Shown(std::string_view text)
{
    string_t wide = FromUtf8(text.substr(0, kMostShown * 8));
    const bool bCut = wide.size() > kMostShown || text.size() > kMostShown * 8;
    wide.resize(std::min(wide.size(), kMostShown));
    std::string shown = "'";
    for (const auto c : wide)
        if (c < 0x20 || (c >= 0x7F && c < 0xA0))
            shown += fmt::format("\\x{:02X}", static_cast<unsigned>(c));
        else
            AppendUtf8(shown, string_view_t(&c, 1));
    return shown + (bCut ? "...'" : "'");
}

std::string ShownCell(std::string_view text)
{
    return text.empty() ? "an empty cell" : Shown(text);
}

} // namespace tabulex
