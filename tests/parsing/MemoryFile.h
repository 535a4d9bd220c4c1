// MemoryFile: a data parser over lines in memory, for tests of what reads records
// through IDataParser. It has positions, header and direction; all else answers
// E_NOTIMPL. Not synchronised: the record parser's lock guards it.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "interfaces/IRecordParser.h"
#include "tests/support/UnusedDataParser.h"

class MemoryFile final : public UnusedDataParser<MemoryFile>
{
public:
    static com_ptr<MemoryFile> Of(std::vector<string_t> lines);

    // E_FAIL for a position without a line; the old one stays then.
    HRESULT STDMETHODCALLTYPE put_Position(ULONGLONG newVal) override;
    HRESULT STDMETHODCALLTYPE get_Position(ULONGLONG* pVal) override;
    HRESULT STDMETHODCALLTYPE get_CurrentRecord(BSTR* pVal) override;
    HRESULT STDMETHODCALLTYPE get_LastRecord(BSTR* pVal) override;
    HRESULT STDMETHODCALLTYPE get_FileName(BSTR* pVal) override;
    HRESULT STDMETHODCALLTYPE get_HasHeader(VARIANT_BOOL* pVal) override;
    HRESULT STDMETHODCALLTYPE put_HasHeader(VARIANT_BOOL newVal) override;
    HRESULT STDMETHODCALLTYPE get_HeaderOffset(ULONG* pVal) override;
    HRESULT STDMETHODCALLTYPE put_HeaderOffset(ULONG newVal) override;
    HRESULT STDMETHODCALLTYPE get_InvertedDirection(VARIANT_BOOL* pVal) override;
    HRESULT STDMETHODCALLTYPE put_InvertedDirection(VARIANT_BOOL newVal) override;
    // Notes the call, then does what a data parser does: TRUE first finds the resolution
    // again, from the header line if there is one; then the first record is parsed.
    HRESULT STDMETHODCALLTYPE RefreshDateInfo(VARIANT_BOOL FindResolution) override;

    // ---- the file

    std::vector<string_t> m_lines;
    string_t m_sName = OLESTR("quotes.txt");
    bool m_bHasHeader = false;
    ULONG m_nHeaderOffset = 0;
    bool m_bInverted = false;
    IQRL_TabulexConverter::IRecordParser* m_pRecordParser = nullptr; // not counted

    // ---- faults

    std::set<ULONGLONG> m_badPositions; // putting them fails
    std::set<ULONGLONG> m_badLines;     // reading them fails
    bool m_bBadOffset = false;          // putting a header offset fails

    // ---- what was asked for

    std::vector<ULONGLONG> m_positions; // all that were put, in order; some may have failed
    unsigned m_nReads = 0;
    std::string m_refreshes; // one letter per call: 'F' with FindResolution, else 'f'

private:
    // The line of a position; the count of lines where there is none.
    std::size_t LineOf(ULONGLONG nPosition) const;
    HRESULT ReadLine(std::size_t nLine, BSTR* pVal);
    void FindResolution();

    ULONGLONG m_nPosition = 0;
};
