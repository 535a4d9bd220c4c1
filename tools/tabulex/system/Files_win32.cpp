#include "tools/tabulex/system/Files.h"

#include <cerrno>
#include <cstdlib>
#include <system_error>

#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>

#include "tools/tabulex/system/Paths.h"
#include "tools/tabulex/text/Text.h"

namespace tabulex {

namespace fs = std::filesystem;

namespace {

struct ModeRow
{
    int nFlags;
    const char* pszStream;
};

// In the order of FileMode.
constexpr ModeRow kModes[] = {{_O_RDONLY, "rb"}, {_O_WRONLY | _O_CREAT | _O_APPEND, "ab"}};

} // namespace

// The reason for a folder is that it is one, and not a lack of permission.
std::FILE* OpenFile(const std::string& path, FileMode mode)
{
    const ModeRow& row = kModes[static_cast<int>(mode)];
    const fs::path name = PathOf(path);
    int nFile = -1;
    errno = _wsopen_s(&nFile, name.c_str(), row.nFlags | _O_BINARY | _O_NOINHERIT, _SH_DENYNO,
                      _S_IREAD | _S_IWRITE);
    if (nFile >= 0)
        return _fdopen(nFile, row.pszStream);
    const int nError = errno;
    std::error_code ignored;
    errno = nError == EACCES && fs::is_directory(name, ignored) ? EISDIR : nError;
    return nullptr;
}

bool IsFileOfStream(int, const std::string&)
{
    return false;
}

bool AreSameName(const std::string& a, const std::string& b)
{
    return CompareStringOrdinal(FromUtf8(a).c_str(), -1, FromUtf8(b).c_str(), -1, TRUE) ==
           CSTR_EQUAL;
}

// The words of the C library where it knows the error too, so that a missing file is told alike
// whichever way it was looked for.
std::string SystemErrorText(int nError)
{
    const std::error_code error(nError, std::system_category());
    if (const auto known = error.default_error_condition();
        known.category() == std::generic_category())
        return known.message();
    wchar_t text[512];
    DWORD nUnits =
        FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                       static_cast<DWORD>(nError), 0, text, std::size(text), nullptr);
    while (nUnits > 0 && text[nUnits - 1] <= L' ') // the text ends with a line end
        --nUnits;
    return ToUtf8(string_view_t(text, nUnits));
}

} // namespace tabulex
