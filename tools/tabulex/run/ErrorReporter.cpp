// Whether a run goes on is asked in this order: is the limit of bad lines passed, is the action to
// end, to skip or to ask, and what does the user answer. Lines are gathered up to the end of a
// batch, for a write each would cost more than the line. Before a question they are written, so
// that the user sees the line that the question is about. "Skip all" changes the action for the
// rest.

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

// The component reports an empty cell where a clean line ends ahead of a value that can't be read;
// the user's line has that value.
void NameUsersCell(LineSource& source, ULONGLONG nLine, BadLineRecord& record)
{
    constexpr std::string_view kNoCell = "\"\"";
    const ULONG nColumn = source.ColumnOf(static_cast<ULONG>(record.nField));
    if (nColumn == 0)
        return;
    record.nField = static_cast<LONG>(nColumn);
    if (const std::size_t nAt = record.sMessage.find(kNoCell); nAt != std::string::npos)
        record.sMessage.insert(nAt + 1, source.CellOf(nLine, nColumn));
}

} // namespace

ErrorReporter::ErrorReporter(const Host& host, Console& console, std::string file,
                             const Options& options, LineMap& lines, RejectsFile* rejects,
                             RunReport* report)
    : m_host(host), m_console(console), m_sFile(std::move(file)), m_options(options), m_map(lines),
      m_places(host, lines), m_rejects(rejects), m_report(report)
{}

// Behind its last record the component takes lines of dividers alone for one more, as long as it
// hasn't counted the file to its end.
bool ErrorReporter::IsBehindLastLine(const BadLine& bad)
{
    const ULONGLONG nPlace = m_places.PlaceOf(bad.nLine, m_nBatchStart);
    return m_map.NumberOf(nPlace) == 0 && m_map.FaultText().empty();
}

bool ErrorReporter::Report(const BadLine& bad)
{
    if (IsBehindLastLine(bad))
        return true;
    ++m_nReported;
    const BadLineRecord record = RecordOf(bad);
    const std::string place =
        record.nField == 0 ? std::string() : fmt::format("field {}: ", record.nField);
    fmt::format_to(std::back_inserter(m_sLines), "{}:{}: {}{}\n", m_console.Visible(m_sFile),
                   record.nLine, place, m_console.Visible(OneLine(record.sMessage)));
    if (m_rejects)
        AppendReject(record);
    if (m_report)
        m_report->Add(record);
    m_bStopped = HasTooMany() || !Decide({record.nLine, bad.nField, bad.sMessage}, record.sText);
    return !m_bStopped;
}

// The text is read only where somebody wants it.
BadLineRecord ErrorReporter::RecordOf(const BadLine& bad)
{
    const ULONGLONG nPlace = m_places.PlaceOf(bad.nLine, m_nBatchStart);
    m_batch.push_back(nPlace);
    BadLineRecord record{bad.nLine, 0, {}, bad.sMessage, {}};
    if (m_options.numbers == LineNumbers::File)
        record.nLine = m_map.NumberOf(nPlace);
    if (bad.nField != kWholeRecord) {
        record.nField = bad.nField;
        record.sColumn = m_host.ColumnName(static_cast<ULONG>(bad.nField - 1));
    }
    if (LineSource* pSource = m_host.Source(); pSource && record.nField != 0)
        NameUsersCell(*pSource, m_map.NumberOf(nPlace), record);
    if (m_rejects || m_report || m_options.action == OnBadLine::Ask)
        record.sText = m_map.UserBytesOf(nPlace);
    return record;
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
        m_console.Print(fmt::format("  {}\n{}", m_console.Visible(text), kQuestion));
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

void ErrorReporter::AppendReject(const BadLineRecord& bad)
{
    AppendCsvField(m_sRejects, m_sFile);
    fmt::format_to(std::back_inserter(m_sRejects), ",{},{},", bad.nLine,
                   bad.nField ? std::to_string(bad.nField) : "");
    AppendCsvField(m_sRejects, bad.sColumn);
    m_sRejects += ',';
    AppendCsvField(m_sRejects, bad.sText);
    m_sRejects += ',';
    AppendCsvField(m_sRejects, bad.sMessage);
    m_sRejects += '\n';
}

void ErrorReporter::EndBatch(ULONGLONG nLines)
{
    m_nLastBatchStart = std::exchange(m_nBatchStart, m_nBatchStart + nLines);
    m_lastBatch = std::exchange(m_batch, {});
    Flush();
}

void ErrorReporter::Flush()
{
    if (!m_sLines.empty() && m_before)
        m_before();
    if (!m_sLines.empty())
        m_console.Print(m_sLines);
    m_sLines.clear();
    if (m_rejects)
        m_rejects->Write(m_sRejects);
    m_sRejects.clear();
}

} // namespace tabulex
