// Desk: what lies on the screen, from the dialog to the list that dropped down on it, and the
// wait for the user.
//
// A layer draws itself into a canvas, and whoever put it there takes the user's input by Next
// until it is done. While it waits the desk dispatches the thread's messages, by which the
// component's workers report, and draws anew after each. Nothing is drawn within a call of the
// component but the word that one waits for it.
//
// On a terminal below kLeastSize one sentence stands in the place of the layers, and only the
// keys that cancel come through.
#pragma once

#include <string>
#include <vector>

#include "tools/tabulex/import/terminal/Screen.h"

namespace tabulex {

inline constexpr Size kLeastSize{60, 20};

struct ILayer
{
    virtual void Draw(Canvas& canvas) = 0;
    // Takes up what other threads have left. True if it changes the picture.
    virtual bool TakePosted() { return false; }

protected:
    ~ILayer() = default;
};

class Desk
{
public:
    explicit Desk(IScreen& screen) : m_screen(screen) {}
    Desk(const Desk&) = delete;
    Desk& operator=(const Desk&) = delete;

    // Both are used by Layered.
    void Push(ILayer& layer);
    void Pop();

    // Draws, and waits for the next input. After Key::Gone that is all that comes.
    Input Next();
    // The same without the component's messages: for a question that one of them asks.
    Input NextAlone();
    // Doesn't wait: draws if something has changed, and gives Key::None if nothing came.
    Input Glance();

    // The picture has changed.
    void Invalidate() { m_bChanged = true; }
    // The last picture stays below layers that come.
    void KeepPicture() { m_backdrop = m_last; }

    // The status line: the last message until another one, and a hint that goes before it.
    void Tell(std::string message);
    const std::string& Message() const { return m_sMessage; }
    void SetHint(std::string hint);
    const std::string& Hint() const { return m_sHint; }
    // Says at once that one has to wait. Calls may be nested.
    void SetWaiting(bool bWaiting);

    Size GetSize() { return m_screen.GetSize(); }

private:
    Input Take(int nMilliseconds);
    void Draw();
    void DrawSentence(Canvas& canvas);
    bool DispatchMessages();
    bool TakePosted();

    IScreen& m_screen;
    std::vector<ILayer*> m_layers; // from the lowest to the highest
    Canvas m_last;                 // what was shown
    Canvas m_backdrop;             // below all layers; may be of another size
    std::string m_sMessage;
    std::string m_sHint;
    int m_nWaiting = 0;
    bool m_bChanged = true;
    bool m_bGone = false;
};

// A layer is on the desk while this lives.
class Layered
{
public:
    Layered(Desk& desk, ILayer& layer) : m_desk(desk) { desk.Push(layer); }
    ~Layered() { m_desk.Pop(); }
    Layered(const Layered&) = delete;
    Layered& operator=(const Layered&) = delete;

private:
    Desk& m_desk;
};

// Sentences in lines of at most so many cells; a word that is longer is cut.
std::vector<std::string> Wrap(const std::string& text, int nCells);

} // namespace tabulex
