// DetectionReport: what the detection of a layout decided and why, a note a decision, in
// the order in which they were made.
//
//   report.Add([&] { return TemplateRefuted{nColumn, uiType, sTemplate, nRecord}; });
//
// Off unless someone asks for it; a note is then not even made, and a decision costs one
// test of a flag. It holds the notes of the last run, at most kMaxNotes of them. Not
// synchronised: the record parser's lock guards it.
#pragma once

#include <vector>

#include "src/parsing/detection/DetectionNotes.h"

namespace Hesperon::specifics {

class DetectionReport
{
public:
    static constexpr std::size_t kMaxNotes = 1000;

    bool IsKept() const { return m_bKept; }
    // Off also forgets the notes.
    void Keep(bool bKeep)
    {
        m_bKept = bKeep;
        m_notes.clear();
    }

    const std::vector<DetectionNote>& Notes() const { return m_notes; }
    // Notes beyond kMaxNotes are counted and dropped.
    std::size_t DroppedCount() const { return m_nDropped; }

    // make() gives one of the notes above; it isn't called while the report is off.
    template <class Make>
    void Add(Make make)
    {
        if (!m_bKept)
            return;
        if (m_notes.size() == kMaxNotes)
            ++m_nDropped;
        else
            m_notes.emplace_back(make());
    }

    // A run lives as long as its scope. One that begins within another, as a sample or
    // the data parser may cause it, adds to the notes of the other.
    class Run
    {
    public:
        Run(DetectionReport& report, DetectionCause cause) : m_report(report)
        {
            if (m_report.m_nRuns++ == 0) {
                m_report.m_notes.clear();
                m_report.m_nDropped = 0;
            }
            m_report.Add([=] { return Started{cause}; });
        }
        ~Run() { --m_report.m_nRuns; }
        Run(const Run&) = delete;
        Run& operator=(const Run&) = delete;

    private:
        DetectionReport& m_report;
    };

private:
    bool m_bKept = false;
    unsigned m_nRuns = 0; // that have begun and not ended
    std::size_t m_nDropped = 0;
    std::vector<DetectionNote> m_notes;
};

} // namespace Hesperon::specifics
