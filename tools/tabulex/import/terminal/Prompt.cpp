#include "tools/tabulex/import/terminal/Prompt.h"

#include "tools/tabulex/text/Formats.h"
#include "tools/tabulex/text/VisibleText.h"

namespace tabulex {

namespace {

constexpr std::size_t kMostDigits = 18;

class Question final : public ILayer
{
public:
    explicit Question(const std::string& sQuestion) : m_sQuestion(sQuestion) {}

    // False once the answer stands, or there is none.
    bool Handle(const Input& input);
    const std::string& Answer() const { return m_sAnswer; }

    void Draw(Canvas& canvas) override;

private:
    std::string m_sQuestion;
    std::string m_sAnswer;
};

bool Question::Handle(const Input& input)
{
    if (input.key == Key::Enter || input.key == Key::Accept)
        return false;
    if (input.key == Key::Escape || input.key == Key::Interrupt || input.key == Key::Gone) {
        m_sAnswer.clear();
        return false;
    }
    // More digits than any file has records.
    const bool bDigit = input.key == Key::Text && input.c >= U'0' && input.c <= U'9';
    if (bDigit && m_sAnswer.size() < kMostDigits)
        m_sAnswer += static_cast<char>(input.c);
    else if (input.key == Key::Backspace && !m_sAnswer.empty())
        m_sAnswer.pop_back();
    return true;
}

void Question::Draw(Canvas& canvas)
{
    const Size size = canvas.GetSize();
    const int nRow = size.nRows - 2;
    canvas.Fill({0, nRow, size.nColumns, 1}, Look::Normal);
    int nAt = 1 + canvas.Put(1, nRow, m_sQuestion, Look::Title);
    nAt += canvas.Put(nAt, nRow, m_sAnswer, Look::Normal);
    canvas.cursor = Point{nAt, nRow};
}

} // namespace

std::optional<ULONGLONG> AskNumber(Desk& desk, const std::string& sQuestion)
{
    Question question(sQuestion);
    const Layered layered(desk, question);
    while (question.Handle(desk.Next()))
        desk.Invalidate();
    return ParseWhole(question.Answer());
}

} // namespace tabulex
