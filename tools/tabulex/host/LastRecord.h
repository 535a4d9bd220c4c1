// The last record of a file as text that can be shown.
#pragma once

#include <optional>
#include <string>

#include "interfaces/IDataParser.h"

namespace tabulex {

// Empty where the file has no record. Of a last line of a mebibyte or more, its beginning
// where the component can give it without the rest. Leaves the position at record 0.
std::optional<std::string> LastRecordText(IQRL_TabulexConverter::IDataParser& data);

} // namespace tabulex
