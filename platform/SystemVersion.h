// The version of the operating system, as far as looks depend on it.
#pragma once

// Major version of Windows, as it says itself; elsewhere 6, since which the looks are today's.
unsigned SystemMajorVersion();
