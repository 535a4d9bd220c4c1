// A report is a bag of named values, added in an order that the library relies on. The
// functions below are these lists: what all reports share, and what each adds.

#include "diagnostics/Reports.h"

#include "diagnostics/ReceiverSlot.h"
#include "diagnostics/ReportBag.h"
#include "platform/threads/Thread.h"

namespace FaultmereUtil {
namespace {

// The command under which the library files a finished bag.
constexpr OLECHAR kFile[] = OLESTR("");

// "f" of the signature "int n::C::f(char)": what stands before the arguments, less
// the result type. Blanks inside template arguments don't end the type.
std::string_view NameIn(std::string_view sSignature)
{
    const std::string_view sHead = sSignature.substr(0, sSignature.find('('));
    int nDepth = 0;
    std::size_t nStart = sHead.size();
    for (; nStart > 0; --nStart) {
        const char c = sHead[nStart - 1];
        nDepth += (c == '>') - (c == '<');
        if (c == ' ' && nDepth == 0)
            break;
    }
    return sHead.substr(nStart);
}

} // namespace

TracerClass::TracerClass(FaultmereClient& client, std::source_location place, TraceValues values)
    : m_client(client), m_place(place), m_values(std::move(values))
{}

HRESULT TracerClass::operator()(std::string_view sMessage)
{
    m_client.Initialise();
    if (const com_ptr<IReportRoot> root = m_client.Root())
        return SendTrace(*root.get(), sMessage);
    return TellReceiver(Report::Kind::Trace, sMessage, m_place);
}

HRESULT TracerClass::SendTrace(IReportRoot& root, std::string_view sMessage) const
{
    ReportBag bag(root, OLESTR("TRACE"));
    if (!sMessage.empty())
        bag.AddText(OLESTR("$Message"), sMessage);
    bag.AddNumber(OLESTR("$Ident"), m_values.nIdent);
    AddPlace(bag);
    AddMeasures(bag);
    return bag.Send(kFile);
}

void TracerClass::AddPlace(ReportBag& bag) const
{
    bag.AddText(OLESTR("File"), m_place.file_name());
    bag.AddNumber(OLESTR("Line"), m_place.line());
    if (m_values.nGroup != 0)
        bag.AddNumber(OLESTR("$Group"), m_values.nGroup);
    bag.AddNumber(OLESTR("Thread ID"), CurrentThreadId());
    bag.AddText(OLESTR("Function"), NameIn(m_place.function_name()));
    bag.AddText(OLESTR("$FuncSig"), m_place.function_name());
}

void TracerClass::AddMeasures(ReportBag& bag) const
{
    if (m_values.pObject)
        bag.AddAddress(OLESTR("Object"), m_values.pObject);
    if (m_values.fDelay != 0)
        bag.AddFloat(OLESTR("$Delay"), m_values.fDelay);
    if (m_values.nCount != 0)
        bag.AddNumber(OLESTR("Count"), m_values.nCount);
    if (m_values.fTotalTime != 0)
        bag.AddFloat(OLESTR("$TotalTime"), m_values.fTotalTime);
    if (!m_values.sOutFile.empty())
        bag.AddText(OLESTR("OutFile"), m_values.sOutFile);
}

AsserterClass::AsserterClass(FaultmereClient& client, std::source_location place)
    : TracerClass(client, place)
{}

HRESULT AsserterClass::operator()(std::string_view szCondition, std::optional<HRESULT> hr)
{
    m_client.Initialise();
    if (const com_ptr<IReportRoot> root = m_client.Root())
        return SendAssertion(*root.get(), szCondition, hr);
    return TellReceiver(Report::Kind::Assertion, szCondition, m_place);
}

HRESULT AsserterClass::SendAssertion(IReportRoot& root, std::string_view szCondition,
                                     std::optional<HRESULT> hr) const
{
    ReportBag bag(root, OLESTR("ASSERT"));
    bag.AddEmpty(OLESTR("<<ASSERT>>"));
    if (const int nError = m_lastErrorOfAssertion.Error(); nError != 0)
        bag.AddNumber(OLESTR("Last Error Code"), static_cast<std::uint32_t>(nError));
    if (hr)
        bag.AddResult(OLESTR("HRESULT"), *hr);
    if (!szCondition.empty())
        bag.AddText(OLESTR("Description"), szCondition);
    AddPlace(bag);
    return bag.Send(kFile);
}

HRESULT ReportException(FaultmereClient& client, const ExceptionFacts& facts)
{
    const SystemErrorKeeper keeper;
    client.Initialise();
    const com_ptr<IReportRoot> root = client.Root();
    if (!root)
        return E_FAIL;
    ReportBag bag(*root.get(), OLESTR("EXCEPTION"));
    bag.AddEmpty(OLESTR("<<EXCEPTION>>"));
    bag.AddText(OLESTR("ExceptionType"), facts.sType);
    bag.AddNumber(OLESTR("ErrorCode"), facts.nErrorCode);
    bag.AddNumber(OLESTR("Thread ID"), CurrentThreadId());
    bag.AddNumber(OLESTR("Code"), facts.nCode);
    bag.AddFlag(OLESTR("Continuable"), facts.bContinuable);
    bag.AddAddress(OLESTR("Address"), facts.pAddress);
    bag.AddAddress(OLESTR("$EXCEPTION_POINTERS"), facts.pPointers);
    return bag.Send(kFile);
}

} // namespace FaultmereUtil
