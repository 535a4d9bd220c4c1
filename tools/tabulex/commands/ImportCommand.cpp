// import: the component's dialog in the terminal, and then the conversion with what was chosen in
// it, on the same object. Where no output is named, the settings are printed.
//
// Whatever the tool has to say waits until the screen is the user's again. Interrupts are only
// noted meanwhile, and seen by the dialog and the run.

#include <cstdio>
#include <filesystem>
#include <optional>

#include <fmt/format.h>

#include "tools/tabulex/commands/Commands.h"
#include "tools/tabulex/commands/ConvertSteps.h"
#include "tools/tabulex/explain/Refusal.h"
#include "tools/tabulex/host/Environment.h"
#include "tools/tabulex/host/Properties.h"
#include "tools/tabulex/host/ReadCheck.h"
#include "tools/tabulex/import/ImportProgress.h"
#include "tools/tabulex/import/ImportViews.h"
#include "tools/tabulex/import/SettingsText.h"
#include "tools/tabulex/import/terminal/ImportTexts.h"
#include "tools/tabulex/options/OutputTargets.h"
#include "tools/tabulex/output/Results.h"
#include "tools/tabulex/review/LayoutReview.h"
#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/system/Interrupt.h"
#include "tools/tabulex/system/Paths.h"
#include "tools/tabulex/text/VisibleText.h"

namespace tabulex {

namespace fs = std::filesystem;

namespace {

// Absolute, as the component takes it; throws Fault for a folder that can't be read.
std::string RequireFolder(const std::string& path)
{
    std::error_code error;
    [[maybe_unused]] const fs::directory_iterator readable(PathOf(path), error);
    if (error)
        throw Fault{ExitStatus::FileFault,
                    fmt::format("'{}' can't be read: {}", path, error.message())};
    const fs::path absolute = fs::absolute(PathOf(path), error);
    return Utf8Of(error ? PathOf(path) : absolute.lexically_normal());
}

// One dialog and what comes of it.
class ImportSession
{
public:
    explicit ImportSession(const Context& context)
        : m_context(context), m_convert(context.options.convert), m_host(context.offers)
    {}

    ExitStatus Run();

private:
    void Prepare();
    void OpenPlain(const std::string& path);
    ExitStatus RunDialogAndConversion();
    bool RunDialog(Desk& desk);
    std::string FileName() const;
    std::string OpenedName() const;
    const CleanFile* Clean() const;
    ExitStatus Convert(IConversionView* pView);
    ConversionOptions OptionsFor(IConversionView* pView);
    bool WritesToTerminal() const { return m_convert.sOutput == "-"; }
    void PrintSettings();
    void SaveTemplates();

    const Context& m_context;
    const ConvertOptions& m_convert;
    // Of the file that is named, where a recipe is given for it; the dialog may choose another one.
    std::optional<Warnings> m_warnings;
    std::optional<InputFile> m_input;
    std::optional<CleanFile> m_clean;
    Host m_host;
    std::optional<RejectsFile> m_rejects;
};

ExitStatus ImportSession::Run()
{
    Prepare();
    const Deferral deferral;
    const ExitStatus status = RunDialogAndConversion();
    if (status != ExitStatus::Done)
        return Interrupted() ? InterruptStatus() : status;
    SaveTemplates();
    PutOffInterrupts();
    return ExitStatus::Done;
}

// The size of bars can be typed in the dialog, which a host has to allow.
void ImportSession::Prepare()
{
    const Options& options = m_context.options;
    SetImportLanguage(m_context.language == TABULEX_LANGUAGE_CHINESE);
    if (!options.settings.sEnvironment.empty())
        ReadEnvironment(m_host, options.settings.sEnvironment);
    if (m_convert.bSaveEnvironment) // a fault is told before the work in the dialog
        EnvironmentFile{options.settings.sEnvironment};
    m_host.Front().put_Mode(1);
    const std::string path = options.files.empty() ? std::string() : options.files.front();
    std::error_code error;
    if (path.empty() || fs::is_directory(PathOf(path), error))
        SetFolder(m_host, RequireFolder(path.empty() ? "." : path), path.empty());
    else
        OpenPlain(path);
}

// The dialog shows the file's name and its folder, so it has a copy only where the lines are made
// clean first.
void ImportSession::OpenPlain(const std::string& path)
{
    const Options& options = m_context.options;
    RequirePlainFile(path);
    if (options.recipe.IsEmpty()) {
        m_host.Open(path);
        return;
    }
    m_warnings.emplace(m_context.console, path);
    m_input.emplace(path, options.general.sEncoding, *m_warnings);
    m_clean.emplace(*m_input, options.recipe, *m_warnings);
    m_host.SetSource(m_clean->Source());
    OpenWithSettings(m_host, m_clean->Path(), m_clean->SettingsOf({}));
}

// Whether the component has the file that was made clean, and no other one.
const CleanFile* ImportSession::Clean() const
{
    return m_clean && OpenedName() == m_clean->Path() ? &*m_clean : nullptr;
}

// The screen goes before anything is printed, and before rows are written to the terminal.
ExitStatus ImportSession::RunDialogAndConversion()
{
    {
        const HeldConsole held(m_context.console);
        const auto screen = OpenScreen(m_context.bColour);
        Desk desk(*screen);
        if (!RunDialog(desk))
            return ExitStatus::Refused;
        if (m_context.options.import.bConvert && !WritesToTerminal()) {
            ImportProgress progress(desk, VisibleUtf8(FileName()));
            return Convert(&progress);
        }
    }
    if (m_context.options.import.bConvert)
        return Convert(nullptr);
    PrintSettings();
    return ExitStatus::Done;
}

// A file that has gone since it was listed leaves in the dialog what was found in the one before.
bool ImportSession::RunDialog(Desk& desk)
{
    const ImportViews views(desk);
    VARIANT_BOOL bConfirmed = VARIANT_FALSE;
    const HRESULT hr = m_host.Front().DoAnalyse(&bConfirmed, 0);
    if (FAILED(hr))
        throw Fault{ExitStatus::Refused, fmt::format("the dialog failed: {}", HexOf(hr))};
    if (bConfirmed != VARIANT_FALSE && FileName().empty())
        throw Fault{ExitStatus::FileFault, "the file that was chosen can't be opened"};
    return bConfirmed != VARIANT_FALSE;
}

std::string ImportSession::FileName() const
{
    const CleanFile* pClean = Clean();
    return pClean ? pClean->Name() : OpenedName();
}

// As the system has it.
std::string ImportSession::OpenedName() const
{
    return BytesFromPath(GetText(m_host.Front(), &IqrlTabulexConvertor::get_FileName));
}

ExitStatus ImportSession::Convert(IConversionView* pView)
{
    const std::string fault = WhyRefused(m_host, {}, false);
    if (!fault.empty())
        throw Fault{ExitStatus::Refused, fault};
    const std::vector<std::string> files = {FileName()};
    RequirePlainFile(files.front());
    m_host.SetSource(Clean() ? Clean()->Source() : nullptr);
    std::optional<OutputFolder> folder;
    if (IsFolder(m_convert.sOutput) && !m_convert.bDryRun)
        folder.emplace(m_convert.sOutput);
    const ConversionOptions options = OptionsFor(pView);
    RequireDistinctFiles(m_convert, files, options.output);
    Warnings warnings(m_context.console, files.front());
    ReviewLayout(m_host, {}, warnings);
    Outcome outcome = RunConversion(m_host, m_context.console, files.front(), options,
                                    FindSettings(m_host, OpenedName(), {}), warnings);
    if (m_rejects && !m_rejects->Finish()) {
        m_context.console.Error(m_rejects->FaultText());
        outcome.status = Worse(outcome.status, ExitStatus::FileFault);
    }
    if (!m_context.console.IsQuiet() && outcome.account)
        m_context.console.Print(outcome.account->Text(m_context.console.IsVerbose()) + '\n');
    if (!m_context.console.IsQuiet())
        m_context.console.Print(Summary(outcome));
    return outcome.status;
}

// In the dialog's screen there is somebody to ask.
ConversionOptions ImportSession::OptionsFor(IConversionView* pView)
{
    ConversionOptions options;
    options.output = OutputsOf(m_convert, {FileName()}).front();
    if (!m_convert.sRejects.empty())
        m_rejects.emplace(m_convert.sRejects);
    options.rejects = m_rejects ? &*m_rejects : nullptr;
    options.bDryRun = m_convert.bDryRun;
    options.errors = {m_convert.onError.value_or(pView ? OnBadLine::Ask : ActionOn(m_convert)),
                      m_convert.lineNumbers, m_convert.nMaxErrors, pView};
    options.bStrict = m_convert.bStrict;
    options.progress = m_convert.progress;
    options.pView = pView;
    options.pClean = Clean();
    return options;
}

void ImportSession::PrintSettings()
{
    const Options& options = m_context.options;
    const std::string path = OpenedName();
    Settings start;
    start.sEnvironment = options.settings.sEnvironment;
    const Settings settings = FindSettings(m_host, path, start);
    const std::string lack = WhatSettingsLack(m_host, path, settings);
    if (!lack.empty())
        m_context.console.Warning(
            fmt::format("no option of 'tabulex convert' gives all of it; what differs: {}", lack));
    Results results;
    results.AddLine(ConvertCommandLine(FileName(), Clean() ? options.recipe : intake::Recipe(),
                                       settings, options.general, m_context.offers));
    results.Finish();
}

void ImportSession::SaveTemplates()
{
    if (m_convert.bSaveEnvironment && !m_convert.bDryRun)
        EnvironmentFile(m_context.options.settings.sEnvironment).Save(m_host);
}

} // namespace

ExitStatus Import(const Context& context)
{
    return ImportSession(context).Run();
}

} // namespace tabulex
