#include "tools/tabulex/OutputFile.h"

#include <cerrno>
#include <cstring>
#include <filesystem>

#include <fmt/format.h>

namespace tabulex {

namespace fs = std::filesystem;

namespace {

// So many runs may write beside one target, or have left their files after a crash.
constexpr int kTemporaryNames = 1000;

// A link stays a link: what it leads to is replaced.
std::string TargetOf(const std::string& path)
{
    std::error_code error;
    const fs::path target =
        fs::is_symlink(path, error) ? fs::weakly_canonical(path, error) : fs::path(path);
    return error ? path : target.string();
}

// The first of a row of names beside the target that nobody has.
std::FILE* CreateBeside(const std::string& target, std::string& name)
{
    for (int i = 0; i < kTemporaryNames; ++i) {
        name = fmt::format("{}.{}.part", target, i);
        std::FILE* file = std::fopen(name.c_str(), "wbx");
        if (file || errno != EEXIST)
            return file;
    }
    return nullptr;
}

} // namespace

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
    m_sTarget = TargetOf(path);
    std::error_code error;
    const fs::file_status status = fs::status(m_sTarget, error);
    errno = 0;
    if (!fs::exists(status) || fs::is_regular_file(status))
        m_file = CreateBeside(m_sTarget, m_sTemporary);
    else
        m_file = std::fopen(m_sTarget.c_str(), "wb");
    if (m_file) {
        KeepPermissions(status);
        return true;
    }
    m_sTemporary.clear();
    return Fail(errno);
}

// A file that others may not read must not become readable by being replaced.
void OutputFile::KeepPermissions(const fs::file_status& old)
{
    std::error_code ignored;
    if (fs::exists(old) && !m_sTemporary.empty())
        fs::permissions(m_sTemporary, old.permissions(), ignored);
}

bool OutputFile::Write(std::string_view text)
{
    if (m_nError || !m_file)
        return false;
    errno = 0;
    return std::fwrite(text.data(), 1, text.size(), m_file) == text.size() || Fail(errno);
}

bool OutputFile::Flush()
{
    if (m_nError || !m_file)
        return false;
    errno = 0;
    return std::fflush(m_file) == 0 || Fail(errno);
}

bool OutputFile::Commit()
{
    if (!Close()) {
        Discard();
        return false;
    }
    if (m_sTemporary.empty())
        return true;
    std::error_code error;
    fs::rename(m_sTemporary, m_sTarget, error);
    if (error) {
        Fail(error.value());
        Discard();
        return false;
    }
    m_sTemporary.clear();
    return true;
}

void OutputFile::Discard()
{
    Close();
    if (m_sTemporary.empty())
        return;
    std::error_code ignored;
    fs::remove(m_sTemporary, ignored);
    m_sTemporary.clear();
}

bool OutputFile::IsReaderGone() const
{
    return m_nError == EPIPE;
}

std::string OutputFile::FaultText() const
{
    return m_nError ? std::strerror(m_nError) : std::string();
}

// The first fault is the one to tell; later ones follow from it.
bool OutputFile::Fail(int nError)
{
    if (!m_nError)
        m_nError = nError ? nError : EIO;
    return false;
}

// Standard output stays open for the runtime, but must be written out: its faults show
// only then.
bool OutputFile::Close()
{
    std::FILE* file = m_file;
    m_file = nullptr;
    if (!file)
        return m_nError == 0;
    errno = 0;
    if ((m_bStandard ? std::fflush(file) : std::fclose(file)) != 0)
        Fail(errno);
    return m_nError == 0;
}

} // namespace tabulex
