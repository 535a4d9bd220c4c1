// Whether records follow the one before them as the resolution asks.

#include <gtest/gtest.h>

#include "interfaces/IDataParserEvents.h"
#include "tests/parsing/Layout.h"
#include "tests/parsing/QuoteLines.h"
#include "tests/support/ChineseTexts.h"

using namespace Hesperon::specifics;
using namespace IQRL_TabulexConverter;

namespace {

class Host final : public ComObject<Host, Dual<IDataParserEvents>>
{
public:
    HRESULT STDMETHODCALLTYPE PutRecords(VARIANT, ULONGLONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EndTransaction(VARIANT_BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE OnError(VARIANT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetResolutionName(LONG nResolution, BSTR* pName) override
    {
        m_nAsked = nResolution;
        if (SUCCEEDED(m_hrName))
            *pName = NewBstr(m_sName);
        return m_hrName;
    }
    HRESULT STDMETHODCALLTYPE OnError2(LONG_PTR, LONG, BSTR) override { return E_NOTIMPL; }

    string_t m_sName = OLESTR("a|b|5");
    HRESULT m_hrName = S_OK;
    LONG m_nAsked = -1;
};

class ResolutionCheck : public testing::Test
{
protected:
    ResolutionCheck() : m_file(MinuteLines(Evenly(5, 12), kBar))
    {
        EXPECT_EQ(S_OK, CreateObject(m_host));
        EXPECT_EQ(S_OK, m_file.Load());
        EXPECT_EQ(S_OK, m_file.Parse(OLESTR("20030106,09:30")));
    }

    // Against a record that is fBefore days before the one parsed.
    HRESULT Check(double fBefore)
    {
        Variant stamp;
        EXPECT_EQ(S_OK, m_file->get_CurrentDateTime(&stamp));
        m_error = Bstr(OLESTR("untouched"));
        BSTR bsError = m_error.get();
        const HRESULT hr = m_file->CheckResolution(Variant::FromDate(stamp.date - fBefore),
                                                   &bsError, m_host.get());
        if (bsError != m_error.get())
            *m_error.put() = bsError;
        return hr;
    }

    ParsedFile m_file;
    com_ptr<Host> m_host;
    Bstr m_error;
    const ChineseTexts m_chinese;
};

constexpr double kDay = 1, kMinute = 1.0 / 1440, kSecond = 1.0 / 86400;

TEST_F(ResolutionCheck, AsksForTheStepOfTheResolution)
{
    struct Row
    {
        LONG nResolution;
        LONG nSize;
        double fSpan;
        HRESULT hr;
    };
    const Row kRows[] = {
        {ResolutionTick, 9, 0, S_OK},
        {ResolutionTickBars, 9, 0, S_OK},
        {ResolutionCountBars, 9, 0, S_OK},
        {ResolutionSeconds, 10, 10 * kSecond, S_OK},
        {ResolutionSeconds, 10, 9.6 * kSecond, S_OK}, // to the nearest half second
        {ResolutionSeconds, 10, 9.4 * kSecond, S_FALSE},
        {ResolutionSeconds, 10, 9 * kSecond, S_FALSE},
        {ResolutionSeconds, 0, 0, S_OK},
        {ResolutionMinutes, 5, 5 * kMinute, S_OK},
        {ResolutionMinutes, 5, 5 * kMinute - 0.4 * kSecond, S_OK},
        {ResolutionMinutes, 5, 5 * kMinute - 1 * kSecond, S_FALSE},
        {ResolutionMinutes, 5, 6 * kMinute, S_OK},
        {ResolutionDays, 1, kDay, S_OK},
        {ResolutionDays, 1, kDay - 1 * kMinute, S_FALSE},
        {ResolutionDays, 0, 0, S_OK},
        {ResolutionWeeks, 1, 7 * kDay, S_OK},
        {ResolutionWeeks, 1, 7 * kDay - 1 * kMinute, S_FALSE},
        {ResolutionWeeks, 99, 7 * kDay, S_OK},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(testing::PrintToString(row.nResolution) + " after " +
                     testing::PrintToString(row.fSpan / kSecond) + " s");
        ASSERT_EQ(S_OK, m_file->put_Resolution(row.nResolution));
        ASSERT_EQ(S_OK, m_file->put_ResolutionSize(row.nSize));
        ASSERT_EQ(S_OK, m_file.Parse(OLESTR("20030106,09:30")));
        EXPECT_EQ(row.hr, Check(row.fSpan));
        const bool bFits = row.hr == S_OK;
        EXPECT_EQ(bFits ? "untouched" : Shown(OLESTR("周期 \"a|b\" 的条件。")),
                  Shown(m_error.view()));
        EXPECT_EQ(bFits ? -1 : row.nResolution, m_host->m_nAsked);
        m_host->m_nAsked = -1;
    }
}

TEST_F(ResolutionCheck, WantsRecordsInOrder)
{
    for (LONG nResolution : {1, 2, 3, 4, 5, 6, 7}) {
        SCOPED_TRACE(nResolution);
        ASSERT_EQ(S_OK, m_file->put_Resolution(nResolution));
        ASSERT_EQ(S_OK, m_file.Parse(OLESTR("20030106,09:30")));
        EXPECT_EQ(S_FALSE, Check(-kSecond));
        EXPECT_EQ(Shown(OLESTR("时间或日期的增量是负的。")), Shown(m_error.view()));
    }
}

TEST_F(ResolutionCheck, FailsWithoutWhatItNeeds)
{
    Bstr error;
    EXPECT_EQ(E_UNEXPECTED, Check(kDay)); // no resolution
    EXPECT_EQ(E_UNEXPECTED, m_file->CheckResolution(Variant(), error.put(), m_host.get()));
    ASSERT_EQ(S_OK, m_file->put_Resolution(ResolutionMinutes));
    ASSERT_EQ(S_OK, m_file->put_ResolutionSize(5));
    ASSERT_EQ(S_OK, m_file.Parse(OLESTR("20030106,09:30")));
    EXPECT_EQ(E_INVALIDARG, m_file->CheckResolution(Variant(), error.put(), m_host.get()));
    EXPECT_EQ(E_INVALIDARG, m_file->CheckResolution(Variant::FromI4(1), error.put(), m_host.get()));
    EXPECT_EQ(E_POINTER, m_file->CheckResolution(Variant(), nullptr, m_host.get()));

    Variant stamp;
    ASSERT_EQ(S_OK, m_file->get_CurrentDateTime(&stamp));
    EXPECT_EQ(E_NOINTERFACE, m_file->CheckResolution(stamp, error.put(), nullptr));
    EXPECT_EQ(E_NOINTERFACE, m_file->CheckResolution(stamp, error.put(), &m_file.File()));
    m_host->m_hrName = E_ACCESSDENIED;
    EXPECT_EQ(E_ACCESSDENIED, Check(0));
    EXPECT_EQ(S_OK, m_file.Parse(OLESTR("xx,09:30")));
    EXPECT_EQ(E_FAIL, m_file->CheckResolution(stamp, error.put(), m_host.get()));
}

TEST_F(ResolutionCheck, NamesAResolutionWithoutASizeAsItIs)
{
    m_host->m_sName = OLESTR("Minutes");
    ASSERT_EQ(S_OK, m_file->put_Resolution(ResolutionMinutes));
    ASSERT_EQ(S_OK, m_file->put_ResolutionSize(5));
    ASSERT_EQ(S_OK, m_file.Parse(OLESTR("20030106,09:30")));
    EXPECT_EQ(S_FALSE, Check(0));
    EXPECT_EQ(Shown(OLESTR("周期 \"Minutes\" 的条件。")), Shown(m_error.view()));
}

} // namespace
