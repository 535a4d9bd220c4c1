// First and last dates of a file, the range of a conversion, and what makes the record parser
// find its layout again.
//
// The first date is that of position 0, the last that of the file's last line. If the last is
// earlier, the file runs backwards: the two change places and the direction is inverted. Both
// reads go through the record parser and change its current record.

#include "diagnostics/FaultmereClient.h"
#include "src/data/DataParser.h"
#include "src/parsing/DataTypes.h"

using FaultmereUtil::Assert;

namespace Hesperon::specifics {

namespace {

HRESULT ParsedDateTime(IQRL_TabulexConverter::IRecordParser* pRecordParser, BSTR bsRecord,
                       VARIANT* pDate)
{
    if (!pDate)
        return E_POINTER;
    VariantInit(pDate);
    if (!pRecordParser)
        return E_FAIL;
    const HRESULT hr = pRecordParser->Parse(bsRecord);
    return SUCCEEDED(hr) ? pRecordParser->get_CurrentDateTime(pDate) : hr;
}

} // namespace

// ---- dates of records

HRESULT CDataParser::GetMinDateTime(VARIANT* vDate)
{
    return Locked([&] { return MinDateTime(vDate); });
}

HRESULT CDataParser::GetMaxDateTime(VARIANT* vDate)
{
    return Locked([&] { return MaxDateTime(vDate); });
}

// A record parser that was reset finds its layout in the record that it gets here, and doesn't
// parse that record. The date is then that of the record which the search has parsed last, or 0
// if it has parsed none, and the result is S_OK.
HRESULT CDataParser::MinDateTime(VARIANT* pDate)
{
    if (!m_pFileHandler)
        return E_NOINTERFACE;
    HRESULT hr = SetPosition(0);
    Bstr sRecord;
    if (SUCCEEDED(hr))
        hr = ReadCurrent(sRecord.put());
    return SUCCEEDED(hr) ? ParsedDateTime(m_pRecordParser.get(), sRecord.get(), pDate) : hr;
}

HRESULT CDataParser::MaxDateTime(VARIANT* pDate)
{
    if (!m_pFileHandler)
        return E_NOINTERFACE;
    Bstr sRecord;
    const HRESULT hr = ReadLast(Extent::Head, sRecord.put());
    return SUCCEEDED(hr) ? ParsedDateTime(m_pRecordParser.get(), sRecord.get(), pDate) : hr;
}

// ---- range of the file

HRESULT CDataParser::RefreshDateInfo(VARIANT_BOOL FindResolution)
{
    return Locked([&] {
        if (!m_pFileHandler)
            return E_UNEXPECTED;
        if (FindResolution != VARIANT_FALSE)
            InferResolution();
        RefreshDateRange();
        return S_OK;
    });
}

// Of a file with a header the record parser gets the header line, in which it looks for its
// columns.
void CDataParser::InferResolution()
{
    Bstr sRecord;
    HRESULT hr;
    if (m_lines.bHasHeader)
        hr = m_pFileHandler->GetRecord(m_lines.nHeaderOffset, m_nLocale, sRecord.put());
    else if (SUCCEEDED(hr = SetPosition(0)))
        hr = ReadCurrent(sRecord.put());
    if (SUCCEEDED(hr) && m_pRecordParser)
        m_pRecordParser->FindResolution(sRecord.get());
}

// The direction is reset first, since setting the inverted one twice switches it back.
void CDataParser::RefreshDateRange()
{
    m_nSymbolField = 0;
    m_dtStart = m_dtEnd = {};
    m_lines.bInvertedDirection = false;
    if (FAILED(SetPosition(0)) || !m_pRecordParser)
        return;
    Bstr sRecord;
    if (FAILED(ReadCurrent(sRecord.put())) || FAILED(m_pRecordParser->Parse(sRecord.get())))
        return;
    m_pRecordParser->GetFieldIndex(TypeSymbol, &m_nSymbolField);
    Variant vMin, vMax;
    const HRESULT hrMin = MinDateTime(vMin.put());
    const HRESULT hrMax = MaxDateTime(vMax.put());
    if (SUCCEEDED(hrMin) && SUCCEEDED(hrMax))
        TakeDateRange(DateOf(vMin), DateOf(vMax));
}

void CDataParser::TakeDateRange(const DateWithStatus& first, const DateWithStatus& last)
{
    const bool bAscending = first < last || first == last;
    m_dtStart = bAscending ? first : last;
    m_dtEnd = bAscending ? last : first;
    if (!bAscending)
        SetInverted(true);
}

// ---- range of a conversion

HRESULT CDataParser::get_StartDateTime(VARIANT* pVal)
{
    if (!pVal)
        return E_POINTER;
    LockGuard lock(m_lock);
    *pVal = Variant::FromDate(m_dtStart.date).detach();
    return S_OK;
}

HRESULT CDataParser::put_StartDateTime(VARIANT newVal)
{
    return Locked([&] { return StoreDate(newVal, m_dtStart); });
}

HRESULT CDataParser::get_EndDateTime(VARIANT* pVal)
{
    if (!pVal)
        return E_POINTER;
    LockGuard lock(m_lock);
    *pVal = Variant::FromDate(m_dtEnd.date).detach();
    return S_OK;
}

HRESULT CDataParser::put_EndDateTime(VARIANT newVal)
{
    return Locked([&] { return StoreDate(newVal, m_dtEnd); });
}

// The date is clamped to the range of the file. A value of another kind is reported, and its
// payload is taken for a date all the same.
HRESULT CDataParser::StoreDate(const VARIANT& value, DateWithStatus& date)
{
    Assert(VT_DATE == value.vt, "VT_DATE == newVal.vt");
    const DateWithStatus given{value.date, DateWithStatus::kValid};
    date = given;
    Variant vMin, vMax;
    const bool bMin = SUCCEEDED(MinDateTime(vMin.put()));
    const bool bMax = SUCCEEDED(MaxDateTime(vMax.put()));
    if (bMin && date < DateOf(vMin))
        date = DateOf(vMin);
    if (bMax && DateOf(vMax) < date)
        date = DateOf(vMax);
    return date == given ? S_OK : S_FALSE;
}

// ---- code page

HRESULT CDataParser::put_Locale(ULONG newVal)
{
    Locked([&] {
        m_nLocale = newVal;
        if (m_pFileHandler)
            RestartLayout();
        return S_OK;
    });
    return S_OK;
}

// If the first line can't be read, there are no dates; count events are asked for all the same.
void CDataParser::RestartLayout()
{
    ForgetLayout();
    Bstr sRecord;
    const HRESULT hr =
        Guarded([&] { return m_pFileHandler->GetRecord(0, m_nLocale, sRecord.put()); });
    if (SUCCEEDED(hr) && m_pRecordParser)
        m_pRecordParser->Parse(sRecord.get());
    Variant vMin, vMax;
    m_dtStart = m_dtEnd = {};
    GetMinDateTime(vMin.put());
    GetMaxDateTime(vMax.put());
    if (vMin.vt == VT_DATE)
        m_dtStart.date = vMin.date;
    if (vMax.vt == VT_DATE)
        m_dtEnd.date = vMax.date;
    if (m_dtEnd < m_dtStart) {
        put_InvertedDirection(VARIANT_TRUE);
        std::swap(m_dtStart, m_dtEnd);
    }
    QueueCountEvents();
}

} // namespace Hesperon::specifics
