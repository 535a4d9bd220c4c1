#include "tests/support/Seed.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <random>

#include <gtest/gtest.h>

namespace {

// What a sanitizer costs is made up for by fewer rounds.
#if defined(__SANITIZE_THREAD__)
constexpr int kSlowness = 4;
#elif defined(__SANITIZE_ADDRESS__)
constexpr int kSlowness = 2;
#else
constexpr int kSlowness = 1;
#endif

class PrintSeedOnFailure : public testing::EmptyTestEventListener
{
public:
    explicit PrintSeedOnFailure(unsigned nSeed) : m_nSeed(nSeed) {}

    void OnTestEnd(const testing::TestInfo& test) override
    {
        if (test.result()->Failed())
            std::cout << "TABULEX_SEED=" << m_nSeed << " repeats the run\n";
    }

private:
    const unsigned m_nSeed;
};

std::optional<unsigned long> NumberFromEnvironment(const char* szName)
{
    const char* szNumber = std::getenv(szName);
    return szNumber ? std::optional(std::strtoul(szNumber, nullptr, 10)) : std::nullopt;
}

unsigned ChooseSeed()
{
    const auto nGiven = NumberFromEnvironment("TABULEX_SEED");
    const unsigned nSeed = nGiven ? static_cast<unsigned>(*nGiven) : std::random_device()();
    testing::UnitTest::GetInstance()->listeners().Append(new PrintSeedOnFailure(nSeed));
    return nSeed;
}

} // namespace

unsigned Seed()
{
    static const unsigned nSeed = ChooseSeed();
    return nSeed;
}

int Rounds(int nUsual)
{
    static const auto nFactor =
        static_cast<int>(std::max(NumberFromEnvironment("TABULEX_ROUNDS").value_or(1), 1ul));
    return std::max(nUsual * nFactor / kSlowness, 1);
}
