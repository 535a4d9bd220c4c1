#include <atomic>
#include <thread>
#include <vector>

#include "TestFolder.h"
#include "Values.h"

namespace {

TEST_F(FileTest, ReadsByPosition)
{
    int nError = -1;
    const File file = File::Open(NameOf(Write("quotes.txt", "0123456789")), nError);
    ASSERT_TRUE(file.IsOpen());
    EXPECT_EQ(nError, 0);
    EXPECT_EQ(file.Size(), 10u);
    EXPECT_EQ(Read(file, 0, 4), "0123");
    EXPECT_EQ(Read(file, 8, 4), "89");
    EXPECT_EQ(Read(file, 10, 4), "");
    EXPECT_EQ(Read(file, 1000, 4), "");
    EXPECT_EQ(Read(file, 3, 0), "");
    EXPECT_EQ(Read(file, ~0ull, 4), "error");
}

TEST_F(FileTest, ReadsBeyondFourGigabytes)
{
    constexpr std::uint64_t kFar = 5ull << 30;
    WriteAt(m_folder / "large.txt", kFar, "far");
    int nError = 0;
    const File file = File::Open(NameOf(m_folder / "large.txt"), nError);
    ASSERT_EQ(file.Size(), kFar + 3);
    EXPECT_EQ(Read(file, kFar, 10), "far");
    EXPECT_EQ(Read(file, kFar - 2, 3), std::string("\0\0f", 3));
    EXPECT_EQ(Read(file, kFar & 0xFFFFFFFF, 2), std::string(2, '\0'));
    EXPECT_EQ(Read(file, kFar + 3, 10), "");
}

TEST_F(FileTest, FollowsAFileThatGrowsOrShrinks)
{
    int nError = 0;
    const File file = File::Open(NameOf(Write("growing.txt", "abc")), nError);
    EXPECT_EQ(file.Size(), 3u);
    Write("growing.txt", "defg", std::ios::app);
    EXPECT_EQ(file.Size(), 7u);
    EXPECT_EQ(Read(file, 2, 10), "cdefg");
    Write("growing.txt", "x");
    EXPECT_EQ(file.Size(), 1u);
    EXPECT_EQ(Read(file, 2, 10), "");
}

TEST_F(FileTest, GoesOnWithAFileThatIsRenamedAndDeleted)
{
    int nError = 0;
    const File file = File::Open(NameOf(Write("quotes.txt", "abc")), nError);
    std::error_code error;
    std::filesystem::rename(m_folder / "quotes.txt", m_folder / "old.txt", error);
    EXPECT_FALSE(error) << error.message();
    EXPECT_EQ(Read(file, 0, 10), "abc");
    EXPECT_TRUE(std::filesystem::remove(m_folder / "old.txt", error)) << error.message();
    EXPECT_EQ(Read(file, 1, 10), "bc");
    EXPECT_EQ(file.Size(), 3u);
}

TEST_F(FileTest, OpensNamesOfAllLanguages)
{
    for (const char8_t* name : {u8"\u4E2D\u6587 \u884C\u60C5.txt", u8"\u00E4\u00DF.txt",
                                u8"\u65E5\u672C\u8A9E", u8"\U0001F600"}) {
        const std::filesystem::path path = Write(name, "abc");
        SCOPED_TRACE(path.string());
        int nError = -1;
        const File file = File::Open(NameOf(path), nError);
        EXPECT_EQ(nError, 0);
        EXPECT_EQ(Read(file, 0, 100), "abc");
    }
}

TEST_F(FileTest, RefusesWhatIsNoFile)
{
    const string_t zero = NameOf(Write("a", "")) + string_t(OLESTR("\0b"), 2);
    for (const string_t& path :
         {NameOf(m_folder), NameOf(m_folder / "missing"), zero, string_t()}) {
        SCOPED_TRACE(Narrow(path));
        int nError = 0;
        const File file = File::Open(path, nError);
        EXPECT_FALSE(file.IsOpen());
        EXPECT_NE(nError, 0);
        EXPECT_EQ(file.Size(), std::nullopt);
    }
}

TEST_F(FileTest, MovesAndCloses)
{
    int nError = 0;
    File first = File::Open(NameOf(Write("a", "a")), nError);
    File second(std::move(first));
    EXPECT_FALSE(first.IsOpen());
    EXPECT_TRUE(second.IsOpen());
    File third;
    third = std::move(second);
    EXPECT_EQ(Read(third, 0, 9), "a");
    third.Close();
    EXPECT_FALSE(third.IsOpen());
    third.Close();
    EXPECT_EQ(Read(third, 0, 9), "error");
}

TEST_F(FileTest, IsReadByManyThreads)
{
    constexpr std::size_t kBlock = 64;
    constexpr std::size_t kBlocks = 200;
    std::string bytes;
    for (std::size_t n = 0; n < kBlocks; ++n)
        bytes += std::string(kBlock, static_cast<char>('a' + n % 26));
    int nError = 0;
    const File file = File::Open(NameOf(Write("quotes.txt", bytes)), nError);
    std::atomic<int> nWrong = 0;
    std::vector<std::thread> threads;
    for (std::size_t t = 0; t < 4; ++t)
        threads.emplace_back([&, t] {
            for (std::size_t n = t; n < 4 * kBlocks; n += 3)
                if (Read(file, n % kBlocks * kBlock, kBlock) !=
                    bytes.substr(n % kBlocks * kBlock, kBlock))
                    ++nWrong;
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(nWrong, 0);
}

TEST(Path, IsUtf8InBytes)
{
    struct Row
    {
        std::string bytes;
        string_t path;
    };
    const Row rows[] = {
        {"", OLESTR("")},
        {"plain", OLESTR("plain")},
        {"\xC3\xA4", OLESTR("\u00E4")},
        {"\xE4\xB8\xAD", OLESTR("\u4E2D")},
        {"\xF0\x9F\x98\x80", OLESTR("\U0001F600")},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.bytes));
        EXPECT_EQ(PathFromBytes(row.bytes), row.path);
        EXPECT_EQ(PathToBytes(row.path), row.bytes);
    }
}

} // namespace
