// PlainRecord: the fields of a record of plain bytes.
//
// A record is plain if it has at most kMaxPlain bytes, all of them printable ASCII or tabs, and
// if no two blanks are left side by side once it is normalised (RecordText.h). Its fields are
// those of FieldWalk, without the empty ones.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "src/parsing/detection/Dividers.h"

namespace Hesperon::specifics {

class PlainRecord
{
public:
    static constexpr std::size_t kMaxPlain = 511;
    static constexpr std::size_t kMaxFields = 32;
    // Bytes that must be readable behind a record, and so are behind each field.
    static constexpr std::size_t kPadding = 16;

    void SetDividers(const DividerSet& dividers);

    // False for a record that isn't plain or has fewer fields than nFields, which is at most
    // kMaxFields. Fields beyond these are left out. The bytes, and kPadding behind them, must stay
    // while fields are asked for.
    bool Take(std::string_view sRecord, std::size_t nFields);

    // REQUIRES: a record was taken, n < its nFields.
    std::string_view Field(std::size_t n) const
    {
        return {m_pRecord + m_fields[n].nBegin, m_fields[n].nSize};
    }

private:
    struct Place
    {
        std::uint16_t nBegin;
        std::uint16_t nSize;
    };
    static constexpr std::size_t kMaxDividers = 4;
    static constexpr std::size_t kBlock = 16;
    static_assert(kPadding >= kBlock);

    // What stands where in a block of bytes, a bit each, the first one lowest.
    struct Marks
    {
        std::uint32_t dividers;
        std::uint32_t blanks;
        std::uint32_t odd; // of no normalised record

        // Those of the first n bytes.
        Marks First(std::size_t n) const
        {
            const std::uint32_t mask = (std::uint32_t{1} << n) - 1;
            return {dividers & mask, blanks & mask, odd & mask};
        }
    };
    struct Walker;

    bool Cut(std::string_view sRecord, std::size_t nFields);
    void AddField(std::size_t nBegin, std::size_t nEnd);
    std::string_view Normalise(std::string_view sRecord);

    std::array<char, kMaxDividers> m_dividers{}; // the first one repeated where there are fewer
    bool m_bTooManyDividers = true;
    std::size_t m_nFields = 0; // found so far
    std::array<Place, kMaxFields> m_fields;
    const char* m_pRecord = nullptr;
    std::array<char, kMaxPlain + kPadding> m_normalised{};
};

} // namespace Hesperon::specifics
