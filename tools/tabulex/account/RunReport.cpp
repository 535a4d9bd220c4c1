#include "tools/tabulex/account/RunReport.h"

#include <utility>

#include <fmt/format.h>

#include "platform/text/Utf8.h"
#include "tools/tabulex/output/JsonLinesWriter.h"
#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/system/FileBytes.h"
#include "tools/tabulex/text/Text.h"
#include "tools/tabulex/text/VisibleText.h"

namespace tabulex {

namespace {

constexpr std::size_t kPiece = std::size_t{64} * 1024; // bytes that are written and read at once

// Bytes that aren't UTF-8 become U+FFFD. What a terminal would act on is written by its number, as
// the report may go to one.
std::string Quoted(std::string_view bytes)
{
    std::string text;
    AppendJsonString(text, ToUtf8(FromUtf8(bytes)));
    std::string result;
    const string_t units = FromUtf8(text);
    for (string_view_t rest = units; !rest.empty();) {
        const string_view_t before = rest;
        const char32_t c = Utf8::TakeFront(rest);
        if (IsPrintable(c))
            Utf8::Append(result, c);
        else
            for (const OLECHAR unit : before.substr(0, before.size() - rest.size()))
                fmt::format_to(std::back_inserter(result), "\\u{:04x}", unsigned(unit));
    }
    return result;
}

std::string NumberOrNull(ULONGLONG n)
{
    return n ? std::to_string(n) : "null";
}

std::string AccountText(const Account& account)
{
    return fmt::format("{{\"lines\":{},\"blank\":{},\"header\":{},\"skipped\":{},\"delivered\":{},"
                       "\"bad\":{},\"outside\":{},\"other_symbol\":{},\"unread\":{}}}",
                       account.nLines, account.nBlank, account.nHeader, account.nSkipped,
                       account.nDelivered, account.nBad, account.nOutside, account.nOtherSymbol,
                       account.nUnread);
}

std::string WarningsText(const std::vector<Warning>& warnings)
{
    std::string text = "[";
    for (const Warning& warning : warnings)
        text += fmt::format("{}{{\"code\":{},\"line\":{},\"text\":{}}}", text.size() > 1 ? "," : "",
                            Quoted(warning.code), NumberOrNull(warning.nLine.value_or(0)),
                            Quoted(warning.sText));
    return text + "]";
}

} // namespace

RunReport::RunReport(std::string path) : m_sPath(std::move(path)) {}

RunReport::RunReport(Console& console) : m_pConsole(&console) {}

void RunReport::Begin(const std::string& file)
{
    if (m_pConsole) {
        m_spool.emplace();
    } else if (!m_bOpen) {
        m_bOpen = true;
        if (!m_file.Open(m_sPath))
            throw Fault{ExitStatus::FileFault, FaultText()};
    }
    m_bFirst = true;
    Write(fmt::format("{{\"file\":{},\"bad_lines\":[", Quoted(file)));
}

void RunReport::Add(const BadLineRecord& bad)
{
    Write(fmt::format("{}{{\"line\":{},\"field\":{},\"column\":{},\"message\":{},\"text\":{}}}",
                      m_bFirst ? "" : ",", bad.nLine,
                      NumberOrNull(static_cast<ULONGLONG>(bad.nField)),
                      bad.sColumn.empty() ? "null" : Quoted(bad.sColumn), Quoted(bad.sMessage),
                      Quoted(bad.sText)));
    m_bFirst = false;
}

void RunReport::End(const Account& account, const std::vector<Warning>& warnings,
                    std::string_view result, int nStatus, std::string_view error)
{
    Write(
        fmt::format("],\"warnings\":{},\"account\":{},\"result\":{},\"status\":{},\"error\":{}}}\n",
                    WarningsText(warnings), AccountText(account), Quoted(result), nStatus,
                    error.empty() ? "null" : Quoted(error)));
    if (!m_spool)
        return;
    Spool();
    FileBytes spool(m_spool->Path());
    std::string piece(kPiece, '\0');
    std::uint64_t nAt = 0;
    while (const std::size_t n = m_sFault.empty() ? spool.ReadAt(nAt, piece) : 0) {
        m_pConsole->Print(std::string_view(piece).substr(0, n));
        nAt += n;
    }
    m_spool.reset();
}

void RunReport::Write(std::string_view text)
{
    if (!m_spool) {
        m_file.Write(text);
        return;
    }
    m_pending += text;
    if (m_pending.size() >= kPiece)
        Spool();
}

// The component calls, which no exception may pass.
void RunReport::Spool()
try {
    m_spool->Write(std::exchange(m_pending, {}));
} catch (const Fault& fault) {
    m_sFault = fault.sMessage;
}

bool RunReport::Finish()
{
    if (m_bOpen)
        m_file.Commit();
    return FaultText().empty();
}

std::string RunReport::FaultText() const
{
    if (!m_sFault.empty())
        return "--json: " + m_sFault;
    const std::string reason = m_file.IsReaderGone() ? std::string() : m_file.FaultText();
    return reason.empty() ? reason : fmt::format("'{}' can't be written: {}", m_sPath, reason);
}

} // namespace tabulex
