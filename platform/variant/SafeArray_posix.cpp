// Arrays in the published layout: a descriptor with its bounds, and apart from it the elements.
//
// The bounds lie in reverse, the rightmost dimension first, and the leftmost index of an
// element runs fastest. Each kind of element has its own way of being copied and freed, which
// the descriptor's features name; numbers are only bytes.

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <optional>

#include "platform/component.h"
#include "platform/variant/VariantKinds_posix.h"

namespace {

// In front of the descriptor, where the published layout keeps the kind too.
struct Prefix
{
    std::uint32_t unused[3];
    std::uint32_t vt;
};
static_assert(sizeof(Prefix) == 16);

Prefix* PrefixOf(SAFEARRAY* array)
{
    return reinterpret_cast<Prefix*>(array) - 1;
}

BYTE* DataOf(const SAFEARRAY& array)
{
    return static_cast<BYTE*>(array.pvData);
}

// Dimension 1 is the leftmost.
SAFEARRAYBOUND& BoundOf(SAFEARRAY& array, UINT dimension)
{
    SAFEARRAYBOUND* bounds = array.rgsabound;
    return bounds[array.cDims - dimension];
}

USHORT FeaturesOf(VARTYPE vt)
{
    switch (vt) {
    case VT_BSTR:
        return FADF_HAVEVARTYPE | FADF_BSTR;
    case VT_VARIANT:
        return FADF_HAVEVARTYPE | FADF_VARIANT;
    case VT_UNKNOWN:
        return FADF_UNKNOWN;
    case VT_DISPATCH:
        return FADF_DISPATCH;
    default:
        return FADF_HAVEVARTYPE;
    }
}

bool IsPlain(const SAFEARRAY& array)
{
    return !(array.fFeatures & (FADF_BSTR | FADF_VARIANT | FADF_UNKNOWN | FADF_DISPATCH));
}

// Bytes of all elements when the rightmost dimension has nRightmost; empty where
// memory can't be that large.
std::optional<std::size_t> SizeWith(SAFEARRAY& array, ULONG nRightmost)
{
    std::size_t nBytes = array.cbElements;
    for (UINT dimension = 1; dimension <= array.cDims; ++dimension) {
        const ULONG n = dimension == array.cDims ? nRightmost : BoundOf(array, dimension).cElements;
        if (__builtin_mul_overflow(nBytes, n, &nBytes))
            return {};
    }
    if (nBytes > std::numeric_limits<std::ptrdiff_t>::max())
        return {};
    return nBytes;
}

std::size_t SizeOf(SAFEARRAY& array)
{
    return *SizeWith(array, BoundOf(array, array.cDims).cElements);
}

void FreeDescriptor(SAFEARRAY* array)
{
    std::free(PrefixOf(array));
}

// A descriptor with neither bounds nor data; null without memory. Its type has room for one bound,
// the others follow it.
SAFEARRAY* NewDescriptor(VARTYPE vt, UINT dimensions)
{
    const std::size_t nBounds = (dimensions - 1) * sizeof(SAFEARRAYBOUND);
    void* block = std::calloc(1, sizeof(Prefix) + sizeof(SAFEARRAY) + nBounds);
    if (!block)
        return nullptr;
    auto* prefix = static_cast<Prefix*>(block);
    prefix->vt = vt;
    auto* array = reinterpret_cast<SAFEARRAY*>(prefix + 1);
    array->cDims = static_cast<USHORT>(dimensions);
    array->fFeatures = FeaturesOf(vt);
    array->cbElements = static_cast<ULONG>(KindSize(vt));
    return array;
}

// Zeroed elements for the bounds; frees the descriptor when that fails. An array without elements
// has a byte all the same, since null means that memory ran out.
SAFEARRAY* WithData(SAFEARRAY* array)
{
    const auto nBytes = SizeWith(*array, BoundOf(*array, array->cDims).cElements);
    if (nBytes)
        array->pvData = std::calloc(std::max<std::size_t>(*nBytes, 1), 1);
    if (array->pvData)
        return array;
    FreeDescriptor(array);
    return nullptr;
}

// Elements are reached through untyped memory, which may hold any pointer kind.
template <class Pointer>
Pointer Load(const void* from)
{
    Pointer p = nullptr;
    std::memcpy(&p, from, sizeof p);
    return p;
}

IUnknown* InterfaceOf(const SAFEARRAY& array, const void* element)
{
    const bool bHolds = (array.fFeatures & (FADF_UNKNOWN | FADF_DISPATCH)) != 0;
    return bHolds ? Load<IUnknown*>(element) : nullptr;
}

void ClearElement(const SAFEARRAY& array, void* element)
{
    if (array.fFeatures & FADF_BSTR)
        SysFreeString(Load<BSTR>(element));
    else if (array.fFeatures & FADF_VARIANT)
        VariantClear(static_cast<VARIANT*>(element));
    else if (IUnknown* p = InterfaceOf(array, element))
        p->Release();
}

void ClearElements(const SAFEARRAY& array, BYTE* first, BYTE* last)
{
    if (IsPlain(array))
        return;
    for (; first != last; first += array.cbElements)
        ClearElement(array, first);
}

HRESULT CopyText(BSTR text, void* to)
{
    BSTR copy = nullptr;
    if (text) {
        const auto* bytes = reinterpret_cast<const char*>(text);
        copy = SysAllocStringByteLen(bytes, SysStringByteLen(text));
        if (!copy)
            return E_OUTOFMEMORY;
    }
    std::memcpy(to, &copy, sizeof copy);
    return S_OK;
}

// A copy that the target owns; what the target held before is overwritten unseen.
HRESULT CopyElement(const SAFEARRAY& array, const void* from, void* to)
{
    if (array.fFeatures & FADF_BSTR)
        return CopyText(Load<BSTR>(from), to);
    if (array.fFeatures & FADF_VARIANT) {
        VariantInit(static_cast<VARIANT*>(to));
        return VariantCopy(static_cast<VARIANT*>(to), static_cast<const VARIANT*>(from));
    }
    std::memcpy(to, from, array.cbElements);
    if (IUnknown* p = InterfaceOf(array, to))
        p->AddRef();
    return S_OK;
}

// A BSTR or an interface is passed as itself, not by its address. It is copied before the old one
// is freed: they may be the same.
HRESULT ReplacePointer(const SAFEARRAY& array, void* value, void* element)
{
    void* copy = nullptr;
    if (HRESULT hr = CopyElement(array, &value, &copy); FAILED(hr))
        return hr;
    ClearElement(array, element);
    std::memcpy(element, &copy, sizeof copy);
    return S_OK;
}

HRESULT CopyElements(SAFEARRAY& from, SAFEARRAY& to)
{
    const std::size_t nBytes = SizeOf(from);
    if (IsPlain(from)) {
        std::memcpy(to.pvData, from.pvData, nBytes);
        return S_OK;
    }
    for (std::size_t n = 0; n < nBytes; n += from.cbElements)
        if (HRESULT hr = CopyElement(from, DataOf(from) + n, DataOf(to) + n); FAILED(hr))
            return hr;
    return S_OK;
}

// The element at the indices, leftmost first; null for one out of range.
BYTE* ElementAt(SAFEARRAY& array, const LONG* indices)
{
    std::size_t nElement = 0;
    std::size_t nStride = 1;
    for (UINT dimension = 1; dimension <= array.cDims; ++dimension) {
        const SAFEARRAYBOUND& bound = BoundOf(array, dimension);
        const LONGLONG nIndex = LONGLONG{indices[dimension - 1]} - bound.lLbound;
        if (nIndex < 0 || nIndex >= bound.cElements)
            return nullptr;
        nElement += static_cast<std::size_t>(nIndex) * nStride;
        nStride *= bound.cElements;
    }
    return DataOf(array) + nElement * array.cbElements;
}

HRESULT CheckDimension(SAFEARRAY* array, UINT dimension, const LONG* bound)
{
    if (!array || !bound)
        return E_INVALIDARG;
    return dimension == 0 || dimension > array->cDims ? DISP_E_BADINDEX : S_OK;
}

} // namespace

extern "C" {

SAFEARRAY* SafeArrayCreate(VARTYPE vt, UINT dimensions, SAFEARRAYBOUND* bounds)
{
    if (KindSize(vt) == 0 || dimensions == 0 || dimensions > 65535 || !bounds)
        return nullptr;
    SAFEARRAY* array = NewDescriptor(vt, dimensions);
    if (!array)
        return nullptr;
    for (UINT dimension = 1; dimension <= dimensions; ++dimension)
        BoundOf(*array, dimension) = bounds[dimension - 1];
    return WithData(array);
}

SAFEARRAY* SafeArrayCreateVector(VARTYPE vt, LONG lowerBound, ULONG count)
{
    SAFEARRAYBOUND bound = {count, lowerBound};
    return SafeArrayCreate(vt, 1, &bound);
}

HRESULT SafeArrayDestroy(SAFEARRAY* array)
{
    if (!array)
        return S_OK;
    if (array->cLocks != 0)
        return DISP_E_ARRAYISLOCKED;
    ClearElements(*array, DataOf(*array), DataOf(*array) + SizeOf(*array));
    std::free(array->pvData);
    FreeDescriptor(array);
    return S_OK;
}

HRESULT SafeArrayCopy(SAFEARRAY* array, SAFEARRAY** copy)
{
    if (!copy)
        return E_INVALIDARG;
    *copy = nullptr;
    if (!array)
        return S_OK;
    VARTYPE vt = VT_EMPTY;
    if (HRESULT hr = SafeArrayGetVartype(array, &vt); FAILED(hr))
        return hr;
    SAFEARRAY* result = NewDescriptor(vt, array->cDims);
    if (!result)
        return E_OUTOFMEMORY;
    std::copy_n(&array->rgsabound[0], array->cDims, &result->rgsabound[0]);
    result = WithData(result);
    if (!result)
        return E_OUTOFMEMORY;
    if (HRESULT hr = CopyElements(*array, *result); FAILED(hr)) {
        SafeArrayDestroy(result);
        return hr;
    }
    *copy = result;
    return S_OK;
}

// The rightmost index runs slowest, so that a change only adds or removes at the end. An array that
// gets smaller is cut before memory is asked for, and keeps its block if there is no smaller one.
HRESULT SafeArrayRedim(SAFEARRAY* array, SAFEARRAYBOUND* newRightmostBound)
{
    if (!array || !newRightmostBound)
        return E_INVALIDARG;
    if (array->cLocks != 0)
        return DISP_E_ARRAYISLOCKED;
    const std::size_t nOld = SizeOf(*array);
    const auto nNew = SizeWith(*array, newRightmostBound->cElements);
    if (!nNew)
        return E_OUTOFMEMORY;
    if (*nNew < nOld) {
        ClearElements(*array, DataOf(*array) + *nNew, DataOf(*array) + nOld);
        BoundOf(*array, array->cDims) = *newRightmostBound;
    }
    void* data = std::realloc(array->pvData, std::max<std::size_t>(*nNew, 1));
    if (!data)
        return *nNew < nOld ? S_OK : E_OUTOFMEMORY;
    array->pvData = data;
    BoundOf(*array, array->cDims) = *newRightmostBound;
    if (*nNew > nOld)
        std::memset(DataOf(*array) + nOld, 0, *nNew - nOld);
    return S_OK;
}

UINT SafeArrayGetDim(SAFEARRAY* array)
{
    return array ? array->cDims : 0;
}

UINT SafeArrayGetElemsize(SAFEARRAY* array)
{
    return array ? array->cbElements : 0;
}

HRESULT SafeArrayGetVartype(SAFEARRAY* array, VARTYPE* vt)
{
    if (!array || !vt)
        return E_INVALIDARG;
    *vt = static_cast<VARTYPE>(PrefixOf(array)->vt);
    return S_OK;
}

HRESULT SafeArrayGetLBound(SAFEARRAY* array, UINT dimension, LONG* bound)
{
    const HRESULT hr = CheckDimension(array, dimension, bound);
    if (SUCCEEDED(hr))
        *bound = BoundOf(*array, dimension).lLbound;
    return hr;
}

HRESULT SafeArrayGetUBound(SAFEARRAY* array, UINT dimension, LONG* bound)
{
    const HRESULT hr = CheckDimension(array, dimension, bound);
    if (SUCCEEDED(hr)) {
        const SAFEARRAYBOUND& b = BoundOf(*array, dimension);
        *bound = static_cast<LONG>(LONGLONG{b.lLbound} + b.cElements - 1);
    }
    return hr;
}

// What `value` held before is overwritten unseen, as published.
HRESULT SafeArrayGetElement(SAFEARRAY* array, LONG* indices, void* value)
{
    void* element = nullptr;
    if (!value)
        return E_INVALIDARG;
    const HRESULT hr = SafeArrayPtrOfIndex(array, indices, &element);
    return SUCCEEDED(hr) ? CopyElement(*array, element, value) : hr;
}

HRESULT SafeArrayPutElement(SAFEARRAY* array, LONG* indices, void* value)
{
    void* element = nullptr;
    if (HRESULT hr = SafeArrayPtrOfIndex(array, indices, &element); FAILED(hr))
        return hr;
    const bool bPlain = IsPlain(*array);
    const bool bVariant = (array->fFeatures & FADF_VARIANT) != 0;
    if (!bPlain && !bVariant)
        return ReplacePointer(*array, value, element);
    if (!value)
        return E_INVALIDARG;
    if (bVariant)
        return VariantCopy(static_cast<VARIANT*>(element), static_cast<VARIANT*>(value));
    std::memcpy(element, value, array->cbElements);
    return S_OK;
}

HRESULT SafeArrayPtrOfIndex(SAFEARRAY* array, LONG* indices, void** element)
{
    if (!array || !indices || !element)
        return E_INVALIDARG;
    BYTE* p = ElementAt(*array, indices);
    if (!p)
        return DISP_E_BADINDEX;
    *element = p;
    return S_OK;
}
}
