// What the public headers and the dispatch tables say about the dual interfaces.
#pragma once

#include <span>
#include <vector>

#include "module/DispatchRow.h"

// One virtual member of an interface, as its header declares it.
struct Member
{
    string_view_t sName; // get_ and put_ stand before a property's
    unsigned nSlot;
    std::vector<VARTYPE> kinds; // of its arguments
};

struct Description
{
    string_view_t sName;
    GUID iid;
    std::vector<Member> members; // in the header's order
    unsigned nSlots;             // of the whole table of virtual members
    std::span<const DispatchRow> table;
};

// Of all dual interfaces.
const std::vector<Description>& Descriptions();
