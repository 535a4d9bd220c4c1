// Values, texts and errors of the record that a record parser parsed last.

#include <gtest/gtest.h>

#include "tests/parsing/Layout.h"
#include "tests/parsing/QuoteLines.h"
#include "tests/support/ChineseTexts.h"
#include "tests/values/multipliers.h"

using namespace Hesperon::specifics;
using namespace IQRL_TabulexConverter;

namespace {

using Lines = std::vector<string_t>;

// A file whose header names a column of each type but the total volume, in the order
// of the types.
Lines OneColumnATypeLines()
{
    return {OLESTR("Code,Date,Time,Open,High,Low,Close,Price,Volume,Up Volume,Down Volume,"
                   "Unchanged Volume,Up Ticks,Down Ticks,Unchanged Ticks,Total Ticks,"
                   "Open Interest"),
            OLESTR("ES,20031225,09:30,1.5,1.5,1.5,1.5,1.5,7,7,7,7,7,7,7,7,7")};
}

constexpr const char* kOneColumnAType =
    "Symbol, Date yyyymmdd, Time *h:mm, Open, High, Low, Close, Price, Volume, Up Volume, "
    "Down Volume, Unchanged Volume, Up Ticks, Down Ticks, Unchanged Ticks, Total Ticks, "
    "Open Interest";

constexpr ULONG kSymbolColumn = 0, kDateColumn = 1, kTimeColumn = 2, kOpenColumn = 3,
                kVolumeColumn = 8, kUpTicksColumn = 12;

class FieldValues : public testing::Test
{
protected:
    FieldValues() : m_file(OneColumnATypeLines())
    {
        EXPECT_EQ(S_OK, m_file.Load());
        EXPECT_EQ(kOneColumnAType, m_file.Columns());
    }

    ParsedFile m_file;
};

// ---- by type ---------------------------------------------------------------------------

TEST_F(FieldValues, AreOfTheKindOfTheirTypeAndScaledByTheirMultiplier)
{
    const auto price = NewMultiplier();
    const auto volume = NewMultiplier();
    EXPECT_EQ(S_OK, price->put_Current(Bstr(OLESTR("10")).get()));
    EXPECT_EQ(S_OK, volume->put_Current(Bstr(OLESTR("100")).get()));
    EXPECT_EQ(S_OK, m_file->put_PriceMultiplier(price.get()));
    EXPECT_EQ(S_OK, m_file->put_VolumeMultiplier(volume.get()));
    EXPECT_EQ(S_OK, m_file.Parse(m_file.File().m_lines[1]));
    const char* kValues[] = {
        "\"ES\"", "2003-12-25", "09:30:00", "15", "15", "15", "15", "15", "700",
        "700",    "700",        "700",      "7",  "7",  "7",  "7",  "7",
    };
    for (ULONG i = 0; i < std::size(kValues); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(kValues[i], m_file.Value(i));
    }
    EXPECT_EQ(S_OK, m_file->SetFieldType(kUpTicksColumn, TypeTotalVolume));
    EXPECT_EQ(S_OK, m_file.Parse(m_file.File().m_lines[1]));
    EXPECT_EQ("700", m_file.Value(kUpTicksColumn));
}

TEST_F(FieldValues, StayAsTheyAreWithoutAMultiplier)
{
    EXPECT_EQ(S_OK, m_file.Parse(m_file.File().m_lines[1]));
    EXPECT_EQ("1.5", m_file.Value(kOpenColumn));
    EXPECT_EQ("7", m_file.Value(kVolumeColumn));
    com_ptr<IDispatch> multiplier;
    EXPECT_EQ(E_NOINTERFACE, m_file->get_PriceMultiplier(multiplier.put()));
    EXPECT_EQ(E_NOINTERFACE, m_file->get_VolumeMultiplier(multiplier.put()));
    EXPECT_EQ(E_NOINTERFACE, m_file->put_PriceMultiplier(&m_file.File()));
    EXPECT_EQ(E_NOINTERFACE, m_file->get_PriceMultiplier(multiplier.put()));
}

TEST_F(FieldValues, OfFieldsThatDoNotParseAreTheirTexts)
{
    EXPECT_EQ(S_OK, m_file->SetFieldType(kUpTicksColumn, -1));
    EXPECT_EQ(S_OK, m_file.Parse(OLESTR("ES,xx,99:99,abc,1.5,1.5,1.5,1.5,12.5,7,7,7,7")));
    struct Row
    {
        ULONG nField;
        const char* szValue;
    };
    const Row kRows[] = {
        {kDateColumn, "not \"xx\""},
        {kTimeColumn, "not \"99:99\""},
        {kOpenColumn, "not \"abc\""},
        {kVolumeColumn, "not \"12.5\""},
        {kUpTicksColumn, "not \"7\""}, // a column without a type
        {13, "not \"\""},              // which the record lacks
        {17, "0x80004005"},            // no column
        {0xFFFFFFFF, "0x80004005"},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.nField);
        EXPECT_EQ(row.szValue, m_file.Value(row.nField));
    }
    EXPECT_EQ(E_POINTER, m_file->GetFieldValue(nullptr, 0));
}

// The value of a column is kept when its type changes, until the next record.
TEST_F(FieldValues, OfAnotherKindThanTheTypesAreNone)
{
    const auto price = NewMultiplier();
    const auto volume = NewMultiplier();
    EXPECT_EQ(S_OK, price->put_Current(Bstr(OLESTR("10")).get()));
    EXPECT_EQ(S_OK, volume->put_Current(Bstr(OLESTR("100")).get()));
    EXPECT_EQ(S_OK, m_file->put_PriceMultiplier(price.get()));
    EXPECT_EQ(S_OK, m_file->put_VolumeMultiplier(volume.get()));
    struct Row
    {
        ULONG nField;
        LONG nType;
        const char* szValue;
    };
    const Row kRows[] = {
        {kDateColumn, TypeOpen, "not \"20031225\""},
        {kDateColumn, TypePrice, "not \"20031225\""},
        {kDateColumn, TypeVolume, "not \"20031225\""},
        {kDateColumn, TypeTotalVolume, "not \"20031225\""},
        {kDateColumn, TypeTime, "2003-12-25"},    // dates both
        {kDateColumn, TypeUpTicks, "2003-12-25"}, // these take any kind
        {kDateColumn, TypeOpenInterest, "2003-12-25"},
        {kDateColumn, -1, "2003-12-25"},
        {kDateColumn, TypeSymbol, "\"20031225\""},
        {kTimeColumn, TypeClose, "not \"09:30\""},
        {kTimeColumn, TypeDate, "09:30:00"},
        {kOpenColumn, TypeDate, "not \"1.5\""},
        {kOpenColumn, TypeTime, "not \"1.5\""},
        {kOpenColumn, TypeHigh, "15"},
        {kOpenColumn, TypeVolume, "150"}, // volumes may have a fraction
        {kOpenColumn, TypeTotalTicks, "1.5"},
        {kVolumeColumn, TypeOpen, "not \"7\""},
        {kVolumeColumn, TypeDate, "not \"7\""},
        {kVolumeColumn, TypeDownVolume, "700"},
        {kVolumeColumn, TypeTotalTicks, "7"},
        {kUpTicksColumn, TypeLow, "not \"7\""},
        {kUpTicksColumn, TypeTime, "not \"7\""},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(testing::Message() << "column " << row.nField << " as " << row.nType);
        ASSERT_EQ(S_OK, m_file.Load());
        EXPECT_EQ(S_OK, m_file.Parse(m_file.File().m_lines[1]));
        m_file.Value(row.nField); // computes the value that is kept
        EXPECT_EQ(S_OK, m_file->SetFieldType(row.nField, row.nType));
        EXPECT_EQ(row.szValue, m_file.Value(row.nField));
    }
}

TEST_F(FieldValues, OfAnotherKindMakeNoStamp)
{
    EXPECT_EQ(S_OK, m_file.Parse(m_file.File().m_lines[1]));
    EXPECT_EQ("1.5", m_file.Value(kOpenColumn));
    EXPECT_EQ(S_OK, m_file->SetFieldType(kDateColumn, -1));
    EXPECT_EQ(S_OK, m_file->SetFieldType(kOpenColumn, TypeDate));
    Variant stamp;
    EXPECT_EQ(E_FAIL, m_file->get_CurrentDateTime(&stamp));
    EXPECT_EQ(VT_EMPTY, stamp.vt);
}

TEST_F(FieldValues, AreCountedWithoutTheEmptyFields)
{
    EXPECT_EQ(S_OK, m_file.Parse(OLESTR("ES,,20031225, ,10:00,,2.5")));
    EXPECT_EQ("2003-12-25", m_file.Value(kDateColumn));
    EXPECT_EQ("10:00:00", m_file.Value(kTimeColumn));
    EXPECT_EQ("2.5", m_file.Value(kOpenColumn));
}

TEST_F(FieldValues, OfARecordBeforeAreNotKept)
{
    EXPECT_EQ(S_OK, m_file.Parse(m_file.File().m_lines[1]));
    EXPECT_EQ("1.5", m_file.Value(kOpenColumn));
    EXPECT_EQ(S_OK, m_file.Parse(OLESTR("ES,20031226")));
    EXPECT_EQ("2003-12-26", m_file.Value(kDateColumn));
    EXPECT_EQ("not \"\"", m_file.Value(kTimeColumn));
    EXPECT_EQ("not \"\"", m_file.Value(kOpenColumn));
}

// ---- date and time together --------------------------------------------------------------

struct StampRow
{
    const char* szStamp;
    const char* szDate;
    const char* szTime;
    const char* szBoth; // "" for E_FAIL
};

std::string Stamp(const ParsedFile& file)
{
    Variant stamp;
    const HRESULT hr = file->get_CurrentDateTime(&stamp);
    EXPECT_TRUE(hr == S_OK || hr == E_FAIL) << hr;
    return SUCCEEDED(hr) ? ShownVariant(stamp) : "";
}

void ExpectStamps(const Lines& lines, std::initializer_list<StampRow> rows)
{
    ParsedFile file(lines);
    ASSERT_EQ(S_OK, file.Load());
    for (const StampRow& row : rows) {
        SCOPED_TRACE(row.szStamp);
        for (bool bTimeFirst : {false, true}) {
            EXPECT_EQ(S_OK, file.Parse(Wide(row.szStamp)));
            if (bTimeFirst) {
                EXPECT_EQ(row.szTime, file.Value(1));
            }
            EXPECT_EQ(row.szDate, file.Value(0));
            EXPECT_EQ(row.szTime, file.Value(1));
            EXPECT_EQ(row.szBoth, Stamp(file));
        }
        EXPECT_EQ(S_OK, file.Parse(Wide(row.szStamp)));
        EXPECT_EQ(row.szBoth, Stamp(file)); // also when it is asked for first
    }
}

TEST(DateAndTime, AreNormalisedTogether)
{
    ExpectStamps(
        {OLESTR("20031231,09:30"), OLESTR("20031231,10:00")},
        {
            {"20031231,09:30", "2003-12-31", "09:30:00", "2003-12-31 09:30:00"},
            {"20031231,00:00", "2003-12-31", "00:00:00", "2003-12-31"},
            {"20031231,24:00", "2004-01-01", "00:00:00", "2004-01-01"},
            {"20031231,24:30", "2004-01-01", "00:30:00", "2004-01-01 00:30:00"},
            {"20040228,24:00", "2004-02-29", "00:00:00", "2004-02-29"},
            {"20030228,24:00", "2003-03-01", "00:00:00", "2003-03-01"},
            // A time that isn't valid rolls the date all the same.
            {"20031231,25:00", "2004-01-01", "not \"25:00\"", ""},
            {"20031231,-48:00", "2003-12-29", "not \"-48:00\"", ""},
            // More days than 32 bits hold; of the second number the low 32 bits are 1.
            {"20031231,51539592000:00", "2003-12-31", "not \"51539592000:00\"", ""},
            {"20031231,103079215128:00", "2003-12-31", "not \"103079215128:00\"", ""},
            {"20031231,9223372036854775807:00", "2003-12-31", "not \"9223372036854775807:00\"", ""},
            {"xx,09:30", "not \"xx\"", "09:30:00", ""},
            {"20031231,xx", "2003-12-31", "not \"xx\"", ""},
            {"20031231", "2003-12-31", "not \"\"", ""},
        });
}

TEST(DateAndTime, BeyondTheCalendarHaveNoDate)
{
    ExpectStamps({OLESTR("20031231,09:30"), OLESTR("20031231,10:00")},
                 {
                     {"20781231,09:30", "2078-12-31", "09:30:00", "2078-12-31 09:30:00"},
                     {"20790101,09:30", "not \"20790101\"", "09:30:00", ""},
                     {"20030229,09:30", "not \"20030229\"", "09:30:00", ""},
                     {"20040229,09:30", "2004-02-29", "09:30:00", "2004-02-29 09:30:00"},
                     {"20030431,09:30", "not \"20030431\"", "09:30:00", ""},
                     {"20790101,24:00", "not \"20790101\"", "00:00:00", ""},
                 });
}

TEST(DateAndTime, ReadTheHalfOfTheDay)
{
    ExpectStamps({OLESTR("20031231;1:30pm"), OLESTR("20031231;11:30am")},
                 {
                     {"20031231;1:30pm", "2003-12-31", "13:30:00", "2003-12-31 13:30:00"},
                     {"20031231;12:30pm", "2003-12-31", "12:30:00", "2003-12-31 12:30:00"},
                     {"20031231;12:30am", "2003-12-31", "00:30:00", "2003-12-31 00:30:00"},
                     {"20031231;11:30am", "2003-12-31", "11:30:00", "2003-12-31 11:30:00"},
                     {"20031231;0:30pm", "2003-12-31", "12:30:00", "2003-12-31 12:30:00"},
                 });
}

TEST(DateAndTime, OfADateAloneRollOverTheMonth)
{
    ParsedFile file({OLESTR("20031231,1.5")});
    ASSERT_EQ(S_OK, file.Load());
    struct Row
    {
        const char* szDate;
        const char* szValue;
    };
    const Row kRows[] = {
        {"20030229", "2003-03-01"},
        {"20040229", "2004-02-29"},
        {"20790101", "2079-01-01"},
        {"20031231", "2003-12-31"},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.szDate);
        EXPECT_EQ(S_OK, file.Parse(Wide(row.szDate)));
        EXPECT_EQ(row.szValue, file.Value(0));
        EXPECT_EQ(row.szValue, Stamp(file));
    }
}

TEST(DateAndTime, NeedADateColumnForTheStamp)
{
    ParsedFile file({OLESTR("09:30;1.5")});
    ASSERT_EQ(S_OK, file.Load());
    EXPECT_EQ(S_OK, file.Parse(OLESTR("09:30;1.5")));
    EXPECT_EQ("09:30:00", file.Value(0));
    Variant stamp;
    EXPECT_EQ(E_INVALIDARG, file->get_CurrentDateTime(&stamp));
    EXPECT_EQ(VT_EMPTY, stamp.vt);
    EXPECT_EQ(E_POINTER, file->get_CurrentDateTime(nullptr));
}

// With a date, 24:00 is the next day; a time of its own has no such hour.
TEST(DateAndTime, OfATimeThatIsNotNormalisedEndAt23)
{
    ParsedFile alone({OLESTR("09:30;1.5")});
    ASSERT_EQ(S_OK, alone.Load());
    for (const auto& [szTime, szValue] :
         {std::pair("23:59", "23:59:00"), std::pair("24:00", "not \"24:00\""),
          std::pair("24:30", "not \"24:30\""), std::pair("00:00", "00:00:00")}) {
        SCOPED_TRACE(szTime);
        EXPECT_EQ(S_OK, alone.Parse(Wide(std::string(szTime) + ";1.5")));
        EXPECT_EQ(szValue, alone.Value(0));
        EXPECT_EQ(szValue, alone.Value(0)); // also when it is asked for again
    }
    Bstr error;
    EXPECT_EQ(S_OK, alone.Parse(OLESTR("24:00;1.5")));
    EXPECT_EQ(S_FALSE, alone->GetFieldError(error.put(), 0)); // the text does parse

    ParsedFile two({OLESTR("20031231,09:30,1.5")});
    ASSERT_EQ(S_OK, two.Load());
    EXPECT_EQ(S_OK, two->SetFieldType(2, TypeTime));
    EXPECT_EQ(S_OK, two->SetFieldTemplate(Bstr(OLESTR("*h:mm")).get(), 2));
    EXPECT_EQ(S_OK, two.Parse(OLESTR("20031231,24:00,24:00")));
    EXPECT_EQ("2004-01-01", two.Value(0));
    EXPECT_EQ("00:00:00", two.Value(1));
    EXPECT_EQ("not \"24:00\"", two.Value(2)); // only the first time belongs to the date
}

TEST(BarsEndTime, MovesTheStampByTheBar)
{
    struct Row
    {
        const char* szStamp;
        LONG nSize;
        const char* szDate;
        const char* szTime;
    };
    const Row kRows[] = {
        {"20031231,09:30", 5, "2003-12-31", "09:35:00"},
        {"20031231,23:57", 5, "2004-01-01", "00:02:00"},
        {"20031231,24:00", 5, "2004-01-01", "00:05:00"},
        {"20031231,09:30", 1440, "2004-01-01", "09:30:00"},
        {"20031231,09:30", 0, "2003-12-31", "09:30:00"},
        {"xx,09:30", 5, "not \"xx\"", "09:30:00"},
        {"20031231,xx", 5, "2003-12-31", "not \"xx\""},
    };
    ParsedFile file(MinuteLines(Evenly(5, 12), kBar));
    ASSERT_EQ(S_OK, file.Offer(AllResolutions()));
    ASSERT_EQ(S_OK, file.Load());
    ASSERT_EQ(ResolutionMinutes, file.Resolution());
    EXPECT_EQ(S_OK, file->put_UseBarsEndTime(VARIANT_TRUE));
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.szStamp);
        EXPECT_EQ(S_OK, file->put_ResolutionSize(row.nSize));
        EXPECT_EQ(S_OK, file.Parse(Wide(row.szStamp)));
        EXPECT_EQ(row.szDate, file.Value(0));
        EXPECT_EQ(row.szTime, file.Value(1));
    }
    EXPECT_EQ(S_OK, file->put_UseBarsEndTime(VARIANT_FALSE));
    EXPECT_EQ(S_OK, file->put_ResolutionSize(5));
    EXPECT_EQ(S_OK, file.Parse(OLESTR("20031231,09:30")));
    EXPECT_EQ("09:30:00", file.Value(1));
}

TEST(BarsEndTime, IsForBarsOfMinutes)
{
    ParsedFile file(MinuteLines({0, 0, 1}, kBar));
    ASSERT_EQ(S_OK, file.Offer(AllResolutions()));
    ASSERT_EQ(S_OK, file.Load());
    ASSERT_EQ(ResolutionTickBars, file.Resolution());
    EXPECT_EQ(S_OK, file->put_UseBarsEndTime(VARIANT_TRUE));
    EXPECT_EQ(S_OK, file->put_ResolutionSize(5));
    EXPECT_EQ(S_OK, file.Parse(OLESTR("20031231,09:30")));
    EXPECT_EQ("09:30:00", file.Value(1));
}

// ---- errors and texts ----------------------------------------------------------------------

TEST_F(FieldValues, SayWhyTheyDoNotParse)
{
    ChineseTexts chinese;
    EXPECT_EQ(S_OK, m_file->SetFieldType(11, -1));
    EXPECT_EQ(S_OK, m_file.Parse(OLESTR("ES,xx,09:30,abc,1.5,1.5,1.5,1.5,12.5,a7,7,7,12.5")));
    struct Row
    {
        ULONG nField;
        HRESULT hr;
        string_view_t sError;
    };
    const Row kRows[] = {
        {kTimeColumn, S_FALSE, OLESTR("操作成功完成。")},
        {kDateColumn, S_OK, OLESTR(" \"xx\" 行无法用 \"yyyymmdd\" 模板分析。")},
        {kOpenColumn, S_OK, OLESTR(" \"abc\" 行无法用 \"float\" 模板分析。")},
        {kVolumeColumn, S_OK, OLESTR("成交量 必须是 integer; \"12.5\" 是无效的。")},
        {9, S_OK, OLESTR(" \"a7\" 行无法用 \"int\" 模板分析。")},
        {10, S_FALSE, OLESTR("操作成功完成。")},
        {11, S_OK, OLESTR(" \"7\" 行无法用 \"\" 模板分析。")},                   // no type
        {kUpTicksColumn, S_OK, OLESTR(" \"12.5\" 行无法用 \"int\" 模板分析。")}, // no volume
        {13, S_OK, OLESTR(" \"\" 行无法用 \"int\" 模板分析。")}, // not in the record
        {kSymbolColumn, S_OK, OLESTR(" \"ES\" 行无法用 \"symbol\" 模板分析。")},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.nField);
        Bstr error;
        EXPECT_EQ(row.hr, m_file->GetFieldError(error.put(), row.nField));
        EXPECT_EQ(Shown(row.sError), Shown(error.view()));
    }
    EXPECT_EQ(S_OK, m_file.Parse(OLESTR("ES")));
    Bstr error;
    EXPECT_EQ(S_OK, m_file->GetFieldError(error.put(), kVolumeColumn));
    EXPECT_EQ(Shown(OLESTR("成交量 必须是 integer; \"\" 是无效的。")), Shown(error.view()));
    EXPECT_EQ(E_INVALIDARG, m_file->GetFieldError(error.put(), 17));
    EXPECT_EQ(E_POINTER, m_file->GetFieldError(nullptr, 0));
}

TEST(FieldTextOfARecord, IsCutFromANormalisedCopy)
{
    ParsedFile file({OLESTR("20031225,1.5,2.5")});
    ASSERT_EQ(S_OK, file.Load());
    EXPECT_EQ(S_OK, file.Parse(OLESTR("20031225,1.5,2.5")));
    struct Row
    {
        string_view_t sRecord;
        ULONG nField;
        const char* szText;
    };
    const Row kRows[] = {
        {OLESTR("a,b,c"), 1, "b"},   {OLESTR("a,,b"), 1, "b"},    {OLESTR("a,,b"), 2, ""},
        {OLESTR("'a',(b)"), 1, "b"}, {OLESTR(" a , b "), 0, "a"}, {OLESTR("a  b,c"), 0, "a b"},
        {OLESTR(""), 0, ""},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(Shown(row.sRecord) + " at " + testing::PrintToString(row.nField));
        Bstr text;
        EXPECT_EQ(S_OK, file->GetFieldText(Bstr(row.sRecord).get(), row.nField, text.put()));
        EXPECT_EQ(row.szText, Shown(text.view()));
    }
    Bstr text;
    EXPECT_EQ(E_FAIL, file->GetFieldText(Bstr(OLESTR("a,b,c,d")).get(), 3, text.put()));
    EXPECT_EQ(E_POINTER, file->GetFieldText(Bstr(OLESTR("a")).get(), 0, nullptr));
    EXPECT_EQ("1.5", file.Value(1)); // the record parsed stays
}

} // namespace
