// The terminal by way of ncurses, which nothing else of the tool sees.
//
// Characters go out as UTF-8, as all output of the tool does, whatever the locale says: the
// library gets a locale of its own, on this thread only. Keys come raw, so that Ctrl-C is one.
//
// A terminal that hangs up sends a signal, answers reads with nothing, or both; either ends the
// input. That signal and a request to terminate are seen between two keys. The second one ends the
// process at once, for which the sequences that leave the screen are ready before (see
// RestoreTerminal).

#include "tools/tabulex/import/terminal/Screen.h"

#include <array>
#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstdlib>
#include <cwchar>

#define NCURSES_NOMACROS 1
#include <ncurses.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <term.h>
#include <termios.h>
#include <unistd.h>

#include <fmt/format.h>

#include "platform/text/Utf8.h"
#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/system/Interrupt.h"
#include "tools/tabulex/system/Terminal.h"
#include "tools/tabulex/text/Utf8Locale_posix.h"

// They are macros of the library, and names of ours.
#undef newline

namespace tabulex {

namespace {

// ---- the way out of a process that ends at once

struct WayOut
{
    termios settings = {};
    std::array<char, 128> sequences = {}; // leave the screen, plain text, cursor on
    std::size_t nLength = 0;
};
WayOut g_wayOut;

// Empty for a capability that the terminal lacks.
std::string_view SequenceOf(const char* pszCapability)
{
    const char* pszText = ::tigetstr(pszCapability);
    const bool bThere = pszText && pszText != reinterpret_cast<const char*>(-1);
    return bThere ? pszText : std::string_view();
}

void Add(std::string_view sequence)
{
    if (g_wayOut.nLength + sequence.size() > g_wayOut.sequences.size())
        return;
    sequence.copy(g_wayOut.sequences.data() + g_wayOut.nLength, sequence.size());
    g_wayOut.nLength += sequence.size();
}

// No more than a signal handler may do.
void LeaveAtOnce()
{
    [[maybe_unused]] const auto nWritten =
        ::write(STDOUT_FILENO, g_wayOut.sequences.data(), g_wayOut.nLength);
    ::tcsetattr(STDIN_FILENO, TCSANOW, &g_wayOut.settings);
}

class ReadyToLeave
{
public:
    ReadyToLeave() { ::tcgetattr(STDIN_FILENO, &g_wayOut.settings); }
    ~ReadyToLeave() { SetTerminalRestorer(nullptr); }
    ReadyToLeave(const ReadyToLeave&) = delete;
    ReadyToLeave& operator=(const ReadyToLeave&) = delete;

    // Once the library knows the terminal.
    void Arm()
    {
        g_wayOut.nLength = 0;
        for (const char* pszCapability : {"sgr0", "rmkx", "rmcup", "cnorm"})
            Add(SequenceOf(pszCapability));
        if (!SequenceOf("kmous").empty())
            Add("\033[?1006;1000l"); // no more reports of the mouse
        SetTerminalRestorer(LeaveAtOnce);
    }
};

// ---- looks

struct LookRow
{
    attr_t plain;             // without colours
    attr_t coloured;          // beside the pair of colours
    short nText, nBackground; // -1: the terminal's own
};

// In the order of Look.
constexpr LookRow kLooks[] = {
    {A_NORMAL, A_NORMAL, -1, -1},
    {A_BOLD, A_BOLD, COLOR_CYAN, -1},
    {A_REVERSE, A_NORMAL, COLOR_BLACK, COLOR_WHITE},
    {A_REVERSE | A_BOLD, A_BOLD, COLOR_WHITE, COLOR_BLUE},
    {A_DIM, A_DIM, -1, -1},
    {A_BOLD, A_NORMAL, COLOR_BLACK, COLOR_CYAN},
    {A_REVERSE, A_BOLD, COLOR_WHITE, COLOR_RED},
};
constexpr short kLookCount = sizeof kLooks / sizeof *kLooks;

// ---- keys

struct KeyRow
{
    wint_t nCode;
    Key key;
};

// What the library calls function keys.
const KeyRow kFunctionKeys[] = {
    {KEY_UP, Key::Up},       {KEY_DOWN, Key::Down},     {KEY_LEFT, Key::Left},
    {KEY_RIGHT, Key::Right}, {KEY_PPAGE, Key::PageUp},  {KEY_NPAGE, Key::PageDown},
    {KEY_HOME, Key::Home},   {KEY_END, Key::End},       {KEY_BTAB, Key::BackTab},
    {KEY_DC, Key::Delete},   {KEY_ENTER, Key::Enter},   {KEY_BACKSPACE, Key::Backspace},
    {KEY_F(1), Key::F1},     {KEY_F(3), Key::F3},       {KEY_F(4), Key::F4},
    {KEY_F(10), Key::F10},   {KEY_RESIZE, Key::Resize},
};

const KeyRow kCharacters[] = {
    {3, Key::Interrupt}, {8, Key::Backspace}, {9, Key::Tab},         {10, Key::Accept},
    {13, Key::Enter},    {27, Key::Escape},   {127, Key::Backspace},
};

template <std::size_t N>
Key Find(const KeyRow (&rows)[N], wint_t nCode)
{
    for (const KeyRow& row : rows)
        if (row.nCode == nCode)
            return row.key;
    return Key::None;
}

Input FromMouse()
{
    MEVENT event = {};
    if (::getmouse(&event) != OK)
        return {};
    Input input{Key::None, 0, event.x, event.y};
    if (event.bstate & BUTTON1_PRESSED)
        input.key = Key::Press;
    else if (event.bstate & BUTTON4_PRESSED)
        input.key = Key::WheelUp;
    else if (event.bstate & BUTTON5_PRESSED)
        input.key = Key::WheelDown;
    return input;
}

// ---- the screen

class Screen final : public IScreen
{
public:
    explicit Screen(bool bColour);
    ~Screen() override;

    Size GetSize() override { return {::getmaxx(stdscr), ::getmaxy(stdscr)}; }
    void Show(const Canvas& canvas) override;
    Input Wait(int nMilliseconds) override;

private:
    void SetUpColours();
    void SetUpKeys();
    void ShowCell(int nColumn, int nRow, const Canvas::Cell& cell);
    Input Read();
    Input FromCharacter(wint_t nCharacter);
    bool DropSequence();

    const Utf8LocaleOfThread m_locale;
    ReadyToLeave m_leave;
    bool m_bColour;
    SCREEN* m_pScreen = nullptr;
};

Screen::Screen(bool bColour) : m_bColour(bColour)
{
    ::use_env(TRUE);
    ::use_tioctl(TRUE); // the terminal knows its size better than variables do
    m_pScreen = ::newterm(nullptr, stdout, stdin);
    if (!m_pScreen) {
        const char* pszTerm = std::getenv("TERM");
        throw Fault{ExitStatus::Usage,
                    fmt::format("the terminal '{}' isn't known to this system; set TERM to the "
                                "kind that it is",
                                pszTerm ? pszTerm : "")};
    }
    m_leave.Arm();
    SetUpKeys();
    SetUpColours();
}

Screen::~Screen()
{
    if (!m_pScreen)
        return;
    ::endwin();
    ::delscreen(m_pScreen);
}

void Screen::SetUpKeys()
{
    ::raw();
    ::noecho();
    ::nonl();
    ::keypad(stdscr, TRUE);
    ::nodelay(stdscr, TRUE);
    ::set_escdelay(25); // milliseconds in which the rest of a key's sequence comes
    ::mousemask(BUTTON1_PRESSED | BUTTON4_PRESSED | BUTTON5_PRESSED, nullptr);
    ::mouseinterval(0);
}

void Screen::SetUpColours()
{
    m_bColour = m_bColour && ::has_colors() && ::start_color() == OK;
    if (!m_bColour)
        return;
    const bool bOwn = ::use_default_colors() == OK;
    for (short n = 0; n < kLookCount; ++n)
        ::init_pair(static_cast<short>(n + 1),
                    kLooks[n].nText < 0 && !bOwn ? COLOR_WHITE : kLooks[n].nText,
                    kLooks[n].nBackground < 0 && !bOwn ? COLOR_BLACK : kLooks[n].nBackground);
}

void Screen::ShowCell(int nColumn, int nRow, const Canvas::Cell& cell)
{
    std::array<wchar_t, CCHARW_MAX + 1> text = {};
    std::string_view rest = cell.sText;
    for (std::size_t n = 0; n < CCHARW_MAX && !rest.empty(); ++n) {
        char32_t c = 0;
        rest.remove_prefix(std::max<std::size_t>(Utf8::DecodeFront(rest, c), 1));
        text[n] = static_cast<wchar_t>(c);
    }
    const auto nLook = static_cast<short>(cell.look);
    const attr_t attributes = m_bColour ? kLooks[nLook].coloured : kLooks[nLook].plain;
    cchar_t character = {};
    ::setcchar(&character, text.data(), attributes, static_cast<short>(m_bColour ? nLook + 1 : 0),
               nullptr);
    ::mvadd_wch(nRow, nColumn, &character);
}

void Screen::Show(const Canvas& canvas)
{
    const Size size = canvas.GetSize();
    for (int nRow = 0; nRow < size.nRows; ++nRow)
        for (int nColumn = 0; nColumn < size.nColumns; ++nColumn)
            if (const Canvas::Cell& cell = canvas.At(nColumn, nRow); !cell.sText.empty())
                ShowCell(nColumn, nRow, cell);
    ::curs_set(canvas.cursor ? 1 : 0);
    if (canvas.cursor)
        ::move(canvas.cursor->nRow, canvas.cursor->nColumn);
    ::refresh();
}

Input Screen::Wait(int nMilliseconds)
{
    if (Interrupted())
        return {Key::Gone};
    if (const Input ready = Read(); ready.key != Key::None)
        return ready;
    pollfd input{STDIN_FILENO, POLLIN, 0};
    const int nReady = ::poll(&input, 1, nMilliseconds);
    if (Interrupted() || (input.revents & (POLLHUP | POLLERR | POLLNVAL)))
        return {Key::Gone};
    if (nReady == 0)
        return {};
    int nBytes = 0;
    if (nReady > 0 && (::ioctl(STDIN_FILENO, FIONREAD, &nBytes) != 0 || nBytes == 0))
        return {Key::Gone};
    return Read(); // after a signal, which interrupts the wait, as well: it may be a resize
}

Input Screen::Read()
{
    wint_t nCode = 0;
    const int nKind = ::get_wch(&nCode);
    if (nKind == ERR)
        return {};
    if (nKind != KEY_CODE_YES)
        return FromCharacter(nCode);
    return nCode == KEY_MOUSE ? FromMouse() : Input{Find(kFunctionKeys, nCode)};
}

Input Screen::FromCharacter(wint_t nCharacter)
{
    constexpr wint_t kRedraw = 12; // Ctrl-L, for a picture that others have written on
    if (nCharacter == kRedraw)
        ::clearok(curscr, TRUE);
    Input input{Find(kCharacters, nCharacter), static_cast<char32_t>(nCharacter)};
    if (input.key == Key::Escape && DropSequence())
        return {};
    if (input.key == Key::None && nCharacter == kRedraw)
        input.key = Key::Resize;
    else if (input.key == Key::None && nCharacter >= 0x20)
        input.key = Key::Text;
    return input;
}

// The sequence of a key that the library doesn't know begins with the character of Esc, which
// would cancel. True if there was more of it.
bool Screen::DropSequence()
{
    wint_t nCode = 0;
    bool bMore = false;
    while (::get_wch(&nCode) != ERR)
        bMore = true;
    return bMore;
}

} // namespace

std::unique_ptr<IScreen> OpenScreen(bool bColour)
{
    if (!IsTerminal(Stream::Input) || !IsTerminal(Stream::Output))
        throw Fault{ExitStatus::Usage, "import needs a terminal for input and output; use "
                                       "'tabulex inspect' and 'tabulex convert'"};
    return std::make_unique<Screen>(bColour);
}

} // namespace tabulex
