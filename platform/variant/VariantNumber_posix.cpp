// Numbers of all kinds, through four forms: signed and unsigned 64 bits, double, and currency.
//
// A source is read into the form that holds it exactly, and a target is written from any of
// the four, so that no value takes a way on which it loses digits: a 64-bit number never
// becomes a double on its way to another integer.

#include "platform/variant/VariantNumber_posix.h"

#include <cmath>
#include <limits>

#include "platform/variant/CalendarDay_posix.h"
#include "platform/variant/VariantKinds_posix.h"

namespace {

constexpr LONGLONG kPerUnit = 10000; // of a currency value

struct IntegerKind
{
    VARTYPE vt;
    LONGLONG nLeast;
    ULONGLONG nMost;
};

template <class T>
constexpr IntegerKind RowOf(VARTYPE vt)
{
    return {vt, std::numeric_limits<T>::min(), std::numeric_limits<T>::max()};
}

constexpr IntegerKind kIntegerKinds[] = {
    RowOf<std::int8_t>(VT_I1), RowOf<BYTE>(VT_UI1),      RowOf<SHORT>(VT_I2),
    RowOf<USHORT>(VT_UI2),     RowOf<LONG>(VT_I4),       RowOf<ULONG>(VT_UI4),
    RowOf<LONGLONG>(VT_I8),    RowOf<ULONGLONG>(VT_UI8), RowOf<INT>(VT_INT),
    RowOf<UINT>(VT_UINT),
};

const IntegerKind* FindIntegerKind(VARTYPE vt)
{
    for (const IntegerKind& kind : kIntegerKinds)
        if (kind.vt == vt)
            return &kind;
    return nullptr;
}

LONGLONG SignedValue(const VARIANT& from)
{
    switch (KindSize(from.vt)) {
    case 1:
        return from.cVal;
    case 2:
        return from.iVal;
    case 4:
        return from.lVal;
    default:
        return from.llVal;
    }
}

ULONGLONG UnsignedValue(const VARIANT& from, VARTYPE vt)
{
    switch (KindSize(vt)) {
    case 1:
        return from.bVal;
    case 2:
        return from.uiVal;
    case 4:
        return from.ulVal;
    default:
        return from.ullVal;
    }
}

// Takes the low bytes that the kind has room for.
void StoreBits(ULONGLONG bits, VARTYPE vt, VARIANT& to)
{
    switch (KindSize(vt)) {
    case 1:
        to.bVal = static_cast<BYTE>(bits);
        break;
    case 2:
        to.uiVal = static_cast<USHORT>(bits);
        break;
    case 4:
        to.ulVal = static_cast<ULONG>(bits);
        break;
    default:
        to.ullVal = bits;
    }
}

// Nearest whole number, halves to the even one.
LONGLONG Whole(Currency value)
{
    LONGLONG whole = value.nTenThousandths / kPerUnit;
    const LONGLONG rest = std::llabs(value.nTenThousandths % kPerUnit);
    if (rest > kPerUnit / 2 || (rest == kPerUnit / 2 && whole % 2 != 0))
        whole += value.nTenThousandths < 0 ? -1 : 1;
    return whole;
}

bool Narrow(LONGLONG n, const IntegerKind& kind, ULONGLONG& bits)
{
    bits = static_cast<ULONGLONG>(n);
    return n < 0 ? n >= kind.nLeast : bits <= kind.nMost;
}

bool Narrow(ULONGLONG n, const IntegerKind& kind, ULONGLONG& bits)
{
    bits = n;
    return n <= kind.nMost;
}

// Halves go to the even number, which is how nearbyint rounds unless somebody has changed that. The
// negated comparison also refuses a NaN.
bool Narrow(double r, const IntegerKind& kind, ULONGLONG& bits)
{
    const double whole = std::nearbyint(r);
    // For 64 bits the highest value rounds up to a power of two and the sum stays there.
    const double beyond = static_cast<double>(kind.nMost) + 1.0;
    if (!(whole >= static_cast<double>(kind.nLeast) && whole < beyond))
        return false;
    bits = whole < 0 ? static_cast<ULONGLONG>(static_cast<LONGLONG>(whole))
                     : static_cast<ULONGLONG>(whole);
    return true;
}

bool Narrow(Currency value, const IntegerKind& kind, ULONGLONG& bits)
{
    return Narrow(Whole(value), kind, bits);
}

double Real(LONGLONG n)
{
    return static_cast<double>(n);
}
double Real(ULONGLONG n)
{
    return static_cast<double>(n);
}
double Real(double r)
{
    return r;
}
double Real(Currency value)
{
    return static_cast<double>(value.nTenThousandths) / static_cast<double>(kPerUnit);
}

bool Scale(LONGLONG n, LONGLONG& result)
{
    return !__builtin_mul_overflow(n, kPerUnit, &result);
}
bool Scale(ULONGLONG n, LONGLONG& result)
{
    return !__builtin_mul_overflow(n, kPerUnit, &result);
}
bool Scale(Currency value, LONGLONG& result)
{
    result = value.nTenThousandths;
    return true;
}
// The wide product keeps the digits that distinguish a half from a value near it.
bool Scale(double r, LONGLONG& result)
{
    const long double scaled = std::nearbyint(static_cast<long double>(r) * kPerUnit);
    constexpr long double kBeyond = 9223372036854775808.0L;
    if (!(scaled >= -kBeyond && scaled < kBeyond))
        return false;
    result = static_cast<LONGLONG>(scaled);
    return true;
}

HRESULT WriteInteger(const Number& number, const IntegerKind& kind, VARIANT& to)
{
    ULONGLONG bits = 0;
    if (!std::visit([&](auto n) { return Narrow(n, kind, bits); }, number))
        return DISP_E_OVERFLOW;
    StoreBits(bits, kind.vt, to);
    return S_OK;
}

HRESULT WriteFloat(double r, VARIANT& to)
{
    to.fltVal = static_cast<FLOAT>(r);
    return std::isinf(to.fltVal) ? DISP_E_OVERFLOW : S_OK;
}

HRESULT WriteDate(double r, VARIANT& to)
{
    if (!(r > kFirstDay - 1.0 && r < kLastDay + 1.0))
        return DISP_E_OVERFLOW;
    to.date = r;
    return S_OK;
}

HRESULT WriteCurrency(const Number& number, VARIANT& to)
{
    const bool bFits = std::visit([&](auto n) { return Scale(n, to.cyVal.int64); }, number);
    return bFits ? S_OK : DISP_E_OVERFLOW;
}

// The kinds that keep their bits when converted to an integer kind of the size.
bool KeepsBits(const VARIANT& from, const IntegerKind& kind)
{
    return from.vt == VT_BOOL ||
           (FindIntegerKind(from.vt) && KindSize(from.vt) == KindSize(kind.vt));
}

} // namespace

bool ReadNumber(const VARIANT& from, Number& number)
{
    if (const IntegerKind* kind = FindIntegerKind(from.vt))
        number =
            kind->nLeast < 0 ? Number(SignedValue(from)) : Number(UnsignedValue(from, from.vt));
    else if (from.vt == VT_EMPTY)
        number = LONGLONG{0};
    else if (from.vt == VT_BOOL)
        number = LONGLONG{from.boolVal};
    else if (from.vt == VT_R4)
        number = double{from.fltVal};
    else if (from.vt == VT_R8 || from.vt == VT_DATE)
        number = from.dblVal;
    else if (from.vt == VT_CY)
        number = Currency{from.cyVal.int64};
    else
        return false;
    return true;
}

HRESULT WriteNumber(const Number& number, VARTYPE vt, VARIANT& to)
{
    if (const IntegerKind* kind = FindIntegerKind(vt))
        return WriteInteger(number, *kind, to);
    const double r = std::visit([](auto n) { return Real(n); }, number);
    switch (vt) {
    case VT_R4:
        return WriteFloat(r, to);
    case VT_R8:
        to.dblVal = r;
        return S_OK;
    case VT_DATE:
        return WriteDate(r, to);
    case VT_CY:
        return WriteCurrency(number, to);
    case VT_BOOL:
        to.boolVal = r != 0 ? VARIANT_TRUE : VARIANT_FALSE;
        return S_OK;
    default:
        return DISP_E_BADVARTYPE;
    }
}

HRESULT WriteBits(ULONGLONG bits, VARTYPE vt, VARIANT& to)
{
    if (!FindIntegerKind(vt))
        return WriteNumber(bits, vt, to);
    StoreBits(bits, vt, to);
    return UnsignedValue(to, vt) == bits ? S_OK : DISP_E_OVERFLOW;
}

HRESULT ConvertNumber(const VARIANT& from, VARTYPE vt, VARIANT& to)
{
    const IntegerKind* kind = FindIntegerKind(vt);
    if (kind && KeepsBits(from, *kind)) {
        StoreBits(static_cast<ULONGLONG>(SignedValue(from)), vt, to);
        return S_OK;
    }
    Number number;
    return ReadNumber(from, number) ? WriteNumber(number, vt, to) : DISP_E_TYPEMISMATCH;
}
