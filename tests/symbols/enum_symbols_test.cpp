// Enumerations of files on disk, on the real thread.

#include <chrono>
#include <filesystem>
#include <random>
#include <set>
#include <thread>

#include "src/data/SymbolEnumeratorHost.h"
#include "src/files/AsyncTransactionPool.h"
#include "tests/data/RealFileFixture.h"
#include "tests/support/Seed.h"
#include "tests/symbols/SymbolSink.h"

using namespace Hesperon::specifics;
using namespace IQRL_TabulexConverter;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class EnumSymbolsTest : public RealFileFixture
{
protected:
    static constexpr ULONG_PTR kTransaction = 700;

    void SetUp() override
    {
        SymbolEnumeratorHost::AddConvertor();
        RealFileFixture::SetUp();
        receiver = NewReceiver();
    }
    void TearDown() override
    {
        SymbolEnumeratorHost::ReleaseConvertor();
        parser.reset();
    }

    static com_ptr<SymbolSink> NewReceiver()
    {
        com_ptr<SymbolSink> result;
        EXPECT_EQ(CreateObject(result), S_OK);
        return result;
    }

    // Daily bars from 2000-01-01 on, one of each symbol in turn.
    static std::string Bars(const std::vector<std::string>& symbols)
    {
        using namespace std::chrono;
        std::string text;
        sys_days day(year(2000) / 1 / 1);
        for (const std::string& sSymbol : symbols) {
            const year_month_day date(day);
            char line[80];
            std::snprintf(line, sizeof line, "%s,%04d-%02u-%02u,10.5,10.75,10.25,10.5,100\n",
                          sSymbol.c_str(), int(date.year()), unsigned(date.month()),
                          unsigned(date.day()));
            text += line;
            day += days(1);
        }
        return text;
    }

    HRESULT Enumerate(SymbolSink& to, ULONG_PTR nTransaction = kTransaction)
    {
        return parser->StartEnumSymbols(&to, nTransaction);
    }
    void ExpectSymbols(const std::string& text, const std::vector<std::string>& expected)
    {
        const TempFile file(text);
        ASSERT_EQ(Open(*parser.get(), file), S_OK);
        ASSERT_EQ(Enumerate(*receiver.get()), S_OK);
        ASSERT_TRUE(receiver->ended.Wait(kPatience));
        EXPECT_EQ(receiver->symbols, expected);
        EXPECT_THAT(receiver->ends, ElementsAre(true));
        EXPECT_THAT(receiver->faults, IsEmpty());
    }

    // Whether the pool knows the number. Cancels what has it.
    static bool Cancel(ULONG_PTR nTransaction = kTransaction)
    {
        return AsyncTransactionPool::CancelTransaction(nTransaction);
    }
    // A walk holds its receiver until its end.
    static void AwaitLetGo(SymbolSink& sink)
    {
        const auto tLast = std::chrono::steady_clock::now() + kPatience;
        const auto isHeld = [&sink] {
            sink.AddRef();
            return sink.Release() > 1;
        };
        while (isHeld() && std::chrono::steady_clock::now() < tLast)
            std::this_thread::yield();
        EXPECT_FALSE(isHeld());
    }

    static void AwaitForgotten(ULONG_PTR nTransaction)
    {
        const auto deadline = std::chrono::steady_clock::now() + kPatience;
        while (Cancel(nTransaction)) {
            ASSERT_LT(std::chrono::steady_clock::now(), deadline);
            std::this_thread::yield();
        }
    }

    com_ptr<SymbolSink> receiver;
};

// A receiver that doesn't return from its first symbol until the test lets it.
struct Held
{
    Event inside{Event::Kind::ManualReset};
    Event go{Event::Kind::ManualReset};

    explicit Held(SymbolSink& sink)
    {
        sink.onSymbol = [this](const std::string&) {
            inside.Set();
            go.Wait();
            return S_OK;
        };
    }
};

// ---- what is reported

TEST_F(EnumSymbolsTest, EachSymbolIsGivenOnceInOrderOfAppearance)
{
    ExpectSymbols(Bars({"MSFT", "IBM", "MSFT", "AAPL", "IBM", "AAPL", "MSFT", "GE"}),
                  {"MSFT", "IBM", "AAPL", "GE"});
}

TEST_F(EnumSymbolsTest, AFileWithOneSymbolGivesIt)
{
    ExpectSymbols(Bars(std::vector<std::string>(2500, "MSFT")), {"MSFT"});
}

TEST_F(EnumSymbolsTest, HeaderLinesAreNotWalked)
{
    ExpectSymbols("Symbol,Date,Open,High,Low,Close,Volume\n" + Bars({"MSFT", "IBM", "IBM"}),
                  {"MSFT", "IBM"});
}

// Splitting a line skips empty fields, so only a line without any text has no symbol.
TEST_F(EnumSymbolsTest, RecordsWithoutASymbolAreSkipped)
{
    std::vector<std::string> symbols(400, "MSFT");
    symbols.back() = "IBM";
    std::string text = Bars(symbols);
    const std::string sLine = "MSFT,2000-11-08"; // after the lines that detection looks at
    const std::size_t nAt = text.find(sLine);
    ASSERT_NE(nAt, text.npos);
    text.insert(nAt, ",,,,,,\n");
    ExpectSymbols(text, {"MSFT", "IBM"});
}

TEST_F(EnumSymbolsTest, InvertedFileIsWalkedFromItsLastLine)
{
    // The line with the earliest date comes last.
    std::string text;
    const std::string sAscending = Bars({"MSFT", "IBM", "IBM", "GE"});
    for (std::size_t nFrom = 0; nFrom < sAscending.size();) {
        const std::size_t nTo = sAscending.find('\n', nFrom) + 1;
        text.insert(0, sAscending.substr(nFrom, nTo - nFrom));
        nFrom = nTo;
    }
    ExpectSymbols(text, {"MSFT", "IBM", "GE"});
    EXPECT_TRUE(Inverted(*parser.get()));
}

// The walk goes on to the first line of the file, even if that is a header.
TEST_F(EnumSymbolsTest, InvertedFileGivesItsHeaderAtTheEnd)
{
    ExpectSymbols("Symbol,Date,Open,High,Low,Close,Volume\n"
                  "GE,2000-01-03,10.5,10.75,10.25,10.5,100\n"
                  "IBM,2000-01-02,10.5,10.75,10.25,10.5,100\n"
                  "MSFT,2000-01-01,10.5,10.75,10.25,10.5,100\n",
                  {"MSFT", "IBM", "GE", "Symbol"});
    EXPECT_TRUE(Inverted(*parser.get()));
}

TEST_F(EnumSymbolsTest, AFileWithoutSymbolsEndsInFailure)
{
    const TempFile file(Daily(100));
    ASSERT_EQ(Open(*parser.get(), file), S_OK);
    ASSERT_EQ(Enumerate(*receiver.get()), S_OK);
    ASSERT_TRUE(receiver->ended.Wait(kPatience));
    EXPECT_THAT(receiver->symbols, IsEmpty());
    EXPECT_THAT(receiver->ends, ElementsAre(false));
}

TEST_F(EnumSymbolsTest, AFileThatIsGoneHasNoSymbols)
{
    const TempFile first(Bars({"MSFT", "IBM"}));
    ASSERT_EQ(Open(*parser.get(), first), S_OK);
    Held held(*receiver.get());
    ASSERT_EQ(Enumerate(*receiver.get(), 1), S_OK);
    ASSERT_TRUE(held.inside.Wait(kPatience));
    const auto second = NewReceiver();
    std::filesystem::path path;
    {
        const TempFile file(Bars({"GE", "IBM"}));
        path = file.Name();
        ASSERT_EQ(Open(*parser.get(), file), S_OK);
        ASSERT_EQ(Enumerate(*second.get(), 2), S_OK);
        parser.reset();
    }
    // A file that is removed may stay until its worker has closed it.
    for (int i = 0; i < 2000 && std::filesystem::exists(path); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    ASSERT_FALSE(std::filesystem::exists(path));
    held.go.Set();
    ASSERT_TRUE(second->ended.Wait(kPatience));
    EXPECT_THAT(second->symbols, IsEmpty());
    EXPECT_THAT(second->ends, ElementsAre(true));
    EXPECT_THAT(receiver->symbols, ElementsAre("MSFT", "IBM"));
}

TEST_F(EnumSymbolsTest, RandomSymbolsAreThoseOfAPlainWalk)
{
    std::mt19937 random(Seed());
    std::vector<std::string> symbols, expected;
    std::set<std::string> seen;
    for (int i = 0; i < 5000; ++i) {
        symbols.push_back("S" + std::to_string(random() % 900));
        if (seen.insert(symbols.back()).second)
            expected.push_back(symbols.back());
    }
    ExpectSymbols(Bars(symbols), expected);
}

// ---- the receiver's answers

TEST_F(EnumSymbolsTest, TheReceiverEndsTheWalk)
{
    const TempFile file(Bars({"MSFT", "IBM", "GE"}));
    ASSERT_EQ(Open(*parser.get(), file), S_OK);
    for (const auto& [hr, bWell] : {std::pair(S_FALSE, true), {E_FAIL, false}}) {
        SCOPED_TRACE(hr);
        receiver = NewReceiver();
        receiver->onSymbol = [hr = hr](const std::string& s) { return s == "IBM" ? hr : S_OK; };
        ASSERT_EQ(Enumerate(*receiver.get()), S_OK);
        ASSERT_TRUE(receiver->ended.Wait(kPatience));
        EXPECT_THAT(receiver->symbols, ElementsAre("MSFT", "IBM"));
        EXPECT_THAT(receiver->ends, ElementsAre(bWell));
        AwaitForgotten(kTransaction);
    }
}

TEST_F(EnumSymbolsTest, ASecondEnumerationIsServedAfterTheFirst)
{
    const TempFile file(Bars({"MSFT", "IBM", "GE"}));
    ASSERT_EQ(Open(*parser.get(), file), S_OK);
    std::vector<std::string> log;
    Event inside(Event::Kind::ManualReset), go(Event::Kind::ManualReset);
    const auto second = NewReceiver();
    receiver->onSymbol = [&](const std::string& s) {
        inside.Set();
        go.Wait();
        log.push_back("1 " + s);
        return S_OK;
    };
    second->onSymbol = [&](const std::string& s) {
        log.push_back("2 " + s);
        return S_OK;
    };
    ASSERT_EQ(Enumerate(*receiver.get(), 1), S_OK);
    ASSERT_TRUE(inside.Wait(kPatience));
    ASSERT_EQ(Enumerate(*second.get(), 2), S_OK);
    go.Set();
    ASSERT_TRUE(second->ended.Wait(kPatience));
    EXPECT_THAT(log, ElementsAre("1 MSFT", "1 IBM", "1 GE", "2 MSFT", "2 IBM", "2 GE"));
}

// ---- cancelling

TEST_F(EnumSymbolsTest, CancelledWalkSaysNothingMore)
{
    const TempFile file(Bars({"MSFT", "IBM", "GE"}));
    ASSERT_EQ(Open(*parser.get(), file), S_OK);
    Held held(*receiver.get());
    ASSERT_EQ(Enumerate(*receiver.get()), S_OK);
    ASSERT_TRUE(held.inside.Wait(kPatience));
    EXPECT_TRUE(Cancel());
    held.go.Set();
    AwaitLetGo(*receiver.get());
    EXPECT_THAT(receiver->symbols, ElementsAre("MSFT"));
    EXPECT_THAT(receiver->ends, IsEmpty());
}

TEST_F(EnumSymbolsTest, CancelledWalkThatWaitsIsNeverBegun)
{
    const TempFile file(Bars({"MSFT", "IBM", "GE"}));
    ASSERT_EQ(Open(*parser.get(), file), S_OK);
    Held held(*receiver.get());
    ASSERT_EQ(Enumerate(*receiver.get(), 1), S_OK);
    ASSERT_TRUE(held.inside.Wait(kPatience));
    const auto second = NewReceiver();
    ASSERT_EQ(Enumerate(*second.get(), 2), S_OK);
    EXPECT_TRUE(Cancel(2));
    held.go.Set();
    AwaitLetGo(*receiver.get());
    AwaitLetGo(*second.get());
    EXPECT_THAT(second->symbols, IsEmpty());
    EXPECT_THAT(second->ends, IsEmpty());
    EXPECT_THAT(receiver->ends, ElementsAre(true));
}

// A walk whose number is taken runs all the same. Its end leaves the other's entry alone.
TEST_F(EnumSymbolsTest, ATakenNumberStaysWithTheFirst)
{
    struct Bystander : ComObject<Bystander, IAsyncTransaction>
    {
        std::atomic<int> nCancels = 0;
        HRESULT STDMETHODCALLTYPE Cancel() override
        {
            ++nCancels;
            return S_OK;
        }
    };
    constexpr ULONG_PTR kLast = ~ULONG_PTR(0); // the last one of the pool
    com_ptr<Bystander> bystander;
    ASSERT_EQ(CreateObject(bystander), S_OK);
    ASSERT_EQ(AsyncTransactionPool::RegisterTransaction(kLast, bystander.get()), kLast);

    const TempFile file(Bars({"MSFT", "IBM", "GE"}));
    ASSERT_EQ(Open(*parser.get(), file), S_OK);
    Held held(*receiver.get());
    ASSERT_EQ(Enumerate(*receiver.get()), S_OK);
    ASSERT_TRUE(held.inside.Wait(kPatience));
    const auto second = NewReceiver();
    ASSERT_EQ(Enumerate(*second.get()), S_OK);
    EXPECT_TRUE(Cancel());
    held.go.Set();
    ASSERT_TRUE(second->ended.Wait(kPatience));
    EXPECT_THAT(receiver->ends, IsEmpty());
    EXPECT_THAT(second->ends, ElementsAre(true));
    AwaitForgotten(kTransaction);
    EXPECT_EQ(bystander->nCancels, 0);
    EXPECT_TRUE(Cancel(kLast));
    EXPECT_EQ(bystander->nCancels, 1);
    AsyncTransactionPool::UnregisterTransaction(bystander.get());
}

// ---- the source

TEST_F(EnumSymbolsTest, TheSourceIsLeftAsItWas)
{
    const TempFile file(Bars({"MSFT", "IBM", "GE", "MSFT"}));
    ASSERT_EQ(Open(*parser.get(), file), S_OK);
    ASSERT_EQ(parser->put_Position(2), S_OK);
    com_ptr<IDispatch> pBefore;
    ASSERT_EQ(parser->get_RecordParser(pBefore.put()), S_OK);
    const std::pair range(Start(*parser.get()), End(*parser.get()));

    ASSERT_EQ(Enumerate(*receiver.get()), S_OK);
    ASSERT_TRUE(receiver->ended.Wait(kPatience));

    ULONGLONG nPosition = 0;
    EXPECT_EQ(parser->get_Position(&nPosition), S_OK);
    EXPECT_EQ(nPosition, 2u);
    Bstr sName;
    EXPECT_EQ(parser->get_FileName(sName.put()), S_OK);
    EXPECT_EQ(sName.view(), file.Name());
    com_ptr<IDispatch> pAfter, pLinked;
    ASSERT_EQ(parser->get_RecordParser(pAfter.put()), S_OK);
    EXPECT_TRUE(pBefore == pAfter);
    const auto pRecordParser = pAfter.as<IRecordParser>();
    EXPECT_EQ(pRecordParser->get_DataParser(pLinked.put()), S_OK);
    EXPECT_TRUE(pLinked.as<IDataParser>().get() ==
                static_cast<IDataParser*>(static_cast<Dual<IDataParser>*>(parser.get())));
    EXPECT_EQ(std::pair(Start(*parser.get()), End(*parser.get())), range);
    EXPECT_TRUE(Convert(*parser.get()));
    EXPECT_EQ(sink->AllRows().size(), 4u);
}

TEST_F(EnumSymbolsTest, TheWalkOutlivesItsSource)
{
    const TempFile file(Bars({"MSFT", "IBM", "GE"}));
    ASSERT_EQ(Open(*parser.get(), file), S_OK);
    ASSERT_EQ(Enumerate(*receiver.get()), S_OK);
    parser.reset();
    ASSERT_TRUE(receiver->ended.Wait(kPatience));
    EXPECT_THAT(receiver->symbols, ElementsAre("MSFT", "IBM", "GE"));
    EXPECT_THAT(receiver->ends, ElementsAre(true));
}

TEST_F(EnumSymbolsTest, RefusesWhatItCannotStart)
{
    // Without a file the other arguments aren't looked at.
    EXPECT_EQ(parser->StartEnumSymbols(nullptr, 1), E_UNEXPECTED);
    const TempFile file(Bars({"MSFT", "IBM", "GE"}));
    ASSERT_EQ(Open(*parser.get(), file), S_OK);
    EXPECT_EQ(parser->StartEnumSymbols(nullptr, 1), E_POINTER);
    com_ptr<IDispatch> pOther;
    ASSERT_EQ(parser->get_RecordParser(pOther.put()), S_OK);
    EXPECT_EQ(parser->StartEnumSymbols(pOther.get(), 1), E_NOINTERFACE);
    EXPECT_FALSE(Cancel(1));
}

TEST_F(EnumSymbolsTest, LastFrontObjectCutsTheWalkOffWithoutAWord)
{
    const TempFile file(Bars({"MSFT", "IBM", "GE"}));
    ASSERT_EQ(Open(*parser.get(), file), S_OK);
    Event inside(Event::Kind::ManualReset);
    receiver->onSymbol = [&](const std::string&) {
        inside.Set();
        // Until the thread is being ended.
        const auto probe = NewReceiver();
        while (parser->StartEnumSymbols(probe.get(), kTransaction + 1) != S_FALSE)
            continue;
        return S_OK;
    };
    ASSERT_EQ(Enumerate(*receiver.get()), S_OK);
    ASSERT_TRUE(inside.Wait(kPatience));
    SymbolEnumeratorHost::ReleaseConvertor();
    EXPECT_THAT(receiver->symbols, ElementsAre("MSFT"));
    EXPECT_THAT(receiver->ends, IsEmpty());
    EXPECT_EQ(RefsOf(receiver.get()), 1u);
    EXPECT_FALSE(Cancel());
    SymbolEnumeratorHost::AddConvertor();

    receiver = NewReceiver();
    ASSERT_EQ(Enumerate(*receiver.get()), S_OK);
    ASSERT_TRUE(receiver->ended.Wait(kPatience));
    EXPECT_THAT(receiver->symbols, ElementsAre("MSFT", "IBM", "GE"));
}

} // namespace
