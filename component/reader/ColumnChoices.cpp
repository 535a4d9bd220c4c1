// A type without a template finds one: the first of its type by which both the first and the last
// record can be read. Two records far apart show which is the day and which the month more often
// than two neighbours do.

#include <fmt/format.h>

#include "component/reader/OpenedFile.h"
#include "component/reader/ReadFailure.h"
#include "interfaces/FieldsAndResolutions.h"
#include "platform/values.h"
#include "src/values/LockedArray.h"

namespace Hesperon::reader {

using namespace IQRL_TabulexConverter;
using tabulex::detail::Choices;
using tabulex::detail::ColumnChoice;

namespace {

class ColumnChoosing
{
public:
    ColumnChoosing(IDataParser& data, IRecordParser& records, const ColumnChoice& choice)
        : m_data(data), m_records(records), m_choice(choice)
    {}

    void Apply();

private:
    [[noreturn]] void Refuse(std::string_view why) const
    {
        throw ReadFailure{fmt::format("column {} {}", m_choice.column, why)};
    }
    bool IsDated() const { return m_choice.field == TypeDate || m_choice.field == TypeTime; }
    std::string Template() const
    {
        Bstr text;
        m_records.GetFieldTemplate(text.put(), m_choice.column);
        return ToUtf8(text.view());
    }
    void SetTemplate(string_view_t sTemplate);
    void FindTemplate();
    bool Reads(HRESULT hrRecord, const Bstr& record);
    bool ReadsFirstAndLast();

    IDataParser& m_data;
    IRecordParser& m_records;
    const ColumnChoice& m_choice;
};

// Setting a type empties the template, so the one from before is set again.
void ColumnChoosing::Apply()
{
    ULONG nCount = 0;
    m_records.get_FieldCount(&nCount);
    if (m_choice.column >= nCount)
        Refuse(fmt::format("isn't there: the file has {} columns, and the first is 0", nCount));
    if (m_choice.field >= LONG(TYPES_COUNT))
        Refuse("is given an unknown field");
    std::string sTemplate(m_choice.pattern.data, m_choice.pattern.size);
    if (!sTemplate.empty() && !IsDated())
        Refuse("is given a pattern, which only dates and times have");
    LONG nType = -1;
    m_records.GetFieldType(m_choice.column, &nType);
    if (sTemplate.empty() && IsDated() && nType == m_choice.field)
        sTemplate = Template();
    if (FAILED(m_records.SetFieldType(m_choice.column, m_choice.field)))
        Refuse("can't be of this field");
    if (!IsDated())
        return;
    if (sTemplate.empty())
        FindTemplate();
    else
        SetTemplate(FromUtf8(sTemplate));
}

void ColumnChoosing::SetTemplate(string_view_t sTemplate)
{
    if (FAILED(m_records.SetFieldTemplate(Bstr(sTemplate).get(), m_choice.column)))
        Refuse(fmt::format("can't be read by the pattern \"{}\"", ToUtf8(sTemplate)));
}

// The list ends with an entry under which users type one of their own.
void ColumnChoosing::FindTemplate()
{
    Variant names;
    const string_view_t sType = kFieldTypes[m_choice.field].sName;
    m_records.GetTemplates(names.put(), Bstr(sType).get());
    if (names.vt != (VT_ARRAY | VT_BSTR))
        Refuse("has no patterns");
    std::vector<string_t> candidates;
    {
        const specifics::LockedArray<BSTR> texts(names.parray);
        for (const BSTR text : texts.Elements())
            candidates.emplace_back(TextOf(text));
    }
    for (std::size_t i = 0; i + 1 < candidates.size(); ++i) {
        SetTemplate(candidates[i]);
        if (ReadsFirstAndLast())
            return;
    }
    Refuse(fmt::format("is read by no known pattern of {}; give one", ToUtf8(sType)));
}

bool ColumnChoosing::Reads(HRESULT hrRecord, const Bstr& record)
{
    Variant value;
    return SUCCEEDED(hrRecord) && SUCCEEDED(m_records.Parse(record.get())) &&
           m_records.GetFieldValue(value.put(), m_choice.column) == S_OK;
}

bool ColumnChoosing::ReadsFirstAndLast()
{
    Bstr first, last;
    m_data.put_Position(0);
    return Reads(m_data.get_CurrentRecord(first.put()), first) &&
           Reads(m_data.get_LastRecord(last.put()), last);
}

} // namespace

void ApplyColumns(IDataParser& data, IRecordParser& records, const Choices& choices)
{
    for (std::size_t i = 0; i < choices.column_count; ++i)
        ColumnChoosing(data, records, choices.columns[i]).Apply();
}

} // namespace Hesperon::reader
