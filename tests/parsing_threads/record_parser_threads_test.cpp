// One record parser on several threads.

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "tests/parsing/Layout.h"

using namespace Hesperon::specifics;

namespace {

constexpr int kRounds = 300;

// A record on one thread must not show through in another's, whatever the order.
TEST(RecordParserThreads, ParseAndReadAtTheSameTime)
{
    ParsedFile file({OLESTR("20030106,09:30,1.5"), OLESTR("20030107,09:31,2.5")});
    ASSERT_EQ(S_OK, file.Load());
    ASSERT_EQ("Date yyyymmdd, Time *h:mm, Open", file.Columns());
    ASSERT_EQ(S_OK, file.Parse(file.File().m_lines[0]));

    std::atomic<bool> bStop = false;
    const auto parse = [&](string_t sRecord) {
        for (int i = 0; i < kRounds; ++i)
            EXPECT_EQ(S_OK, file.Parse(sRecord));
    };
    std::set<std::string> stamps, prices;
    const auto read = [&] {
        while (!bStop) {
            Variant stamp;
            EXPECT_EQ(S_OK, file->get_CurrentDateTime(&stamp));
            stamps.insert(ShownVariant(stamp));
            prices.insert(file.Value(2));
        }
    };
    std::thread reader(read);
    std::thread first(parse, file.File().m_lines[0]);
    std::thread second(parse, file.File().m_lines[1]);
    first.join();
    second.join();
    bStop = true;
    reader.join();

    for (const std::string& s : stamps)
        EXPECT_TRUE(s == "2003-01-06 09:30:00" || s == "2003-01-07 09:31:00") << s;
    for (const std::string& s : prices)
        EXPECT_TRUE(s == "1.5" || s == "2.5") << s;
}

TEST(RecordParserThreads, ChangeTheLayoutWhileRecordsAreParsed)
{
    ParsedFile file({OLESTR("20030106,09:30,1.5"), OLESTR("20030107,09:31,2.5")});
    ASSERT_EQ(S_OK, file.Load());
    std::thread parser([&] {
        for (int i = 0; i < kRounds; ++i) {
            EXPECT_EQ(S_OK, file.Parse(OLESTR("20030106,09:30,1.5")));
            Bstr text;
            file->GetFieldError(text.put(), 2);
        }
    });
    std::thread editor([&] {
        for (int i = 0; i < kRounds; ++i) {
            file->SetFieldType(2, i % 2 ? TypeOpen : TypeVolume);
            LONG nDividers = 0;
            file->get_FieldDividers(&nDividers);
            if (i % 50 == 0) {
                EXPECT_EQ(S_OK, file->RecreateFealds());
            }
            com_ptr<IDispatch> clone;
            EXPECT_EQ(S_OK, file->Clone(clone.put()));
        }
    });
    parser.join();
    editor.join();
    ULONG nCount = 0;
    EXPECT_EQ(S_OK, file->get_FieldCount(&nCount));
    EXPECT_EQ(3u, nCount);
}

} // namespace
