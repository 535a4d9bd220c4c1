// The plan of a layout against the calls of the record parser: whatever it reads must be what they
// give, bit for bit.

#include <algorithm>
#include <bit>
#include <random>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "src/parsing/IBatchLock.h"
#include "src/parsing/plan/RowPlan.h"
#include "tests/parsing/Layout.h"
#include "tests/parsing/QuoteLines.h"
#include "tests/support/Seed.h"
#include "tests/values/multipliers.h"

using namespace Hesperon::specifics;
using namespace IQRL_TabulexConverter;

namespace {

using Lines = std::vector<string_t>;

// A row of cells, which are freed with it.
class Row
{
public:
    explicit Row(std::size_t n) : m_cells(n) {}
    VARIANT* Cells() { return m_cells.data(); }
    const Variant& operator[](std::size_t k) const { return m_cells[k]; }

private:
    static_assert(sizeof(Variant) == sizeof(VARIANT));
    std::vector<Variant> m_cells;
};

// A layout with its plan, which reads all columns in their order, and what reads a line otherwise.
class PlannedFile
{
public:
    explicit PlannedFile(Lines lines) : m_file(std::move(lines)), m_lock(Prepared())
    {
        ULONG nFields = 0;
        m_file->get_FieldCount(&nFields);
        for (ULONG i = 0; i < nFields; ++i)
            m_fields.push_back(i);
        m_pPlan = m_lock.PlanRows(m_fields);
    }

    RowPlan* Plan() const { return m_pPlan; }
    const ParsedFile& File() const { return m_file; }
    const std::vector<ULONG>& Fields() const { return m_fields; }
    RowPlan* PlanAnew() { return m_pPlan = m_lock.PlanRows(m_fields); }

    // As a run does it: a line of ASCII is bytes, and any other isn't shown to the plan.
    bool ReadsMoment(const string_t& sLine, DATE& moment) const
    {
        if (!std::ranges::all_of(sLine, [](OLECHAR c) { return c < 0x100; }))
            return false;
        m_sBytes.assign(sLine.begin(), sLine.end());
        m_sBytes.append(PlainRecord::kPadding, '"');
        const std::string_view sPadded = m_sBytes;
        return m_pPlan->ReadMoment(sPadded.substr(0, sLine.size()), moment);
    }
    // Whether the plan reads the line to its end.
    bool Reads(const string_t& sLine) const
    {
        DATE moment = 0;
        Row row(m_fields.size());
        return ReadsMoment(sLine, moment) && m_pPlan->ReadRow(row.Cells());
    }
    // The same, and each value that it reads is that of the calls.
    bool ReadsLikeTheCalls(const string_t& sLine) const
    {
        DATE moment = 0;
        if (!ReadsMoment(sLine, moment))
            return false;
        m_file.Parse(sLine);
        Variant judged;
        EXPECT_EQ(S_OK, m_file->get_CurrentDateTime(judged.put())) << Shown(sLine);
        EXPECT_EQ(Bits(judged.date), Bits(moment)) << Shown(sLine);
        Row row(m_fields.size());
        if (!m_pPlan->ReadRow(row.Cells()))
            return false;
        for (std::size_t k = 0; k < m_fields.size(); ++k)
            ExpectLikeTheCall(row[k], m_fields[k], sLine);
        return true;
    }

private:
    IRecordParser* Prepared()
    {
        EXPECT_EQ(S_OK, m_file.Offer(AllResolutions()));
        EXPECT_EQ(S_OK, m_file.Load());
        return m_file.Parser();
    }
    void ExpectLikeTheCall(const Variant& value, ULONG nField, const string_t& sLine) const
    {
        Variant judged;
        EXPECT_EQ(S_OK, m_file->GetFieldValue(judged.put(), nField)) << Shown(sLine);
        EXPECT_EQ(judged.vt, value.vt) << Shown(sLine) << ", column " << nField;
        if (judged.vt == VT_BSTR)
            EXPECT_EQ(TextOf(judged.bstrVal), TextOf(value.bstrVal)) << Shown(sLine);
        else
            EXPECT_EQ(judged.llVal, value.llVal) << Shown(sLine) << ", column " << nField;
    }
    static std::uint64_t Bits(double value) { return std::bit_cast<std::uint64_t>(value); }

    ParsedFile m_file;
    BatchLockGuard m_lock;
    std::vector<ULONG> m_fields;
    RowPlan* m_pPlan = nullptr;
    mutable std::string m_sBytes; // of the line that was read last, and padding
};

Lines MinuteBars()
{
    return {OLESTR("Date,Time,Open,High,Low,Close,Volume"),
            OLESTR("01/03/2000,09:30,1000.00,1000.16,999.76,999.95,4454"),
            OLESTR("01/03/2000,09:31,999.95,1000.01,999.80,999.81,120")};
}

} // namespace

// ---- what it reads

TEST(RowPlan, ReadsPlainLines)
{
    const PlannedFile file(MinuteBars());
    ASSERT_TRUE(file.Plan());
    for (const string_view_t sLine :
         {OLESTR("01/03/2000,09:30,1000.00,1000.16,999.76,999.95,4454"),
          OLESTR("12/31/1999,23:59,1,2.,.5,-1.25,0"),
          OLESTR("01/04/2000 , 09:30, 1000,+3,0.000001,123456789.125 ,999999999999999999"),
          OLESTR("01/03/2000,,09:30,1,1,1,1,1,and more, of anything"),
          OLESTR("02/29/2000,00:00,-0,-0.0,0,00001.50,007"),
          OLESTR("01/03/2000,09:30,1,1,1,1,100.0"), OLESTR("01/03/2000,09:30,1,1,1,1,1,000."),
          OLESTR("01/03/2000,09:30,1,1,1,1,.0"), OLESTR("01/03/2000,09:30,1,1,1,1,12345678.000"),
          OLESTR("01/03/2000,09:30,1,1,1,1,1  "), OLESTR("  01/03/2000,09:30,1,1,1,1,1"),
          OLESTR("\"01/03/2000\",\"09:30\",'1','1',(1),[1],\"1\""),
          OLESTR("01/03/2000,   09:30,  1,\t\t1,   1.5,  1,     1"),
          OLESTR("01/03/2000,09:30,1,\"\",1,1,1,1")})
        EXPECT_TRUE(file.ReadsLikeTheCalls(string_t(sLine))) << Shown(sLine);
}

TEST(RowPlan, LeavesWhatIsntPlainToTheCalls)
{
    const PlannedFile file(MinuteBars());
    ASSERT_TRUE(file.Plan());
    for (const string_view_t sLine : {OLESTR(""),
                                      OLESTR("01/03/2000"),
                                      OLESTR("01/03/2000,09:30,1,1,1,1"),
                                      OLESTR("01/03/2000,09:30,1,1,1,1, \" 1\""),
                                      OLESTR("\"\""),
                                      OLESTR("   "),
                                      OLESTR("01/03/2000,09:30,1,1,1,1,1,\u00E9"),
                                      OLESTR("01/03/2000,09:30,1,1,1,1,1\u0130"),
                                      OLESTR("01/03/2000,09:30,1,1,1,1,1\uFF11"),
                                      OLESTR("02/29/2001,09:30,1,1,1,1,1"),
                                      OLESTR("13/03/2000,09:30,1,1,1,1,1"),
                                      OLESTR("01/03/2000,24:00,1,1,1,1,1"),
                                      OLESTR("01/03/2000,09:60,1,1,1,1,1"),
                                      OLESTR("01/03/2000,09:30,-,1,1,1,1"),
                                      OLESTR("01/03/2000,09:30,1.5.3,1,1,1,1"),
                                      OLESTR("01/03/2000,09:30,1e5,1,1,1,1"),
                                      OLESTR("01/03/2000,09:30,9007199254740993,1,1,1,1"),
                                      OLESTR("01/03/2000,09:30,1,1,1,1,100.5"),
                                      OLESTR("01/03/2000,09:30,1,1,1,1,-5"),
                                      OLESTR("01/03/2000,09:30,1,1,1,1,."),
                                      OLESTR("01/03/2000,09:30,1,1,1,1,1.0.0"),
                                      OLESTR("01/03/2000,09:30,1,1,1,1,1234567890123456789")})
        EXPECT_FALSE(file.Reads(string_t(sLine))) << Shown(sLine);
}

TEST(RowPlan, KeepsTheLengthOfPlainLines)
{
    const PlannedFile file(MinuteBars());
    ASSERT_TRUE(file.Plan());
    const string_t sLine = OLESTR("01/03/2000,09:30,1,1,1,1,1,");
    for (std::size_t nSize = sLine.size(); nSize <= PlainRecord::kMaxPlain; ++nSize)
        ASSERT_TRUE(file.ReadsLikeTheCalls(sLine + string_t(nSize - sLine.size(), OLECHAR('x'))));
    EXPECT_FALSE(file.Reads(sLine + string_t(PlainRecord::kMaxPlain + 1 - sLine.size(), 'x')));
}

// Two blanks side by side show wherever the blocks meet in which a record is looked at. Those that
// are left when a quote between them is dropped stay two.
TEST(RowPlan, SeesTwoBlanksAnywhere)
{
    const PlannedFile file(MinuteBars());
    ASSERT_TRUE(file.Plan());
    for (std::size_t n = 0; n < 70; ++n) {
        const string_t sLine = OLESTR("01/03/2000,09:30,1,1,1,1,1,") + string_t(n, OLECHAR('x'));
        EXPECT_TRUE(file.ReadsLikeTheCalls(sLine + OLESTR(" x"))) << n;
        EXPECT_TRUE(file.ReadsLikeTheCalls(sLine + OLESTR(" \tx"))) << n;
        EXPECT_FALSE(file.Reads(sLine + OLESTR(" ' x"))) << n;
    }
}

TEST(RowPlan, GivesSymbolsAndScaledValues)
{
    PlannedFile file({OLESTR("Symbol,Date,Close,Volume"), OLESTR("ES H04,20040105,1000.5,10"),
                      OLESTR("ES H04,20040106,1001.5,11"), OLESTR("NQ,20040105,1500,12")});
    ASSERT_TRUE(file.Plan());
    const string_t sLine = OLESTR("ES H04,20040105,1000.5,10");
    EXPECT_TRUE(file.ReadsLikeTheCalls(sLine));
    EXPECT_EQ(string_view_t(OLESTR("ES H04")), file.Plan()->Text(0));

    const auto price = NewMultiplier();
    const auto volume = NewMultiplier();
    EXPECT_EQ(S_OK, price->put_Current(Bstr(OLESTR("10")).get()));
    EXPECT_EQ(S_OK, volume->put_Current(Bstr(OLESTR("100")).get()));
    EXPECT_EQ(S_OK, file.File()->put_PriceMultiplier(price.get()));
    EXPECT_EQ(S_OK, file.File()->put_VolumeMultiplier(volume.get()));
    ASSERT_TRUE(file.PlanAnew());
    EXPECT_TRUE(file.ReadsLikeTheCalls(sLine));
}

// More texts than the tables hold, each read again after all others.
TEST(RowPlan, RemembersTexts)
{
    const PlannedFile file(MinuteBars());
    ASSERT_TRUE(file.Plan());
    for (int nTime = 0; nTime < 2; ++nTime)
        for (int nDay = 0; nDay < 24'000; nDay += 1 + nTime) {
            const std::string sLine =
                fmt::format("{:02}/{:02}/{},{:02}:{:02},1,1,1,1,1", nDay % 12 + 1,
                            nDay / 12 % 28 + 1, 1930 + nDay / 336, nDay % 24, nDay % 60);
            ASSERT_TRUE(file.ReadsLikeTheCalls(string_t(sLine.begin(), sLine.end()))) << sLine;
        }
}

// ---- which layouts have a plan

TEST(RowPlan, IsMadeAnewForAnotherLayout)
{
    PlannedFile file(MinuteBars());
    const string_t sLine = OLESTR("03/01/2000,09:30,1,1,1,1,1");
    DATE before = 0, after = 0;
    ASSERT_TRUE(file.Plan() && file.ReadsMoment(sLine, before));
    EXPECT_EQ(S_OK, file.File()->SetFieldTemplate(Bstr(OLESTR("*d/*m/*y")).get(), 0));
    ASSERT_TRUE(file.PlanAnew() && file.ReadsMoment(sLine, after));
    EXPECT_EQ(36586, std::trunc(before)); // 2000-03-01
    EXPECT_EQ(36528, std::trunc(after));  // 2000-01-03
}

TEST(RowPlan, MovesStampsToTheEndsOfTheirBars)
{
    PlannedFile file(MinuteBars());
    ASSERT_TRUE(file.Plan());
    const string_t sNight = OLESTR("12/31/1999,23:59,1,1,1,1,1");
    DATE opened = 0, closed = 0;
    ASSERT_TRUE(file.ReadsMoment(sNight, opened));
    EXPECT_EQ(S_OK, file.File()->put_UseBarsEndTime(VARIANT_TRUE));
    ASSERT_TRUE(file.PlanAnew() && file.ReadsMoment(sNight, closed));
    EXPECT_EQ(36526, closed); // 2000-01-01
    EXPECT_LT(opened, closed);
    for (int nMinute = 0; nMinute < 24 * 60; ++nMinute) {
        const std::string sLine =
            fmt::format("01/03/2000,{:02}:{:02},1,1,1,1,1", nMinute / 60, nMinute % 60);
        ASSERT_TRUE(file.ReadsLikeTheCalls(string_t(sLine.begin(), sLine.end()))) << sLine;
    }
}

TEST(RowPlan, IsntThereForTwoDatesOrNone)
{
    PlannedFile file(MinuteBars());
    EXPECT_EQ(S_OK, file.File()->SetFieldType(2, TypeDate));
    EXPECT_FALSE(file.PlanAnew());
    EXPECT_EQ(S_OK, file.File()->SetFieldType(2, TypeOpen));
    EXPECT_TRUE(file.PlanAnew());
    EXPECT_EQ(S_OK, file.File()->SetFieldType(0, TypeHigh));
    EXPECT_FALSE(file.PlanAnew());
}

// ---- random lines

namespace {

constexpr string_view_t kAlphabet =
    OLESTR("00112345678999  \t,,.;:|/-+'\"()[]amPMjeF\u00E9\u0120\x7F\x01");

void Mutate(string_t& sLine, std::mt19937& random)
{
    const auto below = [&](std::size_t n) { return random() % n; };
    const std::size_t at = below(sLine.size());
    const OLECHAR c = kAlphabet[below(kAlphabet.size())];
    switch (below(4)) {
    case 0:
        sLine.erase(at, 1);
        break;
    case 1:
        sLine.insert(at, 1, c);
        break;
    default:
        sLine[at] = c;
    }
}

// Each line with one character changed, and one of ten with another one as well.
void CompareOnMutations(const Lines& lines)
{
    const PlannedFile file(lines);
    ASSERT_TRUE(file.Plan()) << file.File().Columns();
    std::mt19937 random(Seed());
    const int nRounds = Rounds(20'000);
    int nRead = 0;
    for (int i = 0; i < nRounds && !testing::Test::HasFailure(); ++i) {
        string_t sLine = lines[1 + random() % (lines.size() - 1)];
        Mutate(sLine, random);
        if (random() % 10 == 0)
            Mutate(sLine, random);
        nRead += file.ReadsLikeTheCalls(sLine);
    }
    EXPECT_LT(nRounds / 10, nRead) << file.File().Columns(); // else little was compared
}

} // namespace

TEST(RowPlan, ReadsMutatedLinesLikeTheCalls)
{
    CompareOnMutations(MinuteBars());
    CompareOnMutations({OLESTR("Symbol;Date;Time;Price;Volume"),
                        OLESTR("ES;20040105;09:30:05.250;1000.25;3"),
                        OLESTR("NQ;20040105;09:30:06.000;1500,5;12")});
    CompareOnMutations({OLESTR("Date\tOpen\tHigh\tLow\tClose\tVolume"),
                        OLESTR("03-Jan-00\t98.05\t98.78\t97.65\t98.36\t358127"),
                        OLESTR("04-Jan-00\t98.36\t98.78\t97.87\t98.37\t533598")});
    CompareOnMutations({OLESTR("Date Time Open High Low Close"),
                        OLESTR("2000/01/03 09:30 1.1234 1.1240 1.1230 1.1235"),
                        OLESTR("2000/01/03 09:31 1.1235 1.1241 1.1229 1.1230")});
    CompareOnMutations({OLESTR("Date,Time,Open,High,Low,Close,Volume"),
                        OLESTR("3/1/2000,9:30 AM,10,11,9,10,4454"),
                        OLESTR("3/1/2000,12:31 PM,10,11,9,10,12")});
    CompareOnMutations({OLESTR("Date,Open,Close,Volume"),
                        OLESTR("\"01/03/2000\",\"1000.25\",\"1000.5\",\"4454.0\""),
                        OLESTR("  01/04/2000 ,   1000.25,  1001,     12345678.00")});
}

// All short decimal texts, with the mark at each place.
TEST(RowPlan, ReadsShortDecimalsLikeTheCalls)
{
    const PlannedFile file(
        {OLESTR("Date,Close"), OLESTR("20040105,1000.5"), OLESTR("20040106,1001.5")});
    ASSERT_TRUE(file.Plan());
    for (int nDigits = 1, nEnd = 10; nDigits <= 4; ++nDigits, nEnd *= 10)
        for (int n = 0; n < nEnd; ++n) {
            const std::string sNumber = fmt::format("{:0{}}", n, nDigits);
            for (int nPlace = 0; nPlace <= nDigits; ++nPlace) {
                std::string sText = sNumber;
                sText.insert(static_cast<std::size_t>(nPlace), 1, '.');
                ASSERT_TRUE(file.ReadsLikeTheCalls(Wide("20040105," + sText))) << sText;
            }
        }
}
