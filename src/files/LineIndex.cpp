#include "src/files/LineIndexImpl.h"

namespace Hesperon::specifics {

template class LineIndexOf<FileBytes>;

} // namespace Hesperon::specifics
