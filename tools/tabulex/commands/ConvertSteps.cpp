#include "tools/tabulex/commands/ConvertSteps.h"

#include <algorithm>

#include <fmt/format.h>

#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/system/Paths.h"

namespace tabulex {

namespace {

// In the order of RunResult.
constexpr const char* kResultNames[] = {"commit", "rollback", "refused"};

} // namespace

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
    const auto isRead = [&](const std::string& path) {
        return std::ranges::any_of(files, [&](const std::string& file) {
            std::error_code error;
            return path != "-" && !path.empty() &&
                   std::filesystem::equivalent(PathOf(path), PathOf(file), error);
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
                       outcome.counts.nDelivered, outcome.counts.nSkipped,
                       kResultNames[static_cast<int>(outcome.result)]);
}

} // namespace tabulex
