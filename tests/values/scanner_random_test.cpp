// The scanner against a plain one, on random documents.

#include <random>

#include <gtest/gtest.h>

#include "tests/parsing/FieldText.h"
#include "tests/support/Seed.h"
#include "tests/values/Heard.h"

namespace {

constexpr string_view_t kPieces[] = {
    OLESTR("<"),         OLESTR(">"),          OLESTR("/"),       OLESTR("="),
    OLESTR("\""),        OLESTR("'"),          OLESTR(" "),       OLESTR("\r\n"),
    OLESTR("?"),         OLESTR("-"),          OLESTR("!"),       OLESTR("a"),
    OLESTR("TYPE"),      OLESTR("x y"),        OLESTR("<A>"),     OLESTR("</A>"),
    OLESTR("<A/>"),      OLESTR("<A b='c'>"),  OLESTR("<!--"),    OLESTR("-->"),
    OLESTR("<script>"),  OLESTR("</script>"),  OLESTR("<Style "), OLESTR("</sTYLE >"),
    OLESTR("<?xml "),    OLESTR("?>"),         OLESTR("</?xml>"), OLESTR("\u2003"),
    OLESTR("</script "), OLESTR("<\"NAME\">"), OLESTR("\u012F"),  OLESTR("</!--"),
};

TEST(Scanner, AgreesWithThePlainOne)
{
    const int nDocuments = Rounds(200000);
    constexpr std::size_t kMostPieces = 24;
    std::mt19937 engine(Seed());
    const auto below = [&](std::size_t n) {
        return std::uniform_int_distribution<std::size_t>(0, n - 1)(engine);
    };
    int nRead = 0;
    for (int i = 0; i < nDocuments; ++i) {
        string_t sDocument;
        for (std::size_t n = below(kMostPieces + 1); n > 0; --n)
            sDocument += kPieces[below(std::size(kPieces))];
        const std::string sHeard = Heard(sDocument);
        ASSERT_EQ(PlainlyHeard(sDocument), sHeard) << Shown(sDocument);
        nRead += sHeard.ends_with("ok");
    }
    // Both outcomes were tried often.
    EXPECT_GT(nRead, nDocuments / 100);
    EXPECT_LT(nRead, nDocuments - nDocuments / 100);
}

TEST(Scanner, ReadsLongDocuments)
{
    constexpr std::size_t kTimes = 500000;
    for (const string_view_t sPiece :
         {OLESTR("<"), OLESTR("<A "), OLESTR("<!-- "), OLESTR("\""), OLESTR("<script>"),
          OLESTR("<A b='"), OLESTR("</"), OLESTR("<A>x</A>"), OLESTR(" ")}) {
        string_t sDocument;
        for (std::size_t n = 0; n < kTimes; ++n)
            sDocument += sPiece;
        EXPECT_EQ(Heard(sDocument), PlainlyHeard(sDocument));
    }
}

} // namespace
