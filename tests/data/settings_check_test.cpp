// The check of the settings before a conversion.

#include "tests/data/DataParserFixture.h"

#include "platform/MessageBox.h"

using namespace Hesperon::specifics;

namespace {

HRESULT Names(VARIANT* result, std::initializer_list<string_view_t> names, LONG nLow = 0)
{
    SafeArray array(SafeArrayCreateVector(VT_BSTR, nLow, static_cast<ULONG>(names.size())));
    LONG i = nLow;
    for (string_view_t name : names) {
        SafeArrayPutElement(array.get(), &i, Bstr(name).get());
        ++i;
    }
    *result = Variant::FromArray(array.detach(), VT_BSTR).detach();
    return S_OK;
}

class SettingsCheckTest : public DataParserFixture
{
protected:
    void SetUp() override
    {
        DataParserFixture::SetUp();
        Access::PutDates(*parser.get(), 40000, 40100);
        sink->sResolutionName = OLESTR("5|Min|5");
        records->nResolution = ResolutionMinutes;
        records->nResolutionSize = 5;
        records->lackedFields = [](VARIANT* v) { return Names(v, {}); };
    }
    void TearDown() override
    {
        SetResourceLanguage(Language::Chinese);
        DataParserFixture::TearDown();
    }

    HRESULT Check() { return parser->CheckConverterSettings(0, sink.get()); }
};

// Faults of the settings, in the order of the checks.
class SettingsFaultTest : public SettingsCheckTest
{
public:
    using Spoil = void (SettingsFaultTest::*)();

    void NoStart() { Access::PutDates(*parser.get(), 0, 40100); }
    void NoEnd() { Access::PutDates(*parser.get(), 40000, 0.99); }
    void DayBitsZero() { Access::PutDates(*parser.get(), 65536, 65540); }
    void NoResolution() { records->nResolution = ResolutionNone; }
    void NoSize() { records->nResolutionSize = 0; }
    void LackOne()
    {
        records->hrValid = S_FALSE;
        records->lackedFields = [](VARIANT* v) { return Names(v, {OLESTR("Date")}); };
    }
    void LackTwo()
    {
        records->hrValid = S_FALSE;
        records->lackedFields = [](VARIANT* v) {
            return Names(v, {OLESTR("Date"), OLESTR("Up Volume")}, 3);
        };
    }
    void Duplicated()
    {
        records->hrValid = S_FALSE;
        records->sDuplicated = OLESTR("Close");
    }
};

TEST_F(SettingsFaultTest, FirstFaultIsReportedInTheUsersLanguage)
{
    struct
    {
        const char* szWhat;
        Spoil spoil;
        const char* szChinese;
        const char* szEnglish;
    } const rows[] = {
        {"no start date", &SettingsFaultTest::NoStart, "数据周期无效。",
         "The date range of the data is invalid."},
        {"no end date", &SettingsFaultTest::NoEnd, "数据周期无效。",
         "The date range of the data is invalid."},
        {"day number a multiple of 65536", &SettingsFaultTest::DayBitsZero, "数据周期无效。",
         "The date range of the data is invalid."},
        {"no resolution", &SettingsFaultTest::NoResolution, "未选择周期。",
         "No resolution is selected."},
        {"no size", &SettingsFaultTest::NoSize, "没有选择周期 \"5|Min\"的大小。",
         "No size is selected for the resolution \"5|Min\"."},
        {"one lacking field", &SettingsFaultTest::LackOne,
         "周期 \"5|Min\" 缺少下列字段: \"Date\"。",
         "The resolution \"5|Min\" lacks these fields: \"Date\"."},
        {"two lacking fields", &SettingsFaultTest::LackTwo,
         "周期 \"5|Min\" 缺少下列字段: \"Date\", \"Up Volume\"。",
         "The resolution \"5|Min\" lacks these fields: \"Date\", \"Up Volume\"."},
        {"field twice", &SettingsFaultTest::Duplicated, "多次遇到 \"Close\" 字段。",
         "The field \"Close\" occurs more than once."},
    };
    for (const auto& row : rows) {
        for (const auto language : {Language::Chinese, Language::English}) {
            const char* szText = language == Language::Chinese ? row.szChinese : row.szEnglish;
            SCOPED_TRACE(std::string(row.szWhat) + ": " + szText);
            TearDown();
            SetUp();
            SetResourceLanguage(language);
            (this->*row.spoil)();
            EXPECT_EQ(Check(), S_FALSE);
            ASSERT_EQ(sink->faults.size(), 1u);
            EXPECT_EQ(sink->faults[0].vt, VT_ARRAY | VT_VARIANT);
            EXPECT_EQ(sink->faults[0].elements, (std::vector<std::string>{"-1", szText, szText}));
        }
    }
}

TEST_F(SettingsFaultTest, ChecksAreMadeInThisOrder)
{
    const Spoil spoils[] = {&SettingsFaultTest::Duplicated, &SettingsFaultTest::LackOne,
                            &SettingsFaultTest::NoSize, &SettingsFaultTest::NoResolution,
                            &SettingsFaultTest::NoStart};
    const char* const texts[] = {"occurs more than once", "lacks these fields", "No size",
                                 "No resolution", "date range"};
    SetResourceLanguage(Language::English);
    // Each fault joins those that are checked later, and is then the one that is reported.
    for (std::size_t i = 0; i < std::size(spoils); ++i) {
        SCOPED_TRACE(texts[i]);
        (this->*spoils[i])();
        EXPECT_EQ(Check(), S_FALSE);
        EXPECT_THAT(sink->faults.back().elements[1], testing::HasSubstr(texts[i]));
    }
}

TEST_F(SettingsCheckTest, GoodSettingsGiveTheResultOfTheName)
{
    for (const HRESULT hrName : {S_OK, S_FALSE}) {
        SCOPED_TRACE(hrName);
        sink->hrResolutionName = hrName;
        for (const HRESULT hrValid : {S_OK, E_FAIL, HRESULT(2)}) {
            SCOPED_TRACE(hrValid);
            records->hrValid = hrValid;
            EXPECT_EQ(Check(), hrName);
        }
        records->hrValid = S_FALSE; // nothing lacks, nothing occurs twice
        EXPECT_EQ(Check(), hrName);
    }
    EXPECT_TRUE(sink->faults.empty());
}

TEST_F(SettingsCheckTest, OnlyMinutesNeedASize)
{
    records->nResolutionSize = 0;
    for (LONG n = ResolutionTick; n < RESOLUTIONS_COUNT; ++n) {
        SCOPED_TRACE(n);
        records->nResolution = n;
        EXPECT_EQ(Check(), n == ResolutionMinutes ? S_FALSE : S_OK);
    }
}

TEST_F(SettingsCheckTest, NameWithoutABarIsTakenWhole)
{
    SetResourceLanguage(Language::English);
    records->nResolutionSize = 0;
    sink->sResolutionName = OLESTR("Minutes");
    Check();
    EXPECT_EQ(sink->faults.at(0).elements[1],
              "No size is selected for the resolution \"Minutes\".");
}

TEST_F(SettingsCheckTest, FailuresOfTheSinkComeBack)
{
    EXPECT_EQ(parser->CheckConverterSettings(0, nullptr), E_NOINTERFACE);
    EXPECT_EQ(parser->CheckConverterSettings(0, records.get()), E_NOINTERFACE);
    sink->hrResolutionName = E_NOTIMPL;
    EXPECT_EQ(Check(), E_NOTIMPL);
    EXPECT_TRUE(sink->faults.empty());
}

TEST_F(SettingsCheckTest, ListOfLackedFieldsThatIsNoneIsReportedAndCountsAsEmpty)
{
    records->hrValid = S_FALSE;
    const std::function<HRESULT(VARIANT*)> answers[] = {
        [](VARIANT*) { return E_FAIL; },
        [](VARIANT*) { return S_OK; },
        [](VARIANT* v) {
            *v = Variant::FromText(OLESTR("Date")).detach();
            return S_OK;
        },
        [](VARIANT* v) {
            *v = Variant::FromArray(SafeArrayCreateVector(VT_I4, 0, 1), VT_I4).detach();
            return S_OK;
        },
    };
    for (const auto& answer : answers) {
        records->lackedFields = answer;
        ReportLog reports;
        EXPECT_EQ(Check(), S_OK);
        EXPECT_EQ(reports.Texts(), std::vector<std::string>{"(((HRESULT)(hr)) >= 0)"});
    }
    EXPECT_TRUE(sink->faults.empty());
}

TEST_F(SettingsCheckTest, FailingLookForDuplicatesIsReportedAndIgnored)
{
    records->hrValid = S_FALSE;
    records->hrDuplicated = E_FAIL;
    ReportLog reports;
    EXPECT_EQ(Check(), S_OK);
    EXPECT_EQ(reports.Texts(), std::vector<std::string>{"(((HRESULT)(hr)) >= 0)"});
}

TEST_F(SettingsCheckTest, MessageBoxAppearsWhereTheSinkRefuses)
{
    struct
    {
        HRESULT hrOnError;
        bool bBox;
    } const rows[] = {{S_OK, false}, {S_FALSE, false}, {E_UNEXPECTED, true}, {E_NOTIMPL, true}};
    SetResourceLanguage(Language::English);
    records->nResolution = ResolutionNone;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.hrOnError);
        std::vector<std::pair<LONG_PTR, std::string>> shown;
        const auto previous = SetWarningListener(
            [&](LONG_PTR hWnd, string_view_t sText) { shown.emplace_back(hWnd, Utf8(sText)); });
        sink->hrOnError = row.hrOnError;
        EXPECT_EQ(parser->CheckConverterSettings(4711, sink.get()), S_FALSE);
        SetWarningListener(previous);
        std::vector<std::pair<LONG_PTR, std::string>> expected;
        if (row.bBox)
            expected.emplace_back(4711, "No resolution is selected.");
        EXPECT_EQ(shown, expected);
    }
}

} // namespace
