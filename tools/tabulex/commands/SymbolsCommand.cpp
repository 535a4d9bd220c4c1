#include <optional>

#include "platform/values.h"
#include "tools/tabulex/commands/Commands.h"
#include "tools/tabulex/host/DataSink.h"
#include "tools/tabulex/host/ReadCheck.h"
#include "tools/tabulex/host/Settings.h"
#include "tools/tabulex/output/Results.h"
#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/system/Interrupt.h"
#include "tools/tabulex/text/Text.h"

namespace tabulex {

namespace {

// Shows each symbol as it comes: a large file may have few.
class SymbolSink : public DataSink
{
public:
    explicit SymbolSink(Results& results) : m_results(results) {}

    // A fault of writing, which can't be thrown through the component.
    const std::optional<Fault>& WriteFault() const { return m_fault; }

    HRESULT STDMETHODCALLTYPE DataChanged(VARIANT Data) override
    try {
        if (Data.vt != VT_BSTR)
            return E_UNEXPECTED;
        const bool bRead = m_results.AddLine(ToUtf8(TextOf(Data.bstrVal)));
        m_results.Show();
        return bRead ? S_OK : S_FALSE;
    } catch (const Fault& fault) {
        m_fault = fault;
        return E_FAIL;
    }

private:
    Results& m_results;
    std::optional<Fault> m_fault;
};

} // namespace

ExitStatus Symbols(const Context& context, Host& host, const CleanFile& input)
{
    const Deferral deferral;
    OpenAsSet(context, host, input);
    if (!host.HasColumn(TypeSymbol))
        throw Fault{ExitStatus::Refused,
                    "the file has no Symbol column; name one by --column N=Symbol"};
    Results results;
    const com_ptr<SymbolSink> sink(new SymbolSink(results));
    if (FAILED(host.Front().DoEnumSymbols(sink.get())))
        throw Fault{ExitStatus::Refused, "the symbols can't be listed"};
    PumpToTheEnd(host, *sink.get());
    if (Interrupted())
        return InterruptStatus();
    if (sink->WriteFault())
        throw Fault(*sink->WriteFault());
    if (!sink->IsCommitted())
        throw Fault{ExitStatus::Refused, "listing the symbols failed; the list is incomplete"};
    RequireRead(host);
    results.Finish();
    RequireNoGrowth(host);
    return ExitStatus::Done;
}

} // namespace tabulex
