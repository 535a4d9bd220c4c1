// IKeepsValues: lets a multiplier say that it changes nothing, so that a conversion needn't call it
// for each value. Internal to the library; a multiplier of another maker doesn't have it.
#pragma once

#include "platform/com_ptr.h"

struct IKeepsValues : IUnknown
{
    // True: until another transform is chosen, ApplyTransform does nothing.
    virtual bool STDMETHODCALLTYPE KeepsValues() = 0;
};

// {C4A7D1B3-0E58-4F69-B2A6-95D83E7F1C40}
template <>
inline constexpr GUID iid_of<IKeepsValues> = {
    0xC4A7D1B3, 0x0E58, 0x4F69, {0xB2, 0xA6, 0x95, 0xD8, 0x3E, 0x7F, 0x1C, 0x40}};

// False without a multiplier, and for one that leaves each value as it is.
inline bool ChangesValues(IUnknown* pMultiplier)
{
    com_ptr<IKeepsValues> pKeeps;
    return pMultiplier && (FAILED(query(pMultiplier, pKeeps)) || !pKeeps->KeepsValues());
}
