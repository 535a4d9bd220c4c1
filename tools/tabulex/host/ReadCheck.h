// ReadCheck: whether a result stands on all that the file holds.
//
// The component takes a record that it can't read for the end of the file, and a run then
// commits with the records that came before. Counts don't show it: a file that runs
// backwards, or is small, was counted before the run; a run that ended at a date leaves
// the count incomplete though nothing is missing; and a sink doesn't hear how many lines a
// batch had. So three questions are asked of the open file itself, by IReadState:
//
//   1. Has a read failed that somebody waited for, or has memory run out while a line was
//      found or kept? Then nothing that was worked out since can be trusted, be it the
//      layout or the rows: the command ends with FileFault. Reads that the component makes
//      ahead of time don't count, so a damaged end does no harm to a portion before it.
//   2. Is the file shorter than the component takes it to be? That needs no question of its
//      own: what is gone fails to be read, and what was read before is whole.
//   3. Is it longer? A result that goes up to the end of the file then lacks what was added.
//      One that a range, a portion or its reader ended before doesn't.
//
// Used by the host's thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

#include "tools/tabulex/host/Host.h"
#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/system/FileBytes.h"

namespace tabulex {

// The first read that failed since the file was opened; empty if none, or without a file.
std::optional<Fault> FindReadFault(const Host& host);

// The position of the record at which reading failed; empty where it didn't, or somewhere
// else than at a record.
std::optional<ULONGLONG> FaultPosition(const Host& host);

// The file has grown since it was opened.
std::optional<Fault> FindGrowth(const Host& host);

// Bytes of the open file that the component reads; empty without a file.
std::optional<ULONGLONG> OpenedSize(const Host& host);

// What to say of a read that failed at a byte, and of a file that ends there too early; `place` is
// more about where that was, in brackets, or empty.
std::string ReadFailedAt(ULONGLONG nByte, ULONGLONG nSize, std::string_view place = {});
std::string CutAt(ULONGLONG nByte, ULONGLONG nSize, std::string_view place = {});

// At most nMost bytes. Throws Fault where reading fails.
std::string BytesAt(FileBytes& file, ULONGLONG nOffset, std::size_t nMost);

// Throw what is found.
void RequireRead(const Host& host);
void RequireNoGrowth(const Host& host);

// Works on the host's file. A read that failed is thrown ahead of any other fault, which
// may come from it.
template <class Work>
auto OnReadFile(const Host& host, Work work)
try {
    if constexpr (std::is_void_v<decltype(work())>) {
        work();
        RequireRead(host);
    } else {
        auto result = work();
        RequireRead(host);
        return result;
    }
} catch (const Fault&) {
    RequireRead(host);
    throw;
}

} // namespace tabulex
