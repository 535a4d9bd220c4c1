// What a host can read of the layout that was found.

#include "interfaces/IRecordParser.h"
#include "tests/transcripts/Host.h"

using namespace IQRL_TabulexConverter;

namespace transcripts {

namespace {

std::string Number(DATE date)
{
    char text[30];
    std::snprintf(text, sizeof text, "%.9g", date);
    return text;
}

} // namespace

void Host::DescribeLayout()
{
    DescribeFields();
    DescribeResolution();
    DescribeParser();
}

void Host::DescribeFields()
{
    LONG nFields = 0;
    m_converter->get_FieldCount(&nFields);
    for (LONG i = 0; i < nFields; ++i) {
        LONG nId = 0;
        Bstr form;
        const HRESULT hr = m_converter->GetField(i, &nId, form.put());
        Tell("field " + std::to_string(i) + " id " + std::to_string(nId) + " '" +
                 Utf8(form.view()) + "'",
             hr);
    }
}

void Host::DescribeResolution()
{
    LONG nResolution = 0, nSize = 0;
    VARIANT_BOOL bValid = VARIANT_FALSE;
    BYTE nPrice = 0, nVolume = 0;
    const HRESULT hr = m_converter->get_ResolutionTemplate(&nResolution);
    m_converter->get_ResolutionSizeTemplate(&nSize);
    m_converter->get_ValidResolution(&bValid);
    m_converter->get_PriceMultiplier(&nPrice);
    m_converter->get_VolumeMultiplier(&nVolume);
    Tell("resolution " + std::to_string(nResolution) + " size " + std::to_string(nSize) +
             " valid " + std::to_string(bValid),
         hr);
    Tell("multipliers " + std::to_string(nPrice) + " " + std::to_string(nVolume));
}

void Host::DescribeParser()
{
    const auto parser = Parser();
    com_ptr<IDispatch> object;
    parser->get_RecordParser(object.put());
    Variant start, end;
    const HRESULT hrStart = m_converter->get_StartDateTime(start.put());
    const HRESULT hrEnd = m_converter->get_EndDateTime(end.put());
    ULONGLONG nCount = 0;
    VARIANT_BOOL bComplete = VARIANT_FALSE, bHeader = VARIANT_FALSE, bInverted = VARIANT_FALSE;
    ULONG nOffset = 0, nCodePage = 0;
    LONG nDividers = 0;
    const HRESULT hrCount = parser->GetCount(&nCount, &bComplete);
    parser->get_HasHeader(&bHeader);
    parser->get_HeaderOffset(&nOffset);
    parser->get_InvertedDirection(&bInverted);
    parser->get_Locale(&nCodePage);
    object.as<IRecordParser>()->get_FieldDividers(&nDividers);
    Tell("start " + Number(start.date), hrStart);
    Tell("end " + Number(end.date), hrEnd);
    Tell("records " + std::to_string(nCount) + " complete " + std::to_string(bComplete), hrCount);
    Tell("header " + std::to_string(bHeader) + " behind " + std::to_string(nOffset) + " inverted " +
         std::to_string(bInverted) + " code page " + std::to_string(nCodePage) + " dividers " +
         std::to_string(nDividers));
}

} // namespace transcripts
