// The start of an enumeration of symbols, which then walks on a copy of the parser.

#include "src/data/DataParser.h"
#include "src/data/SymbolEnumerator.h"
#include "src/parsing/DataTypes.h"

namespace Hesperon::specifics {

HRESULT CDataParser::StartEnumSymbols(IDispatch* pEventSink, ULONG_PTR nTranId)
{
    return Guarded([&] {
        // Keeps the file open for the walk's first step, whatever its copy lets go of.
        const com_ptr<IFileHandler> pHandler = FileHandler();
        if (!pHandler)
            return E_UNEXPECTED;
        com_ptr<CSymbolEnumerator> pEnumerator;
        HRESULT hr = CreateObject(pEnumerator);
        if (SUCCEEDED(hr))
            hr = pEnumerator->put_DataParser(static_cast<IDataParser*>(this));
        if (SUCCEEDED(hr))
            hr = pEnumerator->put_Receiver(pEventSink);
        if (FAILED(hr))
            return hr;
        pEnumerator->put_SymbolField(FindSymbolField());
        // Takes the process-wide proxy lock, so none of this is done under the object's.
        pEnumerator->RegisterTransaction(nTranId);
        return pEnumerator->Start();
    });
}

ULONG CDataParser::FindSymbolField()
{
    ULONG nField = kNoField;
    LockGuard lock(m_lock);
    if (m_pRecordParser)
        m_pRecordParser->GetFieldIndex(TypeSymbol, &nField);
    return nField;
}

} // namespace Hesperon::specifics
