// Consumers of a file for the tests: they keep what they hear, and answer with a function
// that the test gives.
#pragma once

#include <functional>

#include "interfaces/IFileHandlerEvents.h"
#include "module/ComObject.h"
#include "src/files/FilePool.h"
#include "src/files/FilePoolImpl.h"
#include "tests/files/Vocabulary.h"

namespace files_test {

using namespace IQRL_TabulexConverter;

struct CountHeard
{
    ULONGLONG nCount;
    VARIANT_BOOL bComplete;
    bool operator==(const CountHeard&) const = default;
    friend std::ostream& operator<<(std::ostream& out, const CountHeard& heard)
    {
        return out << heard.nCount << (heard.bComplete ? " (all)" : " so far");
    }
};

class Consumer : public ComObject<Consumer, Dual<IFileHandlerEvents>>
{
public:
    using OnRecord = std::function<HRESULT(ULONGLONG nIndex)>;
    // The answer to ProcessRecord; without one, S_OK. Set before the consumer is queued.
    OnRecord m_onRecord;
    std::function<void(const CountHeard&)> m_onCount;

    HRESULT STDMETHODCALLTYPE RecordCountChange(ULONGLONG nNewCount,
                                                VARIANT_BOOL bComplete) override
    {
        {
            std::lock_guard lock(m_lock);
            m_counts.push_back({nNewCount, bComplete});
        }
        if (m_onCount)
            m_onCount({nNewCount, bComplete});
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE PutData(VARIANT, ULONGLONG, ULONGLONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE ProcessRecord(ULONGLONG nIndex, BSTR bsRecord,
                                            VARIANT_BOOL bComplete) override
    {
        {
            std::lock_guard lock(m_lock);
            m_records.push_back(nIndex);
            m_completes.push_back(bComplete);
            m_bTextGiven = m_bTextGiven || bsRecord;
        }
        return m_onRecord ? m_onRecord(nIndex) : S_OK;
    }

    std::vector<CountHeard> Counts() const { return Locked(m_counts); }
    std::vector<ULONGLONG> Records() const { return Locked(m_records); }
    std::vector<VARIANT_BOOL> Completes() const { return Locked(m_completes); }
    bool TextGiven() const { return Locked(m_bTextGiven); }

private:
    template <class T>
    T Locked(const T& value) const
    {
        std::lock_guard lock(m_lock);
        return value;
    }

    mutable std::mutex m_lock;
    std::vector<CountHeard> m_counts;
    std::vector<ULONGLONG> m_records;
    std::vector<VARIANT_BOOL> m_completes;
    bool m_bTextGiven = false;
};

// A consumer whose conversion begins elsewhere.
class LateStarter
    : public ComObject<LateStarter, Dual<IFileHandlerEvents>, Dual<IFileHandlerEvents2>>
{
public:
    ULONGLONG m_nStart = 0;
    HRESULT m_hrStart = S_OK;
    std::atomic<ULONGLONG> m_nFirst = ~0ull;
    Signal m_done;

    HRESULT STDMETHODCALLTYPE RecordCountChange(ULONGLONG, VARIANT_BOOL) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE PutData(VARIANT, ULONGLONG, ULONGLONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE ProcessRecord(ULONGLONG nIndex, BSTR, VARIANT_BOOL) override
    {
        m_nFirst = nIndex;
        m_done.Raise();
        return S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE get_StartPosition(ULONGLONG* pVal) override
    {
        *pVal = m_nStart;
        return m_hrStart;
    }
};

template <class Class>
com_ptr<Class> Make()
{
    com_ptr<Class> object;
    EXPECT_EQ(CreateObject(object), S_OK);
    return object;
}

template <class Class>
IUnknown* AsUnknown(const com_ptr<Class>& consumer)
{
    return consumer->Identity();
}

// Each test has a data parser alive; after it no thread of the pool is left.
class PoolTest : public testing::Test
{
protected:
    PoolTest() { Hesperon::specifics::FilePool::AddParser(); }
    ~PoolTest() override
    {
        Hesperon::specifics::FilePool::ReleaseParser();
        EXPECT_EQ(Hesperon::specifics::CFilePool::Instance().ThreadCount(), 0u);
    }

    static com_ptr<IFileHandler> Attach(const TestFile& file)
    {
        auto pHandler = Hesperon::specifics::FilePool::AttachFile(file.Name());
        EXPECT_TRUE(pHandler);
        return pHandler;
    }

    static ULONGLONG Count(const com_ptr<IFileHandler>& pHandler, bool* pComplete = nullptr)
    {
        ULONGLONG nCount = 0;
        VARIANT_BOOL bComplete = 7;
        EXPECT_EQ(pHandler->GetCount(&nCount, &bComplete), S_OK);
        EXPECT_TRUE(bComplete == VARIANT_TRUE || bComplete == VARIANT_FALSE);
        if (pComplete)
            *pComplete = bComplete == VARIANT_TRUE;
        return nCount;
    }

    static bool IsComplete(const com_ptr<IFileHandler>& pHandler)
    {
        bool bComplete = false;
        Count(pHandler, &bComplete);
        return bComplete;
    }

    static std::string Record(const com_ptr<IFileHandler>& pHandler, ULONGLONG nIndex)
    {
        Bstr bsRecord;
        const HRESULT hr = pHandler->GetRecord(nIndex, 0, bsRecord.put());
        EXPECT_EQ(bsRecord.get() != nullptr, hr == S_OK);
        return hr == S_OK ? Narrow(bsRecord.view()) : "<none>";
    }
};

} // namespace files_test
