// The box has two heights: with a question about a bad line it grows by the message, the line and
// the keys. While the run goes on, keys are only looked for between its messages.

#include "tools/tabulex/import/ImportProgress.h"

#include <algorithm>

#include <fmt/format.h>

#include "interfaces/FieldsAndResolutions.h"
#include "tools/tabulex/import/terminal/ImportTexts.h"
#include "tools/tabulex/text/Formats.h"
#include "tools/tabulex/text/VisibleText.h"

namespace tabulex {

namespace {

constexpr int kMostInner = 66; // cells in the box
constexpr int kPlainRows = 5;  // name, bar, figures, blank, keys
constexpr int kAskedRows = 9;

// Figures come far more often than anybody can read them, and the run waits for the drawing.
constexpr std::chrono::milliseconds kDrawPause(100);

std::string BarText(ULONG nPercent, int nCells)
{
    const int nBar = nCells - 8;
    const int nDone = static_cast<int>(std::min<ULONG>(nPercent, 100)) * nBar / 100;
    return fmt::format("[{:#<{}}{:.<{}}] {:>3}%", "", nDone, "", nBar - nDone, nPercent);
}

} // namespace

ImportProgress::ImportProgress(Desk& desk, std::string sFile)
    : m_desk(desk), m_layered(desk, *this), m_sFile(std::move(sFile))
{}

void ImportProgress::ShowProgress(const Progress& progress)
{
    m_progress = progress;
    const auto tNow = std::chrono::steady_clock::now();
    if (tNow < m_tNext)
        return;
    m_tNext = tNow + kDrawPause;
    m_desk.Invalidate();
}

// Nothing else is dispatched while a question stands: it is asked from within a message.
BadLineAnswer ImportProgress::AskAbout(const BadLine& bad, const std::string& sText)
{
    const std::string place =
        bad.nField == IQRL_TabulexConverter::kWholeRecord
            ? fmt::format(fmt::runtime(TextOf(ImportText::BadLine)), bad.nLine)
            : fmt::format(fmt::runtime(TextOf(ImportText::BadLineField)), bad.nLine, bad.nField);
    m_question = Question{place + VisibleUtf8(bad.sMessage), VisibleUtf8(sText)};
    m_desk.Invalidate();
    std::optional<BadLineAnswer> answer;
    while (!answer)
        answer = AnswerOf(m_desk.NextAlone());
    m_question.reset();
    m_desk.Invalidate();
    return *answer;
}

std::optional<BadLineAnswer> ImportProgress::AnswerOf(const Input& input) const
{
    if (input.key == Key::Escape || input.key == Key::Interrupt || input.key == Key::Gone)
        return BadLineAnswer::Cancel;
    // With this bit set an ASCII letter is a small one.
    switch (input.key == Key::Text ? input.c | 0x20 : 0) {
    case U's':
        return BadLineAnswer::Skip;
    case U'a':
        return BadLineAnswer::SkipAll;
    case U'c':
        return BadLineAnswer::Cancel;
    default:
        return std::nullopt;
    }
}

bool ImportProgress::IsCancelled()
{
    const Input input = m_desk.Glance();
    return input.key == Key::Escape || input.key == Key::Interrupt || input.key == Key::Gone;
}

void ImportProgress::Draw(Canvas& canvas)
{
    const Size size = canvas.GetSize();
    const int nInner = std::min(kMostInner, size.nColumns - 6);
    const int nRows = (m_question ? kAskedRows : kPlainRows) + 2;
    const Rect box{(size.nColumns - nInner - 4) / 2, (size.nRows - nRows) / 2, nInner + 4, nRows};
    canvas.Box(box, TextOf(ImportText::Converting));
    int nRow = box.nRow + 1;
    const auto line = [&](const std::string& sText, Look look = Look::Normal) {
        canvas.PutCell(box.nColumn + 2, nRow++, sText, look, nInner);
    };
    line(m_sFile);
    line(BarText(m_progress.nPercent, nInner));
    line(fmt::format("{}{}  {}{}  {}{}", TextOf(ImportText::Records),
                     WithThousands(m_progress.nRecords), TextOf(ImportText::Elapsed),
                     m_progress.sElapsed, TextOf(ImportText::Remaining), m_progress.sRemaining));
    line("");
    if (!m_question)
        return line(TextOf(ImportText::ProgressKeys));
    const auto message = Wrap(m_question->sMessage, nInner);
    for (std::size_t n = 0; n < 2; ++n)
        line(n < message.size() ? message[n] : std::string(), Look::Error);
    line(m_question->sLine);
    line("");
    line(TextOf(ImportText::BadLineKeys));
}

} // namespace tabulex
