// What the tool asks of the system's terminal and streams.
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

// Lets a write fail, instead of ending the process, where a pipe has no reader any more
// or a file may not grow.
void LetWritesFail();

// A line from standard input without its end. Empty at the end of the input, or
// as soon as `cancelled` answers true while waiting.
std::optional<std::string> ReadAnswer(const std::function<bool()>& cancelled);

} // namespace tabulex
