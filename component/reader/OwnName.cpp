// The system takes "//" and "/./" for "/", so a path has as many spellings as one likes: the
// binary digits of a number are put in behind its first stroke.

#include <atomic>
#include <filesystem>

#include "component/reader/OpenedFile.h"
#include "platform/text/Utf8.h"

namespace Hesperon::reader {

namespace {

std::string SpellingOf(unsigned long long nNumber)
{
    std::string spelling;
    for (; nNumber != 0; nNumber >>= 1)
        spelling.insert(0, nNumber & 1 ? "./" : "/");
    return spelling;
}

// What could be taken for digits.
void DropFront(std::string_view& path)
{
    while (path.starts_with('/') || path.starts_with("./"))
        path.remove_prefix(path.starts_with('/') ? 1 : 2);
}

} // namespace

string_t OwnNameOf(std::string_view path)
{
    static std::atomic<unsigned long long> nNumber = 0;
    const std::string whole = std::filesystem::absolute(std::filesystem::path(path)).string();
    std::string_view rest = whole;
    DropFront(rest);
    // The component takes a byte that is no UTF-8 as a lone surrogate.
    return Utf8::Decode("/" + SpellingOf(++nNumber) + std::string(rest),
                        [](unsigned char n) { return char32_t(0xDC00) + n; });
}

} // namespace Hesperon::reader
