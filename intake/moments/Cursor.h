// Cursor: walks through the text of a date or a time.
#pragma once

#include <cstdint>
#include <string_view>

namespace tabulex::intake {

inline constexpr bool IsDigitByte(char c)
{
    return c >= '0' && c <= '9';
}

class Cursor
{
public:
    explicit Cursor(std::string_view text) : m_text(text) {}

    bool AtEnd() const { return m_nAt == m_text.size(); }
    // 0 at the end.
    char Here() const { return Ahead(0); }
    char Ahead(std::size_t n) const { return m_nAt + n < m_text.size() ? m_text[m_nAt + n] : '\0'; }
    std::size_t Place() const { return m_nAt; }
    void GoTo(std::size_t nPlace) { m_nAt = nPlace; }
    void Skip(std::size_t n) { m_nAt += n; }
    std::string_view Rest() const { return m_text.substr(m_nAt); }
    void SkipAny(std::string_view chars)
    {
        while (!AtEnd() && chars.find(Here()) != std::string_view::npos)
            ++m_nAt;
    }

    // How many digits stand here.
    std::size_t DigitsHere() const
    {
        std::size_t n = 0;
        while (IsDigitByte(Ahead(n)))
            ++n;
        return n;
    }
    // The number of the next n digits, at most 18 (19 if the first is at most 8), and walks past
    // them.
    std::int64_t Take(std::size_t n)
    {
        std::int64_t nValue = 0;
        for (; n > 0; --n)
            nValue = nValue * 10 + (m_text[m_nAt++] - '0');
        return nValue;
    }

private:
    std::string_view m_text;
    std::size_t m_nAt = 0;
};

} // namespace tabulex::intake
