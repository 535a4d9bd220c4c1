// What a user does at a terminal: a key, a character, or the mouse.
#pragma once

namespace tabulex {

enum class Key
{
    None, // nothing came
    Text, // a character, in `c`; a blank too
    Enter,
    Accept, // Ctrl-Enter, which many terminals send as a line feed
    Escape,
    Interrupt, // Ctrl-C
    Tab,
    BackTab,
    Backspace,
    Delete,
    Up,
    Down,
    Left,
    Right,
    PageUp,
    PageDown,
    Home,
    End,
    F1,
    F3,
    F4,
    F10,
    Press, // of the left button, at nColumn and nRow
    WheelUp,
    WheelDown,
    Resize, // the terminal has another size
    Gone,   // the terminal went away, or the process is asked to end; nothing else will come
};

struct Input
{
    Key key = Key::None;
    char32_t c = 0;
    int nColumn = 0; // cells from the upper left corner, which is 0, 0
    int nRow = 0;

    bool Is(char32_t other) const { return key == Key::Text && c == other; }
};

} // namespace tabulex
