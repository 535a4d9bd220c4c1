#include "tools/tabulex/output/Results.h"

#include <fmt/format.h>

#include "tools/tabulex/system/Fault.h"

namespace tabulex {

namespace {

constexpr std::size_t kResultsBuffer = std::size_t{64} * 1024;

} // namespace

bool Results::Add(std::string_view text)
{
    m_buffer += text;
    return m_buffer.size() < kResultsBuffer || Flush();
}

void Results::Show()
{
    if (Flush())
        Succeeded(m_file.Flush());
}

void Results::Finish()
{
    if (Flush())
        Succeeded(m_file.Commit());
}

bool Results::Flush()
{
    const bool bWritten = m_file.Write(m_buffer);
    m_buffer.clear();
    return Succeeded(bWritten);
}

bool Results::Succeeded(bool bWritten) const
{
    if (!bWritten && !m_file.IsReaderGone())
        throw Fault{ExitStatus::FileFault,
                    fmt::format("standard output can't be written: {}", m_file.FaultText())};
    return bWritten;
}

} // namespace tabulex
