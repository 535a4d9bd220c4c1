// Names are counted up from 0, and the first that no living run holds is taken. So runs beside one
// another get a name each, while what a killed one has left is taken over instead of piling up.

#include "tools/tabulex/output/StagedFile.h"

#include <cerrno>

#include <fmt/format.h>

#include "tools/tabulex/system/Staging.h"

namespace tabulex {

namespace {

constexpr int kNames = 1000; // how many runs may write beside one target

} // namespace

// Takes the first name that no other run is using.
bool StagedFile::Create(const std::string& target)
{
    for (int i = 0; i < kNames; ++i) {
        std::string name = fmt::format("{}.{}.part", target, i);
        m_nFile = CreateStaged(name);
        if (m_nFile < 0 && errno == EEXIST)
            continue;
        if (m_nFile < 0)
            return false;
        m_sTarget = target;
        m_sName = std::move(name);
        return true;
    }
    return false;
}

std::error_code StagedFile::Publish(bool bReplace)
{
    const std::error_code error = PublishStaged(m_nFile, m_sName, m_sTarget, bReplace);
    if (!error)
        m_sName.clear();
    return error;
}

void StagedFile::Remove()
{
    if (!m_sName.empty())
        RemoveStaged(m_nFile, m_sName);
    m_sName.clear();
}

} // namespace tabulex
