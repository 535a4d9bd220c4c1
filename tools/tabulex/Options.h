// Options: what a command line says, read and checked for its form.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/tabulex/Conversion.h"
#include "tools/tabulex/ResolutionOffers.h"
#include "tools/tabulex/Settings.h"

namespace tabulex {

// Common to all commands.
struct GeneralOptions
{
    std::optional<std::string> sLanguage; // "zh" or "en"
    std::optional<std::string> sEncoding;
    std::vector<HostResolution> resolutions = DefaultResolutions();
    When colour = When::Auto;
    std::string sReportLog;
    bool bQuiet = false;
    bool bVerbose = false;
};

struct InspectOptions
{
    bool bNoCount = false;
};

struct ConvertOptions
{
    ConversionOptions conversion;
    std::optional<OutputFormat> format; // empty: the ending of the output decides
    std::optional<OnBadLine> onError;   // empty: the terminal decides
    bool bNoCheck = false;
};

// Records by position, from 0.
struct RangeOptions
{
    ULONGLONG nFrom = 0;
    std::optional<ULONGLONG> nCount;
};

struct RawOptions
{
    bool bLast = false;
    bool bCountOnly = false;
};

struct TemplateOptions
{
    std::string sType;
    std::string sTemplate;
    std::string sText;
};

struct Options
{
    std::string sCommand;
    std::vector<std::string> files;
    GeneralOptions general;
    Settings settings;
    InspectOptions inspect;
    ConvertOptions convert;
    RangeOptions range;
    RawOptions raw;
    TemplateOptions trial;
    bool bJson = false;
};

} // namespace tabulex
