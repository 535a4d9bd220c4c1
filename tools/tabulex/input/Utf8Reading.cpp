#include "tools/tabulex/input/Utf8Reading.h"

#include <algorithm>

#include "interfaces/NativeHost.h"
#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/system/Surroundings.h"
#include "tools/tabulex/text/Text.h"

namespace tabulex {

bool IsUnicodeName(std::string_view encoding)
{
    constexpr std::string_view kNames[] = {"utf8",    "65001", "cp65001", "utf16",  "utf16le",
                                           "utf16be", "1200",  "1201",    "cp1200", "cp1201"};
    std::string plain = LowerCase(encoding);
    std::erase_if(plain, [](char c) { return c == '-' || c == '_' || c == ' '; });
    return std::ranges::find(kNames, plain) != std::end(kNames);
}

// A locale may have an encoding that only the component knows. The file is then read once the
// user has said what the others are in.
Utf8Reading::Utf8Reading(const std::optional<std::string>& encoding)
    : m_sBefore(encoding.value_or(LocaleEncoding()))
{
    if (m_sBefore.empty() || FAILED(TabulexSetEncoding(m_sBefore.c_str())))
        throw Fault{ExitStatus::Refused,
                    "is text in Unicode, and the locale doesn't name its own encoding; add "
                    "--encoding utf-8"};
    TabulexSetEncoding("utf-8");
}

Utf8Reading::~Utf8Reading()
{
    TabulexSetEncoding(m_sBefore.c_str());
}

} // namespace tabulex
