// ILineReader: reads the records of a file for one run.
//
// It differs from IFileHandler::GetRecord in three ways. It keeps a place of its own in
// the file, so that runs at different places don't cost each other walks. Texts go to one
// buffer, since making a BSTR of each record shows in a run's time (bench/README.md). And
// it isn't a consumer: a file whose consumers have all gone closes under its readers, whose
// reads may then fail.
//
// Internal to the library. For one thread at a time; results and exceptions are those of
// GetRecord, about the first record that couldn't be read.
#pragma once

#include "platform/com_ptr.h"
#include "src/files/IFileHandler.h"
#include "src/files/LineBuffer.h"

// Records that are read one after the other.
struct LineRange
{
    ULONGLONG nFirst;
    ULONGLONG nCount;
    bool bDownwards = false; // from the first one towards the beginning of the file

    ULONGLONG At(ULONGLONG n) const { return bDownwards ? nFirst - n : nFirst + n; }
};

struct ILineReader : IUnknown
{
    // Each record that was read is added to the lines, also where a later one fails.
    virtual HRESULT STDMETHODCALLTYPE AppendRecords(const LineRange& range, ULONG nLocale,
                                                    Hesperon::specifics::LineBuffer& lines) = 0;
};

// {5E3C9C57-0B62-4B7B-9C51-6C0C0A8E1D27}
template <>
inline constexpr GUID iid_of<ILineReader> = {
    0x5E3C9C57, 0x0B62, 0x4B7B, {0x9C, 0x51, 0x6C, 0x0C, 0x0A, 0x8E, 0x1D, 0x27}};

// What a file handler offers beside IFileHandler.
struct ILineSource : IUnknown
{
    // A new reader, which begins where the consumers of the file last read.
    virtual HRESULT STDMETHODCALLTYPE OpenLines(ILineReader** ppLines) = 0;
    // IFileHandler::GetLastRecord, but 512 characters at most, whatever the record's length.
    virtual HRESULT STDMETHODCALLTYPE GetLastRecordHead(ULONG nLocale, BSTR* bsRecord) = 0;
};

// {9F0B1C6E-3A5D-4C53-8E0B-2D7C41A6F385}
template <>
inline constexpr GUID iid_of<ILineSource> = {
    0x9F0B1C6E, 0x3A5D, 0x4C53, {0x8E, 0x0B, 0x2D, 0x7C, 0x41, 0xA6, 0xF3, 0x85}};

// Null for no file, and where memory runs out.
inline com_ptr<ILineReader> OpenLines(const com_ptr<IFileHandler>& pFile)
{
    com_ptr<ILineReader> pLines;
    if (const auto pSource = pFile.as<ILineSource>())
        pSource->OpenLines(pLines.put());
    return pLines;
}
