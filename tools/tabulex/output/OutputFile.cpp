// What the path leads to decides how it is written, since only a regular file can be replaced in
// one step. Its place is looked at here even if a check before has done so: it may have changed
// since. Text is gathered before it is written, so a fault may be met long after the call that
// caused it.

#include "tools/tabulex/output/OutputFile.h"

#include <cerrno>
#include <cstring>

#include "tools/tabulex/system/Descriptors.h"
#include "tools/tabulex/system/OutputPlace.h"

namespace tabulex {

namespace {

constexpr int kStandardOutput = 1;
// Small writes cost more than the copy, larger ones gain nothing.
constexpr std::size_t kPending = std::size_t{64} * 1024;

} // namespace

OutputFile::~OutputFile()
{
    Discard();
}

bool OutputFile::Open(const std::string& path)
{
    errno = 0;
    if (path == "-")
        m_nFile = kStandardOutput;
    else if (!OpenPlace(path))
        return false;
    m_bTerminal = !HidesUntilCommit() && IsTerminal(m_nFile);
    return true;
}

bool OutputFile::OpenPlace(const std::string& path)
{
    const OutputPlace place = FindWritablePlace(path);
    if (!place.sFault.empty()) {
        m_sFault = place.sFault;
        return Fail(EACCES);
    }
    if (place.kind == PlaceKind::File) {
        const bool bMade = m_staged.Create(place.sTarget);
        m_nFile = m_staged.Descriptor();
        return bMade || Fail(errno);
    }
    m_nFile = place.kind == PlaceKind::Stream ? CopyOf(place.nStream) : OpenDevice(path);
    m_bOwned = m_nFile >= 0;
    return m_bOwned || Fail(errno);
}

bool OutputFile::Write(std::string_view text)
{
    if (m_nError || m_nFile < 0)
        return false;
    if (m_pending.size() + text.size() < kPending) {
        m_pending += text;
        return true;
    }
    return Flush() && (WriteAll(m_nFile, text) || Fail(errno));
}

bool OutputFile::Flush()
{
    if (m_nError || m_nFile < 0)
        return false;
    const bool bWritten = WriteAll(m_nFile, m_pending);
    m_pending.clear();
    return bWritten || Fail(errno);
}

bool OutputFile::Commit()
{
    Flush();
    if (!Close()) {
        Discard();
        return false;
    }
    if (!HidesUntilCommit())
        return true;
    const std::error_code error = m_staged.Publish();
    if (!error)
        return true;
    Fail(error.value());
    Discard();
    return false;
}

void OutputFile::Discard()
{
    Close();
    m_staged.Remove();
}

bool OutputFile::IsReaderGone() const
{
    return m_nError == EPIPE;
}

// The first fault is reported; later ones follow from it. A stream that was closed when the
// program began takes no writing.
bool OutputFile::Fail(int nError)
{
    if (m_nError)
        return false;
    m_nError = nError ? nError : EIO;
    if (m_sFault.empty())
        m_sFault = m_nError == EBADF ? "it is closed" : std::strerror(m_nError);
    return false;
}

// A staged file stays open until it is published or removed.
bool OutputFile::Close()
{
    const int nFile = m_nFile;
    m_nFile = -1;
    if (nFile >= 0 && m_bOwned && !CloseFile(nFile))
        Fail(errno);
    m_bOwned = false;
    return m_nError == 0;
}

} // namespace tabulex
