#include "tools/tabulex/system/Terminal.h"

#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace tabulex {

namespace {

constexpr int kPollMilliseconds = 100; // how soon a cancellation is noticed

std::atomic<void (*)()> g_pfnRestore = nullptr;

static_assert(std::atomic<void (*)()>::is_always_lock_free, "used in a signal handler");

int DescriptorOf(Stream stream)
{
    switch (stream) {
    case Stream::Input:
        return STDIN_FILENO;
    case Stream::Output:
        return STDOUT_FILENO;
    case Stream::Error:
        break;
    }
    return STDERR_FILENO;
}

bool WaitForInput(const std::function<bool()>& cancelled)
{
    while (!cancelled()) {
        pollfd input{STDIN_FILENO, POLLIN, 0};
        if (::poll(&input, 1, kPollMilliseconds) > 0)
            return true;
    }
    return false;
}

} // namespace

bool IsTerminal(Stream stream)
{
    return ::isatty(DescriptorOf(stream)) != 0;
}

bool TakesSequences(Stream stream)
{
    const char* pszTerm = std::getenv("TERM");
    return IsTerminal(stream) && pszTerm && std::string_view(pszTerm) != "dumb";
}

unsigned TerminalWidth()
{
    winsize size{};
    const bool bKnown = ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return bKnown ? size.ws_col : 80;
}

// A write to a pipe without a reader, or beyond the limit of a file's size, would end the process.
// Ignored, the signals leave EPIPE and EFBIG, which are reported like other faults.
void SetUpStreams()
{
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}

void RestoreTerminal()
{
    if (void (*const pfnRestore)() = g_pfnRestore)
        pfnRestore();
}

void SetTerminalRestorer(void (*pfnRestore)())
{
    g_pfnRestore = pfnRestore;
}

// The stream isn't buffered: a call is one write.
void WriteToErrorStream(std::string_view text)
{
    std::fwrite(text.data(), 1, text.size(), stderr);
}

// Byte by byte: what comes after the line is left for whoever reads next.
std::optional<std::string> ReadAnswer(const std::function<bool()>& cancelled)
{
    std::string line;
    for (;;) {
        char c = 0;
        if (!WaitForInput(cancelled) || ::read(STDIN_FILENO, &c, 1) <= 0)
            return std::nullopt;
        if (c == '\n')
            return line;
        line += c;
    }
}

} // namespace tabulex
