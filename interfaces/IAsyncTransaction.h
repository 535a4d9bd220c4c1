// Running work that can be cancelled by its number.
#pragma once

#include "platform/component.h"

namespace IQRL_TabulexConverter {

struct IAsyncTransaction : IUnknown
{
    // Ends the work. Called under the process-wide proxy lock: it must not wait for
    // a thread that may want that lock.
    virtual HRESULT STDMETHODCALLTYPE Cancel() = 0;
};

} // namespace IQRL_TabulexConverter

// {B1A784BF-05F2-4410-B34C-CCAF40620E44}
template <>
inline constexpr GUID iid_of<IQRL_TabulexConverter::IAsyncTransaction> = {
    0xB1A784BF, 0x05F2, 0x4410, {0xB3, 0x4C, 0xCC, 0xAF, 0x40, 0x62, 0x0E, 0x44}};
