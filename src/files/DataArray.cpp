#include "src/files/DataArrayImpl.h"

namespace Hesperon::specifics {

template class CDataArray<char, 16, 262144>;

} // namespace Hesperon::specifics
