// Helpers for tests of layouts: columns, values and lists in plain text, and a record
// parser joined to a file in memory.
#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include "platform/values.h"
#include "src/parsing/ParserState.h"
#include "src/parsing/RecordParser.h"
#include "tests/parsing/FieldText.h"
#include "tests/parsing/MemoryFile.h"
#include "tests/support/Text.h"

// "Date *m/*d/*y, Open, -": the columns' types, with the templates of Date and Time,
// and "-" for an unassigned column.
std::string ShownColumns(const std::vector<Hesperon::specifics::CDataField>& fields);
std::string ShownColumns(IQRL_TabulexConverter::IRecordParser& parser);

// A date, a time of day or both; digits; a text in quotes; else the kind's number.
std::string ShownVariant(const VARIANT& value);
// The texts of a VT_ARRAY|VT_BSTR, as "a, b"; "no list" for another kind.
std::string ShownList(const VARIANT& list);

// Columns of these types without templates; kNoType for an unassigned one.
std::vector<Hesperon::specifics::CDataField> ColumnsOf(std::initializer_list<unsigned> types);

struct OfferedResolution
{
    LONG nId;
    string_t sName;
};

// Ids 1 to 7 without sizes.
std::vector<OfferedResolution> AllResolutions();

// A text that `owner` keeps, as an argument.
inline BSTR Text(Bstr& owner, string_view_t sText)
{
    owner = Bstr(sText);
    return owner.get();
}

class ParsedFile
{
public:
    explicit ParsedFile(std::vector<string_t> lines);
    ~ParsedFile();
    ParsedFile(const ParsedFile&) = delete;
    ParsedFile& operator=(const ParsedFile&) = delete;

    IQRL_TabulexConverter::IRecordParser* operator->() const { return m_parser.get(); }
    IQRL_TabulexConverter::IRecordParser* Parser() const { return m_parser.get(); }
    Hesperon::specifics::CRecordParser* Object() const { return m_parser.get(); }
    MemoryFile& File() const { return *m_file.get(); }

    HRESULT Offer(const std::vector<OfferedResolution>& resolutions) const;
    // Finds the layout anew from the first line.
    HRESULT Load() const;
    HRESULT Parse(string_view_t sRecord) const;

    std::string Columns() const { return ShownColumns(*m_parser.get()); }
    // Value of a field as ShownVariant, "not " in front of a text that didn't parse.
    std::string Value(ULONG nField) const;
    LONG Resolution() const;
    LONG Size() const;

private:
    com_ptr<MemoryFile> m_file;
    com_ptr<Hesperon::specifics::CRecordParser> m_parser;
};
