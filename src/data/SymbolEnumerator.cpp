// A step goes to the next position, takes the text of the symbol's field and gives it to the
// receiver, unless a symbol with the same hash was given before. Only the hashes are kept, 4 bytes
// a symbol whatever its length.

#include "src/data/SymbolEnumerator.h"

#include "module/Guarded.h"
#include "src/data/FakeRecordParser.h"
#include "src/data/SymbolEnumeratorHost.h"
#include "src/data/SymbolHash.h"

using namespace IQRL_TabulexConverter;

namespace Hesperon::specifics {

HRESULT CSymbolEnumerator::Cancel()
{
    m_bCancelled = true;
    m_entry.Unregister(); // the number is free for the next walk
    return S_OK;
}

// ---- settings

HRESULT CSymbolEnumerator::get_DataParser(IDispatch** pVal)
{
    if (!pVal)
        return E_POINTER;
    *pVal = com_ptr<IDispatch>(m_pDataParser.get()).detach();
    return *pVal ? S_OK : E_NOINTERFACE;
}

HRESULT CSymbolEnumerator::put_DataParser(IDispatch* newVal)
{
    if (!newVal)
        return E_POINTER;
    return Guarded([&] {
        HRESULT hr = CopyFrom(newVal);
        if (SUCCEEDED(hr))
            hr = ReadSettings();
        return SUCCEEDED(hr) ? DetachRecordParser() : hr;
    });
}

HRESULT CSymbolEnumerator::CopyFrom(IDispatch* pSource)
{
    com_ptr<IDataParser> pParser;
    HRESULT hr = query(pSource, pParser);
    com_ptr<IDispatch> pClone;
    if (SUCCEEDED(hr))
        hr = pParser->Clone(pClone.put());
    return SUCCEEDED(hr) ? query(pClone.get(), m_pDataParser) : hr;
}

HRESULT CSymbolEnumerator::ReadSettings()
{
    HRESULT hr = m_pDataParser->get_FileName(m_bsFileName.put());
    if (SUCCEEDED(hr))
        hr = m_pDataParser->get_HasHeader(&m_bHasHeader);
    if (SUCCEEDED(hr))
        hr = m_pDataParser->get_HeaderOffset(&m_nHeaderOffset);
    if (SUCCEEDED(hr))
        hr = m_pDataParser->get_InvertedDirection(&m_bInvertedDirection);
    return hr;
}

// A copy without a file keeps nobody from closing or replacing it.
HRESULT CSymbolEnumerator::DetachRecordParser()
{
    com_ptr<IDispatch> pObject;
    HRESULT hr = m_pDataParser->get_RecordParser(pObject.put());
    if (SUCCEEDED(hr))
        hr = query(pObject.get(), m_pRecordParser);
    com_ptr<CFakeRecordParser> pFake;
    if (SUCCEEDED(hr))
        hr = CreateObject(pFake);
    if (SUCCEEDED(hr))
        hr = m_pDataParser->put_RecordParser(pFake.get());
    if (SUCCEEDED(hr))
        hr = m_pDataParser->put_FileName(Bstr(string_view_t()).get());
    return SUCCEEDED(hr) ? S_OK : hr;
}

HRESULT CSymbolEnumerator::put_Receiver(IDispatch* newVal)
{
    if (!newVal)
        return E_POINTER;
    return SUCCEEDED(query(newVal, m_pReceiver)) ? S_OK : E_NOINTERFACE;
}

HRESULT CSymbolEnumerator::get_SymbolField(ULONG* pVal)
{
    if (!pVal)
        return E_POINTER;
    *pVal = m_nSymbolField;
    return S_OK;
}

HRESULT CSymbolEnumerator::put_SymbolField(ULONG newVal)
{
    m_nSymbolField = newVal;
    return S_OK;
}

HRESULT CSymbolEnumerator::Start()
{
    return Guarded([&] { return SymbolEnumeratorHost::Add(this); });
}

// ---- steps

HRESULT CSymbolEnumerator::ProcessRecord(ULONGLONG nIndex, BSTR, VARIANT_BOOL)
{
    if (m_bCancelled)
        return S_FALSE;
    const HRESULT hr = Guarded([&] { return GiveSymbolAt(nIndex); });
    if (FAILED(hr) || hr == S_FALSE)
        EndWalk(hr == S_FALSE);
    return hr;
}

HRESULT CSymbolEnumerator::GiveSymbolAt(ULONGLONG nPosition)
{
    if (!m_pDataParser || !m_pRecordParser)
        return E_NOINTERFACE;
    if (nPosition == 0)
        if (const HRESULT hr = AttachFile(); FAILED(hr))
            return hr;
    // At the end of the file going to the position, or reading the record, fails.
    Bstr sRecord;
    if (m_pDataParser->put_Position(nPosition) != S_OK ||
        m_pDataParser->get_CurrentRecord(sRecord.put()) != S_OK)
        return S_FALSE;
    Bstr sSymbol;
    const HRESULT hr = m_pRecordParser->GetFieldText(sRecord.get(), m_nSymbolField, sSymbol.put());
    return FAILED(hr) ? hr : GiveSymbol(sSymbol.get());
}

// Opening a file resets its header and direction, so they are set again. Setting the inverted
// direction twice would switch it back.
HRESULT CSymbolEnumerator::AttachFile()
{
    HRESULT hr = m_pDataParser->put_FileName(m_bsFileName.get());
    if (SUCCEEDED(hr))
        hr = m_pDataParser->put_HasHeader(m_bHasHeader);
    if (SUCCEEDED(hr))
        hr = m_pDataParser->put_HeaderOffset(m_nHeaderOffset);
    if (SUCCEEDED(hr) && m_bInvertedDirection != VARIANT_FALSE)
        hr = m_pDataParser->put_InvertedDirection(VARIANT_TRUE);
    return hr;
}

HRESULT CSymbolEnumerator::GiveSymbol(BSTR bsSymbol)
{
    const string_view_t sSymbol = TextOf(bsSymbol);
    if (sSymbol.empty() || !m_setHashes.insert(SymbolHash(sSymbol)).second)
        return S_OK;
    if (!m_pReceiver)
        return E_NOINTERFACE;
    VARIANT vSymbol;
    VariantInit(&vSymbol);
    vSymbol.vt = VT_BSTR;
    vSymbol.bstrVal = bsSymbol;
    return m_pReceiver->PutRecords(vSymbol, 0);
}

void CSymbolEnumerator::EndWalk(bool bWell)
{
    m_entry.Unregister(); // before the end: the receiver may start the next walk in that call
    if (m_pReceiver)
        m_pReceiver->EndTransaction(bWell ? VARIANT_TRUE : VARIANT_FALSE);
    m_pReceiver.reset();
    m_pRecordParser.reset();
    m_setHashes.clear();
}

} // namespace Hesperon::specifics
