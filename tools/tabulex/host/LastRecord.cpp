// The component gives the last record whole, however long it is. A record by its position
// comes cut, so that is what a long line is read by; but its number is known only once the
// file has been counted. Which lines are long the file itself says.
#include "tools/tabulex/host/LastRecord.h"

#include <optional>

#include "platform/values.h"
#include "tools/tabulex/host/Properties.h"
#include "tools/tabulex/host/ReadCheck.h"

namespace tabulex {

using IQRL_TabulexConverter::IDataParser;

namespace {

constexpr std::size_t kShort = 1 << 20; // bytes

// Whether a line end stands before the last line's text in the last bytes of the file.
bool EndsInShortLine(const std::string& path)
{
    FileBytes file(path);
    const std::uint64_t nSize = file.Size();
    if (nSize <= kShort)
        return true; // the whole of it is short
    const std::string bytes = BytesAt(file, nSize - kShort, kShort);
    const std::size_t nText = bytes.find_last_not_of("\r\n\t ");
    return nText != std::string::npos && bytes.find_last_of("\r\n", nText) != std::string::npos;
}

// Empty while the file isn't counted.
std::optional<std::string> CutLastRecord(IDataParser& data)
{
    ULONGLONG nCount = 0;
    VARIANT_BOOL bComplete = VARIANT_FALSE;
    Bstr text;
    if (data.GetCount(&nCount, &bComplete) != S_OK || bComplete == VARIANT_FALSE || nCount == 0)
        return std::nullopt;
    const bool bRead =
        data.put_Position(nCount - 1) == S_OK && data.get_CurrentRecord(text.put()) == S_OK;
    data.put_Position(0);
    return bRead ? std::optional(ToUtf8(text.view())) : std::nullopt;
}

} // namespace

std::optional<std::string> LastRecordText(IDataParser& data)
{
    if (!EndsInShortLine(ToUtf8(GetText(data, &IDataParser::get_FileName))))
        if (auto text = CutLastRecord(data))
            return text;
    Bstr text;
    if (data.get_LastRecord(text.put()) != S_OK)
        return std::nullopt;
    return ToUtf8(text.view());
}

} // namespace tabulex
