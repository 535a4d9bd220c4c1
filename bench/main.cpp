// bench_tabulex [--rows=N] [Google Benchmark's options]

#include <cstdlib>
#include <cstring>

#include <benchmark/benchmark.h>

#include "bench/MinuteBars.h"
#include "bench/Ratios.h"

int main(int argc, char** argv)
{
    constexpr char kRows[] = "--rows=";
    if (argc > 1 && std::strncmp(argv[1], kRows, sizeof kRows - 1) == 0) {
        SetMinuteBarsRows(std::strtoull(argv[1] + sizeof kRows - 1, nullptr, 10));
        argv[1] = argv[0];
        ++argv;
        --argc;
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
