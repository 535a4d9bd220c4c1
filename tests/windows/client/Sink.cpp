#include "Sink.h"

#include <cstdio>

#include "Text.h"

namespace {

// A record's cells, each with its kind: "7:2003-01-13 5:98.05".
std::string RowText(SAFEARRAY* batch, LONG nRow)
{
    LONG nLastColumn = -1;
    _com_util::CheckError(SafeArrayGetUBound(batch, 1, &nLastColumn));
    std::string text;
    for (LONG nColumn = 0; nColumn <= nLastColumn; ++nColumn) {
        LONG at[] = {nColumn, nRow};
        _variant_t cell;
        _com_util::CheckError(SafeArrayGetElement(batch, at, &cell));
        text += (nColumn ? " " : "") + std::to_string(cell.vt) + ":" + TextOf(cell);
    }
    return text;
}

} // namespace

Sink::Sink(const InterfaceType& type) : m_slots(type.nTableSize / sizeof(void*)), m_iid(type.iid)
{
    const auto slot = [](auto* function) { return reinterpret_cast<void*>(function); };
    void* const kDispatch[] = {slot(&QueryInterface), slot(&AddRef),    slot(&Release),
                               slot(&NotByName),      slot(&NotByName), slot(&NotByName),
                               slot(&NotByName)};
    const struct
    {
        const wchar_t* pszName;
        std::vector<VARTYPE> kinds;
        void* function;
    } kOwn[] = {
        {L"DataChanged", {VT_VARIANT}, slot(&DataChanged)},
        {L"Commit", {}, slot(&Commit)},
        {L"Rollback", {}, slot(&Rollback)},
        {L"OnError", {VT_VARIANT}, slot(&OnError)},
    };
    if (std::size(kDispatch) + std::size(kOwn) != m_slots.size())
        throw _com_error(TYPE_E_INCONSISTENTPROPFUNCS);
    std::copy(std::begin(kDispatch), std::end(kDispatch), m_slots.begin());
    for (const auto& own : kOwn) {
        const Operation& operation = type.Find(own.pszName, INVOKE_FUNC);
        void*& place = m_slots.at(static_cast<std::size_t>(operation.nOffset) / sizeof(void*));
        if (place || operation.kinds != own.kinds)
            throw _com_error(TYPE_E_INCONSISTENTPROPFUNCS);
        place = own.function;
    }
    m_table = m_slots.data();
}

HRESULT Sink::QueryInterface(Sink* self, REFIID iid, void** found)
{
    const bool bKnown = iid == IID_IUnknown || iid == IID_IDispatch || iid == self->m_iid;
    *found = bKnown ? self : nullptr;
    if (!bKnown)
        return E_NOINTERFACE;
    AddRef(self);
    return S_OK;
}

ULONG Sink::AddRef(Sink* self)
{
    return static_cast<ULONG>(InterlockedIncrement(&self->m_nReferences));
}

ULONG Sink::Release(Sink* self)
{
    return static_cast<ULONG>(InterlockedDecrement(&self->m_nReferences));
}

HRESULT Sink::NotByName(Sink*)
{
    return E_NOTIMPL;
}

HRESULT Sink::DataChanged(Sink* self, VARIANT data)
{
    if (data.vt == VT_BSTR)
        std::printf("  symbol %s\n", TextOf(data).c_str());
    else
        self->Take(data.parray);
    return S_OK;
}

void Sink::Take(SAFEARRAY* batch)
{
    LONG nLast = -1;
    _com_util::CheckError(SafeArrayGetUBound(batch, 2, &nLast));
    if (nLast < 0)
        return;
    if (m_nRows == 0)
        std::printf("  first row %s\n", RowText(batch, 0).c_str());
    m_sLastRow = RowText(batch, nLast);
    m_nRows += nLast + 1;
    ++m_nBatches;
}

HRESULT Sink::Commit(Sink* self)
{
    return self->End("commit");
}

HRESULT Sink::Rollback(Sink* self)
{
    return self->End("rollback");
}

HRESULT Sink::End(const char* pszHow)
{
    if (m_nRows)
        std::printf("  last row %s\n  rows %ld, batches %ld\n", m_sLastRow.c_str(), m_nRows,
                    m_nBatches);
    std::printf("  %s\n", pszHow);
    PostQuitMessage(0);
    return S_OK;
}

HRESULT Sink::OnError(Sink*, VARIANT description)
{
    LONG nText = 1;
    _variant_t text;
    const HRESULT hr = SafeArrayGetElement(description.parray, &nText, &text);
    if (SUCCEEDED(hr))
        std::printf("  error %s\n", TextOf(text).c_str());
    return hr;
}
