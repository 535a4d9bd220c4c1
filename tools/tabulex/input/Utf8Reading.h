// Utf8Reading: while it lives the component reads text as UTF-8, for a file that is known to be
// in it.
//
// What the component reads otherwise is one value of the whole process, so one file at a time can
// be read like this. Used by one thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tabulex {

// Whether a name of an encoding means Unicode, of one byte a unit or of two.
bool IsUnicodeName(std::string_view encoding);

class Utf8Reading
{
public:
    // `encoding` is what the user asked for, empty for that of the locale: it holds again
    // afterwards. Throws Fault where the locale's isn't known.
    explicit Utf8Reading(const std::optional<std::string>& encoding);
    ~Utf8Reading();
    Utf8Reading(const Utf8Reading&) = delete;
    Utf8Reading& operator=(const Utf8Reading&) = delete;

private:
    std::string m_sBefore;
};

} // namespace tabulex
