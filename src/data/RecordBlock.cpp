#include "src/data/RecordBlock.h"

#include "src/values/LockedArray.h"

namespace Hesperon::specifics {

namespace {

// The first index of an array runs fastest, so the fields of a record lie nCount cells apart.
HRESULT FillBlock(const BlockSource& source, ULONG nFrom, ULONG nCount, ULONG nFields,
                  SAFEARRAY* pArray)
{
    if (!source.pFile)
        return E_FAIL;
    const LockedArray<VARIANT> cells(pArray);
    for (ULONG i = 0; i < nCount; ++i) {
        Bstr sRecord;
        const ULONGLONG nLine = source.lines.LineOf(ULONGLONG(nFrom) + i);
        const HRESULT hr = source.pFile->GetRecord(nLine, source.nLocale, sRecord.put());
        if (FAILED(hr))
            return hr;
        source.pRecordParser->Parse(sRecord.get());
        for (ULONG k = 0; k < nFields; ++k)
            source.pRecordParser->GetFieldValue(&cells.At(i + std::size_t(k) * nCount), k);
    }
    return S_OK;
}

} // namespace

HRESULT ReadRecordBlock(const BlockSource& source, ULONG nFrom, ULONG nCount, Variant& block)
{
    ULONG nFields = 0;
    HRESULT hr = source.pRecordParser ? source.pRecordParser->get_FieldCount(&nFields) : E_FAIL;
    if (FAILED(hr))
        return hr;
    SAFEARRAYBOUND bounds[] = {{nCount, static_cast<LONG>(nFrom)}, {nFields, 0}};
    SafeArray array(SafeArrayCreate(VT_VARIANT, 2, bounds));
    if (!array)
        return E_OUTOFMEMORY;
    hr = FillBlock(source, nFrom, nCount, nFields, array.get());
    if (SUCCEEDED(hr))
        block = Variant::FromArray(array.detach(), VT_VARIANT);
    return hr;
}

} // namespace Hesperon::specifics
