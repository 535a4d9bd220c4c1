// A batch is an array of columns by records, columns running fastest. Its shape is checked
// as a whole; then each Date and Time column is walked from record to record.

#include "src/front/BatchRewriting.h"

#include "datetime/qrlDateTime.h"
#include "diagnostics/FaultmereClient.h"
#include "interfaces/FieldsAndResolutions.h"
#include "src/data/DateWithStatus.h"
#include "src/values/LockedArray.h"

using namespace IQRL_TabulexConverter;
using FaultmereUtil::Assert;
using FaultmereUtil::AssertOk;

namespace Hesperon::specifics {

namespace {

using Rewrite = void (*)(VARIANT& cell);

void DateToDays(VARIANT& cell)
{
    const auto nDays = static_cast<SHORT>(LowDayBits(cell.date));
    cell.vt = VT_I2;
    cell.iVal = nDays;
}

// A time alone lies before the days that the calendar knows; whole days added don't
// change it.
void TimeToMilliseconds(VARIANT& cell)
{
    constexpr double kIntoTheCalendar = 10.0;
    constexpr LONGLONG kTicksPerMillisecond = 10'000;
    constexpr LONGLONG kTicksPerDay = 864'000'000'000;
    const LONGLONG ticks = qrlDateTime::SDateTime::OleDate2Ticks(cell.date + kIntoTheCalendar);
    cell.vt = VT_I4;
    cell.lVal = static_cast<LONG>(ticks % kTicksPerDay / kTicksPerMillisecond);
}

// Null for a column that is delivered as it is.
Rewrite RewriteOf(LONG nHostId)
{
    return nHostId == HostFieldDate   ? DateToDays
           : nHostId == HostFieldTime ? TimeToMilliseconds
                                      : nullptr;
}

// rgsabound holds the bounds in reverse of the order given to SafeArrayCreate: columns come
// second.
ULONG ColumnCount(const SAFEARRAY& batch)
{
    return batch.rgsabound[1].cElements;
}

bool StartsAtZero(const SAFEARRAY& batch)
{
    return batch.rgsabound[0].lLbound == 0 && batch.rgsabound[1].lLbound == 0;
}

HRESULT RewriteColumn(SAFEARRAY& batch, std::size_t nColumn, Rewrite pfnRewrite)
{
    if (batch.rgsabound[0].cElements == 0)
        return S_OK;
    if (!StartsAtZero(batch))
        return AssertOk(DISP_E_BADINDEX);
    const LockedArray<VARIANT> array(&batch);
    if (FAILED(array.Result()))
        return AssertOk(array.Result());
    const std::span<VARIANT> cells = array.Elements();
    for (std::size_t i = nColumn; i < cells.size(); i += ColumnCount(batch)) {
        if (!Assert(cells[i].vt == VT_DATE, "VT_DATE == v.vt"))
            return E_INVALIDARG;
        pfnRewrite(cells[i]);
    }
    return S_OK;
}

} // namespace

HRESULT RewriteBatch(const VARIANT& vRecords, std::span<const LONG> hostIds)
{
    const bool bArray = (vRecords.vt & (VT_ARRAY | VT_BYREF)) == VT_ARRAY;
    if (!bArray || SafeArrayGetDim(vRecords.parray) != 2)
        return E_INVALIDARG;
    if (hostIds.size() != ColumnCount(*vRecords.parray))
        return E_INVALIDARG;
    HRESULT hr = S_OK;
    for (std::size_t i = 0; i < hostIds.size() && SUCCEEDED(hr); ++i)
        if (const Rewrite pfnRewrite = RewriteOf(hostIds[i]))
            hr = RewriteColumn(*vRecords.parray, i, pfnRewrite);
    return hr;
}

} // namespace Hesperon::specifics
