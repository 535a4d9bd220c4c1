// What the tool asks of the system's terminal.
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace tabulex {

// The three streams that every program has.
enum class Stream
{
    Input,
    Output,
    Error
};

// False for a file or a pipe.
bool IsTerminal(Stream stream);

// Columns of the terminal behind standard error; 80 where it doesn't tell.
unsigned TerminalWidth();

// Lets a write to a pipe without a reader fail instead of ending the process.
void IgnoreClosedPipes();

// A line from standard input without its end. Empty at the end of the input, or
// as soon as `cancelled` answers true while waiting.
std::optional<std::string> ReadAnswer(const std::function<bool()>& cancelled);

} // namespace tabulex
