// CSymbolEnumerator: a walk over a file that gives its receiver each symbol once, in
// the order in which they appear. See interfaces/ISymbolEnumerator.h for the contract.
//
// It walks on a copy of the data parser. The copy holds no file before the first step, and
// its record parser is replaced by a fake one, so that going to a record parses nothing. The
// record parser taken out of the copy finds the symbol in each line.
//
// Threads: call Start() after all properties are set. From then on the object belongs to the
// walk's thread; only Cancel may come from any thread.
#pragma once

#include <atomic>
#include <set>

#include "interfaces/IAsyncTransaction.h"
#include "interfaces/IDataParser.h"
#include "interfaces/IDataParserEvents.h"
#include "interfaces/IFileHandlerEvents.h"
#include "interfaces/IRecordParser.h"
#include "interfaces/ISymbolEnumerator.h"
#include "module/ComObject.h"
#include "platform/values.h"
#include "src/files/TransactionEntry.h"
#include "src/parsing/DataTypes.h"

namespace Hesperon::specifics {

class CSymbolEnumerator final
    : public ComObject<CSymbolEnumerator, Dual<IQRL_TabulexConverter::ISymbolEnumerator>,
                       Dual<IQRL_TabulexConverter::IFileHandlerEvents>,
                       IQRL_TabulexConverter::IAsyncTransaction>
{
public:
    void FinalRelease() { m_entry.Unregister(); }

    // Lets the walk be cancelled by this number, unless another one has it.
    void RegisterTransaction(ULONG_PTR nTranId) { m_entry.Register(nTranId); }

    // ---- ISymbolEnumerator

    HRESULT STDMETHODCALLTYPE get_DataParser(IDispatch** pVal) override;
    HRESULT STDMETHODCALLTYPE put_DataParser(IDispatch* newVal) override;
    HRESULT STDMETHODCALLTYPE put_Receiver(IDispatch* newVal) override;
    HRESULT STDMETHODCALLTYPE get_SymbolField(ULONG* pVal) override;
    HRESULT STDMETHODCALLTYPE put_SymbolField(ULONG newVal) override;
    HRESULT STDMETHODCALLTYPE Start() override;

    // ---- IFileHandlerEvents

    HRESULT STDMETHODCALLTYPE RecordCountChange(ULONGLONG, VARIANT_BOOL) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE PutData(VARIANT, ULONGLONG, ULONGLONG) override { return E_NOTIMPL; }
    // One step: the record at position nIndex. Anything but S_OK ends the walk.
    HRESULT STDMETHODCALLTYPE ProcessRecord(ULONGLONG nIndex, BSTR bsRecord,
                                            VARIANT_BOOL bComplete) override;

    // ---- IAsyncTransaction

    // The next step ends the walk; the receiver isn't called any more.
    HRESULT STDMETHODCALLTYPE Cancel() override;

private:
    HRESULT CopyFrom(IDispatch* pSource);
    HRESULT ReadSettings();
    HRESULT DetachRecordParser();

    // S_FALSE: the walk has ended well.
    HRESULT GiveSymbolAt(ULONGLONG nPosition);
    HRESULT AttachFile();
    HRESULT GiveSymbol(BSTR bsSymbol);
    void EndWalk(bool bWell);

    com_ptr<IQRL_TabulexConverter::IRecordParser> m_pRecordParser; // cut out of the copy
    com_ptr<IQRL_TabulexConverter::IDataParser> m_pDataParser;     // the copy
    Bstr m_bsFileName;
    VARIANT_BOOL m_bHasHeader = VARIANT_FALSE;
    ULONG m_nHeaderOffset = 0;
    VARIANT_BOOL m_bInvertedDirection = VARIANT_FALSE;
    com_ptr<IQRL_TabulexConverter::IDataParserEvents> m_pReceiver;
    std::set<ULONG> m_setHashes; // of the symbols given so far
    ULONG m_nSymbolField = kNoField;
    std::atomic<bool> m_bCancelled = false;
    TransactionEntry m_entry{*this};
};

} // namespace Hesperon::specifics
