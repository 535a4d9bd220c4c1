#include "platform/SystemVersion.h"

#include "platform/component.h"

// The call says 6.2 at most to a program without a manifest for more, which is enough here.
unsigned SystemMajorVersion()
{
    OSVERSIONINFOW version{};
    version.dwOSVersionInfoSize = sizeof version;
    return GetVersionExW(&version) ? version.dwMajorVersion : 0;
}
