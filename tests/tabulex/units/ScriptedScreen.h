// A terminal in memory: it shows what it was shown last, and types what a test wrote down.
#pragma once

#include <deque>
#include <functional>
#include <string>
#include <variant>
#include <vector>

#include "tools/tabulex/import/terminal/Screen.h"

namespace tabulex_test {

using namespace tabulex;

class ScriptedScreen final : public IScreen
{
public:
    // What happens in place of a key, with the picture that stands at that moment.
    using Look = std::function<void(ScriptedScreen&)>;

    explicit ScriptedScreen(Size size = {100, 30}) : m_size(size) {}

    Size m_size;
    Canvas m_shown;
    int m_nShown = 0; // pictures so far

    ScriptedScreen& Press(Key key)
    {
        m_script.emplace_back(Input{key});
        return *this;
    }
    ScriptedScreen& Press(std::initializer_list<Key> keys)
    {
        for (const Key key : keys)
            Press(key);
        return *this;
    }
    ScriptedScreen& Type(std::u32string_view text)
    {
        for (const char32_t c : text)
            m_script.emplace_back(Input{Key::Text, c});
        return *this;
    }
    ScriptedScreen& Click(int nColumn, int nRow)
    {
        m_script.emplace_back(Input{Key::Press, 0, nColumn, nRow});
        return *this;
    }
    ScriptedScreen& Then(Look look)
    {
        m_script.emplace_back(std::move(look));
        return *this;
    }

    std::string Row(int nRow) const { return m_shown.Row(nRow); }
    std::string Text() const
    {
        std::string text;
        for (int n = 0; n < m_shown.GetSize().nRows; ++n)
            text += Row(n) + '\n';
        return text;
    }
    bool Has(const std::string& text) const { return Text().find(text) != std::string::npos; }

    // ---- IScreen

    Size GetSize() override { return m_size; }
    void Show(const Canvas& canvas) override
    {
        m_shown = canvas;
        ++m_nShown;
    }
    // At its end the terminal is gone.
    Input Wait(int) override
    {
        if (m_script.empty())
            return {Key::Gone};
        const auto step = m_script.front();
        m_script.pop_front();
        if (const Input* pInput = std::get_if<Input>(&step))
            return *pInput;
        std::get<Look>(step)(*this);
        return {};
    }

private:
    std::deque<std::variant<Input, Look>> m_script;
};

} // namespace tabulex_test
