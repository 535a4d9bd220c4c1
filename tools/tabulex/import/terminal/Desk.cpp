// One turn of the wait: draw if something has changed, then wait for the terminal at most 20 ms,
// then dispatch the component's messages and take what other threads have left. A key is handed
// out as soon as it comes, and what it changed is drawn at the beginning of the next turn.

#include "tools/tabulex/import/terminal/Desk.h"

#include <fmt/format.h>

#include "interfaces/NativeHost.h"
#include "tools/tabulex/import/terminal/ImportTexts.h"
#include "tools/tabulex/text/VisibleText.h"

namespace tabulex {

namespace {

constexpr int kTurnMilliseconds = 20; // how soon the component's messages are dispatched

bool IsTooSmall(Size size)
{
    return size.nColumns < kLeastSize.nColumns || size.nRows < kLeastSize.nRows;
}

bool CancelsOrTells(Key key)
{
    return key == Key::Escape || key == Key::Interrupt || key == Key::Gone || key == Key::Resize ||
           key == Key::None;
}

} // namespace

void Desk::Push(ILayer& layer)
{
    m_layers.push_back(&layer);
    Invalidate();
}

void Desk::Pop()
{
    m_layers.pop_back();
    Invalidate();
}

Input Desk::Next()
{
    for (;;) {
        const Input input = Take(kTurnMilliseconds);
        if (input.key != Key::None)
            return input;
        if (DispatchMessages() || TakePosted())
            Invalidate();
    }
}

Input Desk::NextAlone()
{
    for (;;)
        if (const Input input = Take(kTurnMilliseconds); input.key != Key::None)
            return input;
}

Input Desk::Glance()
{
    return Take(0);
}

Input Desk::Take(int nMilliseconds)
{
    if (m_bChanged && !m_bGone)
        Draw();
    Input input = m_bGone ? Input{Key::Gone} : m_screen.Wait(nMilliseconds);
    m_bGone = input.key == Key::Gone;
    if (IsTooSmall(GetSize()) && !CancelsOrTells(input.key))
        input = {};
    if (input.key != Key::None)
        Invalidate();
    return input;
}

bool Desk::DispatchMessages()
{
    return TabulexPumpMessages(0) > 0;
}

bool Desk::TakePosted()
{
    bool bChanged = false;
    for (ILayer* layer : m_layers)
        bChanged = layer->TakePosted() || bChanged;
    return bChanged;
}

// A layer may change something while it draws, and is drawn again then.
void Desk::Draw()
{
    m_bChanged = false;
    const Size size = GetSize();
    Canvas canvas = m_backdrop.GetSize() == size ? m_backdrop : Canvas(size);
    canvas.cursor.reset();
    if (IsTooSmall(size))
        DrawSentence(canvas);
    else
        for (ILayer* layer : m_layers)
            layer->Draw(canvas);
    m_screen.Show(canvas);
    m_last = std::move(canvas);
}

void Desk::DrawSentence(Canvas& canvas)
{
    const Size size = canvas.GetSize();
    canvas = Canvas(size);
    const auto lines = Wrap(fmt::format(fmt::runtime(TextOf(ImportText::TooSmall)),
                                        kLeastSize.nColumns, kLeastSize.nRows),
                            size.nColumns);
    for (std::size_t n = 0; n < lines.size(); ++n)
        canvas.Put(0, static_cast<int>(n), lines[n], Look::Normal, size.nColumns);
}

void Desk::Tell(std::string message)
{
    m_sMessage = std::move(message);
    Invalidate();
}

void Desk::SetHint(std::string hint)
{
    if (hint == m_sHint)
        return;
    m_sHint = std::move(hint);
    Invalidate();
}

// The layers may be in the midst of a change, so they aren't asked; the picture is the last one.
void Desk::SetWaiting(bool bWaiting)
{
    m_nWaiting += bWaiting ? 1 : -1;
    Invalidate();
    const Size size = GetSize();
    if (m_nWaiting != 1 || !bWaiting || m_bGone || IsTooSmall(size) || m_last.GetSize() != size)
        return;
    m_last.PutCell(0, size.nRows - 2, fmt::format(" {}", TextOf(ImportText::Waiting)), Look::Normal,
                   size.nColumns);
    m_screen.Show(m_last);
}

// Text of wide characters has no blanks to break at, so any of them may end a line.
std::vector<std::string> Wrap(const std::string& text, int nCells)
{
    std::vector<std::string> lines;
    std::string_view rest = text;
    while (!rest.empty() && nCells > 0) {
        const std::string_view tail = WithoutFront(rest, nCells);
        std::size_t nLength = rest.size() - tail.size();
        if (CellsOf(rest.substr(0, nLength)) > nCells) // a wide character stands across the end
            nLength = rest.size() - WithoutFront(rest, nCells - 1).size();
        if (nLength < rest.size() && rest[nLength] != ' ')
            if (const std::size_t nBlank = rest.substr(0, nLength).rfind(' ');
                nBlank != rest.npos && nBlank > 0)
                nLength = nBlank;
        nLength = nLength == 0 ? rest.size() : nLength;
        lines.emplace_back(rest.substr(0, nLength));
        rest.remove_prefix(nLength);
        while (!rest.empty() && rest.front() == ' ')
            rest.remove_prefix(1);
    }
    return lines;
}

} // namespace tabulex
