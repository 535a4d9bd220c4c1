// For builds with TABULEX_BOTH_ROADS: what the plan has read is read again by the record parser's
// calls, and the two are compared bit for bit. A row whose values were multiplied isn't compared,
// since a multiplier may count what it is given.

#include <bit>
#include <cstdio>
#include <cstdlib>

#include "platform/text/CodePage.h"
#include "src/data/run/RecordBatch.h"
#include "src/values/IKeepsValues.h"

namespace Hesperon::specifics {

namespace {

bool IsSame(const VARIANT& a, const VARIANT& b)
{
    if (a.vt != b.vt)
        return false;
    if (a.vt == VT_BSTR)
        return TextOf(a.bstrVal) == TextOf(b.bstrVal);
    return a.llVal == b.llVal; // dates and doubles by their bits
}

bool IsMultiplied(IQRL_TabulexConverter::IRecordParser* pRecordParser)
{
    com_ptr<IDispatch> pPrice, pVolume;
    pRecordParser->get_PriceMultiplier(pPrice.put());
    pRecordParser->get_VolumeMultiplier(pVolume.put());
    return ChangesValues(pPrice.get()) || ChangesValues(pVolume.get());
}

} // namespace

void RecordBatch::Prove(bool bSame, const char* pszWhat)
{
    if (bSame)
        return;
    const std::string sLine = EncodeText(CodePageByName("utf-8"), TextOf(CurrentLine()));
    std::fprintf(stderr, "the plan reads another %s than the judge: %s\n", pszWhat, sLine.c_str());
    std::abort();
}

void RecordBatch::ProveMoment(DATE date)
{
    m_pRecordParser->Parse(CurrentLine());
    Variant judged;
    const HRESULT hr = m_pRecordParser->get_CurrentDateTime(judged.put());
    Prove(hr == S_OK &&
              std::bit_cast<std::uint64_t>(judged.date) == std::bit_cast<std::uint64_t>(date),
          "moment");
}

void RecordBatch::ProveSymbol(string_view_t sSymbol)
{
    Bstr judged;
    const HRESULT hr =
        m_pRecordParser->GetFieldText(CurrentLine(), m_settings.nSymbolField, judged.put());
    Prove(hr == S_OK && judged.view() == sSymbol, "symbol");
}

void RecordBatch::ProveStep()
{
    VARIANT vLast;
    VariantInit(&vLast);
    vLast.vt = VT_DATE;
    vLast.date = m_order.dtLast.date;
    Bstr sError;
    Prove(m_pRecordParser->CheckResolution(vLast, sError.put(), m_pHost) == S_OK, "step");
}

void RecordBatch::ProveRow(const VARIANT* row)
{
    if (IsMultiplied(m_pRecordParser))
        return;
    for (std::size_t k = 0; k < ColumnCount(); ++k) {
        Variant judged;
        const HRESULT hr =
            m_pRecordParser->GetFieldValue(judged.put(), m_settings.arFieldIndices[k]);
        Prove(hr == S_OK && IsSame(row[k], judged), "value");
    }
}

} // namespace Hesperon::specifics
