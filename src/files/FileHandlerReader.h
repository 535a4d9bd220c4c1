// CFileHandler::CReader: ILineReader on a file handler, with a cursor of its own.
//
// It keeps the handler's memory, but not the file: that closes with the last reference to
// the proxy, as if there were no reader.
#pragma once

#include "module/ComObject.h"
#include "platform/text/CodePage.h"
#include "src/files/FileHandler.h"

namespace Hesperon::specifics {

class CFileHandler::CReader final : public ComObject<CReader, ILineReader>
{
public:
    void Attach(std::shared_ptr<CFileHandler> pHandler) { m_pHandler = std::move(pHandler); }

    HRESULT STDMETHODCALLTYPE AppendRecords(const LineRange& range, ULONG,
                                            LineBuffer& lines) override
    {
        const std::size_t nBefore = lines.size();
        const auto append = [&](std::string_view bytes) { Append(bytes, lines); };
        for (ULONGLONG n = 0; n < range.nCount; n = lines.size() - nBefore) {
            const LineRange rest{range.At(n), range.nCount - n, range.bDownwards};
            if (m_bAsciiIsSelf && m_pHandler->AppendPlainRecords(rest, m_cursor, lines) != 0)
                continue;
            if (!m_pHandler->ReadBytes(rest.nFirst, append, m_cursor))
                return E_FAIL;
        }
        return S_OK;
    }

private:
    void Append(std::string_view bytes, LineBuffer& lines)
    {
        if (IsAsciiText(kAnsiCodePage, bytes))
            return lines.AddBytes(bytes);
        m_sText.clear();
        DecodeBytes(kAnsiCodePage, bytes, m_sText);
        lines.Add(m_sText);
    }

    std::shared_ptr<CFileHandler> m_pHandler;
    const bool m_bAsciiIsSelf = IsAsciiText(kAnsiCodePage, " ");
    LineCursor m_cursor; // guarded by the handler's lock
    string_t m_sText;    // likewise; kept for its memory
};

} // namespace Hesperon::specifics
