// Which code page a file gets, from candidates that the test gives, and what these come from.

#include "src/data/CodePageSample.h"
#include "tests/data/MemoryFile.h"

#include <gtest/gtest.h>

using namespace Hesperon::specifics;

namespace {

TEST(CodePageChoice, TakesTheBestCandidateUnlessThePageThatIsSetIsOne)
{
    const struct
    {
        const char* szWhat;
        std::vector<DetectedCodePage> candidates;
        ULONG nChosen;
    } rows[] = {
        {"none", {}, 1252},
        {"one", {{936, 40}}, 936},
        {"the highest, first", {{936, 90}, {950, 40}}, 936},
        {"the highest, last", {{936, 40}, {950, 90}}, 950},
        {"the highest, in the middle", {{936, 40}, {950, 90}, {932, 50}}, 950},
        {"of two that are equal the later", {{936, 90}, {950, 90}}, 950},
        {"of three that are equal the last", {{936, 90}, {950, 90}, {932, 90}}, 932},
        {"equal, but not the highest", {{936, 40}, {950, 40}, {932, 90}}, 932},
        {"no confidence at all", {{936, 0}, {950, 0}}, 950},
        {"the page that is set, alone", {{1252, 10}}, 1252},
        {"the page that is set, first", {{1252, 10}, {936, 90}}, 1252},
        {"the page that is set, after a better one", {{936, 90}, {1252, 10}}, 1252},
        {"the page that is set, last of many", {{936, 90}, {950, 90}, {1252, 0}}, 1252},
    };
    for (const auto& row : rows)
        EXPECT_EQ(ChooseCodePage(1252, row.candidates), row.nChosen) << row.szWhat;
}

class CodePageSampleTest : public testing::Test
{
protected:
    void SetUp() override { ASSERT_EQ(CreateObject(file), S_OK); }

    com_ptr<MemoryFile> file;
};

TEST_F(CodePageSampleTest, HoldsTheFirstFiftyLines)
{
    for (int i = 0; i < 60; ++i)
        file->lines.push_back(std::to_string(i));
    std::string expected;
    for (int i = 0; i < 50; ++i)
        expected += std::to_string(i) + "\r\n";
    EXPECT_EQ(SampleBytes(*file.get()), expected);
    EXPECT_EQ(file->linesRead.size(), 50u);
    EXPECT_EQ(file->codePages, std::vector<ULONG>(50, 1252));
}

TEST_F(CodePageSampleTest, CutsLinesAndEndsAtTheFirstThatCannotBeRead)
{
    file->lines = {std::string(600, 'a'), "b"};
    EXPECT_EQ(SampleBytes(*file.get()), std::string(511, 'a') + "\r\nb\r\n");
    EXPECT_EQ(file->linesRead, (std::vector<ULONGLONG>{0, 1, 2}));
}

TEST_F(CodePageSampleTest, OfAnEmptyFileLeavesThePage)
{
    EXPECT_EQ(SampleBytes(*file.get()), "");
    EXPECT_EQ(DetectCodePage(*file.get(), 936), 936u);
}

} // namespace
