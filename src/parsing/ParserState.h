// What a record parser knows: the layout of the file's records and the record
// last parsed. The record parser owns one and guards it with its lock; detection
// works on it by reference.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "interfaces/IDataParser.h"
#include "src/parsing/DataTypes.h"
#include "src/parsing/detection/Dividers.h"
#include "src/parsing/templates/IQDParseImpl.h"

namespace Hesperon::specifics {

inline constexpr std::size_t kNoColumn = ~std::size_t(0);

struct ResolutionTemplate
{
    string_t sName; // the host's, optionally with "|size" after it
    LONG nId;
};

enum class ParsePhase
{
    Created, // Parse does nothing
    Reset,   // the next Parse finds the layout
    Ready,   // Parse parses
};

// What becomes of columns that were predefined before.
enum class OldEntries
{
    Keep,    // all stay; a column that has one gets no other
    Replace, // those of columns that are entered again
    Forget,  // all go
};

struct ParserState
{
    std::vector<CDataField> m_fields; // one for each column, in file order
    // Columns that the user or an earlier pass fixed; detection copies them.
    std::map<std::size_t, CDataField> m_predefinedFields;
    TypeTable m_types = DefaultTypes();
    DividerSet m_dividers;
    bool m_bDividerFound = false; // m_dividers are settled
    LONG m_nResolution = ResolutionNone;
    LONG m_nResolutionSize = 0; // bar size in the resolution's unit
    bool m_bUseBarsEndTime = false;
    bool m_bHasHeader = false;
    ParsePhase m_phase = ParsePhase::Created;
    string_t m_sCurrentRecord; // normalised
    string_t m_strHeader;      // the line that names the columns; empty without one
    IQRL_TabulexConverter::IDataParser* m_pDataParser = nullptr; // not counted
    std::vector<ResolutionTemplate> m_resolutionTemplates;
    bool m_bAutoHeader = true; // detection may look for header lines
    bool m_bSmartResolution = false;

    // First column of a type, kNoColumn for none.
    std::size_t Index(unsigned uiType) const
    {
        for (std::size_t i = 0; i < m_fields.size(); ++i)
            if (m_fields[i].GetType() == uiType)
                return i;
        return kNoColumn;
    }
    CDataField* Column(unsigned uiType)
    {
        const std::size_t i = Index(uiType);
        return i == kNoColumn ? nullptr : &m_fields[i];
    }

    // Enters all Date and Time columns as predefined, as they stand.
    void PredefineDatesAndTimes(OldEntries old)
    {
        if (old == OldEntries::Forget)
            m_predefinedFields.clear();
        for (std::size_t i = 0; i < m_fields.size(); ++i) {
            const unsigned uiType = m_fields[i].GetType();
            if (uiType != TypeDate && uiType != TypeTime)
                continue;
            if (old == OldEntries::Keep)
                m_predefinedFields.try_emplace(i, m_fields[i]);
            else
                m_predefinedFields.insert_or_assign(i, m_fields[i]);
        }
    }

    // The next record that is parsed is the first of a layout.
    void ForgetColumns()
    {
        m_phase = ParsePhase::Reset;
        m_fields.clear();
        m_predefinedFields.clear();
        m_bHasHeader = false;
    }
};

} // namespace Hesperon::specifics
