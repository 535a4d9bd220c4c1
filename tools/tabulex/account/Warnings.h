// Warnings: what a person should know about a file's result though the work went on.
//
// Each is one line of standard error, "warning: FILE: TEXT", not when quiet; the text is one or
// two short sentences: what was seen, with the number of rows and the first line, and what to do
// about it. They are kept for the report, and make a run fail that was asked to be strict.
// Used by one thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/component.h"
#include "tools/tabulex/system/Console.h"

namespace tabulex {

struct Warning
{
    std::string_view code; // of its kind, for programs: "column-left-out"; a literal
    std::string sText;
    std::optional<ULONGLONG> nLine; // of the file, from 1, where one line shows it
};

class Warnings
{
public:
    // `file` as the user gave it. The console must outlive this.
    Warnings(Console& console, std::string file) : m_console(console), m_sFile(std::move(file)) {}

    void Add(std::string_view code, std::string text, std::optional<ULONGLONG> nLine = {});

    bool Has(std::string_view code) const;
    const std::vector<Warning>& All() const { return m_all; }

private:
    Console& m_console;
    std::string m_sFile;
    std::vector<Warning> m_all;
};

} // namespace tabulex
