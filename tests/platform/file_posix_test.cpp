#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include "Values.h"
#include "platform/File.h"

namespace {

using namespace std::literals;

// A folder that is gone after the test.
class FileTest : public testing::Test
{
protected:
    FileTest()
    {
        std::string name = testing::TempDir() + "file_test_XXXXXX";
        m_folder = mkdtemp(name.data());
    }
    ~FileTest() override { std::filesystem::remove_all(m_folder); }

    string_t Write(const std::string& name, std::string_view bytes,
                   std::ios::openmode mode = std::ios::trunc) const
    {
        std::ofstream out(m_folder + "/" + name, std::ios::binary | mode);
        out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        return PathFromBytes(m_folder + "/" + name);
    }

    static std::string Read(const File& file, std::uint64_t offset, std::size_t count)
    {
        std::string bytes(count, '\0');
        const auto n = file.ReadAt(offset, bytes.data(), count);
        if (!n)
            return "error";
        bytes.resize(*n);
        return bytes;
    }

    std::string m_folder;
};

TEST_F(FileTest, ReadsByPosition)
{
    int nError = -1;
    const File file = File::Open(Write("quotes.txt", "0123456789"), nError);
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

TEST_F(FileTest, FollowsAFileThatGrowsOrShrinks)
{
    int nError = 0;
    const string_t path = Write("growing.txt", "abc");
    const File file = File::Open(path, nError);
    EXPECT_EQ(file.Size(), 3u);
    Write("growing.txt", "defg", std::ios::app);
    EXPECT_EQ(file.Size(), 7u);
    EXPECT_EQ(Read(file, 2, 10), "cdefg");
    Write("growing.txt", "x");
    EXPECT_EQ(file.Size(), 1u);
    EXPECT_EQ(Read(file, 2, 10), "");
}

TEST_F(FileTest, GivesTheSystemsErrorForWhatItCannotOpen)
{
    mkfifo((m_folder + "/pipe").c_str(), 0600);
    struct Row
    {
        string_t path;
        int nError;
    };
    const Row rows[] = {
        {PathFromBytes(m_folder), EISDIR},
        {PathFromBytes(m_folder + "/missing"), ENOENT},
        {string_t(u"a\0b", 3), EINVAL},
        {string_t(), ENOENT},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(Narrow(row.path));
        int nError = 0;
        const File file = File::Open(row.path, nError);
        EXPECT_FALSE(file.IsOpen());
        EXPECT_EQ(nError, row.nError);
        EXPECT_EQ(file.Size(), std::nullopt);
    }
}

TEST_F(FileTest, DoesNotHangOnAPipe)
{
    const std::string name = m_folder + "/pipe";
    ASSERT_EQ(mkfifo(name.c_str(), 0600), 0);
    int nError = 0;
    const File file = File::Open(PathFromBytes(name), nError);
    char byte = 0;
    EXPECT_EQ(file.ReadAt(0, &byte, 1), std::nullopt);
}

TEST_F(FileTest, OpensNamesInAnyBytes)
{
    for (const std::string& name :
         {"\xE4\xB8\xAD.txt"s, "latin \xE4\xFF.txt"s, "\xF0\x9F\x98\x80"s}) {
        SCOPED_TRACE(name);
        int nError = 0;
        const File file = File::Open(Write(name, name), nError);
        EXPECT_EQ(nError, 0);
        EXPECT_EQ(Read(file, 0, 100), name);
    }
}

TEST_F(FileTest, MovesAndCloses)
{
    int nError = 0;
    File first = File::Open(Write("a", "a"), nError);
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

TEST(Path, CarriesBytesThatAreNotUtf8AsLoneSurrogates)
{
    struct Row
    {
        std::string bytes;
        string_t path;
    };
    const Row rows[] = {
        {"", u""},
        {"plain", u"plain"},
        {"\xC3\xA4", u"\u00E4"},
        {"\xE4\xB8\xAD", u"\u4E2D"},
        {"\xF0\x9F\x98\x80", u"\U0001F600"},
        {"\xFF", u"\xDCFF"},
        {"a\x80z", u"a\xDC80z"},
        {"\xC3", u"\xDCC3"},
        {"\xE4\xB8", u"\xDCE4\xDCB8"},
        {"\xC0\xAF", u"\xDCC0\xDCAF"}, // overlong
        {"\xE0\x80\xAF", u"\xDCE0\xDC80\xDCAF"},
        {"\xED\xA0\x80", u"\xDCED\xDCA0\xDC80"}, // a surrogate
        {"\xF4\x90\x80\x80", u"\xDCF4\xDC90\xDC80\xDC80"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.bytes));
        EXPECT_EQ(PathFromBytes(row.bytes), row.path);
        EXPECT_EQ(PathToBytes(row.path), row.bytes);
    }
}

TEST(Path, BringsAnyBytesBack)
{
    const unsigned nSeed = std::random_device{}();
    SCOPED_TRACE(testing::Message() << "seed " << nSeed);
    std::mt19937 random(nSeed);
    // Leads and trails are frequent, so that whole, cut and wrong sequences all come up.
    const std::string_view alphabet = "a/\x80\x9F\xA0\xBF\xC0\xC3\xE0\xE4\xED\xEF\xF0\xF4\xF5\xFF";
    for (int n = 0; n < 20000; ++n) {
        std::string bytes(random() % 12, '\0');
        for (char& c : bytes)
            c = alphabet[random() % alphabet.size()];
        ASSERT_EQ(PathToBytes(PathFromBytes(bytes)), bytes) << testing::PrintToString(bytes);
    }
}

} // namespace
