// Random files and calls: the fast index against the plain one, in several page
// geometries.

#include <random>

#include "src/files/LineIndexImpl.h"
#include "tests/files/PlainLineIndex.h"
#include "tests/files/Vocabulary.h"
#include "tests/support/Seed.h"

using namespace Hesperon::specifics;
using namespace files_test;

namespace {

using Random = std::mt19937;

unsigned Below(Random& random, unsigned n)
{
    return std::uniform_int_distribution<unsigned>(0, n - 1)(random);
}

// Pieces that lines are made of, and how the file is made of them.
std::string RandomFile(Random& random)
{
    using namespace std::string_literals;
    static const std::string kPieces[] = {"a"s,  "bc"s, "1.25"s, ","s,    ";"s,  ":"s,  "|"s,
                                          "\t"s, " "s,  "\0"s,   "\xE4"s, ",,"s, "||"s, "xyz"s};
    static const std::string kEnds[] = {"\n"s, "\n"s, "\r\n"s, "\r"s, "\n\n"s, "\n\0"s, "\n \t"s};
    const unsigned nPieces = 1 + Below(random, 6);
    const unsigned nOdd = Below(random, 8); // how often a line is anything but plain
    std::string bytes;
    const unsigned nLines = Below(random, 4) ? Below(random, 40) : 1000 + Below(random, 3000);
    for (unsigned nLine = 0; nLine < nLines; ++nLine) {
        if (Below(random, 8) >= nOdd) {
            bytes += "r" + std::to_string(nLine) + "\n";
            continue;
        }
        for (unsigned n = Below(random, nPieces + 1); n != 0; --n)
            bytes += kPieces[Below(random, std::size(kPieces))];
        if (Below(random, 60) == 0)
            bytes.append(500 + Below(random, 30), Below(random, 2) ? ',' : 'w');
        bytes += kEnds[Below(random, std::size(kEnds))];
    }
    if (Below(random, 3) == 0)
        bytes += "tail";
    return bytes;
}

std::string TwoByte(const std::string& bytes)
{
    std::string wide;
    for (const char c : bytes) {
        wide += c;
        wide += '\0';
    }
    return wide;
}

string_t Decoded(const std::string& bytes)
{
    string_t sText;
    DecodeBytes(kAnsiCodePage, bytes, sText);
    return sText;
}

template <class Data>
class Comparison
{
public:
    Comparison(const std::string& bytes, Random& random)
        : m_file(bytes), m_plain(bytes), m_random(random)
    {
        m_index.Attach(m_file.Open());
        m_index.DetectUnicode();
    }

    void Run(unsigned nCalls)
    {
        for (unsigned n = 0; n < nCalls && !testing::Test::HasFailure(); ++n) {
            Call();
            ASSERT_EQ(m_index.RecordCount(), m_plain.count);
            ASSERT_EQ(m_index.IsComplete(), m_plain.complete);
            for (ULONGLONG k = 0; k < m_plain.count / 1024; ++k)
                ASSERT_EQ(m_index.IndexEntry(k), m_plain.index[k]);
        }
    }

private:
    void Call()
    {
        const ULONGLONG nIndex = ChooseRecord();
        switch (Below(m_random, 11)) {
        case 0:
            ASSERT_EQ(m_index.SeekRecord(nIndex), m_plain.SeekRecord(nIndex)) << nIndex;
            break;
        case 1:
            CompareLastRecord();
            break;
        case 2:
            CompareRelativePos(nIndex);
            break;
        case 3:
            CompareNextLine();
            break;
        case 4:
            for (ULONGLONG n = nIndex; n < nIndex + 20; ++n)
                CompareRecord(n);
            break;
        case 5:
            if (Below(m_random, 10) == 0)
                Invalidate();
            break;
        case 6:
            for (ULONGLONG n = nIndex; n-- != 0 && n + 30 > nIndex;)
                CompareRecord(n);
            break;
        case 7:
        case 8:
            CompareOwnCursor();
            break;
        default:
            CompareRecord(nIndex);
        }
    }

    void Invalidate()
    {
        const bool bErase = Below(m_random, 3) == 0;
        m_index.Invalidate(bErase);
        m_plain.complete = false;
        if (bErase) {
            m_plain.count = m_plain.curPos = m_plain.curRecord = 0;
            m_plain.index.clear();
            m_bOwnKnown = false;
        }
    }

    // A reader with a cursor reads as if it were alone, and moves nobody else's.
    void CompareOwnCursor()
    {
        if (!m_bOwnKnown) {
            m_nOwnRecord = m_plain.curRecord;
            m_nOwnPos = m_plain.curPos;
            m_bOwnKnown = true;
        }
        SwapCursors();
        const unsigned nCalls = 1 + Below(m_random, 20);
        const bool bDown = Below(m_random, 2);
        ULONGLONG nIndex = Below(m_random, 2) ? m_plain.curRecord : ChooseRecord();
        if (Below(m_random, 2)) {
            CompareRange({nIndex, bDown ? std::min<ULONGLONG>(nCalls, nIndex + 1) : nCalls, bDown});
        } else {
            for (unsigned n = 0; n < nCalls; ++n, nIndex += bDown ? -1 : 1)
                CompareRecord(nIndex, m_own);
        }
        SwapCursors();
    }

    // Plain lines are added together, the others by themselves.
    void CompareRange(const LineRange& range)
    {
        for (ULONGLONG n = 0; n < range.nCount;) {
            LineBuffer lines;
            const LineRange rest{range.At(n), range.nCount - n, range.bDownwards};
            const ULONGLONG nAdded = m_index.AppendPlain(rest, m_own, lines);
            ASSERT_EQ(nAdded, lines.size());
            ASSERT_LE(nAdded, rest.nCount);
            if (nAdded == 0)
                CompareRecord(range.At(n++), m_own);
            for (std::size_t i = 0; i < nAdded; ++i, ++n) {
                std::string text;
                ASSERT_TRUE(m_plain.GetRecord(text, range.At(n))) << range.At(n);
                ASSERT_EQ(lines.Bytes(i), text) << range.At(n);
            }
        }
    }

    void SwapCursors()
    {
        std::swap(m_plain.curRecord, m_nOwnRecord);
        std::swap(m_plain.curPos, m_nOwnPos);
    }

    ULONGLONG ChooseRecord()
    {
        switch (Below(m_random, 6)) {
        case 0:
            return m_plain.curRecord + Below(m_random, 3);
        case 1:
            return m_plain.count + Below(m_random, 70);
        case 2:
            return 1024 * Below(m_random, 4) - Below(m_random, 2);
        case 3:
            return Below(m_random, 4500);
        default:
            return Below(m_random, static_cast<unsigned>(m_plain.count) + 2);
        }
    }

    template <class... Cursor>
    void CompareRecord(ULONGLONG nIndex, Cursor&... cursor)
    {
        std::string_view bytes;
        std::string text;
        const bool bFound = m_index.GetRecord(bytes, nIndex, cursor...);
        ASSERT_EQ(bFound, m_plain.GetRecord(text, nIndex)) << nIndex;
        ASSERT_EQ(bytes, text) << nIndex;
    }

    void CompareLastRecord()
    {
        string_t sText;
        std::string text;
        const bool bFound = m_plain.GetLastRecord(text);
        ASSERT_EQ(m_index.GetLastRecord(sText), bFound);
        ASSERT_EQ(sText, Decoded(text));
        string_t sHead;
        ASSERT_EQ(m_index.GetLastRecordHead(sHead), bFound);
        ASSERT_EQ(sHead, sText.substr(0, 512));
    }

    void CompareRelativePos(ULONGLONG nIndex)
    {
        FLOAT fPos = -1;
        const HRESULT hr = m_index.GetRelativePos(nIndex, &fPos);
        const double nPos = m_plain.RelativePos(nIndex);
        ASSERT_EQ(hr, nPos < 0 ? E_UNEXPECTED : S_OK) << nIndex;
        if (hr == S_OK) {
            ASSERT_EQ(fPos, static_cast<FLOAT>(nPos / static_cast<double>(m_plain.Size())));
        }
    }

    void CompareNextLine()
    {
        const bool bStop = Below(m_random, 2);
        ULONGLONG nPos = Below(m_random, static_cast<unsigned>(m_plain.Size()) + 1);
        ULONGLONG nPlainPos = nPos;
        ULONGLONG nLength = 0;
        ULONGLONG nPlainLength = 0;
        ASSERT_EQ(m_index.Lines().SeekNextLine(nPos, bStop, &nLength),
                  m_plain.SeekNextLine(nPlainPos, bStop, &nPlainLength));
        ASSERT_EQ(nPos, nPlainPos);
        ASSERT_EQ(nLength, nPlainLength);
    }

    TestFile m_file;
    PlainLineIndex m_plain;
    LineIndexOf<Data> m_index;
    Random& m_random;

    LineCursor m_own;
    bool m_bOwnKnown = false; // what follows is that of m_own
    ULONGLONG m_nOwnRecord = 0;
    ULONGLONG m_nOwnPos = 0;
};

template <class Data>
class RandomLines : public testing::Test
{};

using Geometries =
    testing::Types<CDataArray<char, 1, 1>, CDataArray<char, 2, 7>, CDataArray<char, 1, 33>,
                   CDataArray<char, 3, 64>, CDataArray<char, 16, 4096>, FileBytes>;
TYPED_TEST_SUITE(RandomLines, Geometries);

TYPED_TEST(RandomLines, AreFoundAsThePlainRulesFindThem)
{
    // Pages of a byte or two cost a read each.
    const int nFiles =
        Rounds(sizeof(TypeParam) && std::is_same_v<TypeParam, CDataArray<char, 1, 1>> ? 15 : 120);
    ReportLog unheard;
    for (int nFile = 0; nFile < nFiles && !this->HasFailure(); ++nFile) {
        SCOPED_TRACE("file " + std::to_string(nFile));
        Random random(Seed() + static_cast<unsigned>(nFile));
        std::string bytes = RandomFile(random);
        if (Below(random, 4) == 0)
            bytes = TwoByte(bytes);
        if (Below(random, 8) == 0)
            bytes += 'x'; // an odd size of two-byte characters
        Comparison<TypeParam>(bytes, random).Run(40);
    }
}

} // namespace
