#include "src/files/FileRequests.h"

#include "tests/files/Consumers.h"

using namespace Hesperon::specifics;
using namespace files_test;

namespace {

using Kind = PendingRequest::Kind;

std::vector<Kind> Kinds(const FileRequests::List& list)
{
    std::vector<Kind> kinds;
    for (const PendingRequest& request : list)
        kinds.push_back(request.kind);
    return kinds;
}

// Consumers are counted: 1 is the test's own reference.
ULONG RefsOf(const com_ptr<Consumer>& consumer)
{
    consumer->AddRef();
    return consumer->Release();
}

TEST(FileRequests, CollectKeepsCountEventsWhileCountingGoesOn)
{
    struct Row
    {
        bool bKeepCounting;
        std::size_t nLeft;
    };
    for (const Row& row : {Row{true, 2}, Row{false, 0}}) {
        SCOPED_TRACE(row.bKeepCounting);
        const auto consumer = Make<Consumer>();
        FileRequests requests;
        for (const Kind kind :
             {Kind::CountEvents, Kind::FirstRecord, Kind::CountEvents, Kind::Conversion})
            requests.Add(1, kind, AsUnknown(consumer));
        FileRequests::List list;
        requests.Collect(row.bKeepCounting, list);
        EXPECT_EQ(Kinds(list), (std::vector{Kind::CountEvents, Kind::FirstRecord, Kind::CountEvents,
                                            Kind::Conversion}));
        EXPECT_EQ(requests.IsEmpty(), row.nLeft == 0);
        list.clear();
        EXPECT_EQ(RefsOf(consumer), 1 + row.nLeft);
        EXPECT_EQ(requests.TakeAll().size(), row.nLeft);
        EXPECT_EQ(RefsOf(consumer), 1u);
    }
}

TEST(FileRequests, TakeTouchesOneOwnerOnly)
{
    const auto consumer = Make<Consumer>();
    FileRequests requests;
    EXPECT_TRUE(requests.IsEmpty());
    requests.Add(1, Kind::CountEvents, AsUnknown(consumer));
    requests.Add(2, Kind::Conversion, AsUnknown(consumer));
    requests.Add(1, Kind::FirstRecord, AsUnknown(consumer));
    EXPECT_TRUE(requests.Take(3).empty());
    EXPECT_EQ(Kinds(requests.Take(1)), (std::vector{Kind::CountEvents, Kind::FirstRecord}));
    EXPECT_TRUE(requests.Take(1).empty());
    EXPECT_FALSE(requests.IsEmpty());
    EXPECT_EQ(Kinds(requests.TakeAll()), std::vector{Kind::Conversion});
    EXPECT_TRUE(requests.IsEmpty());
}

} // namespace
