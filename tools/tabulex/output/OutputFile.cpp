// Stream functions may fail without saying why. So errno is cleared before each of them, and a 0
// afterwards counts as EIO.

#include "tools/tabulex/output/OutputFile.h"

#include <cerrno>
#include <cstring>

#include "tools/tabulex/system/Files.h"

namespace tabulex {

OutputFile::~OutputFile()
{
    Discard();
}

bool OutputFile::Open(const std::string& path)
{
    if (path == "-") {
        m_file = stdout;
        m_bStandard = true;
        return true;
    }
    const std::string target = TargetOf(path);
    errno = 0;
    m_file =
        IsWrittenDirectly(target) ? OpenFile(target, FileMode::Write) : m_staged.Create(target);
    return m_file || Fail(errno);
}

bool OutputFile::Write(std::string_view text)
{
    if (m_nError || !m_file)
        return false;
    errno = 0;
    return std::fwrite(text.data(), 1, text.size(), m_file) == text.size() ||
           Fail(WriteError(m_file));
}

bool OutputFile::Flush()
{
    if (m_nError || !m_file)
        return false;
    errno = 0;
    return std::fflush(m_file) == 0 || Fail(WriteError(m_file));
}

bool OutputFile::Commit()
{
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

std::string OutputFile::FaultText() const
{
    return m_nError ? std::strerror(m_nError) : std::string();
}

// The first fault is reported; later ones follow from it.
bool OutputFile::Fail(int nError)
{
    if (!m_nError)
        m_nError = nError ? nError : EIO;
    return false;
}

// Standard output stays open for the runtime, but is flushed, since faults show only then.
bool OutputFile::Close()
{
    std::FILE* file = m_file;
    m_file = nullptr;
    if (!file)
        return m_nError == 0;
    errno = 0;
    if (std::fflush(file) != 0)
        Fail(WriteError(file));
    if (!m_bStandard && std::fclose(file) != 0)
        Fail(errno);
    return m_nError == 0;
}

} // namespace tabulex
