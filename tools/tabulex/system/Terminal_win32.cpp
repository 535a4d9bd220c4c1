// A console keeps its modes and code page when a program ends, so they are kept as found and put
// back. Escape sequences are asked for by their mode, and what the console then has is read back.
// Keys are looked for ahead of a read, which nothing could end.

#include "tools/tabulex/system/Terminal.h"

#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <io.h>

#include "platform/component.h"

namespace tabulex {

namespace {

constexpr DWORD kPollMilliseconds = 100; // how soon a cancellation is noticed
constexpr DWORD kSequences = ENABLE_PROCESSED_OUTPUT | ENABLE_VIRTUAL_TERMINAL_PROCESSING;

HANDLE HandleOf(Stream stream)
{
    switch (stream) {
    case Stream::Input:
        return GetStdHandle(STD_INPUT_HANDLE);
    case Stream::Output:
        return GetStdHandle(STD_OUTPUT_HANDLE);
    case Stream::Error:
        break;
    }
    return GetStdHandle(STD_ERROR_HANDLE);
}

// A console's settings are shared by all programs on it.
struct Screen
{
    Stream stream;
    DWORD nMode;      // as it was found
    bool bIsTerminal; // or there is no mode
};

Screen g_screens[] = {{Stream::Output, 0, false}, {Stream::Error, 0, false}};
UINT g_nCodePage = 0; // as it was found

// The same queue holds other events, which don't bring any text.
bool IsKeyPressed(HANDLE hInput)
{
    INPUT_RECORD record;
    DWORD nRecords = 0;
    while (PeekConsoleInputW(hInput, &record, 1, &nRecords) && nRecords > 0) {
        if (record.EventType == KEY_EVENT && record.Event.KeyEvent.bKeyDown)
            return true;
        ReadConsoleInputW(hInput, &record, 1, &nRecords);
    }
    return false;
}

// A read from anything but a console or a pipe with a writer doesn't block.
bool HasInput(HANDLE hInput)
{
    if (IsTerminal(Stream::Input))
        return IsKeyPressed(hInput);
    DWORD nBytes = 0;
    return !PeekNamedPipe(hInput, nullptr, 0, nullptr, &nBytes, nullptr) || nBytes > 0;
}

bool WaitForInput(HANDLE hInput, const std::function<bool()>& cancelled)
{
    while (!cancelled()) {
        if (HasInput(hInput))
            return true;
        Sleep(kPollMilliseconds);
    }
    return false;
}

} // namespace

bool IsTerminal(Stream stream)
{
    DWORD nMode = 0;
    return GetConsoleMode(HandleOf(stream), &nMode) != FALSE;
}

bool TakesSequences(Stream stream)
{
    const char* pszTerm = std::getenv("TERM");
    const bool bDumb = pszTerm && std::string_view(pszTerm) == "dumb";
    DWORD nMode = 0;
    return !bDumb && GetConsoleMode(HandleOf(stream), &nMode) && (nMode & kSequences) == kSequences;
}

unsigned TerminalWidth(Stream stream)
{
    CONSOLE_SCREEN_BUFFER_INFO info;
    if (!GetConsoleScreenBufferInfo(HandleOf(stream), &info))
        return 80;
    return static_cast<unsigned>(info.srWindow.Right - info.srWindow.Left + 1);
}

// Consoles that are older than escape sequences refuse the mode.
void SetUpStreams()
{
    for (std::FILE* file : {stdin, stdout, stderr})
        _setmode(_fileno(file), _O_BINARY);
    for (Screen& screen : g_screens) {
        const HANDLE hScreen = HandleOf(screen.stream);
        screen.bIsTerminal = GetConsoleMode(hScreen, &screen.nMode) != FALSE;
        if (screen.bIsTerminal)
            SetConsoleMode(hScreen, screen.nMode | kSequences);
    }
    g_nCodePage = GetConsoleOutputCP();
    SetConsoleOutputCP(CP_UTF8);
    std::atexit(RestoreTerminal);
}

void RestoreTerminal()
{
    for (const Screen& screen : g_screens)
        if (screen.bIsTerminal)
            SetConsoleMode(HandleOf(screen.stream), screen.nMode);
    SetConsoleOutputCP(g_nCodePage);
}

// Nothing of the tool changes more than the modes.
void SetTerminalRestorer(void (*)()) {}

// Not through the stream, which would write each character by itself.
void WriteToErrorStream(std::string_view text)
{
    while (!text.empty()) {
        const int nWritten =
            _write(_fileno(stderr), text.data(), static_cast<unsigned>(text.size()));
        if (nWritten <= 0)
            return;
        text.remove_prefix(static_cast<std::size_t>(nWritten));
    }
}

// From a pipe byte by byte: what comes after the line is left for whoever reads next. A
// console gives the whole line at once, and nothing if Ctrl-C is pressed meanwhile.
std::optional<std::string> ReadAnswer(const std::function<bool()>& cancelled)
{
    const HANDLE hInput = HandleOf(Stream::Input);
    char piece[1024];
    const DWORD nMost = IsTerminal(Stream::Input) ? sizeof piece : 1;
    std::string line;
    for (;;) {
        DWORD nBytes = 0;
        if (!WaitForInput(hInput, cancelled) || !ReadFile(hInput, piece, nMost, &nBytes, nullptr) ||
            nBytes == 0)
            return std::nullopt;
        line.append(piece, nBytes);
        if (line.back() == '\n')
            return line.substr(0, line.find_last_not_of("\r\n") + 1);
    }
}

} // namespace tabulex
