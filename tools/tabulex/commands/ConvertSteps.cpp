#include "tools/tabulex/commands/ConvertSteps.h"

#include <algorithm>

#include <fmt/format.h>

#include "tools/tabulex/input/InputFile.h"
#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/system/OutputPlace.h"
#include "tools/tabulex/system/Paths.h"

namespace tabulex {

OutputFolder::OutputFolder(const std::string& path) : m_path(PathOf(path))
{
    std::error_code ignored;
    m_bMade = std::filesystem::create_directory(m_path, ignored);
}

OutputFolder::~OutputFolder()
{
    std::error_code ignored;
    if (m_bMade)
        std::filesystem::remove(m_path, ignored);
}

OnBadLine ActionOn(const ConvertOptions& options)
{
    const bool bTerminal = IsTerminal(Stream::Input) && IsTerminal(Stream::Error);
    return options.onError.value_or(bTerminal ? OnBadLine::Ask : OnBadLine::Skip);
}

void RequireDistinctFiles(const ConvertOptions& options, const std::vector<std::string>& files,
                          const OutputOptions& output)
{
    // A device, such as a terminal, may be both.
    const auto isRead = [&](const std::string& path) {
        return std::ranges::any_of(files, [&](const std::string& file) {
            std::error_code ignored;
            const std::string place = FileBehind(file);
            if (path.empty() || !std::filesystem::is_regular_file(PathOf(place), ignored))
                return false;
            // Both streams may lead to one file.
            return AreSamePlace(path, place) ||
                   std::filesystem::equivalent(PathOf(path == "-" ? "/dev/stdout" : path),
                                               PathOf(place), ignored);
        });
    };
    if (isRead(output.sPath) || isRead(options.sRejects))
        throw Fault{
            ExitStatus::Usage,
            "the output would replace a file that is read; give another name by -o or --rejects"};
}

std::string Summary(const Outcome& outcome)
{
    return fmt::format("batches={} delivered={} skipped={} result={}\n", outcome.counts.nBatches,
                       outcome.counts.nDelivered, outcome.counts.nSkipped, NameOf(outcome.result));
}

} // namespace tabulex
