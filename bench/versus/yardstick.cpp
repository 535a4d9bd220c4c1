// yardstick LAYOUT FILE: reads a file of make_quotes by hand, and prints its rows and the sum of
// all cells. Without arguments it prints the layouts that it reads.

#include <exception>

#include <fmt/format.h>

#include "bench/versus/HandWrittenReaders.h"

int main(int argc, char** argv)
try {
    if (argc != 3) {
        for (const std::string& sLayout : bench::HandReadLayouts())
            fmt::print("{}\n", sLayout);
        return argc == 1 ? 0 : 2;
    }
    const bench::HandReading reading = bench::ReadByHand(argv[1], argv[2]);
    fmt::print("{} {}\n", reading.nRows, reading.fSum);
    return 0;
} catch (const std::exception& fault) {
    fmt::print(stderr, "yardstick: {}\n", fault.what());
    return 1;
}
