// RowPlan: reads a plain record straight into its row of a batch.
//
// A plan is made of a layout and the columns that a run delivers. What it reads is what Parse,
// get_CurrentDateTime and GetFieldValue of the record parser would give, bit for bit; where it
// isn't sure it says nothing, and the record is parsed in the general way. So it never finds a
// fault in a record.
//
// Belongs to a record parser, whose lock guards it.
#pragma once

#include <span>
#include <vector>

#include "interfaces/IValueMultiplier.h"
#include "src/parsing/ParserState.h"
#include "src/parsing/ResolutionStep.h"
#include "src/parsing/plan/KnownTexts.h"
#include "src/parsing/plan/PlainRecord.h"

namespace Hesperon::specifics {

class RowPlan
{
public:
    // What is done to a value on its way out; null for nothing.
    struct Multipliers
    {
        IQRL_TabulexConverter::IValueMultiplier* pPrice = nullptr;
        IQRL_TabulexConverter::IValueMultiplier* pVolume = nullptr;
    };

    // Makes the plan anew if layout or fields are others than before. False where the layout has
    // no plan. The state must stay as it is, and the multipliers alive, while the plan is used.
    bool Prepare(const ParserState& state, std::span<const ULONG> fields,
                 const Multipliers& multipliers);

    // Takes a record of ASCII and reads its date and time. The bytes must stay until the next one,
    // and PlainRecord::kPadding bytes behind them must be readable.
    bool ReadMoment(std::string_view sRecord, DATE& moment);

    // ---- of the record for which ReadMoment was true

    // Writes a row of empty cells, one for each delivered column. What it leaves in them where it
    // is false owns no memory.
    bool ReadRow(VARIANT* row);
    // Good until the next record.
    std::string_view Bytes(std::size_t nField) const { return m_record.Field(nField); }
    // Good until the next text is asked for.
    string_view_t Text(std::size_t nField);
    // Whether the step from an earlier record is one of the resolution.
    bool IsGoodStep(DATE fStep) const
    {
        return m_bChecksSteps && fStep >= 0 && !m_stepRule.IsBrokenBy(fStep);
    }

private:
    // What a plan is made of.
    struct Layout
    {
        std::vector<unsigned> types;
        std::vector<ULONG> fields;
        string_t sDate, sTime; // templates
        DividerSet dividers;
        bool operator==(const Layout&) const = default;
    };
    static Layout LayoutOf(const ParserState& state, std::span<const ULONG> fields);
    bool IsPlannable() const;
    void Compile();

    bool ReadDate(DATE& date);
    bool ReadTime(DATE& time);
    void MoveToBarEnd();
    // How a delivered column is read.
    enum class Kind : std::uint8_t
    {
        Symbol,
        Date,
        Time,
        Price,
        Volume,
        Whole // that no multiplier is for
    };
    struct Step
    {
        Kind kind;
        std::uint8_t nField;
    };
    static Kind KindOf(unsigned uiType);

    bool ReadValue(VARIANT& cell, Step step) const;
    bool WriteSymbols(VARIANT* row);
    void Multiply(VARIANT* row) const;

    Layout m_layout;
    bool m_bPlanned = false;
    const ParserState* m_pState = nullptr; // while the plan is used
    Multipliers m_multipliers;
    bool m_bMovesToBarEnd = false;
    bool m_bChecksSteps = false; // m_stepRule is that of a resolution
    StepRule m_stepRule;

    std::vector<Step> m_steps; // one for each cell of a row
    bool m_bSymbols = false;   // among them
    std::size_t m_nDate = kNoColumn;
    std::size_t m_nTime = kNoColumn; // none: the moment is the date
    std::size_t m_nFilled = 0;       // fields that a record must have
    CDataField m_dateColumn;         // copies for the texts that aren't known yet
    CDataField m_timeColumn;
    KnownTexts m_dates;
    KnownTexts m_times;

    PlainRecord m_record;
    string_t m_sText; // of the field last asked for
    DATE m_date = 0;
    DATE m_time = 0;
};

} // namespace Hesperon::specifics
