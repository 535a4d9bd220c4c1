#include <cerrno>
#include <random>
#include <string>

#include <sys/stat.h>

#include "TestFolder.h"
#include "Values.h"
#include "tests/support/Seed.h"

namespace {

using namespace std::literals;

TEST_F(FileTest, GivesTheSystemsErrorForWhatItCannotOpen)
{
    struct Row
    {
        string_t path;
        int nError;
    };
    const Row rows[] = {
        {NameOf(m_folder), EISDIR},
        {NameOf(m_folder / "missing"), ENOENT},
        {string_t(u"a\0b", 3), EINVAL},
        {string_t(), ENOENT},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(Narrow(row.path));
        int nError = 0;
        const File file = File::Open(row.path, nError);
        EXPECT_FALSE(file.IsOpen());
        EXPECT_EQ(nError, row.nError);
    }
}

TEST_F(FileTest, DoesNotHangOnAPipe)
{
    const std::string name = m_folder / "pipe";
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
        const File file = File::Open(NameOf(Write(name, name)), nError);
        EXPECT_EQ(nError, 0);
        EXPECT_EQ(Read(file, 0, 100), name);
    }
}

TEST(Path, CarriesBytesThatAreNotUtf8AsLoneSurrogates)
{
    struct Row
    {
        std::string bytes;
        string_t path;
    };
    const Row rows[] = {
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
    std::mt19937 random(Seed());
    // Lead and trail bytes are frequent, so that complete, cut and wrong sequences all occur.
    const std::string_view alphabet = "a/\x80\x9F\xA0\xBF\xC0\xC3\xE0\xE4\xED\xEF\xF0\xF4\xF5\xFF";
    for (int n = 0; n < Rounds(20000); ++n) {
        std::string bytes(random() % 12, '\0');
        for (char& c : bytes)
            c = alphabet[random() % alphabet.size()];
        ASSERT_EQ(PathToBytes(PathFromBytes(bytes)), bytes) << testing::PrintToString(bytes);
    }
}

} // namespace
