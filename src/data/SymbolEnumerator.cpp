#include "src/data/SymbolEnumerator.h"

#include "module/Guarded.h"
#include "src/data/FakeRecordParser.h"
#include "src/data/SymbolEnumeratorHost.h"
#include "src/data/SymbolHash.h"
#include "src/files/AsyncTransactionPool.h"

using namespace IQRL_TabulexConverter;

namespace Hesperon::specifics {

// ---- transaction

// The pool gives 0 for a number that is taken; to unregister then would take another
// entry away.
void CSymbolEnumerator::RegisterTransaction(ULONG_PTR nTranId)
{
    IUnknown* pObject = static_cast<IAsyncTransaction*>(this);
    m_bRegistered = AsyncTransactionPool::RegisterTransaction(nTranId, pObject) == nTranId;
}

void CSymbolEnumerator::UnregisterTransaction()
{
    if (m_bRegistered.exchange(false))
        AsyncTransactionPool::UnregisterTransaction(this);
}

void CSymbolEnumerator::FinalRelease()
{
    UnregisterTransaction();
}

HRESULT CSymbolEnumerator::Cancel()
{
    m_bCancelled = true;
    UnregisterTransaction(); // the number is free for the next walk
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

// Without a file behind it the copy keeps nobody from closing or replacing the file.
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
    const HRESULT hr = Guarded([&] { return TellSymbolAt(nIndex); });
    if (FAILED(hr) || hr == S_FALSE)
        EndWalk(hr == S_FALSE);
    return hr;
}

HRESULT CSymbolEnumerator::TellSymbolAt(ULONGLONG nPosition)
{
    if (!m_pDataParser || !m_pRecordParser)
        return E_NOINTERFACE;
    if (nPosition == 0)
        if (const HRESULT hr = AttachFile(); FAILED(hr))
            return hr;
    // The end of the file shows as a position or a record that can't be had.
    Bstr sRecord;
    if (m_pDataParser->put_Position(nPosition) != S_OK ||
        m_pDataParser->get_CurrentRecord(sRecord.put()) != S_OK)
        return S_FALSE;
    Bstr sSymbol;
    const HRESULT hr = m_pRecordParser->GetFieldText(sRecord.get(), m_nSymbolField, sSymbol.put());
    return FAILED(hr) ? hr : TellSymbol(sSymbol.get());
}

// Opening a file forgets what was known of it, so it is put again. Putting the inverted
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

HRESULT CSymbolEnumerator::TellSymbol(BSTR bsSymbol)
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
    UnregisterTransaction(); // ahead of the end: the receiver may start the next walk then
    if (m_pReceiver)
        m_pReceiver->EndTransaction(bWell ? VARIANT_TRUE : VARIANT_FALSE);
    m_pReceiver.reset();
    m_pRecordParser.reset();
    m_setHashes.clear();
}

} // namespace Hesperon::specifics
