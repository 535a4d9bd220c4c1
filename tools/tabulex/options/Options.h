// Options: what a command line says, read and checked for its form.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "advice/Reading.h"
#include "intake/Recipe.h"
#include "tools/tabulex/host/ResolutionOffers.h"
#include "tools/tabulex/host/Settings.h"
#include "tools/tabulex/run/Conversion.h"
#include "tools/tabulex/text/NamePattern.h"

namespace tabulex {

// Common to all commands.
struct GeneralOptions
{
    std::optional<std::string> sLanguage; // "zh" or "en"; empty: by the locale
    std::optional<std::string> sEncoding; // empty: the locale's
    std::vector<ResolutionOffer> resolutions = DefaultResolutions();
    When colour = When::Auto;
    std::string sReportLog; // file of the component's reports, "-" standard error; empty: none
    bool bQuiet = false;
    bool bVerbose = false;
};

// inspect
struct InspectOptions
{
    bool bNoCount = false;
    bool bExplain = false; // each decision with its reason
};

// convert
struct ConvertOptions
{
    std::string sOutput = "-";          // file, folder, or standard output
    std::optional<OutputFormat> format; // empty: the ending of the output decides
    std::optional<std::string> sTable;  // this and the next two for SQLite only
    bool bAppend = false;
    bool bReplace = false;
    std::optional<NamePattern> symbolFromName;
    bool bDryRun = false;
    When progress = When::Auto;
    std::optional<OnBadLine> onError; // empty: the terminal decides
    std::string sRejects;             // empty for none
    std::optional<ULONGLONG> nMaxErrors;
    bool bNoCheck = false;
    bool bSaveEnvironment = false;
    bool bStrict = false;
    LineNumbers lineNumbers = LineNumbers::File;
    std::string sReport; // file for the account as JSON; empty for none
    bool bAuto = false;  // read each file as advised
    advice::DayMonth prefer = advice::DayMonth::Certain; // where nothing else decides
};

// import; what it writes is in ConvertOptions
struct ImportOptions
{
    bool bConvert = false; // the user has said where to, or that it is a trial
};

// Records by position, from 0.
struct RangeOptions
{
    ULONGLONG nFrom = 0;
    std::optional<ULONGLONG> nCount;
};

// raw; if both are set, the count is printed
struct RawOptions
{
    bool bLast = false;
    bool bCountOnly = false;
};

// template: a type's name, a template, and the text to try it on
struct TemplateOptions
{
    std::string sType;
    std::string sTemplate;
    std::string sText;
};

// Everything that was given. Options that the command doesn't take have their defaults.
struct Options
{
    std::string sCommand;           // name of the command
    std::vector<std::string> files; // as given, in the system's bytes
    GeneralOptions general;
    Settings settings;     // of all commands that decode records
    intake::Recipe recipe; // what is done to the lines first
    InspectOptions inspect;
    ConvertOptions convert;
    ImportOptions import;
    RangeOptions range;
    RawOptions raw;
    TemplateOptions trial;
    bool bJson = false; // inspect, template; convert: the account, on standard error
};

} // namespace tabulex
