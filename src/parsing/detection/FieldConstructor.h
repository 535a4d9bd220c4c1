// CFieldConstructor makes the columns of a file from its first records: the dividers,
// whether there is a header line, and the type and template of each column. It reads the
// file through the data parser, so that the file itself refutes wrong choices: a template
// must survive the first ten records and the last one.
#pragma once

#include <optional>

#include "src/parsing/ParserState.h"
#include "src/parsing/detection/DetectionReport.h"
#include "src/parsing/detection/FieldGuess.h"
#include "src/parsing/detection/RecordSource.h"

namespace Hesperon::specifics {

// Whether the header is looked for, or is the one that was found before.
enum class HeaderSearch
{
    Anew,
    Keep,
};

class CFieldConstructor
{
public:
    CFieldConstructor(ParserState& state, DetectionReport& report)
        : m_state(state), m_report(report), m_source(state.m_pDataParser)
    {}

    // Settles the dividers by this record unless they are.
    void FindDivider(string_view_t sRecord);

    // Builds the columns anew. sRecord is normalised; it is the first of the file, and
    // counts only while header lines are looked for automatically: else the record at
    // position 0 is read. E_INVALIDARG for a record that isn't a line of text; a failure
    // of the data parser is handed on. Both leave no columns.
    HRESULT ProcessRecord(string_view_t sRecord, HeaderSearch header);

private:
    HRESULT ChooseRecord(string_t& sRecord, HeaderSearch header);
    bool FindHeader(string_view_t sRecord);
    void BuildFromData(string_view_t sRecord);
    void BuildFromHeader(string_view_t sRecord, HeaderSearch header);
    string_t SkipHeaderLines();

    bool TakePredefined();
    void AddDataColumn(string_view_t sField);
    bool SearchFrom(unsigned& uiType, string_view_t sField);
    void AddHeaderColumn(string_view_t sCell, string_view_t sDataRecord);
    unsigned GuessFromWord(string_view_t sCell, TypeSet& tried) const;
    bool ChooseTemplate(unsigned uiType, string_view_t sField);
    TemplateGuess TemplateForHeader(unsigned uiType, string_view_t sField,
                                    const std::set<int>& excluded) const;

    CDataField& Last() { return m_state.m_fields.back(); }
    std::size_t LastIndex() const { return m_state.m_fields.size() - 1; }
    void FinishColumn();
    bool FileAccepts();
    std::optional<ULONGLONG> RefutingRecord(std::size_t nColumn);
    bool RecordAccepts(CDataField& probe, std::size_t nColumn, string_view_t sRecord) const;
    std::size_t TemplateCount(unsigned uiType) const;

    ParserState& m_state;
    DetectionReport& m_report;
    RecordSource m_source;
    TypeTable m_admitted; // the types that the resolution admits
    TypeSet m_usedTypes;  // given to a column in this pass
};

} // namespace Hesperon::specifics
