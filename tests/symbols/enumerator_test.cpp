// The steps of an enumeration, over a data parser whose answers a test gives.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <thread>

#include "interfaces/ClassIds.h"
#include "src/data/SymbolEnumerator.h"
#include "src/data/UnofferedRecordParser.h"
#include "src/files/AsyncTransactionPool.h"
#include "src/files/Proxies.h"
#include "tests/support/UnusedDataParser.h"
#include "tests/symbols/SymbolSink.h"

using namespace Hesperon::specifics;
using namespace IQRL_TabulexConverter;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// The calls that a walk makes, in their order, and the results that they have.
struct Script
{
    std::vector<std::string> calls;
    std::map<std::string, HRESULT> results; // by the call's first word; S_OK where absent
    std::vector<std::string> symbols;       // of the records by position
    ULONGLONG nPosition = 0;
    VARIANT_BOOL bInverted = VARIANT_FALSE;

    HRESULT Note(const std::string& sCall)
    {
        calls.push_back(sCall);
        const auto it = results.find(sCall.substr(0, sCall.find(' ')));
        return it == results.end() ? S_OK : it->second;
    }
};

// The whole record is the symbol.
class ScriptedRecordParser : public UnofferedRecordParser<ScriptedRecordParser>
{
public:
    Script* pScript = nullptr;

    HRESULT STDMETHODCALLTYPE GetFieldText(BSTR bsRecord, ULONG nField, BSTR* bsField) override
    {
        const HRESULT hr =
            pScript->Note("GetFieldText " + Utf8(TextOf(bsRecord)) + " " + std::to_string(nField));
        if (SUCCEEDED(hr))
            *bsField = NewBstr(TextOf(bsRecord));
        return hr;
    }
};

class ScriptedParser : public UnusedDataParser<ScriptedParser>
{
public:
    Script* pScript = nullptr;
    com_ptr<IDispatch> pRecordParser;

    static com_ptr<ScriptedParser> Of(Script& script)
    {
        com_ptr<ScriptedParser> parser;
        com_ptr<ScriptedRecordParser> records;
        EXPECT_EQ(CreateObject(parser), S_OK);
        EXPECT_EQ(CreateObject(records), S_OK);
        records->pScript = parser->pScript = &script;
        parser->pRecordParser = records.get();
        return parser;
    }

    HRESULT STDMETHODCALLTYPE Clone(IDispatch** newObj) override
    {
        *newObj = Of(*pScript).detach();
        return pScript->Note("Clone");
    }
    HRESULT STDMETHODCALLTYPE get_FileName(BSTR* pVal) override
    {
        *pVal = NewBstr(OLESTR("q.csv"));
        return pScript->Note("get_FileName");
    }
    HRESULT STDMETHODCALLTYPE get_HasHeader(VARIANT_BOOL* pVal) override
    {
        *pVal = VARIANT_TRUE;
        return pScript->Note("get_HasHeader");
    }
    HRESULT STDMETHODCALLTYPE get_HeaderOffset(ULONG* pVal) override
    {
        *pVal = 3;
        return pScript->Note("get_HeaderOffset");
    }
    HRESULT STDMETHODCALLTYPE get_InvertedDirection(VARIANT_BOOL* pVal) override
    {
        *pVal = pScript->bInverted;
        return pScript->Note("get_InvertedDirection");
    }
    HRESULT STDMETHODCALLTYPE get_RecordParser(IDispatch** pVal) override
    {
        *pVal = com_ptr<IDispatch>(pRecordParser).detach();
        return pScript->Note("get_RecordParser");
    }
    HRESULT STDMETHODCALLTYPE put_RecordParser(IDispatch* newVal) override
    {
        com_ptr<IRecordParser> pNew;
        const bool bFake = SUCCEEDED(query(newVal, pNew)) && pNew->Parse(nullptr) == S_OK &&
                           pNew->IsHeader(nullptr) == E_NOTIMPL;
        pRecordParser = newVal;
        return pScript->Note(bFake ? "put_RecordParser fake" : "put_RecordParser");
    }
    HRESULT STDMETHODCALLTYPE put_FileName(BSTR newVal) override
    {
        return pScript->Note("put_FileName '" + Utf8(TextOf(newVal)) + "'");
    }
    HRESULT STDMETHODCALLTYPE put_HasHeader(VARIANT_BOOL newVal) override
    {
        return pScript->Note("put_HasHeader " + std::to_string(newVal));
    }
    HRESULT STDMETHODCALLTYPE put_HeaderOffset(ULONG newVal) override
    {
        return pScript->Note("put_HeaderOffset " + std::to_string(newVal));
    }
    HRESULT STDMETHODCALLTYPE put_InvertedDirection(VARIANT_BOOL newVal) override
    {
        return pScript->Note("put_InvertedDirection " + std::to_string(newVal));
    }
    HRESULT STDMETHODCALLTYPE put_Position(ULONGLONG newVal) override
    {
        pScript->nPosition = newVal;
        return pScript->Note("put_Position " + std::to_string(newVal));
    }
    HRESULT STDMETHODCALLTYPE get_CurrentRecord(BSTR* pVal) override
    {
        const HRESULT hr = pScript->Note("get_CurrentRecord");
        if (FAILED(hr) || pScript->nPosition >= pScript->symbols.size())
            return FAILED(hr) ? hr : E_FAIL;
        *pVal = NewBstr(Wide(pScript->symbols[pScript->nPosition]));
        return hr;
    }
};

class EnumeratorTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(CreateObject(sink), S_OK);
        ASSERT_EQ(CreateObject(enumerator), S_OK);
    }

    // An enumerator that is ready for its first step.
    void Prepare(std::vector<std::string> symbols, VARIANT_BOOL bInverted = VARIANT_FALSE)
    {
        script.symbols = std::move(symbols);
        script.bInverted = bInverted;
        ASSERT_EQ(enumerator->put_DataParser(ScriptedParser::Of(script).get()), S_OK);
        ASSERT_EQ(enumerator->put_Receiver(sink.get()), S_OK);
        ASSERT_EQ(enumerator->put_SymbolField(2), S_OK);
        script.calls.clear();
    }

    HRESULT Step(ULONGLONG nPosition)
    {
        return enumerator->ProcessRecord(nPosition, nullptr, VARIANT_TRUE);
    }
    HRESULT Run()
    {
        HRESULT hr = S_OK;
        for (ULONGLONG n = 0; hr == S_OK; ++n)
            hr = Step(n);
        return hr;
    }

    Script script;
    com_ptr<SymbolSink> sink;
    com_ptr<CSymbolEnumerator> enumerator;
};

// ---- settings

TEST_F(EnumeratorTest, TakesACopyOfTheDataParserAndDetachesItsRecordParser)
{
    const auto source = ScriptedParser::Of(script);
    ASSERT_EQ(enumerator->put_DataParser(source.get()), S_OK);
    EXPECT_THAT(script.calls,
                ElementsAre("Clone", "get_FileName", "get_HasHeader", "get_HeaderOffset",
                            "get_InvertedDirection", "get_RecordParser", "put_RecordParser fake",
                            "put_FileName ''"));
    com_ptr<IDispatch> pObject;
    EXPECT_EQ(enumerator->get_DataParser(pObject.put()), S_OK);
    EXPECT_TRUE(pObject.as<IDataParser>());
    EXPECT_FALSE(pObject.as<IDispatch>() == com_ptr<IDispatch>(source.get()));
}

// A file without a name can't be opened; here that is no failure.
TEST_F(EnumeratorTest, ASoftNoToTheEmptyNameIsExpected)
{
    script.results["put_FileName"] = S_FALSE;
    EXPECT_EQ(enumerator->put_DataParser(ScriptedParser::Of(script).get()), S_OK);
}

TEST_F(EnumeratorTest, AnyFailureOfTheCopyIsReturned)
{
    for (const char* szCall :
         {"Clone", "get_FileName", "get_HasHeader", "get_HeaderOffset", "get_InvertedDirection",
          "get_RecordParser", "put_RecordParser", "put_FileName"}) {
        script = {};
        script.results[szCall] = E_ABORT;
        EXPECT_EQ(enumerator->put_DataParser(ScriptedParser::Of(script).get()), E_ABORT) << szCall;
        EXPECT_EQ(script.calls.back().find(szCall), 0u) << script.calls.back();
    }
}

TEST_F(EnumeratorTest, PropertiesRefuseWhatTheyCannotHold)
{
    com_ptr<IDispatch> pObject(sink.get());
    const std::pair<const char*, std::pair<HRESULT, HRESULT>> rows[] = {
        {"no DataParser", {enumerator->get_DataParser(pObject.put()), E_NOINTERFACE}},
        {"DataParser, no place", {enumerator->get_DataParser(nullptr), E_POINTER}},
        {"null DataParser", {enumerator->put_DataParser(nullptr), E_POINTER}},
        {"DataParser of another kind", {enumerator->put_DataParser(sink.get()), E_NOINTERFACE}},
        {"null Receiver", {enumerator->put_Receiver(nullptr), E_POINTER}},
        {"Receiver of another kind",
         {enumerator->put_Receiver(ScriptedParser::Of(script).get()), E_NOINTERFACE}},
        {"SymbolField, no place", {enumerator->get_SymbolField(nullptr), E_POINTER}},
        {"RecordCountChange", {enumerator->RecordCountChange(1, VARIANT_TRUE), S_OK}},
        {"PutData", {enumerator->PutData(VARIANT{}, 0, 0), E_NOTIMPL}},
    };
    for (const auto& [szWhat, results] : rows)
        EXPECT_EQ(results.first, results.second) << szWhat;
    EXPECT_FALSE(pObject);
}

TEST_F(EnumeratorTest, SymbolFieldIsNoneAtFirst)
{
    ULONG nField = 0;
    EXPECT_EQ(enumerator->get_SymbolField(&nField), S_OK);
    EXPECT_EQ(nField, 0xFFFFFFFFu);
    EXPECT_EQ(enumerator->put_SymbolField(5), S_OK);
    EXPECT_EQ(enumerator->get_SymbolField(&nField), S_OK);
    EXPECT_EQ(nField, 5u);
}

TEST_F(EnumeratorTest, HostsCanCreateIt)
{
    com_ptr<ISymbolEnumerator> pCreated;
    ASSERT_EQ(
        CreateOwnInstance(CLSID_CSymbolEnumerator, iid_of<ISymbolEnumerator>, pCreated.put_void()),
        S_OK);
    EXPECT_TRUE(pCreated.as<IFileHandlerEvents>());
    EXPECT_TRUE(pCreated.as<IAsyncTransaction>());
}

// ---- steps

TEST_F(EnumeratorTest, FirstStepOpensTheFileAndPutsWhatWasKnownOfIt)
{
    Prepare({"A", "B"});
    EXPECT_EQ(Step(0), S_OK);
    EXPECT_THAT(script.calls,
                ElementsAre("put_FileName 'q.csv'", "put_HasHeader -1", "put_HeaderOffset 3",
                            "put_Position 0", "get_CurrentRecord", "GetFieldText A 2"));
    script.calls.clear();
    EXPECT_EQ(Step(1), S_OK);
    EXPECT_THAT(script.calls,
                ElementsAre("put_Position 1", "get_CurrentRecord", "GetFieldText B 2"));
}

TEST_F(EnumeratorTest, InvertedDirectionIsPutOnlyWhereItWasSet)
{
    Prepare({"A"}, VARIANT_TRUE);
    EXPECT_EQ(Step(0), S_OK);
    EXPECT_THAT(script.calls,
                ElementsAre("put_FileName 'q.csv'", "put_HasHeader -1", "put_HeaderOffset 3",
                            "put_InvertedDirection -1", "put_Position 0", "get_CurrentRecord",
                            "GetFieldText A 2"));
}

TEST_F(EnumeratorTest, EachSymbolIsGivenOnceInOrderOfAppearance)
{
    Prepare({"C", "A", "C", "", "B", "A", "B", "C"});
    EXPECT_EQ(Run(), S_FALSE);
    EXPECT_THAT(sink->symbols, ElementsAre("C", "A", "B"));
    EXPECT_THAT(sink->ends, ElementsAre(true));
    EXPECT_THAT(sink->faults, IsEmpty());
}

TEST_F(EnumeratorTest, SymbolsWithTheSameHashCountAsOne)
{
    // 33 * 'a' + 'b' is 33 * 'b' + 'A'.
    Prepare({"ab", "bA", "Ab", "ba"});
    EXPECT_EQ(Run(), S_FALSE);
    EXPECT_THAT(sink->symbols, ElementsAre("ab", "Ab", "ba"));
}

struct EndRow
{
    const char* szCall; // that has this result
    HRESULT hrCall;
    HRESULT hrStep;
    const char* szHeard;
};

TEST_F(EnumeratorTest, HowAStepEndsTheWalk)
{
    const EndRow rows[] = {
        {"put_FileName", E_ABORT, E_ABORT, "Rollback"},
        {"put_FileName", S_FALSE, S_OK, "A"},
        {"put_HasHeader", E_ABORT, E_ABORT, "Rollback"},
        {"put_HeaderOffset", E_ABORT, E_ABORT, "Rollback"},
        {"put_InvertedDirection", E_ABORT, E_ABORT, "Rollback"},
        {"put_InvertedDirection", S_FALSE, S_OK, "A"},
        {"put_Position", E_ABORT, S_FALSE, "Commit"},
        {"put_Position", S_FALSE, S_FALSE, "Commit"},
        {"get_CurrentRecord", E_ABORT, S_FALSE, "Commit"},
        {"get_CurrentRecord", S_FALSE, S_FALSE, "Commit"},
        {"GetFieldText", E_ABORT, E_ABORT, "Rollback"},
        {"GetFieldText", S_FALSE, S_OK, "A"},
        {"PutRecords", E_ABORT, E_ABORT, "A Rollback"},
        {"PutRecords", S_FALSE, S_FALSE, "A Commit"},
        {"PutRecords", HRESULT(2), HRESULT(2), "A"},
    };
    for (const EndRow& row : rows) {
        SCOPED_TRACE(std::string(row.szCall) + " gives " + std::to_string(row.hrCall));
        SetUp();
        script = {};
        Prepare({"A"}, VARIANT_TRUE);
        script.results[row.szCall] = row.hrCall;
        sink->onSymbol = [&](const std::string&) { return script.Note("PutRecords"); };
        EXPECT_EQ(Step(0), row.hrStep);
        std::string sHeard;
        for (const std::string& sSymbol : sink->symbols)
            sHeard += sSymbol;
        for (const bool bWell : sink->ends)
            sHeard += std::string(sHeard.empty() ? "" : " ") + (bWell ? "Commit" : "Rollback");
        EXPECT_EQ(sHeard, row.szHeard);
        // The receiver is released after its last call.
        EXPECT_EQ(RefsOf(sink.get()), sink->ends.empty() ? 2u : 1u);
    }
}

TEST_F(EnumeratorTest, NothingToWalkOnIsAFailure)
{
    ASSERT_EQ(enumerator->put_Receiver(sink.get()), S_OK);
    EXPECT_EQ(Step(0), E_NOINTERFACE);
    EXPECT_THAT(sink->ends, ElementsAre(false));
}

TEST_F(EnumeratorTest, AWalkThatHasEndedHasNothingToWalkOn)
{
    Prepare({"A"});
    EXPECT_EQ(Run(), S_FALSE);
    EXPECT_EQ(Step(0), E_NOINTERFACE);
    EXPECT_EQ(sink->ends.size(), 1u);
}

TEST_F(EnumeratorTest, NobodyToTellIsAFailure)
{
    ASSERT_EQ(enumerator->put_DataParser(ScriptedParser::Of(script).get()), S_OK);
    script.symbols = {"", "A"};
    EXPECT_EQ(Step(0), S_OK);
    EXPECT_EQ(Step(1), E_NOINTERFACE);
}

// The pool's lock is held during a cancel, and the last Release waits for it.
TEST_F(EnumeratorTest, MayBeLetGoOfWhileItIsCancelled)
{
    constexpr ULONG_PTR kTransaction = 91;
    Prepare({"A"});
    enumerator->RegisterTransaction(kTransaction);
    Event gone(Event::Kind::ManualReset);
    std::thread releaser;
    {
        const ProxyLockGuard lock; // as a cancel has it
        EXPECT_TRUE(AsyncTransactionPool::CancelTransaction(kTransaction));
        releaser = std::thread([&] {
            enumerator.reset();
            gone.Set();
        });
        EXPECT_FALSE(gone.Wait(std::chrono::milliseconds(200)));
    }
    EXPECT_TRUE(gone.Wait(std::chrono::seconds(60)));
    releaser.join();
    EXPECT_FALSE(AsyncTransactionPool::CancelTransaction(kTransaction));
}

TEST_F(EnumeratorTest, CancelledWalkEndsSilentlyAndKeepsItsReferences)
{
    Prepare({"A", "B"});
    EXPECT_EQ(Step(0), S_OK);
    EXPECT_EQ(enumerator->Cancel(), S_OK);
    script.calls.clear();
    EXPECT_EQ(Step(1), S_FALSE);
    EXPECT_THAT(script.calls, IsEmpty());
    EXPECT_THAT(sink->symbols, ElementsAre("A"));
    EXPECT_THAT(sink->ends, IsEmpty());
    EXPECT_EQ(RefsOf(sink.get()), 2u);
    enumerator.reset();
    EXPECT_EQ(RefsOf(sink.get()), 1u);
    EXPECT_THAT(sink->ends, IsEmpty());
}

} // namespace
