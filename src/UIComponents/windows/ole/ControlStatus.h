// ControlStatus: what the register, and a control itself, say of controls in general.
#pragma once

#include "platform/component.h"

#include <oleidl.h>

namespace Hesperon::specifics::UILayer {

// A control works in place, without a double click, as soon as it is in sight; nothing can link
// to its inside; it looks different at another size.
inline constexpr DWORD kControlStatus = OLEMISC_RECOMPOSEONRESIZE | OLEMISC_CANTLINKINSIDE |
                                        OLEMISC_INSIDEOUT | OLEMISC_ACTIVATEWHENVISIBLE;

} // namespace Hesperon::specifics::UILayer
