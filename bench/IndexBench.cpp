// Finding all lines of a file, beside a bare count of its newlines.

#include <benchmark/benchmark.h>

#include <cstring>
#include <memory>

#include "bench/MinuteBars.h"
#include "bench/Parser.h"
#include "platform/File.h"
#include "src/files/FilePool.h"

namespace bench {
namespace {

using namespace Hesperon::specifics;

void IndexScan(benchmark::State& state)
{
    FilePool::AddParser();
    {
        const com_ptr<IFileHandler> file = FilePool::AttachFile(PathFromBytes(MinuteBarsPath()));
        for (auto _ : state) {
            file->Invalidate(VARIANT_TRUE);
            file->SeekRecord(~0ull);
            ULONGLONG nLines = 0;
            file->GetCount(&nLines, nullptr);
            if (nLines != MinuteBarsRows() + 1)
                throw std::runtime_error("the index lost lines");
        }
    }
    FilePool::ReleaseParser();
    state.SetBytesProcessed(state.iterations() * MinuteBarsBytes());
}
BENCHMARK(IndexScan)->Unit(benchmark::kMillisecond)->UseRealTime();

void MemchrCount(benchmark::State& state)
{
    constexpr std::size_t kChunk = 1 << 18;
    const std::unique_ptr<char[]> buffer(new char[kChunk]);
    int nError = 0;
    const File file = File::Open(PathFromBytes(MinuteBarsPath()), nError);
    for (auto _ : state) {
        std::uint64_t nLines = 0;
        std::uint64_t nOffset = 0;
        while (const auto nRead = file.ReadAt(nOffset, buffer.get(), kChunk)) {
            if (*nRead == 0)
                break;
            const char* end = buffer.get() + *nRead;
            for (const char* p = buffer.get();
                 (p = static_cast<const char*>(std::memchr(p, '\n', end - p))); ++p)
                ++nLines;
            nOffset += *nRead;
        }
        if (nLines != MinuteBarsRows() + 1)
            throw std::runtime_error("the count is off");
    }
    state.SetBytesProcessed(state.iterations() * MinuteBarsBytes());
}
BENCHMARK(MemchrCount)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
} // namespace bench
