// From the command line to a command: the arguments become Options, the component is set up for the
// process, and the command of that name runs on them.
//
// What goes wrong is thrown as a Fault with its message and its exit status. It ends the work on
// one file where a command takes several, and else the command; the worst status of all files is
// that of the process.

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>

#include <fmt/format.h>

#include "interfaces/NativeHost.h"
#include "tools/tabulex/commands/Commands.h"
#include "tools/tabulex/host/ReadCheck.h"
#include "tools/tabulex/host/ResolutionSetting.h"
#include "tools/tabulex/options/CommandLine.h"
#include "tools/tabulex/options/KnownNames.h"
#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/system/Files.h"
#include "tools/tabulex/system/Interrupt.h"
#include "tools/tabulex/system/Surroundings.h"
#include "tools/tabulex/system/Terminal.h"
#include "tools/tabulex/text/Suggestion.h"
#include "tools/tabulex/text/VisibleText.h"

using namespace tabulex;

namespace {

using FileCommand = ExitStatus (*)(const Context&, Host&, const CleanFile&);

// After a file that fails the others still have their turn.
template <FileCommand run>
ExitStatus ForEachFile(const Context& context)
{
    ExitStatus status = ExitStatus::Done;
    for (const std::string& file : context.options.files) {
        try {
            Warnings warnings(context.console, file);
            const InputFile input(file, context.options.general.sEncoding, warnings);
            const CleanFile clean(input, context.options.recipe, warnings);
            Host host(context.offers);
            status = Worse(status, OnReadFile(host, [&] { return run(context, host, clean); }));
        } catch (const Fault& fault) {
            context.console.Error(fmt::format("{}: {}", file, fault.sMessage));
            status = Worse(status, fault.status);
        }
    }
    return status;
}

struct Command
{
    const char* pszName;
    ExitStatus (*run)(const Context&);
};

constexpr Command kCommands[] = {
    {"inspect", ForEachFile<Inspect>}, {"convert", Convert},      {"preview", ForEachFile<Preview>},
    {"check", ForEachFile<Check>},     {"raw", ForEachFile<Raw>}, {"symbols", ForEachFile<Symbols>},
    {"environment", PrintEnvironment}, {"template", TryTemplate}, {"import", Import},
};

// The first of the locale's variables that isn't empty counts, then the system.
bool IsChineseLocale()
{
    for (const char* pszName : {"LC_ALL", "LC_MESSAGES", "LANG"})
        if (const char* pszValue = std::getenv(pszName); pszValue && *pszValue)
            return std::string_view(pszValue).starts_with("zh");
    return IsSystemChinese();
}

TabulexLanguage LanguageOf(const GeneralOptions& general)
{
    const bool bChinese = general.sLanguage ? *general.sLanguage == "zh" : IsChineseLocale();
    return bChinese ? TABULEX_LANGUAGE_CHINESE : TABULEX_LANGUAGE_ENGLISH;
}

void SetEncoding(const std::string& name)
{
    if (SUCCEEDED(TabulexSetEncoding(name.c_str())))
        return;
    const auto near = Suggest(name, UsualEncodings());
    throw Fault{ExitStatus::Usage,
                fmt::format("--encoding: there is no encoding '{}'; {}", name,
                            near ? fmt::format("did you mean '{}'?", *near)
                                 : "use a name such as windows-1252, gbk or utf-8, or the number "
                                   "of a code page")};
}

// The component doesn't report a log that it can't write.
void SetReportLog(const std::string& path)
{
    if (!path.empty() && path != "-") {
        errno = 0;
        std::FILE* file = OpenFile(path, FileMode::Append);
        if (!file)
            throw Fault{
                ExitStatus::FileFault,
                fmt::format("--report-log: '{}' can't be written: {}", path, std::strerror(errno))};
        std::fclose(file);
    }
    TabulexSetReportLog(path.c_str());
}

void SetUpComponent(const GeneralOptions& general)
{
    TabulexSetLanguage(LanguageOf(general));
    SetReportLog(general.sReportLog);
    if (general.sEncoding)
        SetEncoding(*general.sEncoding);
}

ResolutionOffers MakeOffers(const GeneralOptions& general)
{
    ResolutionOffers offers(LanguageOf(general) == TABULEX_LANGUAGE_CHINESE ? "无" : "None");
    for (const ResolutionOffer& resolution : general.resolutions)
        if (!offers.Add(resolution))
            throw Fault{ExitStatus::Refused,
                        fmt::format("--offer: '{}' is offered twice", resolution.sName)};
    return offers;
}

ExitStatus Run(const std::vector<std::string>& arguments)
{
    ExitStatus status = ExitStatus::Done;
    const auto options = ReadCommandLine(arguments, status);
    if (!options)
        return status;
    const GeneralOptions& general = options->general;
    Console console(WantsColour(general.colour, Stream::Error), general.bQuiet, general.bVerbose,
                    IsTerminal(Stream::Error) ? VisibleUtf8 : nullptr);
    try {
        SetUpComponent(general);
        const ResolutionOffers offers = MakeOffers(general);
        if (options->settings.sResolution)
            RequireResolution(offers, *options->settings.sResolution);
        const auto* command = std::ranges::find(kCommands, options->sCommand, &Command::pszName);
        return command->run({*options, offers, console, WantsColour(general.colour, Stream::Output),
                             LanguageOf(general)});
    } catch (const Fault& fault) {
        console.Error(fault.sMessage);
        return fault.status;
    } catch (const std::bad_alloc&) {
        console.Error(kOutOfMemory);
        return ExitStatus::FileFault;
    } catch (const std::exception& fault) {
        console.Error(fault.what());
        return ExitStatus::FileFault;
    }
}

} // namespace

int main(int argc, char** argv)
{
    SetUpStreams();
    CatchInterrupts();
    return static_cast<int>(Run(CommandLineArguments(argc, argv)));
}
