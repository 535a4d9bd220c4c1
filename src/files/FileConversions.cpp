// Conversions stand in a ring of which m_nNext is the one to step next. One that ends leaves
// its place, so that the next one has its turn at once.
#include "src/files/FileConversions.h"

#include <algorithm>
#include <exception>

#include "diagnostics/FaultmereClient.h"

namespace Hesperon::specifics {

using namespace IQRL_TabulexConverter;

// A consumer that gives no position begins at 0, as one that takes a whole file does.
CConverterPersist::CConverterPersist(com_ptr<IFileHandlerEvents> pEvents)
    : m_pEvents(std::move(pEvents)), m_pSteps(m_pEvents.as<IRecordSteps>())
{
    try {
        const auto pStart = m_pEvents.as<IFileHandlerEvents2>();
        if (pStart && FAILED(pStart->get_StartPosition(&m_nPosition)))
            m_nPosition = 0;
    } catch (const std::exception&) {
        m_nPosition = 0; // a failure like others
    }
}

// An exception would leave the loop of the worker, and with it end the file for all its consumers.
HRESULT CConverterPersist::Step(bool bComplete, ULONGLONG nMost)
try {
    if (nMost > 1 && m_pSteps) {
        ULONGLONG nTaken = 0;
        const HRESULT hr = m_pSteps->ProcessRecords(m_nPosition, nMost, nTaken);
        m_nPosition += nTaken;
        return hr;
    }
    return m_pEvents->ProcessRecord(m_nPosition++, nullptr, bComplete);
} catch (const std::exception&) {
    return E_FAIL;
}

// A consumer has one place in the ring. With two it would get the records of two walks in turn.
void FileConversions::Start(com_ptr<IFileHandlerEvents> pEvents)
{
    const bool bRuns = std::ranges::any_of(
        m_converters, [&](const auto& converter) { return converter.Events() == pEvents.get(); });
    if (FaultmereUtil::Assert(!bRuns, "!pConverter"))
        m_converters.emplace_back(std::move(pEvents));
}

void FileConversions::StepNext(bool bComplete, ULONGLONG nMost)
{
    if (m_nNext >= m_converters.size())
        m_nNext = 0;
    if (m_converters.empty())
        return;
    if (m_converters.size() > 1)
        nMost = 1; // they take turns
    if (m_converters[m_nNext].Step(bComplete, nMost) == S_OK) {
        ++m_nNext;
        return;
    }
    // Taken out of the list before the consumer is released: that may run any code.
    const auto it = m_converters.begin() + static_cast<std::ptrdiff_t>(m_nNext);
    const CConverterPersist ended = std::move(*it);
    m_converters.erase(it);
}

void FileConversions::Clear()
{
    const auto ended = std::exchange(m_converters, {});
}

} // namespace Hesperon::specifics
