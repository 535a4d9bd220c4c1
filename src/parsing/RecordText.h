// The text of a record: normalising, and splitting into fields.
//
// Fields are counted in two ways. Parsing skips empty fields, so in "a,,b" the b is
// field 1; FieldAt counts them, and there b is field 2. Blanks and tabs at both ends of a
// field are cut first.
#pragma once

#include <optional>

#include "src/parsing/detection/Dividers.h"

namespace Hesperon::specifics {

// Collapses runs of blanks and tabs inside the record to their first character and
// drops quotes and brackets ('"()[]). Cuts the record at kMaxText characters.
// Characters are judged by their low byte alone.
void NormaliseRecord(string_t& sRecord);
string_t NormalisedRecord(string_view_t sRecord);

// Walks the fields of a record:
//   for (FieldWalk walk(sRecord, dividers); walk.Next();) use(walk.Text());
class FieldWalk
{
public:
    FieldWalk(string_view_t sRecord, const DividerSet& dividers)
        : m_sRest(sRecord), m_dividers(dividers)
    {}

    // To the next field, which may be empty; false after the last one. An empty record
    // has one empty field.
    bool Next();
    // To the next field that isn't empty.
    bool NextFilled();
    string_view_t Text() const { return m_sField; }

private:
    string_view_t m_sRest;
    string_view_t m_sField;
    const DividerSet& m_dividers;
    bool m_bEnd = false;
};

// Field nIndex with empty ones counted; nothing if there are fewer.
std::optional<string_view_t> FieldAt(string_view_t sRecord, const DividerSet& dividers,
                                     std::size_t nIndex);
// Field nIndex with empty ones skipped; nothing if there are fewer.
std::optional<string_view_t> FilledFieldAt(string_view_t sRecord, const DividerSet& dividers,
                                           std::size_t nIndex);

// Whether no field looks like data: like a number, or like a date or time.
bool IsHeaderRecord(string_view_t sRecord, const DividerSet& dividers);

// Whether the record can be a line of quotes: in the ANSI code page it isn't empty, is
// shorter than 259 bytes, and has no control bytes but tab, CR and LF.
bool IsTextRecord(string_view_t sRecord);

} // namespace Hesperon::specifics
