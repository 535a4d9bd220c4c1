#include "tools/tabulex/output/StagedFile.h"

#include <cerrno>

#include <fmt/format.h>

#include "tools/tabulex/system/Files.h"
#include "tools/tabulex/system/Paths.h"

namespace tabulex {

namespace fs = std::filesystem;

namespace {

// How many runs may write beside one target, or have left their files after a crash.
constexpr int kNames = 1000;
constexpr int kLinks = 40; // a longer chain is taken for a circle, as by the system

} // namespace

std::string TargetOf(const std::string& path)
{
    std::error_code error;
    fs::path target = PathOf(path);
    for (int i = 0; i < kLinks && fs::is_symlink(target, error); ++i)
        target = target.parent_path() / fs::read_symlink(target, error);
    return Utf8Of(target);
}

// Takes the first name that is free. A file that others may not read must not become
// readable by being replaced.
std::FILE* StagedFile::Create(const std::string& target)
{
    for (int i = 0; i < kNames; ++i) {
        std::string name = fmt::format("{}.{}.part", target, i);
        errno = 0;
        std::FILE* file = OpenFile(name, FileMode::WriteNew);
        if (!file && errno == EEXIST)
            continue;
        if (file) {
            CopyPermissions(target, name);
            m_sTarget = target;
            m_sName = std::move(name);
        }
        return file;
    }
    return nullptr;
}

std::error_code StagedFile::Publish()
{
    std::error_code error;
    fs::rename(PathOf(m_sName), PathOf(m_sTarget), error);
    if (!error)
        m_sName.clear();
    return error;
}

void StagedFile::Remove()
{
    std::error_code ignored;
    if (!m_sName.empty())
        fs::remove(PathOf(m_sName), ignored);
    m_sName.clear();
}

} // namespace tabulex
