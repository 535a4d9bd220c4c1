// A table has a row for each power of ten, with a function for integers and one for floats.
// Selecting a row arms AnalyzeValue, which replaces itself by one of the row's two functions
// at the first value.

#include "src/values/qrlValueMultiplier.h"

#include <algorithm>
#include <iterator>

#include "diagnostics/FaultmereClient.h"
#include "platform/values.h"

namespace Hesperon::specifics {
namespace {

using Transform = void (*)(CqrlValueMultiplier&, VARIANT*);

void Keep(CqrlValueMultiplier&, VARIANT*) {}

// Texts, objects, arrays and references: whoever frees the value follows the address.
bool IsAddress(VARTYPE vt)
{
    return vt == VT_BSTR || vt == VT_DISPATCH || vt == VT_UNKNOWN || (vt & (VT_ARRAY | VT_BYREF));
}

// Scales the payload of any value but none and an address, whatever its kind.
template <void (*Scale)(VARIANT&)>
void Apply(CqrlValueMultiplier&, VARIANT* pVal)
{
    if (pVal && !IsAddress(pVal->vt)) [[likely]]
        Scale(*pVal);
}

// Wraps at 64 bits.
template <LONGLONG Factor>
void MultiplyInteger(VARIANT& value)
{
    value.llVal = static_cast<LONGLONG>(static_cast<ULONGLONG>(value.llVal) * Factor);
}

// Truncates toward zero.
template <LONGLONG Divisor>
void DivideInteger(VARIANT& value)
{
    value.llVal /= Divisor;
}

template <LONGLONG Factor>
void MultiplyFloat(VARIANT& value)
{
    value.dblVal *= static_cast<double>(Factor);
}

// A true division: the product with the reciprocal rounds differently.
template <LONGLONG Divisor>
void DivideFloat(VARIANT& value)
{
    value.dblVal /= static_cast<double>(Divisor);
}

struct Row
{
    string_view_t sName;
    Transform pfnInteger;
    Transform pfnFloat;
    BYTE nCode;
};

template <LONGLONG Factor>
constexpr Row Times(string_view_t sName, BYTE nCode)
{
    return {sName, &Apply<MultiplyInteger<Factor>>, &Apply<MultiplyFloat<Factor>>, nCode};
}

template <LONGLONG Divisor>
constexpr Row DividedBy(string_view_t sName, BYTE nCode)
{
    return {sName, &Apply<DivideInteger<Divisor>>, &Apply<DivideFloat<Divisor>>, nCode};
}

// The codes are those by which a host names a row (PriceMultiplier, VolumeMultiplier).
constexpr Row kRows[] = {
    Times<1000000>(OLESTR("1000000"), 0x01),
    Times<100000>(OLESTR("100000"), 0x40),
    Times<10000>(OLESTR("10000"), 0x41),
    Times<1000>(OLESTR("1000"), 0x42),
    Times<100>(OLESTR("100"), 0x43),
    Times<10>(OLESTR("10"), 0x44),
    {OLESTR("1"), &Keep, &Keep, 0x45},
    DividedBy<10>(OLESTR("1/10"), 0x49),
    DividedBy<100>(OLESTR("1/100"), 0x4D),
    DividedBy<1000>(OLESTR("1/1000"), 0x4E),
    DividedBy<10000>(OLESTR("1/10000"), 0x4F),
    DividedBy<100000>(OLESTR("1/100000"), 0x50),
    DividedBy<1000000>(OLESTR("1/1000000"), 0x02),
};
constexpr std::uint64_t kUnchanged = 6;
static_assert(kRows[kUnchanged].pfnInteger == &Keep);

// The number of rows if none has the value.
template <class Value, class Member>
std::uint64_t FindRow(const Value& value, Member member)
{
    const Row* row = std::ranges::find(kRows, value, member);
    return static_cast<std::uint64_t>(row - kRows);
}

HRESULT FillNames(SAFEARRAY* array)
{
    for (LONG i = 0; i < static_cast<LONG>(std::size(kRows)); ++i) {
        const Bstr name(kRows[i].sName);
        if (const HRESULT hr = SafeArrayPutElement(array, &i, name.get()); FAILED(hr))
            return hr;
    }
    return S_OK;
}

HRESULT MakeNames(VARIANT& result)
{
    SafeArray array(SafeArrayCreateVector(VT_BSTR, 0, static_cast<ULONG>(std::size(kRows))));
    if (!array)
        return HRESULT_FROM_WIN32(ERROR_NOT_ENOUGH_MEMORY);
    const HRESULT hr = FillNames(array.get());
    if (SUCCEEDED(hr))
        result = Variant::FromArray(array.detach(), VT_BSTR).detach();
    return hr;
}

} // namespace

CqrlValueMultiplier::CqrlValueMultiplier() : m_nCurrent(kUnchanged), m_fnTransform(&Keep) {}

HRESULT CqrlValueMultiplier::ApplyTransform(VARIANT* pVal)
{
    m_fnTransform(*this, pVal);
    return S_OK;
}

bool CqrlValueMultiplier::KeepsValues()
{
    return m_fnTransform == &Keep;
}

void CqrlValueMultiplier::AnalyzeValue(CqrlValueMultiplier& self, VARIANT* pVal)
{
    self.m_fnTransform = self.TransformFor(pVal);
    self.m_fnTransform(self, pVal);
}

CqrlValueMultiplier::Transform CqrlValueMultiplier::TransformFor(const VARIANT* pVal) const
{
    using FaultmereUtil::Assert;
    if (!Assert(pVal != nullptr, "pVal"))
        return &Keep;
    if (pVal->vt == VT_R8)
        return kRows[m_nCurrent].pfnFloat;
    if (pVal->vt == VT_I8)
        return kRows[m_nCurrent].pfnInteger;
    Assert(false, "0 && \"qrlValueMultiplier: Only accept VT_I8 & VT_R8 types\"");
    return &Keep;
}

HRESULT CqrlValueMultiplier::get_TransformNames(VARIANT* pVal)
{
    if (!pVal)
        return E_POINTER;
    try {
        return MakeNames(*pVal);
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
}

HRESULT CqrlValueMultiplier::get_Current(BSTR* pVal)
{
    if (!pVal)
        return E_POINTER;
    const string_view_t sName = kRows[m_nCurrent].sName;
    *pVal = SysAllocStringLen(sName.data(), static_cast<UINT>(sName.size()));
    return *pVal ? S_OK : E_OUTOFMEMORY;
}

HRESULT CqrlValueMultiplier::put_Current(BSTR newVal)
{
    return Select(FindRow(TextOf(newVal), &Row::sName));
}

HRESULT CqrlValueMultiplier::SetCode(BYTE nCode)
{
    return Select(FindRow(nCode, &Row::nCode));
}

BYTE CqrlValueMultiplier::Code() const
{
    return kRows[m_nCurrent].nCode;
}

// Selecting the current row again leaves the transform as it is.
HRESULT CqrlValueMultiplier::Select(std::uint64_t nRow)
{
    if (nRow == std::size(kRows))
        return E_INVALIDARG;
    if (nRow == m_nCurrent)
        return S_OK;
    m_nCurrent = nRow;
    m_fnTransform = &AnalyzeValue;
    return S_OK;
}

} // namespace Hesperon::specifics
