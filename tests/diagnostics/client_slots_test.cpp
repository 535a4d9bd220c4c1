// The order of the client's operations for callers that go by slot.

#include <string>

#include <gtest/gtest.h>

#include "diagnostics/ReportClient.h"

namespace {

using namespace FaultmereUtil;

// Notes which operation was called.
class NotingClient final : public FaultmereClient
{
public:
    HRESULT Load() override { return Note("load"); }
    HRESULT Initialise() override { return Note("initialise"); }
    void Terminate() override { Note("TERMINATE"); }
    HRESULT IsClean() override { return Note("IS CLEAN"); }
    HRESULT DoClean() override { return Note("DO CLEAN"); }
    HRESULT ReportDialog() override { return Note("REPORTDIALOG"); }
    HRESULT TraceEnabled() override { return Note("TRACEENABLED"); }

    std::string sCalled;

private:
    HRESULT Note(const char* szOperation)
    {
        sCalled = szOperation;
        return S_OK;
    }
};

// An operation's code takes the object as its only argument.
void CallSlot(FaultmereClient& client, int nSlot)
{
    using Operation = HRESULT (*)(FaultmereClient*);
    (*reinterpret_cast<Operation**>(&client))[nSlot](&client);
}

} // namespace

TEST(ReportClient, ItsOperationsStandInTheOrderOfTheirSlots)
{
    const char* const kSlots[] = {"load",     "initialise",   "TERMINATE",   "IS CLEAN",
                                  "DO CLEAN", "REPORTDIALOG", "TRACEENABLED"};
    for (int nSlot = 0; nSlot < static_cast<int>(std::size(kSlots)); ++nSlot) {
        SCOPED_TRACE(kSlots[nSlot]);
        NotingClient client;
        CallSlot(client, nSlot);
        EXPECT_EQ(kSlots[nSlot], client.sCalled);
    }
}
