// ActivationContext: the controls of version 6 for windows of ours, whatever the host has.
//
//   {
//       const ActivationContext version6;
//       CreateWindowExW(0, L"SysListView32", ...);
//   }
//
// A host without a manifest of its own gets the system's old controls, without themes. While one
// of these lives, windows that its thread makes are of the version that this module's manifest
// (resource kManifestId) names. Where that can't be read, they are the host's. The classes of the
// controls are there in either case.
//
// Nested ones of a thread end in reverse order.
#pragma once

#include "platform/component.h"

namespace Hesperon::specifics::UILayer {

inline constexpr unsigned kManifestId = 2; // of a library, by the system's convention

class ActivationContext
{
public:
    ActivationContext();
    ~ActivationContext();
    ActivationContext(const ActivationContext&) = delete;
    ActivationContext& operator=(const ActivationContext&) = delete;

private:
    ULONG_PTR m_nCookie = 0; // 0 where none was activated
};

} // namespace Hesperon::specifics::UILayer
