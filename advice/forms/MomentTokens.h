// The pieces of a text that may be a moment: numbers, words, and what stands between them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tabulex::advice {

struct MomentToken
{
    enum class Kind
    {
        End,
        Number,
        Word,
        Sign // a single character; that for years of Chinese and the like is '-', for hours ':'
    };
    Kind kind = Kind::End;
    std::uint64_t nValue = 0; // of a number
    int nDigits = 0;          // of a number, with zeros ahead
    char cSign = 0;
    std::string_view sWord;
};

class MomentTokens
{
public:
    explicit MomentTokens(std::string_view text);

    // False for a text that has too many pieces to be a moment.
    bool IsWhole() const { return m_bWhole; }
    // The token at a place; one of kind End behind the last.
    const MomentToken& At(std::size_t n) const { return m_tokens[n < m_nSize ? n : m_nSize]; }

private:
    static constexpr std::size_t kMost = 24;

    void AddNumber(std::string_view& text);
    void AddWord(std::string_view& text);
    void AddSign(char c);

    std::array<MomentToken, kMost + 1> m_tokens{};
    std::size_t m_nSize = 0;
    bool m_bWhole = true;
};

} // namespace tabulex::advice
