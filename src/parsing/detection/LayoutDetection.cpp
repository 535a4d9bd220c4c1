// | cause        | reads itself | fixes dates and times      | steps                           |
// |--------------|--------------|----------------------------|---------------------------------|
// | FirstRecord  |              |                            | dividers to resolution          |
// | Request      |              |                            | the same, without a symbol      |
// | SkippedLines | position 0   | in place of older ones     | dividers to resolution          |
// | Dividers     | position 0   | forgets them               | those of FirstRecord, and range |
// | Resolution   | position 0   | in place of all older ones | header to refinement, bar size  |
// | Template     |              | in place of all older ones | range, after those of Request   |
// | Stamps       |              |                            | range                           |
//
// To find the resolution, the columns are built under resolution 0, which admits all types,
// and the steps between records are measured. Then the resolutions are tried in a fixed
// order: weeks, days, minutes, bars of ticks, ticks, bars of counts. One that the host
// doesn't offer, or whose step is another, isn't tried. A try builds the columns again from
// the types that the resolution admits, and fits if each required type has a column and
// none has two. With no fit the columns of the first look stand, under resolution 0.

#include "src/parsing/detection/LayoutDetection.h"

#include <algorithm>
#include <optional>

#include "platform/values.h"
#include "src/parsing/RecordText.h"
#include "src/parsing/detection/ResolutionFit.h"

namespace Hesperon::specifics {
namespace {

constexpr WORD kWeek = 7; // days

using Size = std::optional<LONG>;

Size SizeIf(bool bFits, LONG nSize)
{
    return bFits ? Size(nSize) : std::nullopt;
}

// Bars of minutes have the size that the host asks for, if the step is a multiple of it.
Size SizeOfBars(const ParserState& state, WORD wMinute)
{
    const LONG nHostSize = HostSize(state, ResolutionMinutes);
    if (nHostSize == 0)
        return SizeIf(wMinute != 0, wMinute);
    return SizeIf(wMinute != 0 && wMinute % nHostSize == 0, nHostSize);
}

} // namespace

HRESULT LayoutDetection::Run(DetectionCause cause, string_view_t sRecord)
{
    const DetectionReport::Run run(m_report, cause);
    switch (cause) {
    case DetectionCause::FirstRecord:
        return FindLayout(sRecord, FirstColumn::MayBeSymbol);
    case DetectionCause::Request:
        return FindLayout(sRecord, FirstColumn::IsNoSymbol);
    case DetectionCause::SkippedLines:
        return SkipLines();
    case DetectionCause::Dividers:
        return StartOver();
    case DetectionCause::Resolution:
        return FollowResolution();
    case DetectionCause::Template:
        return FollowTemplate();
    case DetectionCause::Stamps:
        break;
    }
    ReadRange();
    return S_OK;
}

// ---- a cause each -----------------------------------------------------------------

HRESULT LayoutDetection::SkipLines()
{
    m_source.Seek(0);
    Bstr record;
    if (const HRESULT hr = m_source.ReadRaw(record); FAILED(hr))
        return hr;
    m_state.PredefineDatesAndTimes(OldEntries::Replace);
    FindLayout(record.view(), FirstColumn::MayBeSymbol);
    return m_state.m_fields.empty() ? S_FALSE : S_OK;
}

// The record is parsed as the first after a reset, which is a run within this one.
HRESULT LayoutDetection::StartOver()
{
    m_state.ForgetColumns();
    IQRL_TabulexConverter::IDataParser* p = m_state.m_pDataParser;
    if (!p)
        return E_UNEXPECTED;
    p->put_InvertedDirection(VARIANT_FALSE);
    p->put_HasHeader(VARIANT_FALSE);
    p->put_HeaderOffset(0);
    m_source.Seek(0);
    Bstr record;
    if (SUCCEEDED(m_source.ReadRaw(record)) && record) {
        m_parser.ParseSample(record.view());
        ReadRange();
    }
    return S_OK;
}

// A record that can't be read fails in BuildColumns, which reads it again and has emptied
// the columns by then.
HRESULT LayoutDetection::FollowResolution()
{
    string_t sRecord;
    if (m_source.Seek(0))
        m_source.Read(sRecord);
    m_state.PredefineDatesAndTimes(OldEntries::Forget);
    const HRESULT hr = BuildColumns(sRecord, HeaderSearch::Anew, FirstColumn::MayBeSymbol);
    if (FAILED(hr))
        return hr;
    RefineFieldTypes(m_state, FirstColumn::MayBeSymbol, m_report);
    Steps steps;
    if (m_state.m_nResolution == ResolutionMinutes && MeasureSteps(steps))
        m_state.m_nResolutionSize = steps.wMinute;
    return S_OK;
}

// The data parser asks for the layout, which is a run within this one, and reads the range.
HRESULT LayoutDetection::FollowTemplate()
{
    m_state.PredefineDatesAndTimes(OldEntries::Forget);
    ReadRange(VARIANT_TRUE);
    return S_OK;
}

// ---- steps --------------------------------------------------------------------------

// Dividers to resolution.
HRESULT LayoutDetection::FindLayout(string_view_t sRaw, FirstColumn firstColumn)
{
    CFieldConstructor(m_state, m_report).FindDivider(sRaw);
    const string_t sRecord = NormalisedRecord(sRaw);
    m_state.m_nResolution = ResolutionNone;
    m_state.m_nResolutionSize = 0;
    const HRESULT hr = BuildColumns(sRecord, HeaderSearch::Anew, firstColumn);
    if (FAILED(hr) || m_state.Index(TypeDate) == kNoColumn)
        return hr;
    m_state.PredefineDatesAndTimes(OldEntries::Keep);
    const std::vector<CDataField> firstLook = m_state.m_fields;
    if (!FindResolution(sRecord, firstColumn)) {
        m_state.m_nResolution = ResolutionNone;
        m_state.m_fields = firstLook;
    }
    m_report.Add([this] {
        return ResolutionFound{m_state.m_nResolution, m_state.m_nResolutionSize};
    });
    return hr;
}

// Header and columns, then refinement. The words of a header settle whether the first
// column is a symbol; without one the rule for the first column does.
HRESULT LayoutDetection::BuildColumns(string_view_t sRecord, HeaderSearch header,
                                      FirstColumn firstColumn)
{
    const HRESULT hr = CFieldConstructor(m_state, m_report).ProcessRecord(sRecord, header);
    if (FAILED(hr))
        return hr;
    const bool bHeader = m_state.m_bHasHeader || !m_state.m_strHeader.empty();
    RefineFieldTypes(m_state, bHeader ? FirstColumn::MayBeSymbol : firstColumn, m_report);
    return S_OK;
}

bool LayoutDetection::MeasureSteps(Steps& steps)
{
    const bool bKnown = SampleSteps(m_state, m_parser, steps);
    m_report.Add([&] { return StepsMeasured{bKnown, steps.wDay, steps.wMinute}; });
    return bKnown;
}

bool LayoutDetection::FindResolution(string_view_t sRecord, FirstColumn firstColumn)
{
    Steps steps; // 0 where unknown, which fits no step
    MeasureSteps(steps);
    const struct
    {
        LONG nResolution;
        Size size; // empty where the steps are others
    } candidates[] = {
        {ResolutionWeeks, SizeIf(steps.wDay == kWeek, 1)},
        {ResolutionDays, SizeIf(steps.wDay != 0, 1)},
        {ResolutionMinutes, SizeOfBars(m_state, steps.wMinute)},
        {ResolutionTickBars, 0},
        {ResolutionTick, 1},
        {ResolutionCountBars, 0},
    };
    return std::ranges::any_of(candidates, [&](const auto& candidate) {
        return Fits(candidate.nResolution, candidate.size, sRecord, firstColumn);
    });
}

// A try that fits leaves the resolution, its size and its columns; any other leaves the
// size as it is.
bool LayoutDetection::Fits(LONG nResolution, std::optional<LONG> size, string_view_t sRecord,
                           FirstColumn firstColumn)
{
    if (!IsOffered(m_state, nResolution))
        return Refuse(nResolution, Refusal::NotOffered);
    if (!size)
        return Refuse(nResolution, Refusal::Steps);
    m_state.m_nResolution = nResolution;
    if (FAILED(BuildColumns(sRecord, HeaderSearch::Keep, firstColumn)))
        return Refuse(nResolution, Refusal::Record);
    if (const unsigned uiType = LackingType(m_state, nResolution); uiType != kNoType)
        return Refuse(nResolution, Refusal::Lacks, uiType);
    if (const unsigned uiType = DuplicatedType(m_state); uiType != kNoType)
        return Refuse(nResolution, Refusal::Duplicate, uiType);
    m_state.m_nResolutionSize = *size;
    return true;
}

// Notes why; gives false.
bool LayoutDetection::Refuse(LONG nResolution, Refusal refusal, unsigned uiType)
{
    m_report.Add([=] { return ResolutionRefused{nResolution, refusal, uiType}; });
    return false;
}

void LayoutDetection::ReadRange(VARIANT_BOOL bFindResolution)
{
    if (!m_state.m_pDataParser)
        return;
    m_state.m_pDataParser->RefreshDateInfo(bFindResolution);
    m_report.Add([] { return RangeRead(); });
}

} // namespace Hesperon::specifics
