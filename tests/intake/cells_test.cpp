// Lines into cells: dividers, quotation marks, joined lines, pieces.

#include <gtest/gtest.h>

#include "tests/intake/Clean.h"

using namespace intake_test;

namespace {

struct CellCase
{
    const char* pszOptions;
    const char* pszText;
    const char* pszClean;
};

constexpr CellCase kCells[] = {
    // The strongest divider counts.
    {"--quotes", "a,1;2\n", "a,1;2\n"},
    {"--quotes", "a|1;2\n", "a;1,2\n"},
    {"--quotes", "1\t2 3\n", "1;2 3\n"},
    {"--quotes", "20060102 16.66\n", "20060102;16.66\n"},
    {"--separator blank", "  1   2\t3  \n", "1;2;3\n"},
    {"--separator comma", "1 ,  2,3\n", "1;2;3\n"},
    {"--separator #", "1#2\n", "1;2\n"},
    {"--quotes", "made by hand\nD;C\n1,5;2\n2,5;3\n", "\nD;C\n1,5;2\n2,5;3\n"},
    {"--quotes", "\"a;b\",1\n\"c;d\",2\n", "a,b;1\nc,d;2\n"},
    // Quotation marks.
    {"--quotes", "\"1,5\",2\n", "1,5;2\n"},
    {"--quotes", "\"a \"\"b\"\"\",2\n", "a \"b\";2\n"},
    {"--quotes", "\"a\" x,2\n", "a;2\n"},
    {"--quotes", "5\" pipe,2\n", "5\" pipe;2\n"},
    {"--quotes", "\"\",2\n", "?\n"},
    {"--quotes --separator blank", "\"a b\" 2\n", "a b;2\n"},
    {"--quotes --separator comma", "\" 1 \" , \"2\" \n", "1;2\n"},
    {"--separator comma", "\"1\",2\n", "\"1\";2\n"},
    // A quoted line end.
    {"--quotes --separator comma", "1,\"a\nb\",2\n3,4,5\n", "1;a b;2\n\n3;4;5\n"},
    {"--quotes --separator comma", "1,\"a\n\n\nb\",2\n3,4,5\n", "1;a   b;2\n\n\n\n3;4;5\n"},
    {"--quotes --separator comma", "1,\"a\n2,b\n", "1;\"a\n2;b\n"},
    // What would divide the clean line doesn't.
    {"--separator comma", "1,a;b,2\n", "1;a,b;2\n"},
    // Cells that are empty.
    {"--separator comma", "1,,2\n", "1\n"},
    {"--separator comma", "1,2,\n", "1;2\n"},
    {"--separator comma", "1,2\n,,\n3,4\n", "1;2\n\n3;4\n"},
    {"--separator comma", "Date,,Close\n1,2,3\n", "Date;Unnamed;Close\n1;2;3\n"},
    {"--separator comma", "AAPL,-,2\n1,-,3\n", "AAPL\n1\n"},
};

TEST(IntakeCells, AreCutAtDividers)
{
    for (const CellCase& row : kCells)
        EXPECT_EQ(Clean(row.pszOptions, row.pszText), row.pszClean)
            << row.pszOptions << " " << row.pszText;
}

TEST(IntakeCells, AreCutWhereverTheLineEnds)
{
    for (int n = 1; n <= 70; ++n) {
        std::string line, clean;
        for (int i = 0; i < n; ++i) {
            line += (i ? "," : "") + std::to_string(i % 10);
            clean += (i ? ";" : "") + std::to_string(i % 10);
        }
        EXPECT_EQ(Clean("--separator comma", line + "\n" + line), clean + "\n" + clean + "\n");
    }
}

TEST(IntakeCells, TellWhatWasJoined)
{
    tabulex::intake::IntakeAccount account;
    Clean("--quotes --separator comma", "1,\"a\nb\",2\n3,4,5\n", &account);
    EXPECT_EQ(account.nLines, 3u);
    EXPECT_EQ(account.nJoined, 1u);
    EXPECT_EQ(account.nRows, 2u);
    EXPECT_EQ(account.nOpenQuotes, 0u);
}

TEST(IntakeCells, AMarkThatNeverClosesQuotesNothing)
{
    std::string text = "1,2\n1,\"a\n", clean = "1;2\n1;\"a\n";
    for (int n = 0; n < 100; ++n) {
        text += "3,4\n";
        clean += "3;4\n";
    }
    tabulex::intake::IntakeAccount account;
    EXPECT_EQ(Clean("--quotes --separator comma", text, &account), clean);
    EXPECT_EQ(account.nOpenQuotes, 1u);
    EXPECT_EQ(account.nFirstOpenQuote, 2u);
    EXPECT_EQ(account.nJoined, 0u);
}

TEST(IntakeCells, PiecesAreCells)
{
    EXPECT_EQ(CleanLine("--separator comma --split 2:/ --moment 1:ymd --take 2.1=Open "
                        "--take 2.3=Close --take 2.2=High",
                        "2006-01-02,1/2/3"),
              "2006-01-02;1;3;2");
    EXPECT_EQ(CleanLine("--separator comma --split 2:/ --moment 1:ymd --take 2.1=Open "
                        "--take 2.4=Close",
                        "2006-01-02,1/2/3"),
              "2006-01-02;1");
    EXPECT_EQ(CleanLine("--separator comma --split 1:@ --moment 1.2:ymd --take 1.1=Symbol "
                        "--take 2=Close",
                        "ABC@20060102,7"),
              "ABC;2006-01-02;7");
}

} // namespace
