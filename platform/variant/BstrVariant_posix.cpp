// Texts and values in the published layout. A BSTR points at its text; the count of bytes stands in
// front and a null after it. A VARIANT owns what it holds, unless it holds it by reference. So
// copying and clearing have a case for each of the kinds that own something, texts, arrays and the
// two kinds of interfaces, and all others are only bytes.

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <string>

#include "platform/component.h"
#include "platform/variant/VariantKinds_posix.h"

namespace {

// In front of every text; eight bytes, so that the text is aligned for any reader.
struct BstrHeader
{
    std::uint32_t unused;
    std::uint32_t nBytes;
};

constexpr std::size_t kMostBytes =
    std::numeric_limits<std::uint32_t>::max() - sizeof(BstrHeader) - 2 * sizeof(OLECHAR);

BstrHeader* HeaderOf(BSTR text)
{
    return reinterpret_cast<BstrHeader*>(text) - 1;
}

// Room for the text and its terminator; an odd byte count is rounded up to whole units.
std::size_t RoomFor(std::size_t nBytes)
{
    return (nBytes + 1) / 2 * 2 + sizeof(OLECHAR);
}

BSTR Terminated(void* block, std::size_t nBytes)
{
    auto* header = static_cast<BstrHeader*>(block);
    header->nBytes = static_cast<std::uint32_t>(nBytes);
    auto* text = reinterpret_cast<char*>(header + 1);
    std::memset(text + nBytes, 0, RoomFor(nBytes) - nBytes);
    return reinterpret_cast<BSTR>(text);
}

// The content is left uninitialised; null without memory.
BSTR Allocate(std::size_t nBytes)
{
    if (nBytes > kMostBytes)
        return nullptr;
    void* block = std::malloc(sizeof(BstrHeader) + RoomFor(nBytes));
    return block ? Terminated(block, nBytes) : nullptr;
}

BSTR CopyBytes(const void* bytes, std::size_t nBytes)
{
    BSTR text = Allocate(nBytes);
    if (text && bytes && nBytes != 0)
        std::memcpy(text, bytes, nBytes);
    return text;
}

// Keeps the content as far as it fits.
BSTR Resize(BSTR text, std::size_t nBytes)
{
    if (nBytes > kMostBytes)
        return nullptr;
    void* block = std::realloc(HeaderOf(text), sizeof(BstrHeader) + RoomFor(nBytes));
    return block ? Terminated(block, nBytes) : nullptr;
}

// Turns a borrowed value into an owned one; on failure the value is empty.
HRESULT Own(VARIANT& value)
{
    HRESULT hr = S_OK;
    if (value.vt & VT_BYREF)
        return hr;
    if (value.vt & VT_ARRAY)
        hr = SafeArrayCopy(value.parray, &value.parray);
    else if (value.vt == VT_BSTR) {
        value.bstrVal = CopyBytes(value.bstrVal, SysStringByteLen(value.bstrVal));
        hr = value.bstrVal ? S_OK : E_OUTOFMEMORY;
    } else if (value.vt == VT_UNKNOWN && value.punkVal)
        value.punkVal->AddRef();
    else if (value.vt == VT_DISPATCH && value.pdispVal)
        value.pdispVal->AddRef();
    if (FAILED(hr))
        VariantInit(&value);
    return hr;
}

// Owns the value first and clears the target last: the value may live in the target.
HRESULT Assign(VARIANT* to, VARIANT value)
{
    if (HRESULT hr = Own(value); FAILED(hr))
        return hr;
    if (HRESULT hr = VariantClear(to); FAILED(hr)) {
        VariantClear(&value);
        return hr;
    }
    *to = value;
    return S_OK;
}

VARIANT Dereferenced(const VARIANT& from)
{
    VARIANT value;
    VariantInit(&value);
    value.vt = static_cast<VARTYPE>(from.vt & ~VT_BYREF);
    if (value.vt & VT_ARRAY)
        value.parray = *from.pparray;
    else
        std::memcpy(&value.llVal, from.byref, KindSize(value.vt));
    return value;
}

} // namespace

extern "C" {

BSTR SysAllocString(const OLECHAR* text)
{
    return text ? CopyBytes(text, std::char_traits<OLECHAR>::length(text) * sizeof(OLECHAR))
                : nullptr;
}

BSTR SysAllocStringLen(const OLECHAR* text, UINT units)
{
    return CopyBytes(text, std::size_t{units} * sizeof(OLECHAR));
}

BSTR SysAllocStringByteLen(const char* bytes, UINT count)
{
    return CopyBytes(bytes, count);
}

INT SysReAllocStringLen(BSTR* pText, const OLECHAR* text, UINT units)
{
    if (!pText)
        return 0;
    const std::size_t nBytes = std::size_t{units} * sizeof(OLECHAR);
    const bool bInPlace = !text && *pText;
    BSTR result = bInPlace ? Resize(*pText, nBytes) : CopyBytes(text, nBytes);
    if (!result)
        return 0;
    if (!bInPlace)
        SysFreeString(*pText);
    *pText = result;
    return 1;
}

void SysFreeString(BSTR text)
{
    if (text)
        std::free(HeaderOf(text));
}

UINT SysStringByteLen(BSTR text)
{
    return text ? HeaderOf(text)->nBytes : 0;
}

UINT SysStringLen(BSTR text)
{
    return SysStringByteLen(text) / sizeof(OLECHAR);
}

void VariantInit(VARIANT* value)
{
    std::memset(value, 0, sizeof *value);
}

// Only the kind is overwritten; the published call leaves the value's bytes alone.
HRESULT VariantClear(VARIANT* value)
{
    if (!IsKnownKind(value->vt))
        return DISP_E_BADVARTYPE;
    HRESULT hr = S_OK;
    if (!(value->vt & VT_BYREF)) {
        if (value->vt & VT_ARRAY)
            hr = SafeArrayDestroy(value->parray);
        else if (value->vt == VT_BSTR)
            SysFreeString(value->bstrVal);
        else if (value->vt == VT_UNKNOWN && value->punkVal)
            value->punkVal->Release();
        else if (value->vt == VT_DISPATCH && value->pdispVal)
            value->pdispVal->Release();
    }
    if (SUCCEEDED(hr))
        value->vt = VT_EMPTY;
    return hr;
}

HRESULT VariantCopy(VARIANT* to, const VARIANT* from)
{
    if (!IsKnownKind(from->vt))
        return DISP_E_BADVARTYPE;
    return to == from ? S_OK : Assign(to, *from);
}

HRESULT VariantCopyInd(VARIANT* to, const VARIANT* from)
{
    if (!(from->vt & VT_BYREF))
        return VariantCopy(to, from);
    if (!IsKnownKind(from->vt) || !from->byref)
        return E_INVALIDARG;
    if (from->vt != (VT_BYREF | VT_VARIANT))
        return Assign(to, Dereferenced(*from));
    // A reference to a reference to a VARIANT isn't followed.
    if (from->pvarVal->vt == (VT_BYREF | VT_VARIANT))
        return E_INVALIDARG;
    return VariantCopyInd(to, from->pvarVal);
}
}
