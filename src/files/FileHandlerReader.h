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

    HRESULT STDMETHODCALLTYPE AppendRecord(ULONGLONG nIndex, ULONG, LineBuffer& lines) override
    {
        const auto append = [&](std::string_view bytes) { Append(bytes, lines); };
        return m_pHandler->ReadBytes(nIndex, append, m_cursor) ? S_OK : E_FAIL;
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
    LineCursor m_cursor; // guarded by the handler's lock
    string_t m_sText;    // likewise; kept for its memory
};

} // namespace Hesperon::specifics
