// Only the formats that the first bytes told are allowed to the library, which would find some
// archive in almost any file. Members are listed first, and the one that is meant is unpacked in a
// second pass: whether a name is needed is known only at the end of the list. Hidden files, folders
// and what a Mac adds don't count, so that an archive of one table needs no name.

#include "tools/tabulex/input/Archive_posix.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string_view>
#include <vector>

#include <archive.h>
#include <archive_entry.h>
#include <fmt/format.h>
#include <fmt/ranges.h>

#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/system/Paths.h"
#include "tools/tabulex/text/NaturalOrder.h"

namespace tabulex {

namespace {

constexpr std::size_t kArchivePiece = std::size_t(1) << 18;
constexpr std::size_t kNamesShown = 5; // enough to see how members are named

struct ArchiveCloser
{
    void operator()(archive* reader) const { archive_read_free(reader); }
};

using ArchiveReader = std::unique_ptr<archive, ArchiveCloser>;

[[noreturn]] void ThrowArchiveFault(archive* reader)
{
    const char* pszCause = archive_error_string(reader);
    throw Fault{ExitStatus::FileFault,
                fmt::format("the archive is damaged or cut ({}); fetch it anew",
                            pszCause ? pszCause : "its content isn't what it says")};
}

// Only what is meant to be read: more formats would find something in any file.
void AllowFormats(archive* reader, ContentKind kind)
{
    if (kind == ContentKind::Zip) {
        archive_read_support_format_zip_seekable(reader); // which a cut one isn't
        return;
    }
    if (kind == ContentKind::Tar) {
        archive_read_support_format_tar(reader);
        return;
    }
    archive_read_support_filter_zstd(reader);
    archive_read_support_filter_xz(reader);
    archive_read_support_filter_bzip2(reader);
    archive_read_support_format_raw(reader);
    archive_read_support_format_empty(reader);
}

ArchiveReader OpenArchive(const std::string& path, ContentKind kind)
{
    ArchiveReader reader(archive_read_new());
    if (!reader)
        throw Fault{ExitStatus::FileFault, kOutOfMemory};
    AllowFormats(reader.get(), kind);
    if (archive_read_open_filename(reader.get(), path.c_str(), kArchivePiece) != ARCHIVE_OK)
        ThrowArchiveFault(reader.get());
    return reader;
}

// Null at the end.
archive_entry* NextEntry(archive* reader)
{
    archive_entry* entry = nullptr;
    const int nResult = archive_read_next_header(reader, &entry);
    if (nResult == ARCHIVE_EOF)
        return nullptr;
    if (nResult != ARCHIVE_OK && nResult != ARCHIVE_WARN) // of a warning the content is whole
        ThrowArchiveFault(reader);
    return entry;
}

// A warning about content says that its sum or length is wrong.
void CopyContent(archive* reader, SpillFile& to)
{
    std::vector<char> piece(kArchivePiece);
    for (;;) {
        const la_ssize_t nRead = archive_read_data(reader, piece.data(), piece.size());
        if (nRead < 0)
            ThrowArchiveFault(reader);
        if (nRead == 0)
            return;
        to.WriteUnlessInterrupted({piece.data(), static_cast<std::size_t>(nRead)});
    }
}

std::string NameOf(archive_entry* entry)
{
    for (const char* pszName : {archive_entry_pathname_utf8(entry), archive_entry_pathname(entry)})
        if (pszName)
            return pszName;
    return {};
}

bool IsFileOfUser(archive_entry* entry, const std::string& name)
{
    const std::string last = name.substr(name.rfind('/') + 1);
    return archive_entry_filetype(entry) == AE_IFREG && !last.empty() && last[0] != '.' &&
           !name.starts_with("__MACOSX/");
}

void RequireReadable(archive* reader, archive_entry* entry)
{
    if (archive_entry_is_encrypted(entry))
        throw Fault{ExitStatus::FileFault, "the archive is encrypted; unpack it with its password, "
                                           "and give the file that comes out"};
    if (archive_entry_hardlink(entry))
        ThrowArchiveFault(reader);
}

std::vector<std::string> ListMembers(const std::string& path, ContentKind kind)
{
    const ArchiveReader reader = OpenArchive(path, kind);
    std::vector<std::string> names;
    while (archive_entry* entry = NextEntry(reader.get()))
        if (std::string name = NameOf(entry); IsFileOfUser(entry, name))
            names.push_back(std::move(name));
    std::ranges::sort(names, NaturalLess);
    return names;
}

std::string Listed(const std::vector<std::string>& names)
{
    const auto shown = std::span(names).first(std::min(names.size(), kNamesShown));
    return fmt::format("{}{}", fmt::join(shown, ", "), names.size() > kNamesShown ? ", ..." : "");
}

// The files of a workbook are no tables that can be read.
void RefuseWorkbook(const std::vector<std::string>& names)
{
    if (std::ranges::find(names, "xl/workbook.xml") != names.end())
        throw Fault{ExitStatus::Refused,
                    "is an Excel workbook, and no text that can be read; save or export its data "
                    "as CSV, and give that file"};
}

std::string ChooseMember(const std::vector<std::string>& names, const std::string& member)
{
    RefuseWorkbook(names);
    if (names.empty())
        throw Fault{ExitStatus::Refused, "the archive holds no file; look into it"};
    if (!member.empty()) {
        if (std::ranges::find(names, member) == names.end())
            throw Fault{ExitStatus::FileFault,
                        fmt::format("the archive has no file '{}', but {}", member, Listed(names))};
        return member;
    }
    if (names.size() > 1)
        throw Fault{ExitStatus::Refused,
                    fmt::format("the archive holds {} files: {}; name one behind it, as "
                                "ARCHIVE/{}",
                                names.size(), Listed(names), names.front())};
    return names.front();
}

} // namespace

Unpacked UnpackPlain(const std::string& path, SpillFile& to)
{
    const ArchiveReader reader = OpenArchive(path, ContentKind::Packed);
    if (!NextEntry(reader.get()))
        return {};
    // Where the library recognises no packing it hands out the file as it is.
    if (archive_filter_code(reader.get(), 0) == ARCHIVE_FILTER_NONE)
        ThrowArchiveFault(reader.get());
    CopyContent(reader.get(), to);
    std::error_code error;
    const auto nSize = std::filesystem::file_size(PathOf(path), error);
    const auto nTaken = static_cast<std::size_t>(archive_filter_bytes(reader.get(), -1));
    return {!error && nTaken < nSize ? static_cast<std::size_t>(nSize - nTaken) : 0};
}

// Twice, since the names stand among the contents.
void UnpackMember(const std::string& path, ContentKind kind, const std::string& member,
                  SpillFile& to)
{
    const std::string chosen = ChooseMember(ListMembers(path, kind), member);
    const ArchiveReader reader = OpenArchive(path, kind);
    while (archive_entry* entry = NextEntry(reader.get()))
        if (NameOf(entry) == chosen) {
            RequireReadable(reader.get(), entry);
            CopyContent(reader.get(), to);
            return;
        }
    throw Fault{ExitStatus::Refused,
                "the archive changed while it was read; run the command again"};
}

} // namespace tabulex
