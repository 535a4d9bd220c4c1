#include <cstdlib>
#include <exception>

#include <fmt/format.h>

#include "interfaces/NativeHost.h"
#include "tools/tabulex/CommandLine.h"
#include "tools/tabulex/Commands.h"
#include "tools/tabulex/Fault.h"
#include "tools/tabulex/Interrupt.h"
#include "tools/tabulex/Terminal.h"

using namespace tabulex;

namespace {

using FileCommand = ExitStatus (*)(const Context&, const std::string&);

struct Command
{
    const char* pszName;
    FileCommand run;
};

constexpr Command kFileCommands[] = {
    {"inspect", Inspect}, {"convert", Convert}, {"preview", Preview},
    {"check", Check},     {"raw", Raw},
};

// The first of the locale's variables that says anything counts.
bool IsChineseLocale()
{
    for (const char* pszName : {"LC_ALL", "LC_MESSAGES", "LANG"})
        if (const char* pszValue = std::getenv(pszName); pszValue && *pszValue)
            return std::string_view(pszValue).starts_with("zh");
    return false;
}

TabulexLanguage LanguageOf(const GeneralOptions& general)
{
    const bool bChinese = general.sLanguage ? *general.sLanguage == "zh" : IsChineseLocale();
    return bChinese ? TABULEX_LANGUAGE_CHINESE : TABULEX_LANGUAGE_ENGLISH;
}

void SetUpComponent(const GeneralOptions& general)
{
    TabulexSetLanguage(LanguageOf(general));
    TabulexSetReportLog(general.sReportLog.c_str());
    if (general.sEncoding && FAILED(TabulexSetEncoding(general.sEncoding->c_str())))
        throw Fault{ExitStatus::Usage,
                    fmt::format("there is no encoding '{}'", *general.sEncoding)};
}

ResolutionOffers MakeOffers(const GeneralOptions& general)
{
    ResolutionOffers offers(LanguageOf(general) == TABULEX_LANGUAGE_CHINESE ? "无" : "None");
    for (const HostResolution& resolution : general.resolutions)
        if (!offers.Add(resolution))
            throw Fault{ExitStatus::Refused,
                        fmt::format("the resolution '{}' is offered twice", resolution.sName)};
    return offers;
}

// One bad file doesn't keep the others from their turn.
ExitStatus RunFor(FileCommand run, const Context& context, const std::string& file)
{
    try {
        return run(context, file);
    } catch (const Fault& fault) {
        context.console.Error(fmt::format("{}: {}", file, fault.sMessage));
        return fault.status;
    }
}

ExitStatus RunCommand(const Context& context)
{
    for (const Command& command : kFileCommands) {
        if (context.options.sCommand != command.pszName)
            continue;
        ExitStatus status = ExitStatus::Done;
        for (const std::string& file : context.options.files)
            status = Worse(status, RunFor(command.run, context, file));
        return status;
    }
    return TryTemplate(context);
}

ExitStatus Run(int argc, char** argv)
{
    ExitStatus status = ExitStatus::Done;
    const auto options = ReadCommandLine(argc, argv, status);
    if (!options)
        return status;
    const GeneralOptions& general = options->general;
    Console console(WantsColour(general.colour, Stream::Error), general.bQuiet, general.bVerbose);
    try {
        SetUpComponent(general);
        const ResolutionOffers offers = MakeOffers(general);
        return RunCommand({*options, offers, console, WantsColour(general.colour, Stream::Output)});
    } catch (const Fault& fault) {
        console.Error(fault.sMessage);
        return fault.status;
    } catch (const std::exception& fault) {
        console.Error(fault.what());
        return ExitStatus::FileFault;
    }
}

} // namespace

int main(int argc, char** argv)
{
    IgnoreClosedPipes();
    CatchInterrupts();
    return static_cast<int>(Run(argc, argv));
}
