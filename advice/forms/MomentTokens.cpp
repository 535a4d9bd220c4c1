// One pass over the text. Counting words of Chinese and its neighbours, which stand behind year,
// month and day, become the signs that stand there in other languages, so that the same rules read
// both. Runs of blanks are one sign.
#include "advice/forms/MomentTokens.h"

namespace tabulex::advice {

namespace {

constexpr int kMostDigits = 19;

// Counting words that stand behind the parts of a moment, and what parts them elsewhere.
struct CountingRow
{
    std::string_view sWord;
    char cSign;
};

constexpr CountingRow kCounting[] = {{"年", '-'}, {"月", '-'}, {"日", ' '}, {"时", ':'},
                                     {"時", ':'}, {"分", ':'}, {"秒", ' '}, {"년", '-'},
                                     {"월", '-'}, {"일", ' '}, {"시", ':'}, {"분", ':'}};

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool IsLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
           static_cast<unsigned char>(c) >= 0x80;
}

char TakeCounting(std::string_view& text)
{
    for (const CountingRow& row : kCounting)
        if (text.starts_with(row.sWord)) {
            text.remove_prefix(row.sWord.size());
            return row.cSign;
        }
    return 0;
}

} // namespace

MomentTokens::MomentTokens(std::string_view text)
{
    while (!text.empty() && m_bWhole) {
        if (m_nSize == kMost) {
            m_bWhole = false;
        } else if (IsDigit(text.front())) {
            AddNumber(text);
        } else if (const char cCounting = TakeCounting(text)) {
            AddSign(cCounting);
        } else if (IsLetter(text.front())) {
            AddWord(text);
        } else {
            AddSign(text.front());
            text.remove_prefix(1);
        }
    }
}

void MomentTokens::AddNumber(std::string_view& text)
{
    MomentToken& token = m_tokens[m_nSize++];
    token.kind = MomentToken::Kind::Number;
    for (; !text.empty() && IsDigit(text.front()); text.remove_prefix(1)) {
        if (++token.nDigits > kMostDigits) {
            m_bWhole = false;
            return;
        }
        token.nValue = token.nValue * 10 + static_cast<std::uint64_t>(text.front() - '0');
    }
}

void MomentTokens::AddWord(std::string_view& text)
{
    std::size_t n = 0;
    while (n < text.size() && IsLetter(text[n]))
        ++n;
    MomentToken& token = m_tokens[m_nSize++];
    token.kind = MomentToken::Kind::Word;
    token.sWord = text.substr(0, n);
    text.remove_prefix(n);
}

// Of several blanks one is kept.
void MomentTokens::AddSign(char c)
{
    if (c == '\t')
        c = ' ';
    if (c == ' ' && m_nSize > 0 && m_tokens[m_nSize - 1].cSign == ' ')
        return;
    MomentToken& token = m_tokens[m_nSize++];
    token.kind = MomentToken::Kind::Sign;
    token.cSign = c;
}

} // namespace tabulex::advice
