#include "tools/tabulex/host/Environment.h"

#include <cerrno>
#include <cstring>
#include <memory>
#include <optional>

#include <fmt/format.h>

#include "tools/tabulex/host/Properties.h"
#include "tools/tabulex/output/OutputFile.h"
#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/system/Files.h"

namespace tabulex {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

struct Closer
{
    void operator()(std::FILE* file) const { std::fclose(file); }
};

// On a failure errno has the reason.
std::optional<std::string> ReadBytes(const std::string& path)
{
    const std::unique_ptr<std::FILE, Closer> file(OpenFile(path, FileMode::Read));
    if (!file)
        return std::nullopt;
    std::string bytes;
    char piece[4096];
    while (const std::size_t nRead = std::fread(piece, 1, sizeof piece, file.get()))
        bytes.append(piece, nRead);
    return std::ferror(file.get()) ? std::nullopt : std::optional(std::move(bytes));
}

std::string ReadText(const std::string& path)
{
    auto bytes = ReadBytes(path);
    if (!bytes)
        throw Fault{ExitStatus::FileFault,
                    fmt::format("'{}' can't be read: {}", path, std::strerror(errno))};
    if (bytes->starts_with(kByteOrderMark))
        bytes->erase(0, kByteOrderMark.size());
    return *bytes;
}

} // namespace

void ReadEnvironment(Host& host, const std::string& path)
{
    const HRESULT hr = host.Front().put_Environment(Bstr(FromUtf8(ReadText(path))).get());
    if (hr == E_INVALIDARG)
        throw Fault{ExitStatus::Refused,
                    fmt::format("'{}' holds no environment: its text isn't a document of tags that "
                                "are all closed",
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

// The folder is set by a document that has nothing else. A name with a character of its tags
// can't be written, and the dialog then starts where it likes.
void SetFolder(Host& host, const std::string& path, bool bKeep)
{
    constexpr std::string_view kNoFolder = "<PATH>\"\"</PATH>";
    if (bKeep && EnvironmentText(host).find(kNoFolder) == std::string::npos)
        return;
    const std::string text = fmt::format("<TABULEXCONVERTOR_ENVIRONMENT><PATH>\"{}\"</PATH>"
                                         "</TABULEXCONVERTOR_ENVIRONMENT>",
                                         path);
    host.Front().put_Environment(Bstr(PathFromBytes(text)).get());
}

void SaveEnvironment(Host& host, const std::string& path)
{
    OutputFile file;
    if (!file.Open(path) || !file.Write(EnvironmentText(host)) || !file.Commit())
        throw Fault{ExitStatus::FileFault,
                    fmt::format("'{}' can't be written: {}", path, file.FaultText())};
}

} // namespace tabulex
