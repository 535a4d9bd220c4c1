// ConversionSession: an object's part in a conversion: how the events of the run reach
// the host.
//
// Batches are put into the host's form and go to the sink; errors go to the progress box
// or, in a quiet session, to the sink. Every object has one, which hears nothing until it
// gets a sink.
//
// Threads: sink and box are given on the host's thread before the run starts. The events
// come on the file's worker thread, and the end also on the host's, where the host ends the
// session.
#pragma once

#include "interfaces/IDataParser.h"
#include "interfaces/IProgressBox.h"
#include "platform/threads/CriticalSection.h"
#include "src/front/ConvertorSettings.h"
#include "src/front/SinkLink.h"

namespace Hesperon::specifics {

class ConversionSession
{
public:
    using IDataParser = IQRL_TabulexConverter::IDataParser;
    using IProgressBox = IQRL_TabulexConverter::IProgressBox;

    // The parser of the run and its settings; both belong to the object that has the session.
    ConversionSession(const com_ptr<IDataParser>& pDataParser, const ConvertorSettings& settings)
        : m_pDataParser(pDataParser), m_settings(settings)
    {}

    // ---- start and end, on the host's thread

    // False where no sink window can be made.
    bool OpenSink(CqrlSinkWindow::Sink pSink) { return m_link.Open(std::move(pSink)); }
    // No box: errors go to the sink, bad lines are skipped without a call.
    void BeQuiet() { m_bNoProgress = true; }
    void SkipTo(ULONGLONG nRecord) { m_nProcessed = nRecord; }
    HRESULT MakeProgressBox();
    com_ptr<IProgressBox> ProgressBox() const; // null for none
    // A start that failed: the sink hears Rollback.
    void Abandon();
    // Lets the sink go without a call.
    void Close() { m_link.Close(); }
    // The object goes, on any thread: a run that ended without a call has left its window
    // and its box.
    void Release();

    // ---- the events, as IDataParserEvents has them

    HRESULT PutRecords(const VARIANT& vRecords, ULONGLONG nRecCountWithSkeeped);
    HRESULT EndTransaction(bool bResult);
    HRESULT OnError(const VARIANT& description);
    HRESULT OnError2(LONG_PTR lptrLineNum, LONG lptrFieldNum, BSTR bsDescription);
    HRESULT GetResolutionName(LONG nResolution, BSTR* pName) const;
    // The run is being cancelled: nobody is asked about bad lines any more.
    void EndQuestions();

private:
    HRESULT ShowProgress(ULONGLONG nRecords);
    void CloseProgressBox();

    const com_ptr<IDataParser>& m_pDataParser;
    const ConvertorSettings& m_settings;
    SinkLink m_link;
    ULONGLONG m_nProcessed = 0; // records delivered or skipped
    bool m_bNoProgress = false;
    mutable CriticalSection m_boxLock;
    com_ptr<IProgressBox> m_pProgressBox; // guarded by m_boxLock
};

} // namespace Hesperon::specifics
