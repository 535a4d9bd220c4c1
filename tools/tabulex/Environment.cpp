#include "tools/tabulex/Environment.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>

#include <fmt/format.h>

#include "tools/tabulex/Fault.h"
#include "tools/tabulex/OutputFile.h"
#include "tools/tabulex/Properties.h"

namespace tabulex {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::string ReadText(const std::string& path)
{
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    // An empty file sets a failure on the text that isn't one.
    if (file && file.peek() != std::ifstream::traits_type::eof())
        text << file.rdbuf();
    if (!file.is_open() || file.bad() || errno == EISDIR)
        throw Fault{ExitStatus::FileFault,
                    fmt::format("'{}' can't be read: {}", path, std::strerror(errno))};
    std::string bytes = text.str();
    if (bytes.starts_with(kByteOrderMark))
        bytes.erase(0, kByteOrderMark.size());
    return bytes;
}

} // namespace

void ReadEnvironment(Host& host, const std::string& path)
{
    const HRESULT hr = host.Front().put_Environment(Bstr(FromUtf8(ReadText(path))).get());
    if (hr == E_INVALIDARG)
        throw Fault{ExitStatus::Refused,
                    fmt::format("'{}' holds no environment: its text can't be read to the end as "
                                "a document of tags",
                                path)};
    if (FAILED(hr))
        throw Fault{ExitStatus::Refused,
                    fmt::format("the environment of '{}' is refused: {}", path, HexOf(hr))};
}

std::string EnvironmentText(Host& host)
{
    Bstr text;
    const HRESULT hr = host.Front().get_Environment(text.put());
    if (FAILED(hr))
        throw Fault{ExitStatus::Refused, fmt::format("there is no environment: {}", HexOf(hr))};
    return ToUtf8(text.view());
}

void SaveEnvironment(Host& host, const std::string& path)
{
    OutputFile file;
    if (!file.Open(path) || !file.Write(EnvironmentText(host)) || !file.Commit())
        throw Fault{ExitStatus::FileFault,
                    fmt::format("'{}' can't be written: {}", path, file.FaultText())};
}

} // namespace tabulex
