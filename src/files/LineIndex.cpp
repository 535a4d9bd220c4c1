#include "src/files/LineIndexImpl.h"

namespace Hesperon::specifics {

template class CLineIndexOf<FileBytes>;

} // namespace Hesperon::specifics
