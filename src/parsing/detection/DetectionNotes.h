// DetectionNotes: the single decisions of the detection of a layout, and their reasons.
// Columns count from 0; records are positions in the file.
#pragma once

#include <string>
#include <variant>

#include "interfaces/FieldsAndResolutions.h"
#include "platform/component.h"

namespace Hesperon::specifics {

// Why a layout is looked for.
enum class DetectionCause
{
    FirstRecord,  // the first record after Reset: of a new file, or in another code page
    Request,      // someone asks for layout and resolution
    SkippedLines, // the number of lines before the data was set
    Dividers,     // the dividers were set, or the columns are to be made anew
    Resolution,   // a resolution was chosen
    Template,     // the template of a date or time was set, and the rest is to follow it
    Stamps,       // dates may read otherwise now; the layout stays
};

// The rules of refinement: the one for a symbol, then those of a pass in their order.
enum class RefinementRule
{
    Symbol,
    UpAndDownTicks,
    UpAndDownVolumes,
    OpenInterest,
    VolumeAndOpenInterest,
    VolumeAmongPrices,
    Bar,
    Totals,
    TicksAndVolumes,
    Sum,
};

// Why a resolution isn't that of the file.
enum class Refusal
{
    NotOffered, // by the host
    Steps,      // the records are other steps apart
    Record,     // no columns could be built
    Lacks,      // a required type has no column
    Duplicate,  // a type has two columns
};

// ---- notes

inline constexpr ULONGLONG kLastRecord = ~ULONGLONG(0); // the file's last, wherever it stands

struct Started
{
    DetectionCause cause;
};
struct DividersFound
{
    LONG nMask; // as IRecordParser::get_FieldDividers gives it
    string_t sRecord;
};
struct HeaderSought
{
    bool bFound;
    string_t sLine; // the line that names the columns, or that of data
};
// The column was fixed before, by a person or by the first look of this run.
struct ColumnKept
{
    std::size_t nColumn;
    unsigned uiType;
    string_t sTemplate;
};
// The type whose name is most like the header's word, of those that are left.
struct WordScored
{
    std::size_t nColumn;
    string_t sWord;
    unsigned uiType; // kNoType: the word says nothing, or all types were tried
    double fScore;   // share of the letters that agree; 1 for all
};
// The first data record refutes the type that the header's word names.
struct TypeRefused
{
    std::size_t nColumn;
    unsigned uiType;
    string_t sField;
};
struct TemplateRefuted
{
    std::size_t nColumn;
    unsigned uiType;
    string_t sTemplate;
    ULONGLONG nRecord; // the first that doesn't read with it
};
struct ColumnFound
{
    std::size_t nColumn;
    unsigned uiType; // kNoType: nothing fits
    string_t sTemplate;
};
struct ColumnRetyped
{
    RefinementRule rule;
    std::size_t nColumn;
    unsigned uiFrom;
    unsigned uiTo;
    ULONGLONG nRecord; // the one that the rule looked at last; kLastRecord for none
};
struct StepsMeasured
{
    bool bKnown;
    WORD wDay; // days; 0 where unknown
    WORD wMinute;
};
struct ResolutionRefused
{
    LONG nResolution;
    Refusal refusal;
    unsigned uiType; // that lacks or is there twice, else kNoType
};
struct ResolutionFound
{
    LONG nResolution; // 0: none fits
    LONG nSize;       // in the resolution's unit
};
// First and last date were read again.
struct RangeRead
{};

using DetectionNote = std::variant<Started, DividersFound, HeaderSought, ColumnKept, WordScored,
                                   TypeRefused, TemplateRefuted, ColumnFound, ColumnRetyped,
                                   StepsMeasured, ResolutionRefused, ResolutionFound, RangeRead>;

} // namespace Hesperon::specifics
