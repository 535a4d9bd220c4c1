// The code page of a file, from its first lines.
#pragma once

#include <span>
#include <string>

#include "platform/text/CodePage.h"
#include "src/files/IFileHandler.h"

namespace Hesperon::specifics {

// The bytes of the first 50 lines, at most 511 characters of each, with CR and LF after each.
// A line that can't be read ends the sample. Throws what the file throws.
std::string SampleBytes(IFileHandler& file);

// The page that is set stays if it is among the candidates at all. Otherwise the candidate of
// the highest confidence wins, and of equal ones the last.
ULONG ChooseCodePage(ULONG nSet, std::span<const DetectedCodePage> candidates);

// The same with the candidates that the system names for the file, 15 at most.
ULONG DetectCodePage(IFileHandler& file, ULONG nSet);

} // namespace Hesperon::specifics
