// LayoutDetection finds the layout of a file, and finds it again whenever something that
// it rests on has changed. Whatever the cause, a run is made of the same steps:
//
//   dividers    settled by the first record, once; from then on they stand
//   header      whether the first line names columns, and which of such lines counts
//   columns     a type and a template each, tested against records of the file
//   refinement  types that column order got wrong are put right from the values
//   resolution  the columns are built again under each resolution that the host offers
//               and the steps between records allow, until one fits
//   range       the first and the last date, which the data parser reads
//
// Header, columns and refinement are repeated for each resolution that is tried. The table
// of causes and steps stands in LayoutDetection.cpp.
//
// It lives for one run and works on the state of the record parser, under its lock. It
// reads the file through the data parser.
#pragma once

#include <optional>

#include "src/parsing/ParserState.h"
#include "src/parsing/detection/DetectionReport.h"
#include "src/parsing/detection/FieldConstructor.h"
#include "src/parsing/detection/FieldTypeRefinement.h"
#include "src/parsing/detection/StepSampling.h"

namespace Hesperon::specifics {

class LayoutDetection
{
public:
    LayoutDetection(ParserState& state, SampleParser& parser, DetectionReport& report)
        : m_state(state), m_parser(parser), m_report(report), m_source(state.m_pDataParser)
    {}

    // The one way in. sRecord is the record to study, for FirstRecord and Request; other
    // causes read the file themselves. What a failure leaves, and the results, are those
    // of the operation of IRecordParser that has this cause.
    HRESULT Run(DetectionCause cause, string_view_t sRecord = {});

private:
    // ---- a cause each
    HRESULT SkipLines();
    HRESULT StartOver();
    HRESULT FollowResolution();
    HRESULT FollowTemplate();

    // ---- steps
    HRESULT FindLayout(string_view_t sRecord, FirstColumn firstColumn);
    HRESULT BuildColumns(string_view_t sRecord, HeaderSearch header, FirstColumn firstColumn);
    bool MeasureSteps(Steps& steps);
    bool FindResolution(string_view_t sRecord, FirstColumn firstColumn);
    void ReadRange(VARIANT_BOOL bFindResolution = VARIANT_FALSE);

    // No size: the steps between the records don't suit the resolution.
    bool Fits(LONG nResolution, std::optional<LONG> size, string_view_t sRecord,
              FirstColumn firstColumn);
    bool Refuse(LONG nResolution, Refusal refusal, unsigned uiType = kNoType);

    ParserState& m_state;
    SampleParser& m_parser;
    DetectionReport& m_report;
    RecordSource m_source;
};

} // namespace Hesperon::specifics
