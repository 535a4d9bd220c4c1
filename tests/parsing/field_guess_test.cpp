#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "src/parsing/detection/FieldGuess.h"
#include "tests/parsing/FieldText.h"
#include "tests/support/ReportLog.h"

using namespace Hesperon::specifics;

namespace {

TypeSet SetOf(std::initializer_list<unsigned> types)
{
    TypeSet set;
    for (unsigned uiType : types)
        set[uiType] = true;
    return set;
}

// ---- words of a header ---------------------------------------------------------------

TEST(HeaderWords, NameTheirTypes)
{
    struct Row
    {
        string_view_t sCell;
        unsigned uiType;
    };
    const Row kRows[] = {
        {OLESTR("Date"), TypeDate},
        {OLESTR("Time"), TypeTime},
        {OLESTR("Open"), TypeOpen},
        {OLESTR("High"), TypeHigh},
        {OLESTR("Low"), TypeLow},
        {OLESTR("Close"), TypeClose},
        {OLESTR("Price"), TypePrice},
        {OLESTR("Volume"), TypeVolume},
        {OLESTR("Up Volume"), TypeUpVolume},
        {OLESTR("Down Volume"), TypeDownVolume},
        {OLESTR("Unchanged Volume"), TypeUnchangedVolume},
        {OLESTR("Up Ticks"), TypeUpTicks},
        {OLESTR("Down Ticks"), TypeDownTicks},
        {OLESTR("Unchanged Ticks"), TypeUnchangedTicks},
        {OLESTR("Total Ticks"), TypeTotalTicks},
        {OLESTR("Open Interest"), TypeOpenInterest},
        // Case and what isn't a letter don't matter.
        {OLESTR("<DATE>"), TypeDate},
        {OLESTR("Up-Ticks"), TypeUpTicks},
        {OLESTR("UpVolume"), TypeUpVolume},
        {OLESTR("open_interest"), TypeOpenInterest},
        {OLESTR("D"), TypeDate},
        {OLESTR("O"), TypeOpen},
        {OLESTR("H"), TypeHigh},
        {OLESTR("L"), TypeLow},
        {OLESTR("C"), TypeClose},
        {OLESTR("V"), TypeVolume},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(Shown(row.sCell));
        EXPECT_EQ(row.uiType, GetTypeFromField(row.sCell, {}).uiType);
    }
}

TEST(HeaderWords, TotalVolumeMeansVolume)
{
    EXPECT_EQ(TypeVolume, GetTypeFromField(OLESTR("Total Volume"), {}).uiType);
    EXPECT_EQ(TypeVolume, GetTypeFromField(OLESTR("Total-Volume"), {}).uiType);
    // The exception is for the exact letters.
    EXPECT_EQ(TypeTotalVolume, GetTypeFromField(OLESTR("total volume"), {}).uiType);
}

TEST(HeaderWords, ThatFitNothingReadAsDate)
{
    for (string_view_t sCell : {OLESTR("zzz"), OLESTR("Q"), OLESTR("\u0144")}) {
        SCOPED_TRACE(Shown(sCell));
        EXPECT_EQ(TypeDate, GetTypeFromField(sCell, {}).uiType);
        EXPECT_EQ(kNoType, GetTypeFromField(sCell, SetOf({TypeDate})).uiType);
    }
}

TEST(HeaderWords, WithoutLettersHaveNoType)
{
    for (string_view_t sCell : {OLESTR(""), OLESTR("1"), OLESTR("2003-12"), OLESTR("\u0131")}) {
        SCOPED_TRACE(Shown(sCell));
        EXPECT_EQ(kNoType, GetTypeFromField(sCell, {}).uiType);
    }
}

TEST(HeaderWords, GoOnToTheNextBestTypeWhenOnesWereTried)
{
    struct Row
    {
        string_view_t sCell;
        std::initializer_list<unsigned> tried;
        unsigned uiType;
    };
    const Row kRows[] = {
        {OLESTR("T"), {}, TypeDate},
        {OLESTR("T"), {TypeDate}, TypeTime},
        {OLESTR("Vol"), {}, TypeLow},
        {OLESTR("Vol"), {TypeLow}, TypeVolume},
        {OLESTR("O"), {TypeDate}, TypeSymbol}, // Date, which would take the lead, was tried
        {OLESTR("O"), {TypeDate, TypeSymbol}, TypeOpen},
        {OLESTR("O"), {TypeDate, TypeSymbol, TypeOpen}, TypeLow},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(Shown(row.sCell) + testing::PrintToString(row.tried.size()));
        EXPECT_EQ(row.uiType, GetTypeFromField(row.sCell, SetOf(row.tried)).uiType);
    }
    EXPECT_EQ(kNoType, GetTypeFromField(OLESTR("Date"), TypeSet().set()).uiType);
}

TEST(HeaderWords, OfUnlikelyLengthAreReportedAndHaveNoType)
{
    ReportLog reports;
    EXPECT_EQ(TypeDate, GetTypeFromField(string_t(259, 'D'), {}).uiType);
    EXPECT_TRUE(reports.Texts().empty());
    EXPECT_EQ(kNoType, GetTypeFromField(string_t(260, 'D'), {}).uiType);
    EXPECT_THAT(reports.Texts(), testing::ElementsAre("[WARNING] FieldLength 260 > MAX_PATH"));
}

// ---- texts of fields, over all types ---------------------------------------------------

std::string ShownGuess(const TemplateGuess& guess)
{
    if (guess.IsEmpty())
        return guess.uiType == kNoType ? "none" : "none, but a type";
    return Shown(TypeName(guess.uiType)) + " " + Shown(guess.sTemplate);
}

struct TextRow
{
    string_view_t sText;
    const char* szGuess;
};

std::string Guess(string_view_t sText, unsigned uiFrom = kNoType, const TypeSet& used = {},
                  LONG nResolution = ResolutionNone, const std::set<int>& excluded = {})
{
    const TypeTable types = AdmittedTypes(DefaultTypes(), nResolution);
    return ShownGuess(GuessTypeAndTemplate(uiFrom, sText, types, excluded, used));
}

TEST(FieldTexts, TakeTheFirstTypeAndTemplateThatReadsThem)
{
    const TextRow kRows[] = {
        {OLESTR("01/02/03"), "Date *y/*m/*d"},
        {OLESTR("01/02/2003"), "Date *m/*d/*y"},
        {OLESTR("13/02/2003"), "Date *d/*m/*y"},
        {OLESTR("20031225"), "Date yyyymmdd"},
        {OLESTR("25-Dec-03"), "Date *d-mmm-*y"},
        {OLESTR("2003-12-25"), "Date *y-*m-*d"},
        {OLESTR("25.12.2003"), "Date *d.*m.*y"},
        {OLESTR("09:30"), "Time *h:mm"},
        {OLESTR("9:5"), "Time *h:*m"},
        {OLESTR("09:30:15"), "Time *h:*m:*s"},
        {OLESTR("1:30pm"), "Time *h:*mtt@pm"},
        {OLESTR("930"), "Time *hmm"},
        {OLESTR("100"), "Time *hmm"},
        {OLESTR("199"), "Open float"},
        {OLESTR("1.5"), "Open float"},
        {OLESTR("1,5"), "Open float"},
        {OLESTR("7"), "Open float"},
        {OLESTR("-5"), "Open float"},
        {OLESTR("+5"), "Open float"},
        {OLESTR("abc"), "none"},
        {OLESTR("1e5"), "none"},
    };
    for (const TextRow& row : kRows) {
        SCOPED_TRACE(Shown(row.sText));
        EXPECT_EQ(row.szGuess, Guess(row.sText));
    }
}

TEST(FieldTexts, GoToTheLowestTypeThatIsFree)
{
    const TypeSet prices = SetOf({TypeOpen, TypeHigh, TypeLow, TypeClose, TypePrice});
    struct Row
    {
        string_view_t sText;
        TypeSet used;
        const char* szGuess;
    };
    const Row kRows[] = {
        {OLESTR("1.5"), SetOf({TypeOpen}), "High float"},
        {OLESTR("1.5"), SetOf({TypeOpen, TypeHigh}), "Low float"},
        {OLESTR("1.5"), SetOf({TypeOpen, TypeLow}), "High float"},
        {OLESTR("1.5"), prices, "none"},
        {OLESTR("1.0"), prices, "Volume int"},
        {OLESTR("100"), prices, "Time *hmm"},
        {OLESTR("100"), prices | SetOf({TypeTime}), "Volume int"},
        {OLESTR("100"), prices | SetOf({TypeTime, TypeVolume}), "Up Volume int"},
        {OLESTR("01/02/03"), SetOf({TypeDate}), "none"},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(Shown(row.sText) + " besides " + row.used.to_string());
        EXPECT_EQ(row.szGuess, Guess(row.sText, kNoType, row.used));
    }
}

TEST(FieldTexts, AreSearchedForFromATypeUpward)
{
    struct Row
    {
        unsigned uiFrom;
        const char* szGuess;
    };
    const Row kRows[] = {
        {kNoType, "Time *hmm"},
        {TypeSymbol, "Time *hmm"},
        {TypeTime, "Time *hmm"},
        {TypeOpen, "Open float"},
        {TypePrice, "Price float"},
        {TypeVolume, "Volume int"},
        {TypeOpenInterest, "Open Interest int"},
        {TYPES_COUNT, "none"},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.uiFrom);
        EXPECT_EQ(row.szGuess, Guess(OLESTR("100"), row.uiFrom));
    }
    EXPECT_EQ("Volume int", Guess(OLESTR("1,000"), TypeVolume)); // only zeros follow the comma
}

TEST(FieldTexts, TakeOnlyTypesThatTheResolutionAdmits)
{
    EXPECT_EQ("Price float", Guess(OLESTR("1.5"), kNoType, {}, ResolutionTick));
    const TypeSet bars = SetOf({TypeOpen, TypeHigh, TypeLow, TypeClose});
    EXPECT_EQ("none", Guess(OLESTR("1.5"), kNoType, bars, ResolutionMinutes));
}

TEST(FieldTexts, PassOverExcludedTemplates)
{
    EXPECT_EQ("Date *m/*d/*y", Guess(OLESTR("01/02/03"), kNoType, {}, ResolutionNone, {0}));
    EXPECT_EQ("Date *d/*m/*y", Guess(OLESTR("01/02/03"), kNoType, {}, ResolutionNone, {0, 1}));
}

TEST(FieldTexts, OfSeveralLinesNeedATemplateForAllOfThem)
{
    const TextRow kRows[] = {
        {OLESTR("01/02/2003\n13/02/2003"), "Date *d/*m/*y"},
        {OLESTR("01/02/2003\n02/13/2003"), "Date *m/*d/*y"},
        {OLESTR("13/02/2003\n02/13/2003"), "none"},
        {OLESTR("09:30\n9:5"), "Time *h:*m"},
    };
    for (const TextRow& row : kRows) {
        SCOPED_TRACE(Shown(row.sText));
        EXPECT_EQ(row.szGuess, Guess(row.sText));
    }
}

// ---- texts of fields, within one type --------------------------------------------------

TEST(FieldTexts, WithinOneTypeNumbersMustDoWithoutAComma)
{
    struct Row
    {
        unsigned uiType;
        string_view_t sText;
        const char* szTemplate;
    };
    const Row kRows[] = {
        {TypeOpen, OLESTR("1.5"), "float"},
        {TypeOpen, OLESTR("-1.5"), "float"},
        {TypeOpen, OLESTR("1,5"), ""},
        {TypePrice, OLESTR("abc"), ""},
        {TypeVolume, OLESTR("100"), "int"},
        {TypeVolume, OLESTR("-100"), "int"},
        {TypeVolume, OLESTR("100.0"), ""},
        {TypeOpenInterest, OLESTR("1,000"), ""},
        {TypeDate, OLESTR("12/25/2003"), "*m/*d/*y"},
        {TypeDate, OLESTR("930"), ""},
        {TypeTime, OLESTR("09:30"), "*h:mm"},
        {TypeSymbol, OLESTR("ES"), ""},
        {kNoType, OLESTR("1.5"), ""},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(Shown(row.sText) + " of type " + testing::PrintToString(row.uiType));
        const TemplateGuess guess = GuessTemplate(row.uiType, row.sText, DefaultTypes(), {});
        EXPECT_EQ(row.szTemplate, Shown(guess.sTemplate));
        if (!guess.IsEmpty()) {
            EXPECT_EQ(row.uiType, guess.uiType);
        }
    }
}

TEST(FieldTexts, WithinOneTypePassOverExcludedTemplates)
{
    const TypeTable types = DefaultTypes();
    const TemplateGuess guess = GuessTemplate(TypeDate, OLESTR("01/02/03"), types, {0, 1});
    EXPECT_EQ("*d/*m/*y", Shown(guess.sTemplate));
    EXPECT_EQ(types.at(TypeDate).FindTemplate(OLESTR("*d/*m/*y")), guess.nIndex);
}

} // namespace
