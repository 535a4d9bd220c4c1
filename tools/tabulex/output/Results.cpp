#include "tools/tabulex/output/Results.h"

#include <algorithm>

#include <fmt/format.h>

#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/text/Text.h"
#include "tools/tabulex/text/VisibleText.h"

namespace tabulex {

namespace {

// Few calls for long results, and short ones come at once by Show.
constexpr std::size_t kResultsBuffer = std::size_t{64} * 1024;

// The tool's own sequences stay, whatever else the text holds is made visible.
std::string OnTerminal(std::string_view text)
{
    std::string result;
    while (!text.empty()) {
        const std::size_t nAt = std::min({text.find(kBold), text.find(kNotBold), text.size()});
        result += VisibleLines(text.substr(0, nAt));
        result += text.substr(nAt, kBold.size());
        text.remove_prefix(std::min(nAt + kBold.size(), text.size()));
    }
    return result;
}

static_assert(kBold.size() == kNotBold.size());

} // namespace

bool Results::Add(std::string_view text)
{
    if (m_file.IsOnTerminal())
        m_buffer += OnTerminal(text);
    else
        m_buffer += text;
    return m_buffer.size() < kResultsBuffer || Flush();
}

bool Results::AddLine(std::string_view text)
{
    if (m_file.IsOnTerminal())
        m_buffer += VisibleLines(text);
    else
        m_buffer += text;
    return Add("\n");
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
