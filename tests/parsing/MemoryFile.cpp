#include "tests/parsing/MemoryFile.h"

#include <stdexcept>

#include "platform/values.h"

com_ptr<MemoryFile> MemoryFile::Of(std::vector<string_t> lines)
{
    com_ptr<MemoryFile> file;
    if (FAILED(CreateObject(file)))
        throw std::bad_alloc();
    file->m_lines = std::move(lines);
    return file;
}

std::size_t MemoryFile::LineOf(ULONGLONG nPosition) const
{
    const std::size_t nLines = m_lines.size();
    if (nPosition >= nLines)
        return nLines;
    if (m_bInverted)
        return nLines - nPosition - 1;
    return std::min<std::size_t>(nLines, m_nHeaderOffset + nPosition + m_bHasHeader);
}

HRESULT MemoryFile::put_Position(ULONGLONG newVal)
{
    m_positions.push_back(newVal);
    if (m_badPositions.contains(newVal) || LineOf(newVal) == m_lines.size())
        return E_FAIL;
    m_nPosition = newVal;
    return S_OK;
}

HRESULT MemoryFile::get_Position(ULONGLONG* pVal)
{
    *pVal = m_nPosition;
    return S_OK;
}

HRESULT MemoryFile::ReadLine(std::size_t nLine, BSTR* pVal)
{
    ++m_nReads;
    if (nLine >= m_lines.size() || m_badLines.contains(nLine))
        return E_FAIL;
    *pVal = NewBstr(m_lines[nLine]);
    return S_OK;
}

HRESULT MemoryFile::get_CurrentRecord(BSTR* pVal)
{
    return ReadLine(LineOf(m_nPosition), pVal);
}

HRESULT MemoryFile::get_LastRecord(BSTR* pVal)
{
    return ReadLine(m_lines.size() - 1, pVal);
}

HRESULT MemoryFile::get_FileName(BSTR* pVal)
{
    *pVal = NewBstr(m_sName);
    return S_OK;
}

HRESULT MemoryFile::get_HasHeader(VARIANT_BOOL* pVal)
{
    *pVal = m_bHasHeader ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
}

HRESULT MemoryFile::put_HasHeader(VARIANT_BOOL newVal)
{
    m_bHasHeader = newVal != VARIANT_FALSE;
    return S_OK;
}

HRESULT MemoryFile::get_HeaderOffset(ULONG* pVal)
{
    *pVal = m_nHeaderOffset;
    return S_OK;
}

HRESULT MemoryFile::put_HeaderOffset(ULONG newVal)
{
    if (m_bBadOffset)
        return E_ACCESSDENIED;
    m_nHeaderOffset = newVal;
    return S_OK;
}

HRESULT MemoryFile::get_InvertedDirection(VARIANT_BOOL* pVal)
{
    *pVal = m_bInverted ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
}

HRESULT MemoryFile::put_InvertedDirection(VARIANT_BOOL newVal)
{
    m_bInverted = newVal != VARIANT_FALSE;
    return S_OK;
}

HRESULT MemoryFile::RefreshDateInfo(VARIANT_BOOL bFindResolution)
{
    m_refreshes += bFindResolution ? 'F' : 'f';
    if (!m_pRecordParser)
        return S_OK;
    if (bFindResolution)
        FindResolution();
    Bstr record;
    if (SUCCEEDED(put_Position(0)) && SUCCEEDED(get_CurrentRecord(record.put())))
        m_pRecordParser->Parse(record.get());
    return S_OK;
}

void MemoryFile::FindResolution()
{
    Bstr record;
    HRESULT hr = S_OK;
    if (m_bHasHeader)
        hr = ReadLine(m_nHeaderOffset, record.put());
    else if (SUCCEEDED(hr = put_Position(0)))
        hr = get_CurrentRecord(record.put());
    if (SUCCEEDED(hr))
        m_pRecordParser->FindResolution(record.get());
}
