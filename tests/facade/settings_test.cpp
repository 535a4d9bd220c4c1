// What a program may choose, and what it hears where a file or a choice is refused.

#include <tabulex.hpp>

#include "interfaces/FieldsAndResolutions.h"
#include "tests/facade/QuoteFile.h"

namespace {

using namespace std::chrono_literals;
using tabulex::Field;
using tabulex::Settings;

constexpr std::chrono::sys_days kDay0 = std::chrono::year(2003) / 1 / 1;

tabulex::Moment DayAt(int nDay)
{
    return kDay0 + std::chrono::days(nDay);
}

// The first row, and how many there are.
struct Taken
{
    std::optional<tabulex::Row> first;
    tabulex::Counts counts;
};

Taken Take(const QuoteFile& quotes, const Settings& settings)
{
    Taken taken;
    taken.counts = tabulex::open(quotes.Name(), settings)
                       .read([&](const tabulex::Row& row) {
                           if (!taken.first)
                               taken.first = row;
                       })
                       .counts;
    return taken;
}

std::string FaultOf(const std::string& path, const Settings& settings = {})
{
    try {
        tabulex::open(path, settings).rows();
        return {};
    } catch (const tabulex::error& error) {
        EXPECT_EQ(path, error.file());
        EXPECT_EQ(path + ": " + error.message(), error.what());
        return error.message();
    }
}

// ---- ids

TEST(FacadeFields, AreThoseOfTheComponent)
{
    using namespace IQRL_TabulexConverter;
    for (unsigned i = 0; i < TYPES_COUNT; ++i) {
        const auto field = static_cast<Field>(i);
        const std::string_view name = tabulex::name_of(field);
        EXPECT_EQ(kFieldTypes[i].sName, string_t(name.begin(), name.end()));
        EXPECT_EQ(field, tabulex::field_of(name));
        EXPECT_EQ(IsPriceType(i), tabulex::kind_of(field) == tabulex::Kind::price);
        EXPECT_EQ(IsWholeType(i), tabulex::kind_of(field) == tabulex::Kind::number);
    }
    EXPECT_EQ(Field::open_interest, static_cast<Field>(TypeOpenInterest));
    EXPECT_EQ(tabulex::Resolution::weeks, static_cast<tabulex::Resolution>(ResolutionWeeks));
    EXPECT_EQ(Field::none, tabulex::field_of("Weather"));
    EXPECT_EQ(Field::up_volume, tabulex::field_of("up volume"));
}

TEST(FacadeMultipliers, AreThoseOfTheComponent)
{
    using namespace IQRL_TabulexConverter;
    EXPECT_EQ(HostMultiplierTimes1000000, static_cast<int>(tabulex::Multiplier::times_1000000));
    EXPECT_EQ(HostMultiplierOne, static_cast<int>(tabulex::Multiplier::one));
    EXPECT_EQ(HostMultiplierTenth, static_cast<int>(tabulex::Multiplier::tenth));
    EXPECT_EQ(HostMultiplierMillionth, static_cast<int>(tabulex::Multiplier::part_of_1000000));
}

// ---- what is delivered

TEST(FacadeSettings, ChooseARange)
{
    const QuoteFile quotes(kDayHeader + DayLines(0, 3000));
    const Taken taken = Take(quotes, {.from = DayAt(1200), .to = DayAt(1300) + 12h});
    EXPECT_EQ(1200, taken.first->close());
    EXPECT_EQ(101u, taken.counts.delivered);
    EXPECT_EQ(2899u, taken.counts.out_of_range);
    EXPECT_EQ(3000u, taken.counts.lines);
}

TEST(FacadeSettings, OfARangeOutsideOfTheDataGiveNoRow)
{
    const QuoteFile quotes(kDayHeader + DayLines(0, 300));
    EXPECT_EQ(0u, Take(quotes, {.from = DayAt(300)}).counts.delivered);
    EXPECT_EQ(0u, Take(quotes, {.to = DayAt(-1)}).counts.delivered);
    EXPECT_EQ(300u, Take(quotes, {.to = DayAt(-1)}).counts.out_of_range);
}

TEST(FacadeSettings, OfARangeFindItInEachBlockOfSymbols)
{
    const QuoteFile quotes(kSymbolHeader + DayLines(0, 1500, "ABC") + DayLines(0, 1500, "DEF"));
    const Taken taken = Take(quotes, {.from = DayAt(10), .to = DayAt(19)});
    EXPECT_EQ(20u, taken.counts.delivered);
}

TEST(FacadeSettings, ChooseASymbol)
{
    const QuoteFile quotes(kSymbolHeader + DayLines(0, 1500, "ABC") + DayLines(0, 1400, "DEF"));
    const Taken taken = Take(quotes, {.symbol = "DEF"});
    EXPECT_EQ("DEF", taken.first->symbol());
    EXPECT_EQ(1400u, taken.counts.delivered);
    EXPECT_EQ(1500u, taken.counts.other_symbols);
    EXPECT_EQ(0u, Take(quotes, {.symbol = "def"}).counts.delivered);
}

TEST(FacadeSettings, OfASymbolNeedAColumn)
{
    const QuoteFile quotes(kDayHeader + DayLines(0, 300));
    EXPECT_EQ("no column was found that holds symbols; name one in the settings' columns",
              FaultOf(quotes.Name(), {.symbol = "ABC"}));
}

TEST(FacadeSettings, ScalePricesToTheNearestDecimal)
{
    const QuoteFile quotes("Date,Open,High,Low,Close,Volume\n2003-01-01,98.05,98.05,98.05,98.05,7\n"
                           "2003-01-02,1,1,1,1,7\n2003-01-03,1,1,1,1,7\n");
    EXPECT_EQ(0.9805,
              Take(quotes, {.price_multiplier = tabulex::Multiplier::hundredth}).first->open());
    EXPECT_EQ(980.5,
              Take(quotes, {.price_multiplier = tabulex::Multiplier::times_10}).first->low());
}

TEST(FacadeSettings, ScaleVolumesAndCountWhatIsCut)
{
    const QuoteFile quotes(kDayHeader + DayLines(0, 100)); // 0, 10, 20, ... 990
    const Taken times = Take(quotes, {.volume_multiplier = tabulex::Multiplier::times_1000});
    EXPECT_EQ(0, times.first->volume());
    EXPECT_EQ(0u, times.counts.cut_volumes);
    EXPECT_EQ(
        90u,
        Take(quotes, {.volume_multiplier = tabulex::Multiplier::hundredth}).counts.cut_volumes);
}

// ---- layout

TEST(FacadeSettings, ChooseColumns)
{
    const QuoteFile quotes("Date,Open,High,Low,Close,Volume\n01/02/2003,1,3,1,2,7\n"
                           "01/03/2003,1,3,1,2,7\n01/04/2003,1,3,1,2,7\n");
    const Taken found = Take(quotes, {});
    EXPECT_EQ(DayAt(1), found.first->moment());
    const Taken taken = Take(quotes, {.columns = {{0, Field::date, "*d/*m/*y"}, {5, Field::none}},
                                      .resolution = tabulex::Resolution::weeks});
    EXPECT_EQ(DayAt(31), taken.first->moment());
    EXPECT_FALSE(taken.first->has(Field::volume));
    EXPECT_EQ(5u, taken.first->size());
}

TEST(FacadeSettings, OfALayoutReadTheDatesAnew)
{
    const QuoteFile quotes("made on a rainy day\n" + DayLines(0, 40));
    const auto file = tabulex::open(quotes.Name(), {.header = false, .lines_to_skip = 1});
    EXPECT_EQ(DayAt(0), file.layout().first);
    EXPECT_EQ(DayAt(39), file.layout().last);
    EXPECT_EQ(40u, file.read([](const tabulex::Row&) {}).counts.delivered);
}

TEST(FacadeSettings, SayThatTheFirstLineIsAHeader)
{
    const QuoteFile quotes("made on a rainy day\n1,2,3,4,5\n" + (kDayHeader + DayLines(0, 40)));
    const auto file = tabulex::open(quotes.Name(), {.header = true, .lines_to_skip = 2});
    EXPECT_TRUE(file.layout().has_header);
    EXPECT_EQ("Date,Open,High,Low,Close,Volume", file.layout().header);
    const auto summary = file.read([](const tabulex::Row&) {});
    EXPECT_EQ(40u, summary.counts.delivered);
    EXPECT_EQ(0u, summary.counts.bad);
}

TEST(FacadeSettings, ThatDoNotFitAreRefused)
{
    const QuoteFile quotes(kDayHeader + DayLines(0, 40));
    EXPECT_EQ("column 9 isn't there: the file has 6 columns, and the first is 0",
              FaultOf(quotes.Name(), {.columns = {{9, Field::open}}}));
    EXPECT_EQ("column 1 is given a pattern, which only dates and times have",
              FaultOf(quotes.Name(), {.columns = {{1, Field::open, "*d"}}}));
    EXPECT_EQ("column 1 is read by no known pattern of Date; give one",
              FaultOf(quotes.Name(), {.columns = {{1, Field::date}}}));
    EXPECT_NE("", FaultOf(quotes.Name(), {.columns = {{0, Field::none}}}));
    EXPECT_NE("", FaultOf(quotes.Name(), {.lines_to_skip = 900}));
}

// ---- files

TEST(FacadeErrors, NameAFileThatIsNotThere)
{
    EXPECT_EQ("No such file or directory", FaultOf("/nowhere/at-all.csv"));
    EXPECT_EQ("is a folder", FaultOf("/tmp"));
    EXPECT_EQ("is no regular file", FaultOf("/dev/null"));
}

TEST(FacadeErrors, OfAnEmptyFileComeWithItsRows)
{
    for (const char* pszText : {"", "\n\n\n", "Date,Open,High,Low,Close\n"}) {
        const QuoteFile quotes(pszText);
        const auto file = tabulex::open(quotes.Name());
        EXPECT_NE("", file.layout().fault);
        EXPECT_THROW(file.rows(), tabulex::error);
    }
}

TEST(FacadeErrors, SayThatNoColumnHoldsDates)
{
    const QuoteFile quotes("Open,High,Low,Close\n1,2,1,2\n1,2,1,2\n");
    EXPECT_EQ("no column was found that holds dates; name one in the settings' columns",
              FaultOf(quotes.Name()));
}

TEST(FacadeErrors, TellAFileThatIsCutWhileItIsRead)
{
    const QuoteFile quotes(MinuteLines(400'000));
    const auto file = tabulex::open(quotes.Name());
    auto rows = file.rows();
    auto it = rows.begin();
    quotes.Cut(300);
    EXPECT_THROW(while (it != rows.end())++ it, tabulex::error);
}

TEST(FacadeErrors, TellAFileThatHasGrown)
{
    const QuoteFile quotes(kDayHeader + DayLines(0, 60));
    const auto file = tabulex::open(quotes.Name());
    quotes.Append(DayLines(60, 10));
    EXPECT_THROW(file.read([](const tabulex::Row&) {}), tabulex::error);
}

TEST(FacadeErrors, NameTheFileInAnyLettersAndBytes)
{
    const QuoteFile quotes(kDayHeader + DayLines(0, 60));
    const std::string path = quotes.Name() + "-\xC3\xA9\xE6\x9C\x88-\xFF";
    std::filesystem::copy_file(quotes.Name(), path);
    EXPECT_EQ(60u, tabulex::open(path).read([](const tabulex::Row&) {}).counts.delivered);
    std::filesystem::remove(path);
}

TEST(FacadeTexts, AreUtf8)
{
    const std::string sSymbol = "\xE6\x9C\x88\xC3\xA9";
    const QuoteFile quotes(kSymbolHeader + DayLines(0, 40, sSymbol));
    EXPECT_EQ(sSymbol, Take(quotes, {}).first->symbol());
    EXPECT_EQ(40u, Take(quotes, {.symbol = sSymbol}).counts.delivered);
    EXPECT_FALSE(tabulex::set_encoding("no such page"));
}

} // namespace
