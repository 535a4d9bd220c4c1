// A data parser and its record parser are called on different threads at the same time. Each
// calls the other, and no thread may wait for ever. In these tests the thread sanitizer sees
// the order of the locks.

#include <atomic>
#include <functional>
#include <thread>

#include "src/parsing/DataTypes.h"
#include "tests/data/CloneOf.h"
#include "tests/data/RealFileFixture.h"

using namespace Hesperon::specifics;
using namespace IQRL_TabulexConverter;

namespace {

constexpr int kRounds = 60;
constexpr LONG kComma = 4, kCommaAndTab = 36;

class LockOrderTest : public RealFileFixture
{
protected:
    static com_ptr<IRecordParser> RecordsOf(CDataParser& p)
    {
        com_ptr<IDispatch> pObject;
        EXPECT_EQ(p.get_RecordParser(pObject.put()), S_OK);
        return pObject.as<IRecordParser>();
    }

    // All operations of a record parser that call the data parser. Odd and even numbers set
    // different values, so that each call changes something.
    static void ChangeSettings(IRecordParser& records, int i)
    {
        const bool bOdd = i % 2 != 0;
        records.put_Resolution(bOdd ? ResolutionDays : ResolutionMinutes);
        records.put_UseBarsEndTime(bOdd ? VARIANT_TRUE : VARIANT_FALSE);
        records.put_FieldDividers(bOdd ? kComma : kCommaAndTab);
        LONG nDividers = 0;
        records.get_FieldDividers(&nDividers);
        records.SetFieldName(1, Bstr(bOdd ? OLESTR("Open") : OLESTR("High")).get());
        records.SetFieldTemplate(Bstr(bOdd ? OLESTR("*y-*m-*d") : OLESTR("*y-*d-*m")).get(), 0);
        records.put_LinesToSkip(bOdd ? 1 : 0);
        ULONG nLines = 0;
        records.get_LinesToSkip(&nLines);
        records.FindResolution(Bstr(OLESTR("2000-01-01,1.5,2.5,0.5,1.5,100")).get());
        records.RecreateFealds();
        records.Reset();
        records.Parse(Bstr(OLESTR("2000-01-01,1.5,2.5,0.5,1.5,100")).get());
    }
    static void ReadRecords(CDataParser& p)
    {
        Variant block, dates[2];
        p.ParseRecords(block.put(), 0, 20);
        p.GetMinDateTime(dates[0].put());
        p.GetMaxDateTime(dates[1].put());
        p.RefreshDateInfo(VARIANT_TRUE);
        ULONG nFields = 0;
        p.get_FieldCount(&nFields);
    }

    // Runs the tasks on threads of their own at the same time, several times each.
    static void Together(const std::vector<std::function<void(int)>>& tasks)
    {
        std::vector<std::thread> threads;
        threads.reserve(tasks.size());
        for (const auto& task : tasks)
            threads.emplace_back([&task] {
                for (int i = 0; i < kRounds; ++i)
                    task(i);
            });
        for (std::thread& t : threads)
            t.join();
    }
};

TEST_F(LockOrderTest, SettingsChangeWhileRecordsAreRead)
{
    const TempFile first(Daily(200)), second(Daily(150, true));
    ASSERT_EQ(Open(*parser.get(), first), S_OK);
    const auto records = RecordsOf(*parser.get());
    Together({
        [&](int i) { ChangeSettings(*records.get(), i); },
        [&](int) { ReadRecords(*parser.get()); },
        [&](int i) { Open(*parser.get(), i % 2 ? first : second); },
    });
    // Both still work.
    ASSERT_EQ(Open(*parser.get(), TempFile("")), S_OK);
    ASSERT_EQ(Open(*parser.get(), first), S_OK);
    EXPECT_EQ(Start(*parser.get()), kFirstDay);
    ULONG nFields = 0;
    EXPECT_EQ(records->get_FieldCount(&nFields), S_OK);
    EXPECT_EQ(nFields, 6u);
}

// The record parser of a copy detects its layout through the data parser that it was
// copied from.
TEST_F(LockOrderTest, SettingsOfACopyChangeWhileItsSourceIsRead)
{
    const TempFile file(Daily(200));
    ASSERT_EQ(Open(*parser.get(), file), S_OK);
    const auto copy = CloneOf(*parser.get());
    const auto records = RecordsOf(*parser.get());
    const auto recordsOfCopy = RecordsOf(*copy.get());
    Together({
        [&](int i) { ChangeSettings(*recordsOfCopy.get(), i); },
        [&](int i) { ChangeSettings(*records.get(), i); },
        [&](int) { ReadRecords(*copy.get()); },
        [&](int) { ReadRecords(*parser.get()); },
        [&](int) { CloneOf(*parser.get()); },
    });
}

TEST_F(LockOrderTest, SettingsChangeWhileACopyConverts)
{
    const TempFile file(Daily(1200));
    ASSERT_EQ(Open(*parser.get(), file), S_OK);
    std::atomic<bool> bStop = false;
    std::thread editor([&] {
        const auto records = RecordsOf(*parser.get());
        for (int i = 0; !bStop; ++i)
            ChangeSettings(*records.get(), i);
    });
    for (int i = 0; i < 10; ++i) {
        ASSERT_EQ(CreateObject(sink), S_OK);
        const auto copy = CloneOf(*parser.get());
        ASSERT_TRUE(Convert(*copy.get(), ULONG_PTR(i) + 1));
    }
    bStop = true;
    editor.join();
}

// A record parser without a layout finds it in the middle of a batch, and calls the data parser.
TEST_F(LockOrderTest, ABatchMayFindTheLayout)
{
    const TempFile file(Daily(1200));
    ASSERT_EQ(Open(*parser.get(), file), S_OK);
    const auto copy = CloneOf(*parser.get());
    RecordsOf(*copy.get())->Reset();
    std::atomic<bool> bStop = false;
    std::thread editor([&] {
        const auto records = RecordsOf(*copy.get());
        while (!bStop)
            records->put_UseBarsEndTime(VARIANT_FALSE);
    });
    EXPECT_TRUE(Convert(*copy.get()));
    bStop = true;
    editor.join();
}

// The link to the data parser isn't counted, and is cut when that goes.
TEST_F(LockOrderTest, SettingsChangeWhileTheDataParserGoes)
{
    const TempFile file(Daily(100));
    for (int i = 0; i < kRounds; ++i) {
        ASSERT_EQ(Open(*parser.get(), file), S_OK);
        const auto records = RecordsOf(*parser.get());
        std::atomic<int> nChanges = 0;
        std::atomic<bool> bStop = false;
        std::thread editor([&] {
            while (!bStop) {
                ChangeSettings(*records.get(), nChanges);
                ++nChanges;
            }
        });
        while (nChanges < 2)
            std::this_thread::yield();
        parser.reset();
        for (const int nGone = nChanges; nChanges < nGone + 2;)
            std::this_thread::yield();
        bStop = true;
        editor.join();
        // The file's worker may have the last reference for a moment.
        const auto deadline = std::chrono::steady_clock::now() + kPatience;
        while (records->put_FieldDividers(kComma) != E_UNEXPECTED) {
            ASSERT_LT(std::chrono::steady_clock::now(), deadline);
            std::this_thread::yield();
        }
        ASSERT_EQ(CreateObject(parser), S_OK);
    }
}

} // namespace
