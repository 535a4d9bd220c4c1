// What the tool asks of the system's terminal and streams.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

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

// A terminal that understands escape sequences.
bool TakesSequences(Stream stream);

// Columns of the terminal behind standard error; 80 where it doesn't tell.
unsigned TerminalWidth();

// Once, before anything is read or written. A write fails, instead of ending the process,
// where a pipe has no reader any more or a file may not grow; bytes go through as they
// are, and a terminal shows them as UTF-8.
void SetUpStreams();

// Gives the terminal back as it was found, before the process ends at once.
void RestoreTerminal();

// To standard error at once, in one piece.
void WriteToErrorStream(std::string_view text);

// A line from standard input without its end. Empty at the end of the input, or
// as soon as `cancelled` answers true while waiting.
std::optional<std::string> ReadAnswer(const std::function<bool()>& cancelled);

} // namespace tabulex
