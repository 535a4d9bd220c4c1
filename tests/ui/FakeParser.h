// The parser of a conversion, as far as a progress box uses it.
#pragma once

#include <atomic>
#include <functional>

#include "tests/support/UnusedDataParser.h"

namespace ui_test {

class FakeParser : public UnusedDataParser<FakeParser>
{
public:
    std::atomic<FLOAT> m_fRelative = 0;
    std::atomic<int> m_nAborts = 0;
    std::atomic<bool> m_bErrorsDisabled = false;
    std::function<void()> m_onAbort, m_onDisable, m_onRelativePos;

    HRESULT STDMETHODCALLTYPE GetRelativePos(ULONGLONG, FLOAT* fRelative) override
    {
        Run(m_onRelativePos);
        *fRelative = m_fRelative;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE put_DisableErrorNotify(VARIANT_BOOL newVal) override
    {
        m_bErrorsDisabled = newVal == VARIANT_TRUE;
        Run(m_onDisable);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE AbortConversion() override
    {
        ++m_nAborts;
        Run(m_onAbort);
        return S_OK;
    }

private:
    static void Run(const std::function<void()>& call)
    {
        if (call)
            call();
    }
};

} // namespace ui_test
