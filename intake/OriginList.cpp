#include "intake/OriginList.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace tabulex::intake {

namespace {

class MemoryStore : public Store
{
public:
    void Append(std::string_view bytes) override { m_bytes.append(bytes); }
    void ReadAt(std::uint64_t nOffset, std::span<char> buffer) override
    {
        m_bytes.copy(buffer.data(), buffer.size(), static_cast<std::size_t>(nOffset));
    }

private:
    std::string m_bytes;
};

} // namespace

std::unique_ptr<Store> StoreInMemory()
{
    return std::make_unique<MemoryStore>();
}

void OriginList::Add(std::uint64_t nOrigin)
{
    constexpr std::size_t kBlock = 1 << 16;
    m_block.append(reinterpret_cast<const char*>(&nOrigin), sizeof nOrigin);
    ++m_nCount;
    if (m_block.size() >= kBlock)
        Flush();
}

void OriginList::Flush()
{
    m_store->Append(m_block);
    m_block.clear();
}

std::uint64_t OriginList::Of(std::uint64_t nCleanLine) const
{
    if (nCleanLine < m_nAhead || nCleanLine - m_nAhead >= m_nCount)
        return kNoOrigin;
    std::uint64_t nOrigin = 0;
    m_store->ReadAt((nCleanLine - m_nAhead) * sizeof nOrigin,
                    {reinterpret_cast<char*>(&nOrigin), sizeof nOrigin});
    return nOrigin;
}

} // namespace tabulex::intake
