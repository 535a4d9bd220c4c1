// Opening a file until its layout is known.

#include <benchmark/benchmark.h>

#include "bench/MinuteBars.h"
#include "bench/Parser.h"

namespace bench {
namespace {

void Detect(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(OpenFile(MinuteBarsPath()));
}
BENCHMARK(Detect)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
} // namespace bench
