// The choices build on each other: the code page and the dividers give the columns, these the
// dates, and these the resolution. After a choice that changes the layout the dates are read anew,
// as a host has to ask for. Only what a run is to deliver is left to the run.

#include "component/reader/OpenedFile.h"

#include <cmath>
#include <filesystem>
#include <limits>

#include <fmt/format.h>

#include "component/reader/ReadFailure.h"
#include "component/reader/SettingsSink.h"
#include "interfaces/ClassIds.h"
#include "interfaces/FieldsAndResolutions.h"
#include "interfaces/IReadState.h"
#include "interfaces/Module.h"
#include "platform/values.h"

namespace Hesperon::reader {

using namespace IQRL_TabulexConverter;
using tabulex::detail::Choices;
using tabulex::detail::kNotGiven;
using tabulex::detail::LayoutRow;

namespace {

constexpr double kMillisecondsPerDay = 86'400'000;
constexpr LONGLONG kDaysTo1970 = 25'569;

bool IsGiven(std::int64_t nValue)
{
    return nValue != kNotGiven;
}

tabulex::detail::Text TextOf(const std::string& text)
{
    return {text.data(), text.size()};
}

void RequireRegularFile(const std::string& path)
{
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (error)
        throw ReadFailure{error.message()};
    if (!std::filesystem::is_regular_file(status))
        throw ReadFailure{std::filesystem::is_directory(status) ? "is a folder"
                                                                : "is no regular file"};
}

} // namespace

LONGLONG MillisecondsOf(DATE date)
{
    return std::llround(date * kMillisecondsPerDay) -
           kDaysTo1970 * static_cast<LONGLONG>(kMillisecondsPerDay);
}

// ---- opening

OpenedFile::OpenedFile(std::string_view path, const Choices& choices)
{
    m_rules.sSymbol = FromUtf8({choices.symbol.data, choices.symbol.size});
    m_rules.nPricePower = PowerOf(choices.price_multiplier);
    m_rules.nVolumePower = PowerOf(choices.volume_multiplier);
    if (IsGiven(choices.from))
        m_rules.nFrom = choices.from;
    if (IsGiven(choices.to))
        m_rules.nTo = choices.to;
    Create();
    Open(path);
    Apply(choices);
    ReadColumns();
    ReadLayout();
    m_sFault = FindFault();
}

void OpenedFile::Create()
{
    struct Offer
    {
        LONG nHostId;
        const OLECHAR* pszName;
    };
    static constexpr Offer kOffers[] = {
        {HostResolutionTicks, OLESTR("Ticks")},          {HostResolutionTicks, OLESTR("Tick Bars")},
        {HostResolutionCountBars, OLESTR("Count Bars")}, {HostResolutionSeconds, OLESTR("Seconds")},
        {HostResolutionMinutes, OLESTR("Minutes")},      {HostResolutionDays, OLESTR("Days")},
        {HostResolutionWeeks, OLESTR("Weeks")},
    };
    com_ptr<IClassFactory> factory;
    com_ptr<IDispatch> data, records;
    Require(
        DllGetClassObject(CLSID_CqrlTabulexConvertor, iid_of<IClassFactory>, factory.put_void()),
        "creating the converter");
    Require(factory->CreateInstance(nullptr, iid_of<IqrlTabulexConvertor>, m_front.put_void()),
            "creating the converter");
    Require(m_front->get_DataParser(data.put()), "creating the converter");
    Require(query(data.get(), m_data), "creating the converter");
    Require(m_data->get_RecordParser(records.put()), "creating the converter");
    Require(query(records.get(), m_records), "creating the converter");
    for (const Offer& offer : kOffers)
        Require(m_front->AddResolutionTemplate(offer.nHostId, Bstr(offer.pszName).get()),
                "offering the resolutions");
}

void OpenedFile::Open(std::string_view path)
{
    RequireRegularFile(std::string(path));
    const HRESULT hr = m_front->put_FileName(Bstr(OwnNameOf(path)).get());
    if (hr == S_FALSE)
        throw ReadFailure{"can't be opened; may it be read?"};
    Require(hr, "opening the file");
    RequireWhole();
}

// ---- choices

void OpenedFile::Apply(const Choices& choices)
{
    if (IsGiven(choices.code_page))
        Require(m_data->put_Locale(static_cast<ULONG>(choices.code_page)), "the code page");
    ApplyLayout(choices);
    ApplyColumns(*m_data.get(), *m_records.get(), choices);
    ApplyResolution(choices);
    const bool bAnew = IsGiven(choices.dividers) || IsGiven(choices.header) ||
                       IsGiven(choices.lines_to_skip) || choices.column_count != 0;
    if (bAnew)
        Require(m_data->RefreshDateInfo(VARIANT_FALSE), "reading the dates");
}

void OpenedFile::ApplyLayout(const Choices& choices)
{
    if (IsGiven(choices.dividers) &&
        m_records->put_FieldDividers(static_cast<LONG>(choices.dividers)) != S_OK)
        throw ReadFailure{"these dividers give no columns"};
    if (!IsGiven(choices.header) && !IsGiven(choices.lines_to_skip))
        return;
    ULONG nOffset = 0;
    m_data->get_HeaderOffset(&nOffset);
    if (IsGiven(choices.lines_to_skip))
        nOffset = static_cast<ULONG>(choices.lines_to_skip);
    SkipLines(nOffset, !IsGiven(choices.dividers));
    if (!IsGiven(choices.header))
        return;
    VARIANT_BOOL bFound = VARIANT_FALSE;
    m_data->get_HasHeader(&bFound);
    if (choices.header != 0 && bFound == VARIANT_FALSE) {
        SkipLines(nOffset + 1, false);
        m_data->put_HeaderOffset(nOffset);
    }
    m_data->put_HasHeader(choices.header != 0 ? VARIANT_TRUE : VARIANT_FALSE);
}

// What was found in the lines ahead is forgotten. A line that looks like a header is taken for one.
void OpenedFile::SkipLines(ULONG nLines, bool bFindDividers)
{
    m_data->put_HasHeader(VARIANT_FALSE);
    m_data->put_InvertedDirection(VARIANT_FALSE);
    if (bFindDividers)
        m_records->Reset();
    if (m_records->put_LinesToSkip(nLines) != S_OK)
        throw ReadFailure{fmt::format("no columns are found after {} skipped lines", nLines)};
}

// Choosing a resolution assigns the columns anew.
void OpenedFile::ApplyResolution(const Choices& choices)
{
    if (IsGiven(choices.resolution)) {
        if (m_records->put_Resolution(static_cast<LONG>(choices.resolution)) != S_OK)
            throw ReadFailure{"the file has no columns of this resolution"};
        ApplyColumns(*m_data.get(), *m_records.get(), choices);
    }
    if (!IsGiven(choices.size))
        return;
    LONG nStands = 0;
    m_records->put_ResolutionSize(static_cast<LONG>(choices.size));
    m_records->get_ResolutionSize(&nStands);
    if (nStands != choices.size)
        throw ReadFailure{
            fmt::format("the size of this resolution is {}, not {}", nStands, choices.size)};
}

int PowerOf(std::int32_t nCode)
{
    struct Row
    {
        std::int32_t nCode;
        int nPower;
    };
    static constexpr Row kPowers[] = {
        {0x01, 6},  {0x40, 5},  {0x41, 4},  {0x42, 3},  {0x43, 2},  {0x44, 1},  {0x45, 0},
        {0x49, -1}, {0x4D, -2}, {0x4E, -3}, {0x4F, -4}, {0x50, -5}, {0x02, -6},
    };
    for (const Row& row : kPowers)
        if (row.nCode == nCode)
            return row.nPower;
    throw ReadFailure{"there is no such multiplier"};
}

// ---- what was found

std::string OpenedFile::HeaderLine() const
{
    com_ptr<IDispatch> copy;
    com_ptr<IDataParser> lines;
    Require(m_data->Clone(copy.put()), "reading the header");
    Require(query(copy.get(), lines), "reading the header");
    lines->put_HasHeader(VARIANT_FALSE);
    lines->put_HeaderOffset(0);
    lines->put_InvertedDirection(VARIANT_FALSE);
    Bstr line;
    if (lines->put_Position(m_layout.lines_to_skip) == S_OK)
        lines->get_CurrentRecord(line.put());
    return ToUtf8(line.view());
}

void OpenedFile::ReadColumns()
{
    VARIANT_BOOL bHeader = VARIANT_FALSE;
    m_data->get_HasHeader(&bHeader);
    m_data->get_HeaderOffset(&m_layout.lines_to_skip);
    m_layout.has_header = bHeader != VARIANT_FALSE;
    if (m_layout.has_header)
        m_sHeader = HeaderLine();
    const Bstr header(FromUtf8(m_sHeader));
    ULONG nCount = 0;
    m_records->get_FieldCount(&nCount);
    for (ULONG i = 0; i < nCount; ++i) {
        Bstr sTemplate, sHeading;
        LONG nType = -1;
        m_records->GetFieldType(i, &nType);
        m_records->GetFieldTemplate(sTemplate.put(), i);
        if (m_layout.has_header)
            m_records->GetFieldText(header.get(), i, sHeading.put());
        m_columns.push_back({nType, ToUtf8(sTemplate.view()), ToUtf8(sHeading.view())});
    }
}

void OpenedFile::ReadLayout()
{
    LONG nDividers = 0;
    VARIANT_BOOL bInverted = VARIANT_FALSE;
    Variant first, last;
    m_records->get_FieldDividers(&nDividers);
    m_records->get_Resolution(&m_layout.resolution);
    m_records->get_ResolutionSize(&m_layout.size);
    m_data->get_InvertedDirection(&bInverted);
    m_data->get_StartDateTime(first.put());
    m_data->get_EndDateTime(last.put());
    m_layout.dividers = static_cast<std::uint32_t>(nDividers);
    m_layout.runs_backwards = bInverted != VARIANT_FALSE;
    m_layout.first = first.date != 0 ? MillisecondsOf(first.date) : kNotGiven;
    m_layout.last = last.date != 0 ? MillisecondsOf(last.date) : kNotGiven;
}

LayoutRow OpenedFile::Layout() const
{
    LayoutRow layout = m_layout;
    layout.header = TextOf(m_sHeader);
    layout.fault = TextOf(m_sFault);
    layout.column_count = m_columns.size();
    return layout;
}

// The component's check is made in its own words; what it would call an invalid range of dates is
// told apart first.
std::string OpenedFile::FindFault() const
{
    Bstr record;
    if (m_data->put_Position(0) != S_OK || m_data->get_CurrentRecord(record.put()) != S_OK)
        return "the file has no lines of data";
    ULONG nField = 0;
    if (m_records->GetFieldIndex(TypeDate, &nField) != S_OK)
        return "no column was found that holds dates; name one in the settings' columns";
    if (!m_rules.sSymbol.empty() && m_records->GetFieldIndex(TypeSymbol, &nField) != S_OK)
        return "no column was found that holds symbols; name one in the settings' columns";
    const com_ptr<SettingsSink> sink(new SettingsSink);
    if (m_data->CheckConverterSettings(0, sink.get()) == S_OK)
        return {};
    return sink->Fault().empty() ? "the settings are refused" : sink->Fault();
}

std::vector<LONG> OpenedFile::ReadTypes() const
{
    std::vector<LONG> types;
    for (const FileColumn& column : m_columns)
        if (column.nType >= 0)
            types.push_back(column.nType);
    return types;
}

// ---- runs

// A date that is no number lies outside of no range: the component doesn't move it to an end of the
// file, and no record lies beyond it. A file needn't begin with its earliest record, nor end with
// its latest.
com_ptr<IDataParser> OpenedFile::RowReader() const
{
    com_ptr<IDispatch> copy;
    com_ptr<IDataParser> rows;
    Require(m_data->Clone(copy.put()), "copying the parser");
    Require(query(copy.get(), rows), "copying the parser");
    const Variant none = Variant::FromDate(std::numeric_limits<DATE>::quiet_NaN());
    Require(rows->put_StartDateTime(none), "setting the range");
    Require(rows->put_EndDateTime(none), "setting the range");
    if (!m_rules.sSymbol.empty())
        Require(rows->put_SymbolName(Bstr(m_rules.sSymbol).get()), "setting the symbol");
    return rows;
}

void OpenedFile::RequireWhole() const
{
    com_ptr<IReadState> file;
    ReadState state{};
    if (FAILED(query(&Data(), file)) || FAILED(file->GetReadState(&state)))
        return;
    if (state.nFault == ReadFaultMemory)
        throw ReadFailure{"memory ran out"};
    if (state.nFault == ReadFaultCut)
        throw ReadFailure{fmt::format("the file was cut from {} to {} bytes while it was read",
                                      state.nSize, state.nSizeNow)};
    if (state.nFault != ReadFaultNone)
        throw ReadFailure{fmt::format("reading failed at byte {}", state.nFaultPosition)};
    if (state.nSizeNow > state.nSize)
        throw ReadFailure{fmt::format("the file grew from {} to {} bytes while it was read",
                                      state.nSize, state.nSizeNow)};
}

} // namespace Hesperon::reader
