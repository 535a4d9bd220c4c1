// Results: standard output of a command that isn't a conversion.
//
// Text is gathered and written in large pieces. On a terminal control characters are made visible,
// all but the ends of lines, tabs and the sequences of Bold; anywhere else they are as they are. A
// reader that closes its pipe ends the command quietly; any other fault of writing is thrown as
// Fault.
#pragma once

#include <string>
#include <string_view>

#include "tools/tabulex/output/OutputFile.h"

namespace tabulex {

class Results
{
public:
    Results() { m_file.Open("-"); }

    // False once nobody reads any more.
    bool Add(std::string_view text);
    // A line of a file, without its end. None of it is taken for a sequence of Bold.
    bool AddLine(std::string_view text);
    // Writes what was added so far, so that the reader sees it.
    void Show();
    // Writes what is left.
    void Finish();

private:
    bool Flush();
    bool Succeeded(bool bWritten) const;

    OutputFile m_file;
    std::string m_buffer;
};

} // namespace tabulex
