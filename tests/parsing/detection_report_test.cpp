// What detection notes of its decisions.

#include <functional>
#include <optional>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/parsing/Layout.h"
#include "tests/parsing/QuoteLines.h"

using namespace Hesperon::specifics;

namespace {

using Lines = std::vector<string_t>;
using Said = std::vector<std::string>;

// ---- notes in plain text -------------------------------------------------------------

std::string Type(unsigned uiType)
{
    return uiType == kNoType ? "-" : Shown(TypeName(uiType));
}

std::string Record(ULONGLONG nRecord)
{
    return nRecord == kLastRecord ? "last" : fmt::format("{}", nRecord);
}

std::string Name(DetectionCause cause)
{
    constexpr const char* kNames[] = {"first record", "request",  "skipped lines", "dividers",
                                      "resolution",   "template", "stamps"};
    return kNames[static_cast<std::size_t>(cause)];
}

std::string Name(RefinementRule rule)
{
    constexpr const char* kNames[] = {
        "symbol",
        "up and down ticks",
        "up and down volumes",
        "open interest",
        "volume and open interest",
        "volume among prices",
        "bar",
        "totals",
        "ticks and volumes",
        "sum",
    };
    return kNames[static_cast<std::size_t>(rule)];
}

std::string Name(Refusal refusal)
{
    constexpr const char* kNames[] = {"not offered", "other steps", "no columns", "lacks", "twice"};
    return kNames[static_cast<std::size_t>(refusal)];
}

struct Words
{
    std::string operator()(const Started& n) const { return "started: " + Name(n.cause); }
    std::string operator()(const DividersFound& n) const
    {
        return fmt::format("dividers {} in {}", n.nMask, Shown(n.sRecord));
    }
    std::string operator()(const HeaderSought& n) const
    {
        return (n.bFound ? "header: " : "no header: ") + Shown(n.sLine);
    }
    std::string operator()(const ColumnKept& n) const
    {
        return fmt::format("{} kept {} {}", n.nColumn, Type(n.uiType), Shown(n.sTemplate));
    }
    std::string operator()(const WordScored& n) const
    {
        return fmt::format("{} word {}: {} {:.2f}", n.nColumn, Shown(n.sWord), Type(n.uiType),
                           n.fScore);
    }
    std::string operator()(const TypeRefused& n) const
    {
        return fmt::format("{} is no {}: {}", n.nColumn, Type(n.uiType), Shown(n.sField));
    }
    std::string operator()(const TemplateRefuted& n) const
    {
        return fmt::format("{} {} {} refuted by {}", n.nColumn, Type(n.uiType), Shown(n.sTemplate),
                           Record(n.nRecord));
    }
    std::string operator()(const ColumnFound& n) const
    {
        return fmt::format("{} is {} {}", n.nColumn, Type(n.uiType), Shown(n.sTemplate));
    }
    std::string operator()(const ColumnRetyped& n) const
    {
        return fmt::format("{} from {} to {} by {}, record {}", n.nColumn, Type(n.uiFrom),
                           Type(n.uiTo), Name(n.rule), Record(n.nRecord));
    }
    std::string operator()(const StepsMeasured& n) const
    {
        return n.bKnown ? fmt::format("steps: {} days, {} minutes", n.wDay, n.wMinute)
                        : "steps unknown";
    }
    std::string operator()(const ResolutionRefused& n) const
    {
        const std::string sType = n.uiType == kNoType ? "" : " " + Type(n.uiType);
        return fmt::format("resolution {}: {}{}", n.nResolution, Name(n.refusal), sType);
    }
    std::string operator()(const ResolutionFound& n) const
    {
        return fmt::format("resolution {} size {}", n.nResolution, n.nSize);
    }
    std::string operator()(const RangeRead&) const { return "range read"; }
};

Said NotesOf(const ParsedFile& file)
{
    Said said;
    for (const DetectionNote& note : file.Object()->GetDetectionNotes())
        said.push_back(std::visit(Words(), note));
    return said;
}

// Those that speak of columns as they are found, without the ones of later looks.
Said FirstLook(const Said& notes)
{
    const auto end = std::ranges::find_if(
        notes, [](const std::string& sNote) { return sNote.starts_with("steps"); });
    return Said(notes.begin(), end);
}

class DetectionNotes : public testing::Test
{
protected:
    void Load(Lines lines, const std::vector<OfferedResolution>& offered = {})
    {
        m_file.emplace(std::move(lines));
        m_file->Object()->KeepDetectionReport(true);
        ASSERT_EQ(S_OK, m_file->Offer(offered));
        ASSERT_EQ(S_OK, m_file->Load());
    }
    Said Notes() const { return NotesOf(*m_file); }

    std::optional<ParsedFile> m_file;
};

// ---- what is noted -------------------------------------------------------------------

TEST_F(DetectionNotes, AreTakenOnlyWhenAskedFor)
{
    const ParsedFile file(DayLines(Evenly(1, 3), kBar));
    ASSERT_EQ(S_OK, file.Load());
    EXPECT_THAT(NotesOf(file), testing::IsEmpty());
    file.Object()->KeepDetectionReport(true);
    ASSERT_EQ(S_OK, file.Load());
    EXPECT_THAT(NotesOf(file), testing::Not(testing::IsEmpty()));
    file.Object()->KeepDetectionReport(false);
    EXPECT_THAT(NotesOf(file), testing::IsEmpty());
}

TEST_F(DetectionNotes, ListTheStepsOfARunInTheirOrder)
{
    Load(DayLines(Evenly(7, 12), "1,2"), AllResolutions());
    EXPECT_EQ(Notes(), (Said{
                           "started: first record",    "dividers 36 in 20030106,1,2",
                           "no header: 20030106,1,2",  "0 is Date yyyymmdd",
                           "1 is Open float",          "2 is High float",
                           "steps: 7 days, 0 minutes", "no header: 20030106,1,2",
                           "0 kept Date yyyymmdd",     "1 is Open float",
                           "2 is High float",          "resolution 7: lacks Low",
                           "no header: 20030106,1,2",  "0 kept Date yyyymmdd",
                           "1 is Open float",          "2 is High float",
                           "resolution 6: lacks Low",  "resolution 5: other steps",
                           "no header: 20030106,1,2",  "0 kept Date yyyymmdd",
                           "1 is Open float",          "2 is High float",
                           "resolution 2: lacks Time", "no header: 20030106,1,2",
                           "0 kept Date yyyymmdd",     "1 is Price float",
                           "2 is Volume int",          "resolution 1: lacks Time",
                           "no header: 20030106,1,2",  "0 kept Date yyyymmdd",
                           "1 is Open float",          "2 is High float",
                           "resolution 3: lacks Time", "resolution 0 size 0",
                       }));
}

TEST_F(DetectionNotes, NameTheRecordThatRefutesATemplate)
{
    Lines lines(30, OLESTR("01/02/2003,100"));
    lines[7] = OLESTR("13/02/2003,100");
    lines[29] = OLESTR("14/02/2003,199");
    Load(lines);
    EXPECT_THAT(FirstLook(Notes()),
                testing::ElementsAre("started: first record", "dividers 36 in 01/02/2003,100",
                                     "no header: 01/02/2003,100", "0 Date *m/*d/*y refuted by 7",
                                     "0 is Date *d/*m/*y", "1 Time *hmm refuted by last",
                                     "1 is Open float"));
}

TEST_F(DetectionNotes, SayWhatAHeadersWordsScored)
{
    Load({OLESTR("made,today"), OLESTR("Date,Vol,Zzz,??"), OLESTR("01/02/2003,100,abc,7")});
    EXPECT_THAT(FirstLook(Notes()),
                testing::ElementsAre(
                    "started: first record", "dividers 36 in made,today", "header: made,today",
                    "header: Date,Vol,Zzz,??", "0 word Date: Date 1.00", "0 is Date *m/*d/*y",
                    "1 word Vol: Low 0.67", "1 is Low float", "2 word Zzz: Date 0.00",
                    "2 word Zzz: - 0.00", "2 is no -: abc", "2 is - ", "3 word ??: - 0.00",
                    "3 is no -: 7", "3 is - "));
}

TEST_F(DetectionNotes, SayWhichTypesTheDataRefused)
{
    Load({OLESTR("Date,Time"), OLESTR("01/02/2003,1.5")});
    EXPECT_THAT(FirstLook(Notes()), testing::Contains("1 is no Time: 1.5"));
    EXPECT_THAT(FirstLook(Notes()), testing::Contains("1 word Time: Time 1.00"));
}

TEST_F(DetectionNotes, NameTheRuleThatRetypesAColumn)
{
    Load({OLESTR("ES,20030106,1.5,2.5,3.5,1.5"), OLESTR("ES,20030107,1.5,2.5,3.5,1.5")});
    EXPECT_THAT(FirstLook(Notes()), testing::IsSupersetOf({
                                        "0 from - to Symbol by symbol, record last",
                                        "3 from High to Low by bar, record 0",
                                        "4 from Low to High by bar, record 0",
                                    }));
}

TEST_F(DetectionNotes, SayWhyAResolutionIsRefused)
{
    struct Row
    {
        Lines lines;
        const char* szNote;
    };
    const Row kRows[] = {
        {DayLines({0}, kBar), "steps unknown"},
        {DayLines(Evenly(1, 12), kBar), "resolution 7: other steps"},
        {DayLines(Evenly(1, 12), kBar), "resolution 6 size 1"},
        {MinuteLines(Evenly(5, 12), kBar), "resolution 6: not offered"},
        {MinuteLines(Evenly(5, 12), kBar), "resolution 5 size 5"},
        {MinuteLines(Evenly(3, 12), kBar), "resolution 5: other steps"},
        {MinuteLines(Evenly(5, 12), "1.5"), "resolution 5: lacks High"},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.szNote);
        std::vector<OfferedResolution> offered = {{ResolutionWeeks, OLESTR("W")},
                                                  {ResolutionMinutes, OLESTR("M|5")}};
        if (row.lines[0].find(OLECHAR(':')) == string_t::npos)
            offered.push_back({ResolutionDays, OLESTR("D")});
        Load(row.lines, offered);
        EXPECT_THAT(Notes(), testing::Contains(row.szNote));
    }
}

// ---- causes ----------------------------------------------------------------------------

TEST_F(DetectionNotes, BeginWithTheCauseOfTheRun)
{
    const Bstr date(OLESTR("Date")), dayFirst(OLESTR("*d/*m/*y")), sLine(OLESTR("01/02/2003,1.5"));
    struct Row
    {
        const char* szWhat;
        std::function<HRESULT(IQRL_TabulexConverter::IRecordParser&)> act;
        Said causes; // of the runs, those within others too
        bool bRange;
    };
    const Row kRows[] = {
        {"request", [&](auto& p) { return p.FindResolution(sLine.get()); }, {"request"}, false},
        {"lines", [](auto& p) { return p.put_LinesToSkip(1); }, {"skipped lines"}, false},
        {"dividers",
         [](auto& p) { return p.put_FieldDividers(4); },
         {"dividers", "first record"},
         true},
        {"columns", [](auto& p) { return p.RecreateFealds(); }, {"dividers", "first record"}, true},
        {"resolution",
         [](auto& p) { return p.put_Resolution(ResolutionDays); },
         {"resolution"},
         false},
        {"type", [&](auto& p) { return p.SetFieldName(0, date.get()); }, {"stamps"}, true},
        {"template",
         [&](auto& p) { return p.SetFieldTemplate(dayFirst.get(), 0); },
         {"stamps"},
         true},
        {"smart template",
         [&](auto& p) {
             p.put_SmartResolutionEnabled(VARIANT_TRUE);
             return p.SetFieldTemplate(dayFirst.get(), 0);
         },
         {"template", "request"},
         true},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.szWhat);
        Load(Lines(12, OLESTR("01/02/2003,1.5")));
        EXPECT_EQ(S_OK, row.act(*m_file->Parser()));
        Said causes;
        for (const std::string& sNote : Notes())
            if (sNote.starts_with("started: "))
                causes.push_back(sNote.substr(9));
        EXPECT_EQ(row.causes, causes);
        EXPECT_EQ(row.bRange ? 1 : 0, std::ranges::count(Notes(), "range read"));
    }
}

TEST(DetectionReports, AreBoundedAndBeginAnewWithARun)
{
    DetectionReport report;
    report.Keep(true);
    for (std::size_t i = 0; i < DetectionReport::kMaxNotes + 7; ++i)
        report.Add([] { return RangeRead(); });
    EXPECT_EQ(DetectionReport::kMaxNotes, report.Notes().size());
    EXPECT_EQ(7u, report.DroppedCount());
    const DetectionReport::Run run(report, DetectionCause::Request);
    const DetectionReport::Run within(report, DetectionCause::Stamps);
    EXPECT_EQ(2u, report.Notes().size());
    EXPECT_EQ(0u, report.DroppedCount());
}

} // namespace
