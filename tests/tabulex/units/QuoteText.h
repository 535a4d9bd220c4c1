// QuoteText: random lines of quotes, some of them as no vendor would write them.
#pragma once

#include <cstddef>
#include <random>
#include <string>

// At least nLeast bytes. Lines end in one way; some texts have zero bytes, UTF-16, or nothing
// but noise.
std::string RandomQuotes(std::mt19937& random, std::size_t nLeast);
