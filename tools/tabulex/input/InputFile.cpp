// In steps, each from a file that can be opened to the next one: what can be read once only is
// written down, archives are unpacked, text is made plain. A step that isn't needed costs nothing.

#include "tools/tabulex/input/InputFile.h"

#include <array>
#include <filesystem>
#include <utility>

#include <fmt/format.h>

#include "tools/tabulex/input/FileArguments.h"
#include "tools/tabulex/input/NamePattern.h"
#include "tools/tabulex/input/Transcode.h"
#include "tools/tabulex/input/UnchangedFile.h"
#include "tools/tabulex/input/Unpack.h"
#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/system/InputStream.h"
#include "tools/tabulex/system/Paths.h"
#include "tools/tabulex/text/Formats.h"

namespace tabulex {

namespace fs = std::filesystem;

namespace {

constexpr int kMostArchives = 3; // in each other, such as a tar archive in a gzip file

// An archive and the file that is meant in it.
struct MemberName
{
    std::string sArchive;
    std::string sMember;
};

// A name that goes on behind a regular file.
std::optional<MemberName> FindMember(const std::string& name)
{
    std::error_code ignored;
    fs::path archive = PathOf(name);
    if (fs::exists(archive, ignored))
        return std::nullopt;
    fs::path member;
    while (archive.has_relative_path() && archive.has_filename()) {
        member = member.empty() ? archive.filename() : archive.filename() / member;
        archive = archive.parent_path();
        if (fs::is_regular_file(archive, ignored))
            return MemberName{Utf8Of(archive), Utf8Of(member)};
    }
    return std::nullopt;
}

std::string WhyNoFile(const std::string& folder)
{
    if (ExpandFiles({folder}) == std::vector{folder})
        return "is a folder that holds no files, or can't be read; name another one, or files";
    return "is a folder; name one of the files in it";
}

std::string PatternFault(const std::string& name, const std::string& reason)
{
    return IsPattern(name) ? reason + "; no file fits the pattern either" : reason;
}

InputStream OpenInput(const std::string& name)
try {
    return InputStream(name);
} catch (const Fault& fault) {
    throw Fault{fault.status, PatternFault(name, fault.sMessage)};
}

Content RecogniseFile(const std::string& path)
{
    std::array<char, kRecognisedBytes> head;
    InputStream file(path);
    return RecogniseContent({head.data(), file.Read(head)});
}

void RequireText(const Content& content)
{
    if (content.kind == ContentKind::Binary || content.kind == ContentKind::Refused)
        throw Fault{ExitStatus::Refused, content.sReason};
}

// A small file without text is looked at all the same, and what it is can be told. In a large one
// looking for the end of the first line takes minutes.
void RequireTextIfLarge(const Content& content, const std::string& path)
{
    constexpr std::uintmax_t kLarge = std::uintmax_t(1) << 26;
    std::error_code ignored;
    if (content.kind != ContentKind::Binary || fs::file_size(PathOf(path), ignored) > kLarge)
        RequireText(content);
}

// What is behind an archive is no reason not to read what it holds.
void WarnOfRest(const Unpacked& unpacked, Warnings& warnings)
{
    if (unpacked.nBehind > 0)
        warnings.Add("bytes-behind-archive",
                     fmt::format("{} bytes behind the packed content belong to nothing, and aren't "
                                 "read. Fetch the file anew if you don't know them.",
                                 WithThousands(unpacked.nBehind)));
}

const char* UnicodeNameOf(ContentKind kind)
{
    return kind == ContentKind::Utf8 ? "UTF-8" : "UTF-16";
}

// What the user says counts.
void WarnOfEncoding(const Content& content, const std::string& encoding, Warnings& warnings)
{
    warnings.Add(
        "encoding-against-mark",
        fmt::format("the file is {} by its first bytes, and is read by --encoding {} as it "
                    "stands. Leave --encoding out.",
                    UnicodeNameOf(content.kind), encoding));
}

void WarnOfNoMark(const Content& content, Warnings& warnings)
{
    warnings.Add("no-utf16-mark",
                 fmt::format("the text has two bytes a character and no mark that says so; it is "
                             "read as UTF-16, {} byte first. Look at its first rows, or say so by "
                             "--encoding utf-16.",
                             content.kind == ContentKind::Utf16Be ? "high" : "low"));
}

bool HasNames(ContentKind kind)
{
    return kind == ContentKind::Zip || kind == ContentKind::Tar;
}

} // namespace

InputFile::InputFile(std::string name, const std::optional<std::string>& encoding,
                     Warnings& warnings)
    : m_sName(std::move(name)), m_sPath(m_sName)
{
    const auto member = FindMember(m_sName);
    {
        InputStream file = OpenInput(member ? member->sArchive : m_sName);
        if (file.Place() == InputPlace::Folder)
            throw Fault{ExitStatus::FileFault, WhyNoFile(m_sName)};
        m_sPath = file.Path();
        if (file.Place() == InputPlace::Stream)
            Spill(file);
    }
    const Content content = UnpackAll(member ? member->sMember : std::string(), warnings);
    RequireTextIfLarge(content, m_sPath);
    if (content.kind != ContentKind::Text && content.kind != ContentKind::Binary)
        MakePlain(content, encoding, warnings);
}

// What is no text would fill the disk for nothing.
void InputFile::Spill(InputStream& from)
{
    std::string head(kRecognisedBytes, '\0');
    head.resize(from.Read(head));
    RequireText(RecogniseContent(head));
    auto copy = std::make_unique<SpillFile>();
    copy->WriteUnlessInterrupted(head);
    CopyBytes(from, *copy);
    TakeCopy(std::move(copy));
}

// Gives what came out.
Content InputFile::UnpackAll(std::string member, Warnings& warnings)
{
    Content content = RecogniseFile(m_sPath);
    for (int i = 0; i < kMostArchives && IsArchive(content.kind); ++i) {
        auto copy = std::make_unique<SpillFile>();
        Unpacked unpacked;
        CopyUnchanged(m_sPath, [&] {
            const bool bNamed = HasNames(content.kind);
            unpacked = Unpack(m_sPath, content.kind,
                              bNamed ? std::exchange(member, {}) : std::string(), *copy);
        });
        WarnOfRest(unpacked, warnings);
        TakeCopy(std::move(copy));
        content = RecogniseFile(m_sPath);
    }
    if (!member.empty())
        throw Fault{ExitStatus::FileFault, "the file in front of the last slash is no archive of "
                                           "files with names"};
    return content;
}

void InputFile::MakePlain(const Content& content, const std::optional<std::string>& encoding,
                          Warnings& warnings)
{
    if (IsArchive(content.kind))
        throw Fault{ExitStatus::Refused, "is an archive of an archive of an archive; unpack it, "
                                         "and give the file that comes out"};
    if (encoding && !IsUnicodeName(*encoding)) {
        WarnOfEncoding(content, *encoding, warnings);
        return;
    }
    if (!encoding && content.nMark == 0)
        WarnOfNoMark(content, warnings);
    m_reading.emplace(encoding);
    auto copy = std::make_unique<SpillFile>();
    CopyUnchanged(m_sPath, [&] { Transcode(content, *copy, warnings); });
    TakeCopy(std::move(copy));
}

void InputFile::Transcode(const Content& content, SpillFile& to, Warnings& warnings) const
{
    InputStream from(m_sPath);
    SkipBytes(from, content.nMark);
    if (content.kind == ContentKind::Utf8) {
        CopyBytes(from, to);
        return;
    }
    const TranscodeLoss loss = TranscodeUtf16(from, content.kind == ContentKind::Utf16Be, to);
    if (loss.bOddByte)
        warnings.Add("odd-byte", "the text has two bytes a character, and a single one at its end "
                                 "that isn't read. The file may be cut: fetch it anew.");
    if (loss.nReplaced > 0)
        warnings.Add("half-characters",
                     fmt::format("{} halves of characters stand alone, and are read as U+FFFD; the "
                                 "first is in line {}. The file may be damaged: fetch it anew.",
                                 WithThousands(loss.nReplaced), loss.nFirstReplaced),
                     loss.nFirstReplaced);
}

void InputFile::TakeCopy(std::unique_ptr<SpillFile> copy)
{
    m_sPath = copy->Path();
    m_copy = std::move(copy);
}

std::string FileBehind(const std::string& name)
{
    if (name == "-")
        return "/dev/stdin";
    const auto member = FindMember(name);
    return member ? member->sArchive : name;
}

// One that can't be opened, or holds no text, is found out by whoever opens it.
void RequirePlainFile(const std::string& path)
{
    std::error_code ignored;
    if (path != "-" && !fs::exists(PathOf(path), ignored))
        return;
    const InputStream file = OpenInput(path);
    if (path == "-" || file.Place() == InputPlace::Stream)
        throw Fault{ExitStatus::FileFault, "can be read once only, and not looked at first; give a "
                                           "file on a disk, or use 'tabulex convert'"};
    if (file.Place() == InputPlace::File && IsArchive(RecogniseFile(path).kind))
        throw Fault{ExitStatus::Refused, "is packed; unpack it first, or use 'tabulex convert', "
                                         "which does so by itself"};
}

} // namespace tabulex
