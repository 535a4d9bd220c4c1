#include "tools/tabulex/host/ReadCheck.h"

#include <algorithm>

#include <fmt/format.h>

#include "interfaces/IReadState.h"
#include "tools/tabulex/host/Properties.h"
#include "tools/tabulex/text/Formats.h"

namespace tabulex {

using namespace IQRL_TabulexConverter;

namespace {

// Empty where no file is open.
std::optional<ReadState> StateOf(const Host& host)
{
    com_ptr<IReadState> file;
    ReadState state{};
    if (FAILED(query(&host.Data(), file)) || FAILED(file->GetReadState(&state)))
        return std::nullopt;
    return state;
}

// Where no line was looked for, the end of the file was.
std::string PlaceOf(const ReadState& state)
{
    return state.nFaultLine == kNoFaultLine
               ? " (at the end of the file)"
               : fmt::format(" (after line {}, blank lines not counted)",
                             WithThousands(state.nFaultLine));
}

std::string SentenceOf(const ReadState& state)
{
    switch (state.nFault) {
    case ReadFaultCut:
        return CutAt(std::min(state.nFaultPosition, state.nSizeNow), state.nSize, PlaceOf(state));
    case ReadFaultMemory:
        return fmt::format("{}{}", kOutOfMemory, PlaceOf(state));
    default:
        return ReadFailedAt(state.nFaultPosition, state.nSize, PlaceOf(state));
    }
}

} // namespace

std::string ReadFailedAt(ULONGLONG nByte, ULONGLONG nSize, std::string_view place)
{
    return fmt::format("reading failed at byte {} of {}{}; check the disk or the network, or copy "
                       "the file, and run the command again",
                       WithThousands(nByte), WithThousands(nSize), place);
}

std::string CutAt(ULONGLONG nByte, ULONGLONG nSize, std::string_view place)
{
    return fmt::format("the file was cut to {} of {} bytes while it was read{}; wait until nothing "
                       "writes to it, and run the command again",
                       WithThousands(nByte), WithThousands(nSize), place);
}

std::string BytesAt(FileBytes& file, ULONGLONG nOffset, std::size_t nMost)
{
    std::string bytes(nMost, '\0');
    bytes.resize(file.ReadAt(nOffset, bytes));
    if (file.HasFailed())
        throw Fault{ExitStatus::FileFault, ReadFailedAt(nOffset + bytes.size(), file.Size())};
    return bytes;
}

std::optional<Fault> FindReadFault(const Host& host)
{
    const auto state = StateOf(host);
    if (!state || state->nFault == ReadFaultNone)
        return std::nullopt;
    return Fault{ExitStatus::FileFault, SentenceOf(*state)};
}

// The component's rule from positions to lines (src/data/LineRule.h), the other way round.
std::optional<ULONGLONG> FaultPosition(const Host& host)
{
    const auto state = StateOf(host);
    if (!state || state->nFault == ReadFaultNone || state->nFaultLine == kNoFaultLine)
        return std::nullopt;
    IDataParser& data = host.Data();
    const ULONGLONG nBefore = ULONGLONG(Get(data, &IDataParser::get_HeaderOffset)) +
                              (GetFlag(data, &IDataParser::get_HasHeader) ? 1 : 0);
    if (!GetFlag(data, &IDataParser::get_InvertedDirection))
        return state->nFaultLine - std::min(state->nFaultLine, nBefore);
    ULONGLONG nRecords = 0;
    data.GetCount(&nRecords, nullptr);
    return nRecords + nBefore - state->nFaultLine - 1;
}

std::optional<Fault> FindGrowth(const Host& host)
{
    const auto state = StateOf(host);
    if (!state || state->nSizeNow <= state->nSize)
        return std::nullopt;
    return Fault{ExitStatus::Refused,
                 fmt::format("the file grew from {} to {} bytes while it was read, and what was "
                             "added is missing; wait until nothing writes to it, and run the "
                             "command again",
                             WithThousands(state->nSize), WithThousands(state->nSizeNow))};
}

std::optional<ULONGLONG> OpenedSize(const Host& host)
{
    const auto state = StateOf(host);
    return state ? std::optional(state->nSize) : std::nullopt;
}

void RequireRead(const Host& host)
{
    if (const auto fault = FindReadFault(host))
        throw Fault(*fault);
}

void RequireNoGrowth(const Host& host)
{
    if (const auto fault = FindGrowth(host))
        throw Fault(*fault);
}

} // namespace tabulex
