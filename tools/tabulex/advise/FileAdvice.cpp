// The path is that of plain text: archives, pipes and marks in front have been dealt with. The file
// is read by its places, as a sample of a large one is spread over it.
#include "tools/tabulex/advise/FileAdvice.h"

#include <cstdint>
#include <span>

#include "advice/forms/FileSample.h"
#include "tools/tabulex/advise/EngineTrial.h"
#include "tools/tabulex/host/ReadCheck.h"
#include "tools/tabulex/review/Decoding.h"
#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/system/FileBytes.h"

namespace tabulex {

namespace {

// What can't be read, or is gone, would be missing among the lines without a word.
std::size_t ReadWhole(FileBytes& file, std::uint64_t nOffset, std::span<char> buffer)
{
    const std::size_t nRead = file.ReadAt(nOffset, buffer);
    if (file.HasFailed())
        throw Fault{ExitStatus::FileFault, ReadFailedAt(nOffset + nRead, file.Size())};
    if (nRead < buffer.size())
        throw Fault{ExitStatus::FileFault, CutAt(nOffset + nRead, nOffset + buffer.size())};
    return nRead;
}

} // namespace

advice::Advice AdviseFile(const std::string& path, const Settings& given,
                          const ResolutionOffers& offers, advice::DayMonth preferred)
{
    FileBytes file(path);
    const advice::FileSample sample(file.Size(),
                                    [&file](std::uint64_t nOffset, std::span<char> buffer) {
                                        return ReadWhole(file, nOffset, buffer);
                                    });
    EngineTrial trial(offers, given);
    return advice::Advise(sample, DecodeBytes, trial, preferred);
}

} // namespace tabulex
