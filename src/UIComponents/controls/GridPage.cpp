#include "src/UIComponents/controls/GridPage.h"

namespace Hesperon::specifics {

namespace {

constexpr VARTYPE kPageKind = VT_ARRAY | VT_VARIANT;

} // namespace

void GridPage::Fetch(IQRL_TabulexConverter::IDataParser& parser, LONG nFrom, LONG nTo)
{
    Clear();
    if (nFrom < 0 || nTo < nFrom)
        return;
    const auto nCount = static_cast<ULONG>(nTo) - static_cast<ULONG>(nFrom) + 1;
    if (FAILED(parser.ParseRecords(&m_vPage, static_cast<ULONG>(nFrom), nCount)))
        Clear();
}

void GridPage::WriteCell(LONG nRecord, LONG nField, std::span<OLECHAR> buffer) const
{
    WriteText({}, buffer);
    if (m_vPage.vt != kPageKind || SafeArrayGetDim(m_vPage.parray) != 2)
        return;
    LONG indices[] = {nRecord, nField};
    void* pCell = nullptr;
    if (SUCCEEDED(SafeArrayPtrOfIndex(m_vPage.parray, indices, &pCell)))
        WriteValue(*static_cast<const VARIANT*>(pCell), buffer);
}

} // namespace Hesperon::specifics
