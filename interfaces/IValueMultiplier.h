// Scales prices or volumes by a power of ten.
#pragma once

#include "platform/component.h"

namespace IQRL_TabulexConverter {

// Dual.
struct IValueMultiplier : IDispatch
{
    // Scales *Value in place. The first value after a change of Current decides
    // whether values are taken as VT_I8 or VT_R8; callers keep to one kind. S_OK
    // always.
    virtual HRESULT STDMETHODCALLTYPE ApplyTransform(VARIANT* Value) = 0;
    // The 13 names from "1000000" to "1/1000000": VT_ARRAY|VT_BSTR, lower bound 0.
    virtual HRESULT STDMETHODCALLTYPE get_TransformNames(VARIANT* pVal) = 0;
    // Name of the current transform; "1" at creation. E_POINTER for null.
    virtual HRESULT STDMETHODCALLTYPE get_Current(BSTR* pVal) = 0;
    // Selects by exact name; E_INVALIDARG, and no change, for an unknown one.
    virtual HRESULT STDMETHODCALLTYPE put_Current(BSTR newVal) = 0;
};

} // namespace IQRL_TabulexConverter

// {9989E477-C893-4E03-B31A-06778712E774}
template <>
inline constexpr GUID iid_of<IQRL_TabulexConverter::IValueMultiplier> = {
    0x9989E477, 0xC893, 0x4E03, {0xB3, 0x1A, 0x06, 0x77, 0x87, 0x12, 0xE7, 0x74}};
