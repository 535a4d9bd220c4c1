// What the tool needs from the system's terminal and streams.
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

// The width in columns of the terminal on a stream; 80 where that isn't known.
unsigned TerminalWidth(Stream stream);

// Once, before anything is read or written. A write fails, instead of ending the process,
// where a pipe has no reader any more or a file may not grow, or where the stream was closed when
// the program began; no file that is opened later takes the place of such a stream. Bytes go
// through as they are, and a terminal shows them as UTF-8.
void SetUpStreams();

// Puts the terminal back into the state in which it was found. For a process that is about
// to end at once.
void RestoreTerminal();

// What RestoreTerminal does beside; null for nothing. It may do no more than a signal handler.
void SetTerminalRestorer(void (*pfnRestore)());

// Writes to standard error at once, in one piece.
void WriteToErrorStream(std::string_view text);

// A line from standard input, without its end. Empty at the end of the input, or as soon as
// `cancelled` gives true while this waits.
std::optional<std::string> ReadAnswer(const std::function<bool()>& cancelled);

} // namespace tabulex
