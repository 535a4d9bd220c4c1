// CFieldConstructor makes the columns of a file from its first records: whether
// there is a header line, and the type and template of each column. It reads the
// file through the data parser, so that the file itself refutes wrong choices: a
// template must survive the first ten records and the last one.
#pragma once

#include "src/parsing/ParserState.h"
#include "src/parsing/detection/FieldGuess.h"
#include "src/parsing/detection/RecordSource.h"

namespace Hesperon::specifics {

class CFieldConstructor
{
public:
    explicit CFieldConstructor(ParserState& state) : m_state(state), m_source(state.m_pDataParser)
    {}

    // Builds the columns anew, then refines their types. sRecord is normalised; with
    // automatic header lines it is the first of the file. bRebuild also looks for the
    // header again. flag other than 0 forbids taking the first column for a symbol.
    // E_INVALIDARG for a record that isn't a line of text; a failure of the data
    // parser is handed on.
    HRESULT ProcessRecord(string_view_t sRecord, bool bRebuild, int flag);

private:
    HRESULT ChooseRecord(string_t& sRecord, bool bRebuild);
    void BuildFromData(string_view_t sRecord);
    void BuildFromHeader(string_view_t sRecord, bool bRebuild);
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
    bool FileAccepts(std::size_t nColumn);
    bool RecordAccepts(CDataField& probe, std::size_t nColumn, string_view_t sRecord) const;
    void MarkUsed(unsigned uiType);
    std::size_t TemplateCount(unsigned uiType) const;

    ParserState& m_state;
    RecordSource m_source;
    TypeTable m_admitted; // the types that the resolution admits
    TypeSet m_usedTypes;  // given to a column in this pass
};

} // namespace Hesperon::specifics
