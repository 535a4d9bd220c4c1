#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>

#include <fmt/format.h>

#include "diagnostics/FaultmereClient.h"

namespace FaultmereUtil {
namespace {

std::string LineOf(const Report& report)
{
    std::string sLine = fmt::format("{}: {}({}): {}: thread {}: {}",
                                    report.kind == Report::Kind::Assertion ? "assertion" : "trace",
                                    report.place.file_name(), report.place.line(),
                                    report.place.function_name(), report.nThread, report.sText);
    std::ranges::replace_if(
        sLine, [](char c) { return c == '\n' || c == '\r'; }, ' ');
    return sLine + '\n';
}

// In one piece, so that lines of several processes don't mix.
HRESULT LogToStandardError(const Report& report)
{
    const std::string sLine = LineOf(report);
    std::fwrite(sLine.data(), 1, sLine.size(), stderr);
    return kGoOn;
}

} // namespace

// The path is UTF-8, which a path made of plain bytes wouldn't be on every system. The stream is
// shared, since a receiver is copied. Each line is flushed: the fault that it reports may be the
// last thing that the process does.
Receiver LogTo(const std::string& sPath)
{
    if (sPath == "-")
        return LogToStandardError;
    const std::filesystem::path path(std::u8string(sPath.begin(), sPath.end()));
    auto pFile = std::make_shared<std::ofstream>(path, std::ios::app | std::ios::binary);
    return [pFile](const Report& report) {
        *pFile << LineOf(report) << std::flush;
        return kGoOn;
    };
}

} // namespace FaultmereUtil
