// Columns and the records of a block.

#include <algorithm>
#include <span>

#include "diagnostics/FaultmereClient.h"
#include "src/data/DataParser.h"
#include "src/values/LockedArray.h"

using FaultmereUtil::Assert;
using FaultmereUtil::AssertOk;

namespace Hesperon::specifics {

LONG CDataParser::Name2Type(BSTR bsName) const
{
    if (!Assert(bsName != nullptr, "bsName") || m_vTypeNames.vt != (VT_ARRAY | VT_BSTR))
        return -1;
    const LockedArray<BSTR> names(m_vTypeNames.parray);
    const auto name = std::ranges::find(names.Elements(), TextOf(bsName), &TextOf);
    // The first name is that of an unassigned column.
    const auto nPosition = name == names.Elements().end() ? 0 : name - names.Elements().begin();
    return static_cast<LONG>(nPosition) - 1;
}

HRESULT CDataParser::InitFieldsInfo()
{
    m_arFieldIndices.clear();
    ULONG nFields = 0;
    HRESULT hr = get_FieldCount(&nFields);
    for (ULONG i = 0; SUCCEEDED(hr) && i < nFields; ++i) {
        Bstr sName;
        hr = m_pRecordParser->GetFieldName(sName.put(), i);
        if (SUCCEEDED(hr) && Name2Type(sName.get()) != -1)
            m_arFieldIndices.push_back(i);
    }
    return AssertOk(hr);
}

HRESULT CDataParser::ParseRecords(VARIANT* v, ULONG nFrom, ULONG nCount)
{
    if (!v)
        return E_POINTER;
    VariantInit(v);
    return Locked([&] {
        ULONG nFields = 0;
        HRESULT hr = get_FieldCount(&nFields);
        if (FAILED(hr))
            return hr;
        SAFEARRAYBOUND bounds[] = {{nCount, static_cast<LONG>(nFrom)}, {nFields, 0}};
        SafeArray array(SafeArrayCreate(VT_VARIANT, 2, bounds));
        if (!array)
            return E_OUTOFMEMORY;
        hr = FillRecordBlock(array.get(), nFrom, nCount, nFields);
        if (SUCCEEDED(hr))
            *v = Variant::FromArray(array.detach(), VT_VARIANT).detach();
        return hr;
    });
}

HRESULT CDataParser::FillRecordBlock(SAFEARRAY* pArray, ULONG nFrom, ULONG nCount, ULONG nFields)
{
    if (!m_pFileHandler)
        return E_FAIL;
    const LockedArray<VARIANT> cells(pArray);
    for (ULONG i = 0; i < nCount; ++i) {
        Bstr sRecord;
        const ULONGLONG nLine = LineOf(ULONGLONG(nFrom) + i);
        const HRESULT hr = m_pFileHandler->GetRecord(nLine, m_nLocale, sRecord.put());
        if (FAILED(hr))
            return hr;
        m_pRecordParser->Parse(sRecord.get());
        // A field that doesn't parse leaves its text, or nothing, in its cell.
        for (ULONG k = 0; k < nFields; ++k)
            m_pRecordParser->GetFieldValue(&cells.At(i + std::size_t(k) * nCount), k);
    }
    return S_OK;
}

} // namespace Hesperon::specifics
