#include "tools/tabulex/explain/FileHead.h"

#include "tools/tabulex/host/ReadCheck.h"

namespace tabulex {

namespace {

// Holds any preamble and the sampled rows, and is read in no time.
constexpr std::size_t kHeadBytes = 1 << 20;

} // namespace

FileHead ReadHead(const std::string& path)
{
    FileBytes file(path);
    FileHead head;
    head.sBytes = BytesAt(file, 0, kHeadBytes);
    head.nSize = file.Size();
    LineWalker walker(path, head.sBytes.size());
    for (ContentLine line; walker.Next(line);)
        head.lines.push_back(line);
    if (!walker.FaultText().empty())
        throw Fault{ExitStatus::FileFault,
                    file.Size() < head.nSize ? CutAt(file.Size(), head.nSize) : walker.FaultText()};
    return head;
}

} // namespace tabulex
