// The text goes to the component as it is: which documents are good is its rule, and it is asked
// before any file is opened, so that nothing was detected by other templates. On the way back a
// file of its own name is staged, and a failure leaves the old one.

#include "tools/tabulex/host/Environment.h"

#include <cerrno>
#include <cstring>
#include <memory>
#include <optional>

#include <fmt/format.h>

#include "tools/tabulex/host/Properties.h"
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
    for (;;) {
        const std::size_t nRead = std::fread(piece, 1, sizeof piece, file.get());
        bytes.append(piece, nRead);
        if (nRead == sizeof piece)
            continue;
        if (!std::ferror(file.get()))
            return bytes;
        if (errno != EINTR)
            return std::nullopt;
        std::clearerr(file.get());
    }
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

EnvironmentFile::EnvironmentFile(std::string path) : m_sPath(std::move(path))
{
    Require(m_file.Open(m_sPath));
}

void EnvironmentFile::Save(Host& host)
{
    Require(m_file.Write(EnvironmentText(host)) && m_file.Commit());
}

void EnvironmentFile::Require(bool bWritten) const
{
    if (!bWritten)
        throw Fault{ExitStatus::FileFault,
                    fmt::format("'{}' can't be written: {}", m_sPath, m_file.FaultText())};
}

} // namespace tabulex
