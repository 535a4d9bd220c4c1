// The values of each report, in the order in which the library gets them.

#include <gmock/gmock.h>

#include "diagnostics/FaultmereClient.h"
#include "diagnostics/Reports.h"
#include "platform/DynamicLibrary.h"
#include "tests/diagnostics/fake_root.h"

namespace {

using namespace FaultmereUtil;
using testing::ElementsAre;
using testing::ElementsAreArray;

std::string Address(const void* p)
{
    return std::to_string(reinterpret_cast<std::uintptr_t>(p));
}

// The lines of a report's place on this thread, with an optional group.
std::vector<std::string> PlaceLines(const std::source_location& place, const std::string& sFunction,
                                    const char* szGroup = nullptr)
{
    std::vector<std::string> lines = {std::string("File = text ") + place.file_name(),
                                      "Line = UI4 " + std::to_string(place.line())};
    if (szGroup)
        lines.push_back(std::string("$Group = UI4 ") + szGroup);
    lines.push_back("Thread ID = UI4 " + std::to_string(CurrentThreadId()));
    lines.push_back("Function = text " + sFunction);
    lines.push_back(std::string("$FuncSig = text ") + place.function_name());
    return lines;
}

std::vector<std::string> Joined(std::initializer_list<std::vector<std::string>> parts)
{
    std::vector<std::string> result;
    for (const auto& part : parts)
        result.insert(result.end(), part.begin(), part.end());
    return result;
}

std::source_location ThisPlace(const std::source_location place = std::source_location::current())
{
    return place;
}

std::source_location PlaceInAFunction()
{
    return ThisPlace();
}

template <class First, class Second>
struct Pair
{
    static std::source_location PlaceInATemplate(First, Second) { return ThisPlace(); }
};

TEST(ReportOrder, Session)
{
    ReportDiary diary;
    TestClient client(diary);
    EXPECT_EQ(S_OK, client.Initialise());
    const LoadedModule module = ModuleOf(reinterpret_cast<const void*>(&FaultmereClient::Instance));
    ASSERT_NE(nullptr, module.pBase);
    ASSERT_NE("", module.sPath);
    EXPECT_THAT(diary.lines, ElementsAre("CREATE", "LogDirectory = text ",
                                         "ModuleAddr = UI8 " + Address(module.pBase),
                                         "ModuleName = text " + module.sPath, "ReleaseMode = true",
                                         "ClientVersion = text 2.2 05.05.2006", "INIT(bag)"));
}

TEST(ReportOrder, PlainTrace)
{
    OpenClient open;
    const std::source_location place = PlaceInAFunction();
    SetLastSystemError(17);
    EXPECT_EQ(S_OK, TracerClass(open.client, place)(""));
    EXPECT_THAT(open.diary.lines,
                ElementsAreArray(Joined({{"CREATE", "$Type = text TRACE", "$Ident = UI4 0"},
                                         PlaceLines(place, "{anonymous}::PlaceInAFunction"),
                                         {"file(bag)"}})));
}

TEST(ReportOrder, TraceWithAllValues)
{
    OpenClient open;
    const std::source_location place = PlaceInAFunction();
    const TraceValues values{1, 2, &open, 0.5, 3, 1.5, "out.txt"};
    EXPECT_EQ(S_OK, TracerClass(open.client, place, values)("message"));
    EXPECT_THAT(open.diary.lines,
                ElementsAreArray(Joined(
                    {{"CREATE", "$Type = text TRACE", "$Message = text message", "$Ident = UI4 1"},
                     PlaceLines(place, "{anonymous}::PlaceInAFunction", "2"),
                     {"Object = UI8 " + Address(&open), "$Delay = R8 0.500000", "Count = UI4 3",
                      "$TotalTime = R8 1.500000", "OutFile = text out.txt", "file(bag)"}})));
}

TEST(ReportOrder, PlainAssertion)
{
    OpenClient open;
    const std::source_location place = PlaceInAFunction();
    SetLastSystemError(0);
    EXPECT_EQ(S_OK, AsserterClass(open.client, place)(""));
    EXPECT_THAT(open.diary.lines,
                ElementsAreArray(Joined({{"CREATE", "$Type = text ASSERT", "<<ASSERT>> = empty"},
                                         PlaceLines(place, "{anonymous}::PlaceInAFunction"),
                                         {"file(bag)"}})));
}

TEST(ReportOrder, AssertionWithAllValues)
{
    OpenClient open;
    const std::source_location place = PlaceInAFunction();
    SetLastSystemError(17);
    EXPECT_EQ(S_OK, AsserterClass(open.client, place)("pVal", E_FAIL));
    EXPECT_THAT(
        open.diary.lines,
        ElementsAreArray(Joined(
            {{"CREATE", "$Type = text ASSERT", "<<ASSERT>> = empty", "Last Error Code = UI4 17",
              "HRESULT = result " + std::to_string(E_FAIL), "Description = text pVal"},
             PlaceLines(place, "{anonymous}::PlaceInAFunction"),
             {"file(bag)"}})));
}

TEST(ReportOrder, Exception)
{
    OpenClient open;
    const ExceptionFacts facts{"access", 5, 6, true, &open, &facts};
    EXPECT_EQ(S_OK, ReportException(open.client, facts));
    EXPECT_THAT(open.diary.lines,
                ElementsAre("CREATE", "$Type = text EXCEPTION", "<<EXCEPTION>> = empty",
                            "ExceptionType = text access", "ErrorCode = UI4 5",
                            "Thread ID = UI4 " + std::to_string(CurrentThreadId()), "Code = UI4 6",
                            "Continuable = true", "Address = UI8 " + Address(&open),
                            "$EXCEPTION_POINTERS = UI8 " + Address(&facts), "file(bag)"));
}

TEST(ReportOrder, ABagLivesNoLongerThanItsReport)
{
    OpenClient open;
    TracerClass(open.client, ThisPlace())("message");
    EXPECT_EQ(1, open.diary.nLiving); // the root
}

TEST(ReportOrder, TheFirstFailureSkipsTheRestAndIsTheResult)
{
    struct Row
    {
        const char* szFailing;
        std::size_t nLines; // up to the failure
    };
    constexpr Row kRows[] = {{"CREATE", 1}, {"$Type", 2}, {"Line", 6}, {"file", 10}};
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.szFailing);
        OpenClient open;
        open.diary.answers[row.szFailing] = E_ACCESSDENIED;
        EXPECT_EQ(E_ACCESSDENIED, TracerClass(open.client, ThisPlace())("message"));
        EXPECT_EQ(row.nLines, open.diary.lines.size());
        EXPECT_EQ(1, open.diary.nLiving);
    }
}

TEST(ReportOrder, TheLibrarysAnswerIsTheResult)
{
    for (const HRESULT hr : {S_OK, kBreak, kTerminate, E_FAIL}) {
        SCOPED_TRACE(hr);
        OpenClient open;
        open.diary.answers["file"] = hr;
        EXPECT_EQ(hr, AsserterClass(open.client, ThisPlace())("pVal"));
    }
}

TEST(ReportOrder, FunctionNamesLackResultTypeAndArguments)
{
    const std::source_location place = Pair<int, std::map<int, long>>::PlaceInATemplate(1, {});
    OpenClient open;
    TracerClass(open.client, place)("");
    EXPECT_THAT(open.diary.lines, testing::Contains(testing::MatchesRegex(
                                      "Function = text .*Pair.*::PlaceInATemplate")))
        << place.function_name();
}

} // namespace
