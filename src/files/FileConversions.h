// The conversions that run on one file: they take turns, one record each.
//
// Used by the file's worker thread only.
#pragma once

#include <vector>

#include "interfaces/IFileHandlerEvents.h"
#include "src/files/IFileConsumer.h"

namespace Hesperon::specifics {

// One running conversion: which record its consumer gets next.
class CConverterPersist
{
public:
    // Begins at the consumer's start position, or at 0 where it has none.
    explicit CConverterPersist(com_ptr<IQRL_TabulexConverter::IFileHandlerEvents> pEvents);

    // Calls the consumer for the next record, or for nMost of them if it takes more than one in a
    // call; anything but S_OK ends the conversion.
    HRESULT Step(bool bComplete, ULONGLONG nMost);

    IQRL_TabulexConverter::IFileHandlerEvents* Events() const { return m_pEvents.get(); }

private:
    com_ptr<IQRL_TabulexConverter::IFileHandlerEvents> m_pEvents;
    com_ptr<IRecordSteps> m_pSteps; // null: one in a call
    ULONGLONG m_nPosition = 0;      // the next record
};

class FileConversions
{
public:
    bool IsActive() const { return !m_converters.empty(); }

    // Reports a consumer that already has a conversion running, which then goes on.
    void Start(com_ptr<IQRL_TabulexConverter::IFileHandlerEvents> pEvents);
    // One step of the conversion whose turn it is; of the only one nMost at most.
    void StepNext(bool bComplete, ULONGLONG nMost = 1);
    void Clear();

private:
    std::vector<CConverterPersist> m_converters;
    std::size_t m_nNext = 0; // whose turn it is; beyond the last one it is the first one's
};

} // namespace Hesperon::specifics
