// Without a header each field of the first record becomes a column. A search begins with
// all types and gives the lowest free one with a template that takes the text; the file
// may refute that template, and the next one of the same type is tried, until the type has
// no more. Then the search goes on from the next type. Types are given away once a pass.
//
// With a header each cell becomes a column. Its word names a type, and the field of the
// first data record must take a template of that type, which the file may refute in the
// same way; then the word's next best type is tried.

#include "src/parsing/detection/FieldConstructor.h"

#include "src/parsing/RecordText.h"
#include "src/parsing/templates/TextTests.h"

namespace Hesperon::specifics {
namespace {

constexpr ULONGLONG kTestedRecords = 10;
constexpr int kMaxHeaderLines = 20;

// The type alone; empty for a column without one.
TypeSet SetOf(unsigned uiType)
{
    return uiType < TYPES_COUNT ? TypeSet().set(uiType) : TypeSet();
}

} // namespace

void CFieldConstructor::FindDivider(string_view_t sRecord)
{
    if (m_state.m_bDividerFound)
        return;
    m_state.m_bDividerFound = true;
    m_state.m_dividers = FindDividers(sRecord);
    m_report.Add([&] { return DividersFound{m_state.m_dividers.Mask(), string_t(sRecord)}; });
}

HRESULT CFieldConstructor::ProcessRecord(string_view_t sGiven, HeaderSearch header)
{
    m_usedTypes.reset();
    m_state.m_fields.clear();
    m_admitted = AdmittedTypes(m_state.m_types, m_state.m_nResolution);

    string_t sRecord(sGiven);
    if (const HRESULT hr = ChooseRecord(sRecord, header); FAILED(hr))
        return hr;
    if (!IsTextRecord(sRecord))
        return E_INVALIDARG;
    if (FindHeader(sRecord))
        BuildFromHeader(sRecord, header);
    else
        BuildFromData(sRecord);
    return S_OK;
}

HRESULT CFieldConstructor::ChooseRecord(string_t& sRecord, HeaderSearch header)
{
    if (header == HeaderSearch::Anew)
        m_state.m_strHeader.clear();
    if (m_state.m_bAutoHeader)
        return m_state.m_pDataParser ? m_state.m_pDataParser->put_HeaderOffset(0) : S_OK;
    if (!m_state.m_pDataParser)
        return E_UNEXPECTED;
    const HRESULT hr = m_state.m_pDataParser->put_Position(0);
    return FAILED(hr) ? hr : m_source.Read(sRecord);
}

// Whether the columns have names. A header that was found before stands.
bool CFieldConstructor::FindHeader(string_view_t sRecord)
{
    if (!m_state.m_strHeader.empty())
        return true;
    m_state.m_bHasHeader = IsHeaderRecord(sRecord, m_state.m_dividers);
    m_report.Add([&] { return HeaderSought{m_state.m_bHasHeader, string_t(sRecord)}; });
    return m_state.m_bHasHeader;
}

// ---- columns from a data line ---------------------------------------------------

void CFieldConstructor::BuildFromData(string_view_t sRecord)
{
    for (FieldWalk walk(sRecord, m_state.m_dividers); walk.NextFilled();)
        if (!TakePredefined())
            AddDataColumn(walk.Text());
}

bool CFieldConstructor::TakePredefined()
{
    const auto predefined = m_state.m_predefinedFields.find(m_state.m_fields.size());
    if (predefined == m_state.m_predefinedFields.end())
        return false;
    m_state.m_fields.push_back(predefined->second);
    m_usedTypes |= SetOf(Last().GetType());
    m_report.Add([this] {
        return ColumnKept{LastIndex(), Last().GetType(), string_t(Last().GetTemplate())};
    });
    return true;
}

void CFieldConstructor::AddDataColumn(string_view_t sField)
{
    m_state.m_fields.emplace_back();
    Last().SetTypeAndTemplate(kNoType, {});
    unsigned uiType = kNoType;
    while (!SearchFrom(uiType, sField))
        ++uiType;
    FinishColumn();
}

void CFieldConstructor::FinishColumn()
{
    m_usedTypes |= SetOf(Last().GetType());
    m_report.Add([this] {
        return ColumnFound{LastIndex(), Last().GetType(), string_t(Last().GetTemplate())};
    });
}

// One search from uiType upward, and through the templates of the type that it finds
// until the file accepts one. False: go on from the next type. A template that the
// file refuted as the last of its type stays.
bool CFieldConstructor::SearchFrom(unsigned& uiType, string_view_t sField)
{
    std::set<int> excluded;
    TemplateGuess guess = GuessTypeAndTemplate(uiType, sField, m_admitted, excluded, m_usedTypes);
    uiType = guess.uiType;
    while (true) {
        if (uiType == TypeSymbol && LastIndex() != 0)
            guess.sTemplate.clear();
        Last().SetTypeAndTemplate(uiType, guess.sTemplate);
        if (guess.IsEmpty() || uiType == TypeSymbol || FileAccepts())
            break;
        excluded.insert(guess.nIndex);
        if (excluded.size() >= TemplateCount(uiType))
            break;
        guess = GuessTemplate(uiType, sField, m_admitted, excluded);
    }
    return uiType == kNoType ||
           (!guess.IsEmpty() && m_admitted.contains(uiType) && !m_usedTypes[uiType]);
}

// ---- columns from a header line -------------------------------------------------

// Empty cells of a header count, since a cell finds its column in the data record by its place.
void CFieldConstructor::BuildFromHeader(string_view_t sRecord, HeaderSearch header)
{
    if (header == HeaderSearch::Anew) {
        if (m_state.m_pDataParser)
            m_state.m_pDataParser->put_HasHeader(VARIANT_TRUE);
        m_state.m_strHeader = sRecord;
    }
    const string_t sDataRecord = SkipHeaderLines();
    FindDivider(m_state.m_strHeader);
    const string_t sHeader = m_state.m_strHeader;
    for (FieldWalk walk(sHeader, m_state.m_dividers); walk.Next();)
        if (!TakePredefined())
            AddHeaderColumn(walk.Text(), sDataRecord);
}

// Moves the header offset to the last of a run of header lines, which names the
// columns, and gives the first data line.
string_t CFieldConstructor::SkipHeaderLines()
{
    string_t sLine;
    for (int nLines = 0; nLines < kMaxHeaderLines;) {
        sLine.clear();
        if (!m_source.Seek(0) || FAILED(m_source.Read(sLine)))
            break;
        if (!m_state.m_bAutoHeader || !IsHeaderRecord(sLine, m_state.m_dividers))
            break;
        m_state.m_pDataParser->put_HeaderOffset(static_cast<ULONG>(++nLines));
        FindDivider(sLine);
        m_state.m_strHeader = sLine;
        m_report.Add([&] { return HeaderSought{true, sLine}; });
    }
    return sLine;
}

// The word decides the type; the data record decides the template and has a veto,
// after which the next best type is tried. The last two types get no second try. A cell
// whose every type is refuted makes no column.
void CFieldConstructor::AddHeaderColumn(string_view_t sCell, string_view_t sDataRecord)
{
    const std::size_t nColumn = m_state.m_fields.size();
    const string_view_t sField =
        FieldAt(sDataRecord, m_state.m_dividers, nColumn).value_or(string_view_t());
    TypeSet tried;
    tried[TypeSymbol] = nColumn != 0;
    while (!tried.all()) {
        const unsigned uiType = GuessFromWord(sCell, tried);
        m_state.m_fields.emplace_back();
        if (ChooseTemplate(uiType, sField))
            return FinishColumn();
        if (uiType >= TypeTotalTicks) {
            Last().SetTypeAndTemplate(kNoType, {});
            return FinishColumn();
        }
        m_state.m_fields.pop_back();
        tried[uiType] = true;
    }
}

unsigned CFieldConstructor::GuessFromWord(string_view_t sCell, TypeSet& tried) const
{
    for (;;) {
        const WordGuess guess = GetTypeFromField(sCell, tried);
        m_report.Add([&] {
            return WordScored{m_state.m_fields.size(), string_t(sCell), guess.uiType, guess.fScore};
        });
        const unsigned uiType = guess.uiType;
        if (uiType == kNoType || (m_admitted.contains(uiType) && !m_usedTypes[uiType]))
            return uiType;
        tried[uiType] = true;
    }
}

bool CFieldConstructor::ChooseTemplate(unsigned uiType, string_view_t sField)
{
    std::set<int> excluded;
    do {
        const TemplateGuess guess = TemplateForHeader(uiType, sField, excluded);
        Last().SetTypeAndTemplate(uiType, guess.sTemplate);
        if (guess.IsEmpty()) {
            m_report.Add([&] { return TypeRefused{LastIndex(), uiType, string_t(sField)}; });
            return false;
        }
        if (uiType == TypeSymbol || FileAccepts())
            return true;
        excluded.insert(guess.nIndex);
    } while (excluded.size() < TemplateCount(uiType));
    return false;
}

TemplateGuess CFieldConstructor::TemplateForHeader(unsigned uiType, string_view_t sField,
                                                   const std::set<int>& excluded) const
{
    if (uiType == TypeDate || uiType == TypeTime)
        return GuessTemplate(uiType, sField, m_admitted, excluded);
    const bool bTakes = uiType == TypeSymbol || (IsPriceType(uiType) && IsFloatText(sField)) ||
                        (IsWholeType(uiType) && IsIntegerText(sField, true));
    if (!bTakes)
        return {};
    const string_view_t sTemplate = uiType == TypeSymbol  ? OLESTR("*")
                                    : IsPriceType(uiType) ? OLESTR("*i.*f")
                                                          : OLESTR("*i");
    return {uiType, string_t(sTemplate), 0};
}

// ---- tests against the file -----------------------------------------------------

// Whether no record of the file refutes the last column's template.
bool CFieldConstructor::FileAccepts()
{
    const std::optional<ULONGLONG> refuting = RefutingRecord(LastIndex());
    if (!refuting)
        return true;
    m_report.Add([&] {
        return TemplateRefuted{LastIndex(), Last().GetType(), string_t(Last().GetTemplate()),
                               *refuting};
    });
    return false;
}

// The file's last record isn't asked where one of the first can't be read.
std::optional<ULONGLONG> CFieldConstructor::RefutingRecord(std::size_t nColumn)
{
    CDataField probe = m_state.m_fields[nColumn];
    string_t sRecord;
    for (ULONGLONG i = 0; i < kTestedRecords; ++i) {
        if (!m_source.Seek(i) || FAILED(m_source.Read(sRecord)))
            return {};
        if (!RecordAccepts(probe, nColumn, sRecord))
            return i;
    }
    const bool bAccepted =
        FAILED(m_source.ReadLast(sRecord)) || RecordAccepts(probe, nColumn, sRecord);
    return bAccepted ? std::nullopt : std::optional(kLastRecord);
}

// The field is found with empty ones counted; a record with too few fields passes.
bool CFieldConstructor::RecordAccepts(CDataField& probe, std::size_t nColumn,
                                      string_view_t sRecord) const
{
    const auto sField = FieldAt(sRecord, m_state.m_dividers, nColumn);
    if (!sField)
        return true;
    probe.ParseField(*sField);
    return probe.IsValid();
}

std::size_t CFieldConstructor::TemplateCount(unsigned uiType) const
{
    const auto type = m_admitted.find(uiType);
    return type == m_admitted.end() ? 0 : type->second.Templates().size();
}

} // namespace Hesperon::specifics
