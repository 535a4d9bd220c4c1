// make_quotes LAYOUT ROWS FILE: a quote file in one of the layouts, or without arguments their
// names.

#include <cstdlib>
#include <exception>

#include <fmt/format.h>

#include "bench/versus/QuoteFiles.h"

int main(int argc, char** argv)
try {
    if (argc != 4) {
        for (const std::string& sLayout : bench::QuoteFileLayouts())
            fmt::print("{}\n", sLayout);
        return argc == 1 ? 0 : 2;
    }
    bench::WriteQuoteFile(argv[1], std::strtoull(argv[2], nullptr, 10), argv[3]);
    return 0;
} catch (const std::exception& fault) {
    fmt::print(stderr, "make_quotes: {}\n", fault.what());
    return 1;
}
