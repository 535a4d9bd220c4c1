// FileStart: the first bytes of a file, as they stand.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/component.h"

namespace tabulex {

class FileStart
{
public:
    // Reads at most 64 KiB; nothing where the file can't be read. A mark of UTF-8 ahead of the
    // text is left out.
    explicit FileStart(const std::string& path);

    std::string_view Bytes() const { return m_sBytes; }

    // The bytes of line nLine of those with content, from 0; empty where they don't reach so far.
    std::optional<std::string_view> Line(ULONGLONG nLine) const;

    // The number of the first line that isn't ASCII alone, likewise; empty for none, and for one
    // that may be cut.
    std::optional<ULONGLONG> FirstLineBeyondAscii() const;

private:
    std::string m_sBytes;
};

} // namespace tabulex
