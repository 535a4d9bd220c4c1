// An object of the component with the lists that hosts usually give it.
#pragma once

#include "interfaces/ClassIds.h"
#include "interfaces/IqrlTabulexConvertor.h"
#include "module/Module.h"
#include "platform/com_ptr.h"
#include "platform/values.h"

using IQRL_TabulexConverter::IqrlTabulexConvertor;

// Null where it can't be had.
inline com_ptr<IqrlTabulexConvertor> NewConvertor()
{
    constexpr std::pair<LONG, string_view_t> kOffers[] = {
        {1, OLESTR("Ticks")},   {1, OLESTR("Tick Bars")}, {8, OLESTR("Count Bars")},
        {9, OLESTR("Seconds")}, {2, OLESTR("Minutes")},   {4, OLESTR("Days")},
        {5, OLESTR("Weeks")}};
    com_ptr<IqrlTabulexConvertor> object;
    if (FAILED(CreateOwnInstance(IQRL_TabulexConverter::CLSID_CqrlTabulexConvertor,
                                 iid_of<IqrlTabulexConvertor>, object.put_void())))
        return {};
    for (const auto& [nId, sName] : kOffers)
        if (object->AddResolutionTemplate(nId, Bstr(sName).get()) != S_OK)
            return {};
    return object;
}
