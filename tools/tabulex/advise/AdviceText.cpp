// Options are printed by the tables that read them, so a command that is told can be typed. Texts
// of the file, such as a symbol, are quoted for the shell, and whoever prints makes them harmless
// for a terminal.
#include "tools/tabulex/advise/AdviceText.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "tools/tabulex/advise/ReadingSettings.h"
#include "tools/tabulex/text/ShellWord.h"

namespace tabulex {

namespace {

using advice::Advice;
using advice::JudgedReading;
using advice::Verdict;
using nlohmann::ordered_json;

constexpr std::size_t kShownOthers = 3; // commands besides the best

// By verdict.
constexpr const char* kVerdicts[] = {"as it stands", "advised", "undecided", "none"};

const char* NameOf(Verdict verdict)
{
    return kVerdicts[static_cast<std::size_t>(verdict)];
}

std::string Row(const char* pszLabel, const std::string& text)
{
    return fmt::format("  {:<12}{}\n", pszLabel, text);
}

std::string ScoreText(const JudgedReading& judged)
{
    std::string text = fmt::format("{:.0f} of 100:", judged.score.Total());
    for (const advice::ScorePart& part : judged.score.parts)
        text += fmt::format(" {} {:.0f}/{}{}", part.pszName, std::floor(part.dShare * part.nPoints),
                            part.nPoints, &part == &judged.score.parts.back() ? "" : ",");
    return text;
}

ordered_json JsonOf(const JudgedReading& judged, const std::string& file,
                    const ResolutionOffers& offers)
{
    ordered_json parts = ordered_json::array();
    for (const advice::ScorePart& part : judged.score.parts)
        parts.push_back({{"name", part.pszName},
                         {"points", part.dShare * part.nPoints},
                         {"most", part.nPoints},
                         {"reason", part.sReason}});
    ordered_json options = ordered_json::array();
    for (const auto& [name, value] : OptionsOf(judged.reading, offers)) {
        options.push_back(name);
        if (!value.empty())
            options.push_back(value);
    }
    return {{"what", judged.reading.sWhat},
            {"score", judged.score.Total()},
            {"parts", parts},
            {"steps", judged.reading.steps},
            {"options", options},
            {"command", AdvisedCommand(file, judged.reading, offers)}};
}

} // namespace

// A name that begins with a hyphen would be taken for an option.
std::string AdvisedCommand(const std::string& file, const advice::Reading& reading,
                           const ResolutionOffers& offers)
{
    const std::string options = ShellText(OptionsOf(reading, offers));
    return fmt::format("tabulex convert {}{}{}",
                       QuoteForShell(file.starts_with('-') && file != "-" ? "./" + file : file),
                       options.empty() ? "" : " ", options);
}

std::string AdviceReport(const Advice& advice, const std::string& file,
                         const ResolutionOffers& offers)
{
    std::string text =
        '\n' + Row("advice", fmt::format("{}{}{}", NameOf(advice.verdict),
                                         advice.sReason.empty() ? "" : ": ", advice.sReason));
    for (const std::string& doubt : advice.doubts)
        text += Row("doubtful", doubt);
    if (advice.readings.empty())
        return text;
    for (const std::string& step : advice.readings.front().reading.steps)
        text += Row("step", step);
    text += Row("score", ScoreText(advice.readings.front()));
    const std::size_t nShown = std::min(advice.readings.size(), kShownOthers + 1);
    for (std::size_t i = 0; i < nShown; ++i) {
        const advice::Reading& reading = advice.readings[i].reading;
        if (i > 0 || advice.verdict == Verdict::Undecided)
            text += Row(i == 0 ? "either" : "or", reading.sWhat);
        text += Row("command", AdvisedCommand(file, reading, offers));
    }
    return text;
}

ordered_json JsonOf(const Advice& advice, const std::string& file, const ResolutionOffers& offers)
{
    ordered_json readings = ordered_json::array();
    for (const JudgedReading& judged : advice.readings)
        readings.push_back(JsonOf(judged, file, offers));
    return {{"verdict", NameOf(advice.verdict)},
            {"reason", advice.sReason},
            {"doubts", advice.doubts},
            {"tries", advice.nTries},
            {"readings", readings}};
}

std::string WhatIsDone(const Advice& advice, const ResolutionOffers& offers)
{
    if (advice.verdict == Verdict::AsItStands)
        return "read as it stands";
    return "read with " + ShellText(OptionsOf(advice.readings.front().reading, offers));
}

std::string WhyNothingIsDone(const Advice& advice, const std::string& file,
                             const ResolutionOffers& offers)
{
    if (advice.verdict == Verdict::None)
        return fmt::format("no reading comes out well: {}", advice.sReason);
    std::string text = advice.sReason;
    for (std::size_t i = 0; i < std::min<std::size_t>(advice.readings.size(), 2); ++i)
        text += fmt::format("\n  {}: {}", advice.readings[i].reading.sWhat,
                            AdvisedCommand(file, advice.readings[i].reading, offers));
    return text;
}

} // namespace tabulex
