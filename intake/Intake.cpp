#include "intake/Intake.h"

#include <utility>

#include "intake/IntakeWork.h"

namespace tabulex::intake {

Intake::Intake(const Recipe& recipe, Output output, MakeStore makeStore)
    : m_work(std::make_unique<Work>(recipe, std::move(output), std::move(makeStore)))
{}

Intake::~Intake() = default;

void Intake::Feed(std::string_view text)
{
    m_work->Feed(text);
}

void Intake::Finish()
{
    m_work->Finish();
}

const IntakeAccount& Intake::Account() const
{
    return m_work->Account();
}

char Intake::Divider() const
{
    return m_work->Divider();
}

std::shared_ptr<const Origins> Intake::LineOrigins() const
{
    return m_work->LineOrigins();
}

std::string CleanText(const Recipe& recipe, std::string_view text, IntakeAccount* pAccount)
{
    std::string clean;
    Intake intake(recipe, [&clean](std::string_view block) { clean += block; });
    intake.Feed(text);
    intake.Finish();
    if (pAccount)
        *pAccount = intake.Account();
    return clean;
}

} // namespace tabulex::intake
