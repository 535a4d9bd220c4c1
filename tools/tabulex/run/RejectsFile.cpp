#include "tools/tabulex/run/RejectsFile.h"

#include <fmt/format.h>

#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/text/VisibleText.h"

namespace tabulex {

void RejectsFile::Open()
{
    if (m_bOpen)
        return;
    if (!m_file.Open(m_sPath))
        throw Fault{ExitStatus::FileFault, FaultText()};
    m_bOpen = true;
    m_file.Write("file,line,field,column,text,message\n");
}

void RejectsFile::Write(std::string_view rows)
{
    if (m_file.IsOnTerminal())
        m_file.Write(VisibleLines(rows));
    else
        m_file.Write(rows);
}

bool RejectsFile::EndRun(bool bKeep)
{
    m_bKeep = m_bKeep || bKeep;
    m_file.Flush();
    return FaultText().empty();
}

bool RejectsFile::Finish()
{
    if (!m_bOpen)
        return true; // a failure to open it has been reported
    if (m_bKeep)
        m_file.Commit();
    else
        m_file.Discard();
    return FaultText().empty();
}

// A reader may close its pipe: that is no fault.
std::string RejectsFile::FaultText() const
{
    const std::string reason = m_file.IsReaderGone() ? std::string() : m_file.FaultText();
    return reason.empty() ? reason : fmt::format("'{}' can't be written: {}", m_sPath, reason);
}

} // namespace tabulex
