#include <gtest/gtest.h>

#include <type_traits>

#include "src/data/UnofferedRecordParser.h"
#include "src/parsing/RecordParserExtractor.h"
#include "tests/support/UnusedDataParser.h"
#include "tests/values/multipliers.h"

namespace {

using namespace Hesperon::specifics;
using namespace IQRL_TabulexConverter;

// What reading a property gives: a code, and an object or nothing.
struct Answer
{
    HRESULT hr = S_OK;
    com_ptr<IDispatch> object;

    HRESULT Give(IDispatch** pVal) const
    {
        *pVal = com_ptr<IDispatch>(object).detach();
        return hr;
    }
};

class FakeRecordParser final : public UnofferedRecordParser<FakeRecordParser>
{
public:
    HRESULT STDMETHODCALLTYPE get_PriceMultiplier(IDispatch** pVal) override
    {
        return m_price.Give(pVal);
    }
    HRESULT STDMETHODCALLTYPE get_VolumeMultiplier(IDispatch** pVal) override
    {
        return m_volume.Give(pVal);
    }

    Answer m_price, m_volume;
};

class FakeDataParser final : public UnusedDataParser<FakeDataParser>
{
public:
    HRESULT STDMETHODCALLTYPE get_RecordParser(IDispatch** pVal) override
    {
        return m_recordParser.Give(pVal);
    }

    Answer m_recordParser;
};

template <class Class>
com_ptr<Class> New()
{
    com_ptr<Class> object;
    EXPECT_EQ(S_OK, CreateObject(object));
    return object;
}

ULONG CountOf(IUnknown& object)
{
    object.AddRef();
    return object.Release();
}

class RecordParserExtractor : public testing::Test
{
protected:
    RecordParserExtractor()
    {
        m_price->SetCode(0x43);
        m_volume->SetCode(0x49);
        m_recordParser->m_price.object = m_price.as<IDispatch>();
        m_recordParser->m_volume.object = m_volume.as<IDispatch>();
        m_dataParser->m_recordParser.object = m_recordParser.as<IDispatch>();
    }

    com_ptr<CqrlValueMultiplier> m_price = NewMultiplier(), m_volume = NewMultiplier();
    com_ptr<FakeRecordParser> m_recordParser = New<FakeRecordParser>();
    com_ptr<FakeDataParser> m_dataParser = New<FakeDataParser>();
};

TEST_F(RecordParserExtractor, FindsTheRecordParserAndHoldsItWhileItLives)
{
    const ULONG nBefore = CountOf(*m_recordParser.get());
    {
        const CRecordParserExtactor extractor(m_dataParser.get());
        EXPECT_EQ(S_OK, extractor.GetStatus());
        EXPECT_EQ(nBefore + 1, CountOf(*m_recordParser.get()));
    }
    EXPECT_EQ(nBefore, CountOf(*m_recordParser.get()));
}

TEST_F(RecordParserExtractor, ReachesEachMultiplier)
{
    const CPriceMultiplierExtractor price(m_dataParser.get());
    const CVolumeMultiplierExtractor volume(m_dataParser.get());
    ASSERT_EQ(S_OK, price.GetStatus());
    ASSERT_EQ(S_OK, volume.GetStatus());
    EXPECT_EQ(string_t(OLESTR("100")), CurrentOf(*price.GetMultiplier().get()));
    EXPECT_EQ(string_t(OLESTR("1/10")), CurrentOf(*volume.GetMultiplier().get()));
}

TEST_F(RecordParserExtractor, TheMultiplierIsGivenWithANewReference)
{
    const CPriceMultiplierExtractor price(m_dataParser.get());
    const ULONG nBefore = CountOf(*com_ptr<IValueMultiplier>(m_price.get()).get());
    const com_ptr<IValueMultiplier> multiplier = price.GetMultiplier();
    EXPECT_EQ(nBefore + 1, CountOf(*com_ptr<IValueMultiplier>(m_price.get()).get()));
}

TEST_F(RecordParserExtractor, SaysWhyThereIsNoRecordParser)
{
    struct Row
    {
        HRESULT hrRead;
        com_ptr<IDispatch> object;
        HRESULT hrStatus;
    };
    const Row kRows[] = {
        {E_FAIL, nullptr, E_FAIL},
        {E_NOINTERFACE, nullptr, E_NOINTERFACE},
        {S_OK, m_price.as<IDispatch>(), E_NOTIMPL},
        {S_OK, nullptr, E_UNEXPECTED},
        {S_FALSE, nullptr, E_UNEXPECTED},
        {S_FALSE, m_recordParser.as<IDispatch>(), S_OK},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(&row - kRows);
        m_dataParser->m_recordParser = {row.hrRead, row.object};
        EXPECT_EQ(row.hrStatus, CRecordParserExtactor(m_dataParser.get()).GetStatus());
        const CPriceMultiplierExtractor price(m_dataParser.get());
        EXPECT_EQ(row.hrStatus, price.GetStatus());
        EXPECT_EQ(SUCCEEDED(row.hrStatus), static_cast<bool>(price.GetMultiplier()));
    }
}

TEST_F(RecordParserExtractor, WithoutADataParserTheStatusIsBlank)
{
    EXPECT_EQ(OLE_E_BLANK, CRecordParserExtactor(nullptr).GetStatus());
    EXPECT_EQ(OLE_E_BLANK, CVolumeMultiplierExtractor(nullptr).GetStatus());
    EXPECT_FALSE(CVolumeMultiplierExtractor(nullptr).GetMultiplier());
}

TEST_F(RecordParserExtractor, SaysWhyThereIsNoMultiplier)
{
    struct Row
    {
        HRESULT hrRead;
        com_ptr<IDispatch> object;
        HRESULT hrStatus;
    };
    const Row kRows[] = {
        {E_NOINTERFACE, nullptr, E_NOINTERFACE},
        {E_FAIL, nullptr, E_FAIL},
        {S_OK, m_dataParser.as<IDispatch>(), E_NOINTERFACE},
        {S_OK, nullptr, E_UNEXPECTED},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(&row - kRows);
        m_recordParser->m_volume = {row.hrRead, row.object};
        const CVolumeMultiplierExtractor volume(m_dataParser.get());
        EXPECT_EQ(row.hrStatus, volume.GetStatus());
        EXPECT_FALSE(volume.GetMultiplier());
        EXPECT_EQ(S_OK, CPriceMultiplierExtractor(m_dataParser.get()).GetStatus());
        m_recordParser->m_volume = {};
    }
}

TEST_F(RecordParserExtractor, HelpersAreNotCopied)
{
    EXPECT_FALSE(std::is_copy_constructible_v<CRecordParserExtactor>);
    EXPECT_FALSE(std::is_copy_assignable_v<CRecordParserExtactor>);
    EXPECT_FALSE(std::is_copy_constructible_v<CPriceMultiplierExtractor>);
}

} // namespace
