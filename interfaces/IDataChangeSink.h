// Who is told when the user has given a column of a grid another type.
#pragma once

#include "platform/component.h"

namespace IQRL_TabulexConverter {

// Dual; not in the type library.
struct IDataChangeSink : IDispatch
{
    virtual HRESULT STDMETHODCALLTYPE OnDataChanged() = 0;
};

} // namespace IQRL_TabulexConverter

// {60883E84-3FBC-4372-B04C-8D4215003DF5}
template <>
inline constexpr GUID iid_of<IQRL_TabulexConverter::IDataChangeSink> = {
    0x60883E84, 0x3FBC, 0x4372, {0xB0, 0x4C, 0x8D, 0x42, 0x15, 0x00, 0x3D, 0xF5}};
