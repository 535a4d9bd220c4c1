// ResolutionOffers: the resolutions that the host offers to the component.
//
// The host speaks of resolutions by its own ids; the component numbers them 0 to 7.
// The list starts with the row for none.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/component.h"

namespace tabulex {

// One resolution as a host knows it.
struct ResolutionOffer
{
    LONG nHostId;
    std::string sName;
};

// What the tool offers where the command line says nothing else.
const std::vector<ResolutionOffer>& DefaultResolutions();

class ResolutionOffers
{
public:
    // `sNone` is the display name of the row for none.
    explicit ResolutionOffers(std::string sNone);

    // False, and no change, for a name that is in the list already. The rule is the
    // component's: a second offer of the host's id for ticks becomes the one for bars of
    // ticks, and an id that names nothing renames the row for none.
    bool Add(const ResolutionOffer& offer);

    // In the order in which they were added, by the host's ids.
    const std::vector<ResolutionOffer>& Offered() const { return m_offered; }

    // In the order of the offer, which is the order in which they are tried.
    struct Row
    {
        LONG nId; // the component's, 0 to 7
        std::string sName;
    };
    const std::vector<Row>& Rows() const { return m_rows; }

    // Null for an id that isn't offered.
    const Row* FindId(LONG nId) const;
    // By the whole name, then by the name before its last "|"; case doesn't matter.
    const Row* FindName(std::string_view name) const;

private:
    std::vector<ResolutionOffer> m_offered;
    std::vector<Row> m_rows;
};

// The name up to its last "|", after which there may be a size.
std::string_view WithoutSize(std::string_view name);

} // namespace tabulex
