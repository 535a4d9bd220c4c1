// Texts that nobody meant to be quote files.

#include <algorithm>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "tests/intake/Clean.h"
#include "tests/support/Seed.h"

using namespace intake_test;
using namespace tabulex::intake;

namespace {

constexpr const char* kTaking = "--quotes --decimal comma --thousands point --numbers suffix "
                                "--moment 1:dmy+time --take 2=Open --take 3=Close";

// Lines of a text, the last one also without an end.
std::uint64_t LinesOf(std::string_view text)
{
    const auto n = std::ranges::count(text, '\n');
    return static_cast<std::uint64_t>(n) + (text.empty() || text.back() == '\n' ? 0 : 1);
}

TEST(IntakeHostile, AnEndlessLineIsCut)
{
    IntakeAccount account;
    const std::string clean =
        Clean(kTaking, std::string(5 << 20, 'x') + "\n02.01.2006,1,2\n", &account);
    EXPECT_EQ(account.nCut, 1u);
    EXPECT_EQ(account.nFirstCut, 1u);
    EXPECT_EQ(clean, "Date;Time;Open;Close\n\n2006-01-02;00:00:00.000;1;2\n");
}

TEST(IntakeHostile, ManyColumnsAreCells)
{
    std::string line = "02.01.2006", clean = "2006-01-02";
    for (int n = 1; n < 10000; ++n) {
        line += ",7";
        clean += ";7";
    }
    EXPECT_EQ(Clean("--moment 1:dmy", line + "\n"), clean + "\n");
    EXPECT_EQ(CleanLine("--moment 1:dmy --take 10000=Close", line), "2006-01-02;7");
}

TEST(IntakeHostile, AHeadingMayBeLong)
{
    const std::string heading = "Date," + std::string(1 << 19, 'x');
    EXPECT_EQ(Clean("--moment 1:dmy --take 2=Close", heading + "\n02.01.2006,7\n"),
              "Date;Close\n\n2006-01-02;7\n");
}

TEST(IntakeHostile, QuotesThatNeverCloseEndInTime)
{
    std::string text;
    for (int n = 0; n < 20000; ++n)
        text += n % 3 == 0 ? "\"a,1\n" : "b,\"2\"\"\n";
    IntakeAccount account;
    const std::string clean = Clean("--quotes --separator comma", text, &account);
    EXPECT_EQ(account.nLines, 20000u);
    EXPECT_EQ(LinesOf(clean), 20000u);
}

// Whatever comes in, each line has a line, in blocks of any size.
TEST(IntakeHostile, RandomBytesKeepTheirLines)
{
    constexpr std::string_view kBytes = "0123456789.,;-/:\" \t|JanPMTZ\n\n\r\xC3\xA9\xFF";
    std::mt19937 random(Seed());
    for (int i = Rounds(3000); i > 0; --i) {
        std::string text;
        for (std::size_t n = random() % 400; n > 0; --n)
            text +=
                random() % 50 == 0 ? static_cast<char>(random()) : kBytes[random() % kBytes.size()];
        if (text.find('\n') == std::string::npos)
            text += '\n';
        for (const char* pszRecipe : {kTaking, "--quotes --moment 1:ymd", "--separator blank"}) {
            IntakeAccount account;
            const std::string clean = Clean(pszRecipe, text, &account);
            const std::uint64_t nHeading = RecipeOf(pszRecipe).HasHeading() ? 1 : 0;
            ASSERT_EQ(LinesOf(clean), LinesOf(text) + nHeading) << text;
            ASSERT_EQ(account.nLines, LinesOf(text));
            ASSERT_LE(account.nRows + account.nLeftOut + account.nJoined, account.nLines);
        }
    }
}

// Text that is clean stays as it is.
TEST(IntakeHostile, CleanTextStaysClean)
{
    constexpr std::string_view kPieces[] = {"1098.5", "-0.5", "2006-01-02", "AAPL", "09:30:00.000",
                                            "12",     "0",    "1e5",        "x y",  "1.2.3"};
    constexpr const char* kWords[] = {"--quotes",         "--decimal comma",   "--thousands comma",
                                      "--numbers suffix", "--numbers percent", "--numbers currency",
                                      "--missing -9999"};
    std::mt19937 random(Seed());
    for (int i = Rounds(2000); i > 0; --i) {
        std::string words = "--separator semicolon", text;
        for (const char* pszWord : kWords)
            if (random() % 2 && !(words.ends_with("comma") && *pszWord == '-'))
                words += std::string(" ") + pszWord;
        if (!FaultIn(RecipeOf(words)).empty())
            continue;
        for (std::size_t nLine = 0; nLine < 5; ++nLine) {
            for (std::size_t nCell = random() % 6; nCell > 0; --nCell)
                text += std::string(kPieces[random() % std::size(kPieces)]) + ";";
            text += "7\n";
        }
        ASSERT_EQ(Clean(words, Clean(words, text)), Clean(words, text)) << words << "\n" << text;
        ASSERT_EQ(Clean(words, text), text) << words;
    }
}

} // namespace
