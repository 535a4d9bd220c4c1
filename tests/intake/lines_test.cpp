// Lines that are left out, headings, and the numbers of lines.

#include <gtest/gtest.h>

#include "tests/intake/Clean.h"

using namespace intake_test;

namespace {

struct LineCase
{
    const char* pszOptions;
    const char* pszText;
    const char* pszClean;
};

constexpr LineCase kLines[] = {
    {"--skip-lines 2", "a\nb\n1,2\n3,4\n", "\n\n1;2\n3;4\n"},
    {"--skip-to Date", "x\nDate,Close\n1,2\n", "\nDate;Close\n1;2\n"},
    {"--stop-at Total", "1,2\nTotal,9\n3,4\n", "1;2\n\n\n"},
    {"--comment #", "# x\n1,2\n  # y\n3,4\n", "\n1;2\n\n3;4\n"},
    {"--comment # --comment //", "# x\n// y\n3,4\n", "\n\n3;4\n"},
    // Of the lines ahead of the first row the last one names the columns.
    {"--separator comma", "x\nDate,Close\n1,2\n", "\nDate;Close\n1;2\n"},
    {"--separator comma", "x\n\nDate,Close\n\n1,2\n", "\n\nDate;Close\n\n1;2\n"},
    {"--moment 1:dmy", "When,Close\n02.01.2006,7\n", "Date;Close\n2006-01-02;7\n"},
    {"--moment 1:dmy+time", "When,Close\n02.01.2006 9:30,7\n",
     "Date;Time;Close\n2006-01-02;09:30:00.000;7\n"},
    {"--moment 1+2:dmy+time", "When,At,Close\n02.01.2006,9:30,7\n",
     "Date;Time;Close\n2006-01-02;09:30:00.000;7\n"},
    {"--moment 2:dmy", "Name,When,Close\nA,02.01.2006,7\n", "Name;Date;Close\nA;2006-01-02;7\n"},
    {"--moment 1:dmy", "02.01.2006,7\n", "2006-01-02;7\n"},
    {"--drop 2", "A,B,C\n1,2,3\n", "A;C\n1;3\n"},
    {"--symbol-name ABC", "Date,Close\n2006-01-02,7\n", "Symbol;Date;Close\nABC;2006-01-02;7\n"},
    {"--moment 1:dmy", "no,row\n", "Date;row\n"},
    // With takes the recipe names them.
    {"--moment 1:dmy --take 2=Close", "x\nWhen,C\n02.01.2006,7\n",
     "Date;Close\n\n\n2006-01-02;7\n"},
    {"--moment 1:dmy --take 2=Close", "02.01.2006,7\n\n03.01.2006,8",
     "Date;Close\n"
     "2006-01-02;7\n\n"
     "2006-01-03;8\n"},
    {"--moment 1+3:ymd+time --take 4=Close --take 2+5=Symbol",
     "20060102,TX,93000,7,201704\n20060102,,93000,8,\n",
     "Symbol;Date;Time;Close\nTX 201704;2006-01-02;09:30:00.000;7\n?\n"},
    {"--moment 1:ymd --take 2=Symbol --take 3=Close", "2006-01-02,'600025,7\n2006-01-02,=\"A\",7\n",
     "Symbol;Date;Close\n600025;2006-01-02;7\nA;2006-01-02;7\n"},
    {"--take 1=Date --take 2=Close", "Date,Price\n2006-01-02,7\n", "Date;Close\n\n2006-01-02;7\n"},
    {"--take 1=Date --take 2=Close --symbol-name X", "2006-01-02,7\n",
     "Symbol;Date;Close\nX;2006-01-02;7\n"},
    // Among rows what can't be read is handed on, to be reported.
    {"--moment 1:dmy --take 2=Close", "02.01.2006,7\nend of page\n03.01.2006,-\n03.01.2006,x\n",
     "Date;Close\n2006-01-02;7\nend of page\n2006-01-03\n2006-01-03\n"},
    {"--moment 1:dmy --take 2=Close", "02.01.2006,7\n,8\n", "Date;Close\n2006-01-02;7\n?\n"},
    // A first row with a bad date is a row for its numbers.
    {"--moment 1:dmy --take 2=Open --take 3=Close", "D,O,C\n99.99.2006,7,8\n02.01.2006,7,8\n",
     "Date;Open;Close\n\n99.99.2006\n2006-01-02;7;8\n"},
    {"--moment 1:dmy --take 2=Close --leave-out no-date", "02.01.2006,7\nend,8\n03.01.2006,7\n",
     "Date;Close\n2006-01-02;7\n\n2006-01-03;7\n"},
    {"--moment 1:dmy --take 2=Open --take 3=Close --leave-out no-values",
     "02.01.2006,,\n03.01.2006,,8\n04.01.2006,7,8\n",
     "Date;Open;Close\n\n2006-01-03\n2006-01-04;7;8\n"},
    // Line ends.
    {"--separator comma", "1,2\r\n3,4\r\n", "1;2\n3;4\n"},
    {"--separator comma", "1,2\r3,4\r", "1;2\n3;4\n"},
    {"--separator comma", "1,2\n3,4", "1;2\n3;4\n"},
    {"--separator comma", "", ""},
    {"--separator comma", "\n\n", "\n\n"},
};

TEST(IntakeLines, AreLeftOutOrKeptInTheirPlaces)
{
    for (const LineCase& row : kLines)
        EXPECT_EQ(Clean(row.pszOptions, row.pszText), row.pszClean)
            << row.pszOptions << " " << row.pszText;
}

TEST(IntakeLines, AddUp)
{
    tabulex::intake::IntakeAccount account;
    Clean("--skip-lines 1 --moment 1:dmy --take 2=Close --leave-out no-date",
          "x\nD,C\n02.01.2006,7\n\nend,8\n03.01.2006,-\n", &account);
    EXPECT_EQ(account.nLines, 6u);
    EXPECT_EQ(account.nLeftOut, 2u);
    EXPECT_EQ(account.nHeading, 1u);
    EXPECT_EQ(account.nRows, 2u);
    EXPECT_EQ(account.nMissing, 1u);
    EXPECT_EQ(account.nFirstMissing, 6u);
    EXPECT_EQ(account.nBadMoments, 0u);
}

TEST(IntakeLines, AreTheSameInBlocksOfAnySize)
{
    const std::string text = "x\r\nWhen,Close\r\n02.01.2006,\"1.098,5\"\r\n\r\n03.01.2006,\"a\r\n"
                             "b\"\r\n04.01.2006,7\r\n";
    const auto recipe = RecipeOf("--separator comma --quotes --decimal comma --thousands point "
                                 "--moment 1:dmy --take 2=Close");
    const std::string whole = tabulex::intake::CleanText(recipe, text);
    EXPECT_EQ(whole, "Date;Close\n\n\n2006-01-02;1098.5\n\n2006-01-03\n\n2006-01-04;7\n");
    for (std::size_t nBlock = 1; nBlock < text.size(); ++nBlock) {
        std::string clean;
        tabulex::intake::Intake intake(recipe, [&](std::string_view block) { clean += block; });
        for (std::size_t n = 0; n < text.size(); n += nBlock)
            intake.Feed(std::string_view(text).substr(n, nBlock));
        intake.Finish();
        EXPECT_EQ(clean, whole) << nBlock;
    }
}

TEST(IntakeLines, KnowWhereTheyComeFrom)
{
    std::string clean;
    tabulex::intake::Intake intake(RecipeOf("--moment 1:dmy --take 2=Close"),
                                   [&](std::string_view block) { clean += block; });
    intake.Feed("x\n02.01.2006,7\n");
    intake.Finish();
    const auto origins = intake.LineOrigins();
    EXPECT_EQ(origins->Of(0), tabulex::intake::kNoOrigin);
    EXPECT_EQ(origins->Of(1), 0u);
    EXPECT_EQ(origins->Of(2), 1u);
}

} // namespace
