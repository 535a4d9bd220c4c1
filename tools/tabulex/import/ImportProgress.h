// ImportProgress: the progress of an import in the terminal, as a box over the last picture of
// the dialog. Bad lines are asked about in it.
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "tools/tabulex/import/terminal/Desk.h"
#include "tools/tabulex/run/ConversionView.h"

namespace tabulex {

class ImportProgress final : public IConversionView, public ILayer
{
public:
    // The file's name as visible text. On the desk while it lives.
    ImportProgress(Desk& desk, std::string sFile);

    void ShowProgress(const Progress& progress) override;
    BadLineAnswer AskAbout(const BadLine& bad, const std::string& sText) override;
    bool IsCancelled() override;

    void Draw(Canvas& canvas) override;

private:
    struct Question
    {
        std::string sMessage;
        std::string sLine;
    };

    std::optional<BadLineAnswer> AnswerOf(const Input& input) const;

    Desk& m_desk;
    const Layered m_layered;
    const std::string m_sFile;
    Progress m_progress;
    std::chrono::steady_clock::time_point m_tNext; // when figures are drawn again
    std::optional<Question> m_question;            // while one stands
};

} // namespace tabulex
