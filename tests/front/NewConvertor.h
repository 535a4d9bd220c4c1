// A host's object with the resolutions that hosts usually offer.
#pragma once

#include "interfaces/ClassIds.h"
#include "interfaces/FieldsAndResolutions.h"
#include "interfaces/IqrlTabulexConvertor.h"
#include "module/Module.h"
#include "platform/com_ptr.h"
#include "platform/values.h"

using IQRL_TabulexConverter::IqrlTabulexConvertor;

// Null where it can't be had.
inline com_ptr<IqrlTabulexConvertor> NewConvertor()
{
    using namespace IQRL_TabulexConverter;
    constexpr std::pair<LONG, string_view_t> kOffers[] = {
        {HostResolutionTicks, OLESTR("Ticks")},          {HostResolutionTicks, OLESTR("Tick Bars")},
        {HostResolutionCountBars, OLESTR("Count Bars")}, {HostResolutionSeconds, OLESTR("Seconds")},
        {HostResolutionMinutes, OLESTR("Minutes")},      {HostResolutionDays, OLESTR("Days")},
        {HostResolutionWeeks, OLESTR("Weeks")},
    };
    com_ptr<IqrlTabulexConvertor> object;
    if (FAILED(CreateOwnInstance(CLSID_CqrlTabulexConvertor, iid_of<IqrlTabulexConvertor>,
                                 object.put_void())))
        return {};
    for (const auto& [nId, sName] : kOffers)
        if (object->AddResolutionTemplate(nId, Bstr(sName).get()) != S_OK)
            return {};
    return object;
}
