// CSymbolEnumerator: a walk over a file that tells its receiver each symbol once, in
// the order in which they appear. See interfaces/ISymbolEnumerator.h for the contract.
//
// It walks on a copy of the data parser that has a fake record parser, so that going to
// a record parses nothing, and that holds no file before the first step. The record
// parser of the copy, cut out of it, finds the symbol in each line.
//
// Threads: what is put before Start() belongs to the walk's thread from then on. Only
// Cancel may come from any thread.
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
#include "src/parsing/DataTypes.h"

namespace Hesperon::specifics {

class CSymbolEnumerator final
    : public ComObject<CSymbolEnumerator, Dual<IQRL_TabulexConverter::ISymbolEnumerator>,
                       Dual<IQRL_TabulexConverter::IFileHandlerEvents>,
                       IQRL_TabulexConverter::IAsyncTransaction>
{
public:
    void FinalRelease();

    // Lets the walk be cancelled by this number, unless another one has it. Once an object.
    void RegisterTransaction(ULONG_PTR nTranId);

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

    // The next step ends the walk without a word to the receiver.
    HRESULT STDMETHODCALLTYPE Cancel() override;

private:
    void UnregisterTransaction();
    HRESULT CopyFrom(IDispatch* pSource);
    HRESULT ReadSettings();
    HRESULT DetachRecordParser();

    // S_FALSE: the walk has ended well.
    HRESULT TellSymbolAt(ULONGLONG nPosition);
    HRESULT AttachFile();
    HRESULT TellSymbol(BSTR bsSymbol);
    void EndWalk(bool bWell);

    com_ptr<IQRL_TabulexConverter::IRecordParser> m_pRecordParser; // cut out of the copy
    com_ptr<IQRL_TabulexConverter::IDataParser> m_pDataParser;     // the copy
    Bstr m_bsFileName;
    VARIANT_BOOL m_bHasHeader = VARIANT_FALSE;
    ULONG m_nHeaderOffset = 0;
    VARIANT_BOOL m_bInvertedDirection = VARIANT_FALSE;
    com_ptr<IQRL_TabulexConverter::IDataParserEvents> m_pReceiver;
    std::set<ULONG> m_setHashes; // of the symbols told so far
    ULONG m_nSymbolField = kNoField;
    std::atomic<bool> m_bCancelled = false;
    std::atomic<bool> m_bRegistered = false; // among the transactions
};

} // namespace Hesperon::specifics
