// IFileHandler: access to the lines of one open file, shared by all consumers of
// that file name. Internal to the library.
//
// Lines with content count from 0. A key names the owner of queued requests; the
// owner's address serves. Safe from any thread; a long walk through the file
// blocks the other consumers of that file meanwhile. GetRecord, SeekRecord and
// GetLastRecord throw std::invalid_argument when the file can't be read and
// std::bad_alloc when memory runs out. Nobody may touch the handler after
// releasing the last reference.
#pragma once

#include "platform/component.h"

struct IFileHandler : IUnknown
{
    static constexpr ULONGLONG kAllKeys = ~0ull;

    virtual HRESULT STDMETHODCALLTYPE GetFileName(BSTR* bsName) = 0;
    // Lines known so far; bComplete may be null.
    virtual HRESULT STDMETHODCALLTYPE GetCount(ULONGLONG* nCount, VARIANT_BOOL* bComplete) = 0;
    // At most 512 bytes of a line, as text in the ANSI code page. E_FAIL: no such line.
    virtual HRESULT STDMETHODCALLTYPE GetRecord(ULONGLONG nIndex, ULONG nLocale,
                                                BSTR* bsRecord) = 0;
    // S_OK if the line exists, else E_FAIL; scans the file up to it.
    virtual HRESULT STDMETHODCALLTYPE SeekRecord(ULONGLONG nIndex) = 0;
    // The worker will give line 0 to an IRecordParser.
    virtual HRESULT STDMETHODCALLTYPE QueueFirstRecord(IUnknown* pObject, ULONGLONG nKey) = 0;
    // S_OK if the key had requests, else S_FALSE; kAllKeys cancels all.
    virtual HRESULT STDMETHODCALLTYPE CancelRequests(ULONGLONG nKey) = 0;
    // The worker will report the growing count to an IFileHandlerEvents.
    virtual HRESULT STDMETHODCALLTYPE QueueCountEvents(IUnknown* pObject, ULONGLONG nKey) = 0;
    // The worker will call ProcessRecord of an IFileHandlerEvents, record by record.
    virtual HRESULT STDMETHODCALLTYPE QueueConversion(IUnknown* pObject, ULONGLONG nKey) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetRelativePos(ULONGLONG nIndex, FLOAT* fRelative) = 0;
    // The whole last line of the file, without a limit of length.
    virtual HRESULT STDMETHODCALLTYPE GetLastRecord(ULONG nLocale, BSTR* bsRecord) = 0;
    virtual HRESULT STDMETHODCALLTYPE RefreshFileSize() = 0;
    virtual HRESULT STDMETHODCALLTYPE Invalidate(VARIANT_BOOL bErase) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetApproxCount(ULONGLONG* nCount) = 0;
};

// {B3BD5B60-B619-4096-9893-1C4D22BD85AD}
template <>
inline constexpr GUID iid_of<IFileHandler> = {
    0xB3BD5B60, 0xB619, 0x4096, {0x98, 0x93, 0x1C, 0x4D, 0x22, 0xBD, 0x85, 0xAD}};
