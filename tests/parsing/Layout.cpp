#include "tests/parsing/Layout.h"

#include <chrono>
#include <cmath>

#include <fmt/format.h>
#include <gtest/gtest.h>

using namespace Hesperon::specifics;
using IQRL_TabulexConverter::IRecordParser;

namespace {

constexpr long kMillisecondsPerDay = 86'400'000;

std::string ShownColumn(unsigned uiType, string_view_t sTemplate)
{
    if (uiType == kNoType)
        return "-";
    const std::string sName = Shown(TypeName(uiType));
    const bool bTemplate = uiType == TypeDate || uiType == TypeTime;
    return bTemplate ? sName + " " + Shown(sTemplate) : sName;
}

void Append(std::string& sList, const std::string& sItem)
{
    sList += (sList.empty() ? "" : ", ") + sItem;
}

std::string ShownDay(LONGLONG nDay)
{
    using namespace std::chrono;
    const year_month_day day(sys_days(1899y / December / 30) + days(nDay));
    return fmt::format("{:04}-{:02}-{:02}", static_cast<int>(day.year()),
                       static_cast<unsigned>(day.month()), static_cast<unsigned>(day.day()));
}

std::string ShownTime(LONGLONG nMilliseconds)
{
    const LONGLONG nSeconds = nMilliseconds / 1000;
    std::string sTime =
        fmt::format("{:02}:{:02}:{:02}", nSeconds / 3600, nSeconds / 60 % 60, nSeconds % 60);
    if (nMilliseconds % 1000)
        sTime += fmt::format(".{:03}", nMilliseconds % 1000);
    return sTime;
}

std::string ShownDate(DATE date)
{
    const LONGLONG n = std::llround(date * kMillisecondsPerDay);
    const LONGLONG nTime = n % kMillisecondsPerDay;
    if (n / kMillisecondsPerDay == 0)
        return ShownTime(nTime);
    const std::string sDay = ShownDay(n / kMillisecondsPerDay);
    return nTime ? sDay + " " + ShownTime(nTime) : sDay;
}

Variant ListOf(const std::vector<OfferedResolution>& resolutions, bool bNames)
{
    const VARTYPE vt = bNames ? VT_BSTR : VT_I4;
    SafeArray array(SafeArrayCreateVector(vt, 0, static_cast<ULONG>(resolutions.size())));
    for (LONG i = 0; i < static_cast<LONG>(resolutions.size()); ++i) {
        LONG nId = resolutions[i].nId;
        const Bstr name(resolutions[i].sName);
        void* pValue = bNames ? static_cast<void*>(name.get()) : &nId;
        EXPECT_EQ(S_OK, SafeArrayPutElement(array.get(), &i, pValue));
    }
    return Variant::FromArray(array.detach(), vt);
}

} // namespace

std::string ShownColumns(const std::vector<CDataField>& fields)
{
    std::string s;
    for (const CDataField& field : fields)
        Append(s, ShownColumn(field.GetType(), field.GetTemplate()));
    return s;
}

std::string ShownColumns(IRecordParser& parser)
{
    ULONG nCount = 0;
    EXPECT_EQ(S_OK, parser.get_FieldCount(&nCount));
    std::string s;
    for (ULONG i = 0; i < nCount; ++i) {
        LONG nType = 0;
        Bstr sTemplate;
        EXPECT_EQ(S_OK, parser.GetFieldType(i, &nType));
        EXPECT_EQ(S_OK, parser.GetFieldTemplate(sTemplate.put(), i));
        Append(s, ShownColumn(static_cast<unsigned>(nType), sTemplate.view()));
    }
    return s;
}

std::string ShownVariant(const VARIANT& value)
{
    switch (value.vt) {
    case VT_R8:
        return fmt::format("{}", value.dblVal);
    case VT_I8:
        return fmt::format("{}", value.llVal);
    case VT_DATE:
        return ShownDate(value.date);
    case VT_BSTR:
        return "\"" + Shown(TextOf(value.bstrVal)) + "\"";
    default:
        return fmt::format("kind {}", value.vt);
    }
}

std::string ShownList(const VARIANT& list)
{
    if (list.vt != (VT_ARRAY | VT_BSTR))
        return "no list";
    LONG nFirst = 0;
    LONG nLast = -1;
    EXPECT_EQ(S_OK, SafeArrayGetLBound(list.parray, 1, &nFirst));
    EXPECT_EQ(S_OK, SafeArrayGetUBound(list.parray, 1, &nLast));
    EXPECT_EQ(0, nFirst);
    std::string s;
    for (LONG i = nFirst; i <= nLast; ++i) {
        Bstr text;
        EXPECT_EQ(S_OK, SafeArrayGetElement(list.parray, &i, text.put()));
        Append(s, Shown(text.view()));
    }
    return s;
}

std::vector<CDataField> ColumnsOf(std::initializer_list<unsigned> types)
{
    std::vector<CDataField> fields;
    for (unsigned uiType : types)
        fields.push_back(Column(uiType));
    return fields;
}

std::vector<OfferedResolution> AllResolutions()
{
    std::vector<OfferedResolution> all;
    for (LONG nId = ResolutionTick; nId < RESOLUTIONS_COUNT; ++nId)
        all.push_back({nId, OLESTR("any")});
    return all;
}

// ---- ParsedFile ------------------------------------------------------------------

ParsedFile::ParsedFile(std::vector<string_t> lines) : m_file(MemoryFile::Of(std::move(lines)))
{
    EXPECT_EQ(S_OK, CreateObject(m_parser));
    EXPECT_EQ(S_OK, m_parser->put_DataParser(m_file.get()));
    m_file->m_pRecordParser = m_parser.get();
}

ParsedFile::~ParsedFile()
{
    m_file->m_pRecordParser = nullptr;
}

HRESULT ParsedFile::Offer(const std::vector<OfferedResolution>& resolutions) const
{
    return m_parser->SetResolutionTemplates(ListOf(resolutions, false), ListOf(resolutions, true));
}

HRESULT ParsedFile::Load() const
{
    EXPECT_EQ(S_OK, m_parser->Reset());
    return Parse(m_file->m_lines.at(0));
}

HRESULT ParsedFile::Parse(string_view_t sRecord) const
{
    return m_parser->Parse(Bstr(sRecord).get());
}

std::string ParsedFile::Value(ULONG nField) const
{
    Variant value;
    const HRESULT hr = m_parser->GetFieldValue(&value, nField);
    if (FAILED(hr))
        return fmt::format("{:#x}", static_cast<unsigned>(hr));
    return (hr == S_FALSE ? "not " : "") + ShownVariant(value);
}

LONG ParsedFile::Resolution() const
{
    LONG nResolution = -1;
    EXPECT_EQ(S_OK, m_parser->get_Resolution(&nResolution));
    return nResolution;
}

LONG ParsedFile::Size() const
{
    LONG nSize = -1;
    EXPECT_EQ(S_OK, m_parser->get_ResolutionSize(&nSize));
    return nSize;
}
