// Origins of lines that stay in order, and of rows that were sorted.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "intake/Intake.h"

namespace tabulex::intake {

// All lines stand behind those that were added ahead.
class OriginShift : public Origins
{
public:
    explicit OriginShift(std::uint64_t nAhead) : m_nAhead(nAhead) {}
    std::uint64_t Of(std::uint64_t nCleanLine) const override
    {
        return nCleanLine < m_nAhead ? kNoOrigin : nCleanLine - m_nAhead;
    }

private:
    const std::uint64_t m_nAhead;
};

// A list in a store, of eight bytes a line.
class OriginList : public Origins
{
public:
    OriginList(std::uint64_t nAhead, std::unique_ptr<Store> store)
        : m_nAhead(nAhead), m_store(std::move(store))
    {}

    void Add(std::uint64_t nOrigin);
    // Nothing is added behind it.
    void Finish() { Flush(); }

    std::uint64_t Of(std::uint64_t nCleanLine) const override;

private:
    void Flush();

    const std::uint64_t m_nAhead;
    std::unique_ptr<Store> m_store;
    std::uint64_t m_nCount = 0;
    std::string m_block; // not in the store yet
};

} // namespace tabulex::intake
