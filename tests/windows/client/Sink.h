// The receiving end of a session, made from the interface's description: it answers to the
// identifier found there, and each operation stands in the slot that it is given there.
//
// It prints the calls that it gets, and ends the thread's message loop after the end of the
// session.
#pragma once

#include "Types.h"

class Sink
{
public:
    // Throws _com_error where the description has other operations than this sink.
    explicit Sink(const InterfaceType& type);
    Sink(const Sink&) = delete;
    Sink& operator=(const Sink&) = delete;

    IDispatch* Interface() { return reinterpret_cast<IDispatch*>(this); }
    // References that others still hold; 0 before the sink is destroyed.
    LONG References() const { return m_nReferences; }

private:
    // ---- the functions in the slots; the first argument is the interface itself

    static HRESULT STDMETHODCALLTYPE QueryInterface(Sink* self, REFIID iid, void** found);
    static ULONG STDMETHODCALLTYPE AddRef(Sink* self);
    static ULONG STDMETHODCALLTYPE Release(Sink* self);
    static HRESULT STDMETHODCALLTYPE NotByName(Sink* self);
    static HRESULT STDMETHODCALLTYPE DataChanged(Sink* self, VARIANT data);
    static HRESULT STDMETHODCALLTYPE Commit(Sink* self);
    static HRESULT STDMETHODCALLTYPE Rollback(Sink* self);
    static HRESULT STDMETHODCALLTYPE OnError(Sink* self, VARIANT description);

    void Take(SAFEARRAY* batch);
    HRESULT End(const char* pszHow);

    void** m_table; // the first member, as in any interface
    std::vector<void*> m_slots;
    IID m_iid;
    LONG m_nReferences = 0;
    LONG m_nRows = 0, m_nBatches = 0;
    std::string m_sLastRow;
};
