// Objects that hear of a file's count from a data parser, which may be data parsers themselves.

#include "tests/data/DataParserFixture.h"

using namespace Hesperon::specifics;
using namespace IQRL_TabulexConverter;

namespace {

class CountingListener : public ComObject<CountingListener, Dual<IFileHandlerEvents>>
{
public:
    std::vector<std::pair<ULONGLONG, bool>> heard;

    HRESULT STDMETHODCALLTYPE RecordCountChange(ULONGLONG n, VARIANT_BOOL bComplete) override
    {
        heard.emplace_back(n, bComplete != VARIANT_FALSE);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE PutData(VARIANT, ULONGLONG, ULONGLONG) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE ProcessRecord(ULONGLONG, BSTR, VARIANT_BOOL) override { return S_OK; }
};

class ListenersTest : public DataParserFixture
{
protected:
    static com_ptr<CountingListener> ListenerOf(CDataParser& p)
    {
        com_ptr<CountingListener> listener;
        EXPECT_EQ(CreateObject(listener), S_OK);
        EXPECT_EQ(p.AddFileEventHandler(listener.get()), S_OK);
        return listener;
    }
    // A parser holds a reference to each listener, so a ring of them has to be opened.
    static void Part(CDataParser& teller, IDispatch* pListener)
    {
        EXPECT_EQ(teller.RemoveFileEventHandler(pListener), S_OK);
    }
    static IDispatch* AsListener(CDataParser& p) { return static_cast<IDataParser*>(&p); }
};

TEST_F(ListenersTest, AParserThatListensToItselfIsCalledOnce)
{
    const auto listener = ListenerOf(*parser.get());
    ASSERT_EQ(parser->AddFileEventHandler(AsListener(*parser.get())), S_OK);
    EXPECT_EQ(parser->RecordCountChange(5, VARIANT_TRUE), S_OK);
    // By the file, and by the parser as its own listener.
    EXPECT_EQ(listener->heard, (std::vector<std::pair<ULONGLONG, bool>>(2, {5, true})));
    Part(*parser.get(), AsListener(*parser.get()));
}

TEST_F(ListenersTest, ParsersThatListenToEachOtherAreCalledOnceEach)
{
    com_ptr<CDataParser> other;
    ASSERT_EQ(CreateObject(other), S_OK);
    const auto first = ListenerOf(*parser.get()), second = ListenerOf(*other.get());
    ASSERT_EQ(parser->AddFileEventHandler(AsListener(*other.get())), S_OK);
    ASSERT_EQ(other->AddFileEventHandler(AsListener(*parser.get())), S_OK);
    EXPECT_EQ(parser->RecordCountChange(5, VARIANT_FALSE), S_OK);
    EXPECT_EQ(first->heard.size(), 2u); // by the file, and on its way back from the other
    EXPECT_EQ(second->heard.size(), 1u);
    // The guard is gone after the call.
    EXPECT_EQ(other->RecordCountChange(6, VARIANT_TRUE), S_OK);
    EXPECT_EQ(first->heard.size(), 3u);
    EXPECT_EQ(second->heard.size(), 3u);
    Part(*parser.get(), AsListener(*other.get()));
    Part(*other.get(), AsListener(*parser.get()));
}

} // namespace
