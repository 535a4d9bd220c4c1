// InputFile: a quote file of the command line, as the component can open it.
//
// A regular file of plain text is opened as it stands, and costs a look at its first bytes. For
// everything else a temporary copy is made that is gone when the object is: pipes and standard
// input, archives of one file, text with a mark in front and text of two bytes a character. Copies
// have the lines of the file, and are UTF-8 where the file is Unicode. Memory doesn't grow with the
// file. An encoding that the user names and that isn't Unicode wins over what the file says, with
// a warning. Used by one thread; one file at a time may be read.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "tools/tabulex/account/Warnings.h"
#include "tools/tabulex/input/ContentKind.h"
#include "tools/tabulex/input/Utf8Reading.h"
#include "tools/tabulex/system/InputStream.h"
#include "tools/tabulex/system/SpillFile.h"

namespace tabulex {

class InputFile
{
public:
    // `name` as the user gave it: a path, "-", or a file of an archive as ARCHIVE/FILE.
    // `encoding` is what the user asked for, empty for none. Throws Fault for what can't be read,
    // holds no text, or changed meanwhile.
    InputFile(std::string name, const std::optional<std::string>& encoding, Warnings& warnings);

    // What messages show.
    const std::string& Name() const { return m_sName; }
    // What the component opens, and whoever reads the file's bytes; good while this lives.
    const std::string& Path() const { return m_sPath; }
    // The path is that of a copy, which nobody changes.
    bool IsCopy() const { return m_copy != nullptr; }

private:
    void Spill(InputStream& from);
    Content UnpackAll(std::string member, Warnings& warnings);
    void MakePlain(const Content& content, const std::optional<std::string>& encoding,
                   Warnings& warnings);
    void Transcode(const Content& content, SpillFile& to, Warnings& warnings) const;
    void TakeCopy(std::unique_ptr<SpillFile> copy);

    std::string m_sName;
    std::string m_sPath;
    std::unique_ptr<SpillFile> m_copy; // null where the file is opened as it stands
    std::optional<Utf8Reading> m_reading;
};

// The file or device that a name leads to: the archive of a file in one, and what standard input
// is. For comparing with other names.
std::string FileBehind(const std::string& name);

// A file on which a dialog or another program works by its name: throws Fault for a
// pipe and for an archive.
void RequirePlainFile(const std::string& path);

} // namespace tabulex
