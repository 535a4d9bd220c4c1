#include "tools/tabulex/run/ErrorReporter.h"

#include <fmt/format.h>

#include "tools/tabulex/output/CsvWriter.h"
#include "tools/tabulex/system/Interrupt.h"

namespace tabulex {

namespace {

// A message may quote lines that the component has joined. Their line ends are written as
// escapes, so that a message is one line.
std::string OneLine(const std::string& text)
{
    std::string result;
    for (const char c : text) {
        if (c == '\n')
            result += "\\n";
        else if (c == '\r')
            result += "\\r";
        else
            result += c;
    }
    return result;
}

constexpr std::string_view kQuestion = "Skip it [s], skip all [a] or cancel [c]? ";

} // namespace

ErrorReporter::ErrorReporter(const Host& host, Console& console, std::string file,
                             const Options& options, RejectsFile* rejects)
    : m_host(host), m_console(console), m_sFile(std::move(file)), m_options(options),
      m_rejects(rejects)
{
    // Reading a line again takes time, so it is done only where its text is wanted.
    if (rejects || options.action == OnBadLine::Ask)
        m_texts.emplace(host);
}

bool ErrorReporter::Report(const BadLine& bad)
{
    ++m_nReported;
    const std::string place =
        bad.nField == kWholeRecord ? std::string() : fmt::format("field {}: ", bad.nField);
    fmt::format_to(std::back_inserter(m_sLines), "{}:{}: {}{}\n", m_sFile, bad.nLine, place,
                   OneLine(bad.sMessage));
    const std::string text = m_texts ? m_texts->Of(bad.nLine, m_nBatchStart) : std::string();
    if (m_rejects)
        AppendReject(bad, text);
    m_bStopped = HasTooMany() || !Decide(bad, text);
    return !m_bStopped;
}

bool ErrorReporter::Decide(const BadLine& bad, const std::string& text)
{
    if (m_options.action != OnBadLine::Ask)
        return m_options.action == OnBadLine::Skip;
    const BadLineAnswer answer =
        m_options.pView ? m_options.pView->AskAbout(bad, text) : AskOnConsole(text);
    if (answer == BadLineAnswer::SkipAll)
        m_options.action = OnBadLine::Skip;
    return answer != BadLineAnswer::Cancel;
}

// Asks again after an answer that isn't understood. The end of the input and an interrupt
// cancel.
BadLineAnswer ErrorReporter::AskOnConsole(const std::string& text)
{
    Flush();
    for (;;) {
        m_console.Print(fmt::format("  {}\n{}", text, kQuestion));
        const auto answer = ReadAnswer(Interrupted);
        if (!answer) {
            m_console.Print("\n");
            return BadLineAnswer::Cancel;
        }
        // With this bit set an ASCII letter is a small one.
        switch (answer->empty() ? '\0' : (*answer)[0] | 0x20) {
        case 's':
            return BadLineAnswer::Skip;
        case 'a':
            return BadLineAnswer::SkipAll;
        case 'c':
            return BadLineAnswer::Cancel;
        }
    }
}

void ErrorReporter::AppendReject(const BadLine& bad, const std::string& text)
{
    const bool bField = bad.nField != kWholeRecord;
    AppendCsvField(m_sRejects, m_sFile);
    fmt::format_to(std::back_inserter(m_sRejects), ",{},{},", bad.nLine,
                   bField ? std::to_string(bad.nField) : "");
    AppendCsvField(m_sRejects, bField ? m_host.ColumnName(static_cast<ULONG>(bad.nField - 1)) : "");
    m_sRejects += ',';
    AppendCsvField(m_sRejects, text);
    m_sRejects += ',';
    AppendCsvField(m_sRejects, bad.sMessage);
    m_sRejects += '\n';
}

void ErrorReporter::EndBatch(ULONGLONG nLines)
{
    m_nBatchStart += nLines;
    Flush();
}

void ErrorReporter::Flush()
{
    if (!m_sLines.empty())
        m_console.Print(m_sLines);
    m_sLines.clear();
    if (m_rejects)
        m_rejects->Write(m_sRejects);
    m_sRejects.clear();
}

} // namespace tabulex
