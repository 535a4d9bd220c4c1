// A sink hears of rows only, and each batch but the last of a run has the same number of lines.
// So the lines that a run has read are known, and those that it reported as bad; the rest was left
// out without a word, for its moment or its symbol. Where a run ended by itself the line is looked
// for in the last batch: the first one whose moment is behind the range. What was left out before
// it has a moment ahead of the range, or another symbol, which is asked of the lines themselves.

#include "tools/tabulex/account/Account.h"

#include <algorithm>

#include <fmt/format.h>

#include "tools/tabulex/host/Properties.h"
#include "tools/tabulex/host/RecordReader.h"
#include "tools/tabulex/text/Formats.h"

namespace tabulex {

namespace {

constexpr const char* kReadOn =
    "give --whole-file to read on, or --column N=Symbol if the file has several series";

class Accountant
{
public:
    Accountant(const Host& host, const Settings& settings, const RunFacts& facts, LineMap& lines,
               Warnings& warnings)
        : m_host(host), m_settings(settings), m_facts(facts), m_lines(lines), m_warnings(warnings),
          m_dtStart(GetDate(host.Data(), &IDataParser::get_StartDateTime)),
          m_dtEnd(GetDate(host.Data(), &IDataParser::get_EndDateTime)),
          m_bInverted(GetFlag(host.Data(), &IDataParser::get_InvertedDirection))
    {}

    Account Make();

private:
    void CountLines();
    void CountRecords();
    void JudgeRest(ULONGLONG nStart, ULONGLONG nEnd, ULONGLONG nLeftOut, ULONGLONG nUnread);
    std::optional<ULONGLONG> FindStop(ULONGLONG nEnd) const;
    struct Missed // rows of the range that was asked for
    {
        ULONGLONG nRows = 0;
        ULONGLONG nFirst = 0; // position
    };
    Missed FindMissed(ULONGLONG nStop) const;
    bool IsMissed(const RecordReader& reader) const;
    void WarnOfMissed(const Missed& missed, ULONGLONG nStop);
    void CountBehind(ULONGLONG nBehind, std::optional<ULONGLONG> nStop);
    void JudgeLeftOut(ULONGLONG nStart, ULONGLONG nEnd, ULONGLONG nLeftOut);
    void CountEarlier(ULONGLONG nEarlier);
    void CountSilent(ULONGLONG nSilent);
    bool IsOfOtherSymbol(const RecordReader& reader) const;
    ULONGLONG PlaceAt(ULONGLONG nPosition) const;
    void WarnOfLines();

    const Host& m_host;
    const Settings& m_settings;
    const RunFacts& m_facts;
    LineMap& m_lines;
    Warnings& m_warnings;
    DATE m_dtStart, m_dtEnd;
    bool m_bInverted;
    ULONGLONG m_nFirst = 0; // content lines before the data
    ULONGLONG m_nRecords = 0;
    Account m_account;
};

// ---- lines that aren't records

void Accountant::CountLines()
{
    const LineTally& tally = m_lines.Tally();
    const ULONGLONG nFound = Get(m_host.Data(), &IDataParser::get_HeaderOffset);
    const ULONGLONG nAsked = m_settings.nLinesToSkip.value_or(0);
    // Where nothing was run, no lines were skipped but those that were asked for.
    const ULONGLONG nSkipped = m_facts.bRun ? nFound : nAsked;
    const bool bHeader = GetFlag(m_host.Data(), &IDataParser::get_HasHeader) && nFound == nSkipped;
    m_account.nLines = m_lines.Lines();
    m_account.nBlank = m_account.nLines - tally.nContent - tally.nJoined - tally.nLost;
    m_account.nSkipped = std::min(nSkipped, tally.nContent);
    m_account.nHeader = bHeader && tally.nContent > nSkipped ? 1 : 0;
    m_nFirst = m_account.nSkipped + m_account.nHeader;
    m_nRecords = tally.nContent - m_nFirst;
    m_account.nBad = tally.nJoined;
    m_account.nUnread = tally.nLost;
}

void Accountant::WarnOfLines()
{
    const LineTally& tally = m_lines.Tally();
    if (tally.nLost)
        m_warnings.Add("line-lost",
                       fmt::format("{} of data {} not read, since the line before holds dividers "
                                   "alone; the first is line {}. Remove such lines",
                                   Counted(tally.nLost, "line"), tally.nLost == 1 ? "was" : "were",
                                   tally.nFirstLost),
                       tally.nFirstLost);
    if (tally.nJoined)
        m_warnings.Add("line-joined",
                       fmt::format("line {} has a single character and is read as one with the "
                                   "next; there {} {} of this kind. Remove such lines",
                                   tally.nFirstJoined, tally.nJoined == 1 ? "is" : "are",
                                   Counted(tally.nJoined, "line")),
                       tally.nFirstJoined);
    if (tally.nLong)
        m_warnings.Add(
            "line-long",
            fmt::format("{} longer than {} bytes, of which no more are read; the first "
                        "is line {}",
                        tally.nLong == 1 ? "1 line is" : fmt::format("{} lines are", tally.nLong),
                        kMostLineBytes, tally.nFirstLong),
            tally.nFirstLong);
    if (tally.nZero)
        m_warnings.Add("zero-bytes",
                       fmt::format("{} {} zero bytes, as a file may have after a crash; the first "
                                   "is line {}. They aren't read, so that what stands on both "
                                   "sides of them becomes one; get the file anew, or remove such "
                                   "lines",
                                   Counted(tally.nZero, "line"), tally.nZero == 1 ? "has" : "have",
                                   tally.nFirstZero),
                       tally.nFirstZero);
}

// Among the lines with content, from 0.
ULONGLONG Accountant::PlaceAt(ULONGLONG nPosition) const
{
    return m_nFirst + (m_bInverted ? m_nRecords - nPosition - 1 : nPosition);
}

// ---- records

Account Accountant::Make()
{
    CountLines();
    m_account.nDelivered = m_facts.nDelivered;
    m_account.nBad += m_facts.nBad;
    CountRecords();
    WarnOfLines();
    return m_account;
}

void Accountant::CountRecords()
{
    const auto& portion = m_settings.portion;
    const ULONGLONG nStart = portion ? std::min(portion->nStart, m_nRecords) : 0;
    const ULONGLONG nCount = portion ? std::min(portion->nCount, m_nRecords - nStart) : m_nRecords;
    const ULONGLONG nRead = std::min(m_facts.nRead, nCount);
    const ULONGLONG nKnown =
        std::min(nRead, m_facts.nDelivered + m_facts.nBad + m_facts.nBehindRange);
    m_account.nOutside = m_nRecords - nCount + m_facts.nBehindRange;
    if (!m_facts.bCommitted)
        m_account.nUnread += nCount - nKnown;
    else if (nKnown < nCount)
        JudgeRest(nStart, nStart + nRead, nRead - nKnown, nCount - nRead);
}

// nLeftOut lines ahead of nEnd were read and left out, and nUnread behind it weren't read.
void Accountant::JudgeRest(ULONGLONG nStart, ULONGLONG nEnd, ULONGLONG nLeftOut, ULONGLONG nUnread)
{
    const auto nStop = FindStop(nEnd);
    const ULONGLONG nOfBatch = nStop ? std::min(nLeftOut, nEnd - *nStop) : 0;
    if (nLeftOut > nOfBatch)
        JudgeLeftOut(nStart, nStop.value_or(nEnd), nLeftOut - nOfBatch);
    if (nUnread + nOfBatch > 0)
        CountBehind(nUnread + nOfBatch, nStop);
}

// The line that ended the run: its moment is behind the range.
std::optional<ULONGLONG> Accountant::FindStop(ULONGLONG nEnd) const
{
    RecordReader reader(m_host);
    for (ULONGLONG n = m_facts.nLastBatch; n < nEnd && reader.Read(n); ++n) {
        const auto moment = reader.Moment();
        const bool bBad =
            std::ranges::find(m_facts.badInLastBatch, PlaceAt(n)) != m_facts.badInLastBatch.end();
        if (moment && *moment > m_dtEnd && !bBad && !IsOfOtherSymbol(reader))
            return n;
    }
    return std::nullopt;
}

void Accountant::CountBehind(ULONGLONG nBehind, std::optional<ULONGLONG> nStop)
{
    if (m_settings.dtTo) {
        const Missed missed = nStop ? FindMissed(*nStop) : Missed{};
        m_account.nOutside += nBehind - std::min(nBehind, missed.nRows);
        m_account.nUnread += std::min(nBehind, missed.nRows);
        WarnOfMissed(missed, nStop.value_or(0));
        return;
    }
    m_account.nUnread += nBehind;
    if (!nStop)
        return; // its reader or somebody else ended the run
    const ULONGLONG nLine = m_lines.NumberOf(PlaceAt(*nStop));
    m_warnings.Add("unread",
                   fmt::format("{} from line {} on not read: that line's moment is behind {}, the "
                               "last one that the first and the last line give; {}",
                               Counted(nBehind, "row"), nLine, DateTimeText(m_dtEnd, ' '), kReadOn),
                   nLine);
}

// A file in order has nothing of the range behind the line that ended the run. One that isn't shows
// by a sample, in which moments go back or lie in the range, and then all of its lines are asked.
Accountant::Missed Accountant::FindMissed(ULONGLONG nStop) const
{
    constexpr ULONGLONG kSample = 64;
    RecordReader reader(m_host);
    const ULONGLONG nStep = std::max<ULONGLONG>((m_nRecords - nStop) / kSample, 1);
    DATE dtBefore = 0;
    bool bInOrder = true;
    for (ULONGLONG n = nStop; bInOrder && n < m_nRecords && reader.Read(n); n += nStep) {
        const DATE dt = reader.Moment().value_or(dtBefore);
        bInOrder = dt >= dtBefore && (n == nStop || !IsMissed(reader));
        dtBefore = dt;
    }
    Missed missed;
    for (ULONGLONG n = nStop + 1; !bInOrder && n < m_nRecords && reader.Read(n); ++n)
        if (IsMissed(reader) && ++missed.nRows == 1)
            missed.nFirst = n;
    return missed;
}

bool Accountant::IsMissed(const RecordReader& reader) const
{
    const auto moment = reader.Moment();
    return moment && *moment >= m_dtStart && *moment <= m_dtEnd && !IsOfOtherSymbol(reader);
}

void Accountant::WarnOfMissed(const Missed& missed, ULONGLONG nStop)
{
    if (missed.nRows == 0)
        return;
    const ULONGLONG nLine = m_lines.NumberOf(PlaceAt(missed.nFirst));
    m_warnings.Add("unread-in-range",
                   fmt::format("{} of the range that was asked for not read, the first in line {}: "
                               "the run ended at line {}, whose moment is behind the range; give "
                               "--whole-file too",
                               Counted(missed.nRows, "row"), nLine,
                               m_lines.NumberOf(PlaceAt(nStop))),
                   nLine);
}

// By its moment, ahead of the range.
void Accountant::CountEarlier(ULONGLONG nEarlier)
{
    if (nEarlier == 0)
        return;
    if (m_settings.dtFrom) {
        m_account.nOutside += nEarlier;
        return;
    }
    m_account.nUnread += nEarlier;
    m_warnings.Add("unread-earlier",
                   fmt::format("{} left out: earlier than {}, the first moment that the first and "
                               "the last line give; {}",
                               Counted(nEarlier, "row"), DateTimeText(m_dtStart, ' '), kReadOn));
}

// Where nothing was asked for, only its moment leaves a line out.
void Accountant::JudgeLeftOut(ULONGLONG nStart, ULONGLONG nEnd, ULONGLONG nLeftOut)
{
    if (!m_settings.sSymbol && !m_settings.portion)
        return CountEarlier(nLeftOut);
    RecordReader reader(m_host);
    ULONGLONG nOther = 0, nEarlier = 0;
    for (ULONGLONG n = nStart; n < nEnd && reader.Read(n); ++n) {
        const auto moment = reader.Moment();
        if (moment && IsOfOtherSymbol(reader))
            ++nOther;
        else if (moment && *moment < m_dtStart)
            ++nEarlier;
    }
    m_account.nOtherSymbol = std::min(nOther, nLeftOut);
    nEarlier = std::min(nEarlier, nLeftOut - m_account.nOtherSymbol);
    CountEarlier(nEarlier);
    CountSilent(nLeftOut - m_account.nOtherSymbol - nEarlier);
}

bool Accountant::IsOfOtherSymbol(const RecordReader& reader) const
{
    return m_settings.sSymbol && reader.Symbol() != *m_settings.sSymbol;
}

// Bad lines that the component doesn't report, as it doesn't in a portion.
void Accountant::CountSilent(ULONGLONG nSilent)
{
    m_account.nBad += nSilent;
    if (nSilent > 0)
        m_warnings.Add("bad-unreported",
                       fmt::format("{} left out as bad; convert without --portion to see each "
                                   "with its cause",
                                   Counted(nSilent, "line")));
}

} // namespace

std::string Account::Text(bool bAll) const
{
    const struct
    {
        const char* pszName;
        ULONGLONG n;
        bool bAlways;
    } rows[] = {{"lines", nLines, true},         {"blank", nBlank, false},
                {"header", nHeader, false},      {"skipped", nSkipped, false},
                {"delivered", nDelivered, true}, {"bad", nBad, false},
                {"outside", nOutside, false},    {"other-symbol", nOtherSymbol, false},
                {"unread", nUnread, false}};
    std::string text;
    for (const auto& row : rows)
        if (row.bAlways || bAll || row.n)
            text += fmt::format("{}{}={}", text.empty() ? "" : " ", row.pszName, row.n);
    return text;
}

bool Account::AddsUp() const
{
    return nLines ==
           nBlank + nHeader + nSkipped + nDelivered + nBad + nOutside + nOtherSymbol + nUnread;
}

Account MakeAccount(const Host& host, const Settings& settings, const RunFacts& facts,
                    LineMap& lines, Warnings& warnings)
{
    return Accountant(host, settings, facts, lines, warnings).Make();
}

} // namespace tabulex
