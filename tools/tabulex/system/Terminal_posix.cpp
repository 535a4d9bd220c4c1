// Three streams are made sure of at the start: a closed one is occupied, since the next file that
// is opened would get its number and take what is written to the stream. Waits for a key look for a
// cancellation ten times a second, as one that came just before wouldn't end them.

#include "tools/tabulex/system/Terminal.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include "tools/tabulex/system/Descriptors.h"

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

// Opens the null device the wrong way round, so that what is read or written fails as on a closed
// stream. The system gives the lowest descriptor that is free.
void OccupyClosedStreams()
{
    for (const int nStream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (::fcntl(nStream, F_GETFD) < 0 && errno == EBADF)
            static_cast<void>(::open("/dev/null", nStream == STDIN_FILENO ? O_WRONLY : O_RDONLY));
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

unsigned TerminalWidth(Stream stream)
{
    winsize size{};
    const bool bKnown = ::ioctl(DescriptorOf(stream), TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return bKnown ? size.ws_col : 80;
}

// A write to a pipe without a reader, or beyond the limit of a file's size, would end the process.
// Ignored, the signals leave EPIPE and EFBIG, which are reported like other faults.
void SetUpStreams()
{
    OccupyClosedStreams();
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

void WriteToErrorStream(std::string_view text)
{
    WriteAll(STDERR_FILENO, text);
}

// Byte by byte: what comes after the line is left for whoever reads next.
std::optional<std::string> ReadAnswer(const std::function<bool()>& cancelled)
{
    std::string line;
    for (;;) {
        char c = 0;
        if (!WaitForInput(cancelled))
            return std::nullopt;
        const ssize_t nRead = ::read(STDIN_FILENO, &c, 1);
        if (nRead < 0 && errno == EINTR)
            continue;
        if (nRead <= 0)
            return std::nullopt;
        if (c == '\n')
            return line;
        line += c;
    }
}

} // namespace tabulex
