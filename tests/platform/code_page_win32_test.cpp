#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "CodePages.h"
#include "platform/text/CodePageDetection_win32.h"

namespace {

using namespace std::literals;

TEST(AnsiCodePage, IsTheSystemsAtFirst)
{
    EXPECT_EQ(AnsiCodePage(), GetACP());
}

// The system chooses the mark: the default character of the page.
TEST(CodePage, HasOneCharacterForALeadByteAlone)
{
    for (const UINT nCodePage : {932u, 936u, 949u, 950u})
        EXPECT_EQ(Decode(nCodePage, "\x81").size(), 1u) << nCodePage;
}

// Pages in which bytes below 0x80 don't stand for themselves.
TEST(CodePage, KeepsToThePageWhereBytesLookLikeAscii)
{
    EXPECT_EQ(Decode(65000, "a+AOk-b"), L"a\u00E9b");
    EXPECT_EQ(Decode(37, "\x40\xC1\x4B"), L" A.");
    EXPECT_EQ(Decode(1252, "+AOk-"), L"+AOk-");
    EXPECT_EQ(Decode(65000, "+AOk-"), L"\u00E9");
}

TEST(CodePage, HasAMarkForEachSurrogate)
{
    EXPECT_EQ(EncodeText(1252, L"\U0001F600x"), "??x");
    EXPECT_EQ(EncodeText(65001, L"\xDC80x"), "\xEF\xBF\xBDx");
}

// The entries that a service finds, and what it says.
struct Found
{
    HRESULT hr;
    std::vector<DetectEncodingInfo> entries;
};

std::vector<DetectedCodePage> Detect(const Found& found, std::size_t nMost = 10)
{
    return DetectCodePages(
        "2004-01-02,1\r\n", nMost,
        [&](char* pBytes, INT& nBytes, DetectEncodingInfo* pEntries, INT& nEntries) {
            EXPECT_EQ(std::string_view(pBytes, static_cast<std::size_t>(nBytes)),
                      "2004-01-02,1\r\n");
            EXPECT_EQ(nEntries, static_cast<INT>(nMost));
            std::copy_n(found.entries.begin(), std::min(found.entries.size(), nMost), pEntries);
            nEntries = static_cast<INT>(found.entries.size());
            return found.hr;
        });
}

TEST(CodePageDetection, GivesTheEntriesBestFirst)
{
    const auto pages = Detect({S_OK, {{0, 1252, 30, 20}, {0, 936, 100, 90}, {0, 950, 50, 20}}});
    ASSERT_EQ(pages.size(), 3u);
    const UINT numbers[] = {936, 1252, 950};
    const int confidences[] = {90, 20, 20};
    for (std::size_t n = 0; n < 3; ++n) {
        EXPECT_EQ(pages[n].nCodePage, numbers[n]);
        EXPECT_EQ(pages[n].nConfidence, confidences[n]);
    }
}

TEST(CodePageDetection, KeepsConfidenceWithinAHundred)
{
    const auto pages = Detect({S_OK, {{0, 1252, 0, -1}, {0, 936, 0, 1000}}});
    ASSERT_EQ(pages.size(), 2u);
    EXPECT_EQ(pages[0].nConfidence, 100);
    EXPECT_EQ(pages[1].nConfidence, 0);
}

TEST(CodePageDetection, HasNoEntriesWhereTheCallFails)
{
    for (const HRESULT hr : {E_NOTIMPL, E_FAIL, S_FALSE}) // S_FALSE: no page was found
        EXPECT_TRUE(Detect({hr, {{0, 936, 100, 90}}}).empty()) << hr;
    EXPECT_TRUE(Detect({S_OK, {}}).empty());
}

TEST(CodePageDetection, TakesNoMoreEntriesThanThereIsRoomFor)
{
    EXPECT_EQ(Detect({S_OK, {{0, 936, 0, 9}, {0, 950, 0, 8}, {0, 932, 0, 7}}}, 2).size(), 2u);
}

TEST(CodePageDetection, IsNotAskedForNothing)
{
    const auto never = [](char*, INT&, DetectEncodingInfo*, INT&) -> HRESULT {
        ADD_FAILURE();
        return E_FAIL;
    };
    EXPECT_TRUE(DetectCodePages("", 10, never).empty());
    EXPECT_TRUE(DetectCodePages("abc", 0, never).empty());
}

// A thread that is in no apartment can't use the service.
TEST(CodePageDetection, HasNoEntriesWithoutTheService)
{
    std::thread([] { EXPECT_TRUE(DetectCodePages("2004-01-02,1\r\n", 10).empty()); }).join();
}

} // namespace
