// CDataField: one column of a record, with its type, its template, and the value
// of the text last parsed. docs/templates.md documents the template language.
//
// A template is compiled when type or template change; parsing runs the compiled
// form and allocates nothing. Not synchronised: the record parser's lock guards
// its columns.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "interfaces/FieldsAndResolutions.h"
#include "platform/component.h"
#include "src/parsing/templates/MathValue.h"
#include "src/parsing/templates/TemplateMatcher.h"
#include "src/parsing/templates/TemplateVariables.h"
#include "src/parsing/templates/TextTests.h"

namespace Hesperon::specifics {

using IQRL_TabulexConverter::kNoType;

class CDataField
{
public:
    // A Date without a template.
    CDataField() = default;
    // A copy takes the type, the valid flag, the cached value, and the template as
    // GetTemplate gives it. Its variables are 0.
    CDataField(const CDataField& other);
    CDataField& operator=(const CDataField& other);
    CDataField(CDataField&&) noexcept = default;
    CDataField& operator=(CDataField&&) noexcept = default;

    unsigned GetType() const { return m_uiType; }
    void SetType(unsigned uiType);

    // "symbol" for a Symbol, "float" for prices, "int" for whole numbers; the
    // template that was set for Date and Time; empty for a column without a type.
    string_view_t GetTemplate() const;
    // Lower-cased, cut at kMaxText.
    void SetTemplate(string_view_t sTemplate);
    // Type and template in one compilation.
    void SetTypeAndTemplate(unsigned uiType, string_view_t sTemplate);

    // Evaluates the text and applies the validity rules.
    void ParseField(string_view_t sText);

    bool IsValid() const { return m_bValid; }
    void SetValid(bool bValid) { m_bValid = bValid; }

    // The value of the text last parsed, as VT_DATE, VT_R8 or VT_I8. E_FAIL while it
    // isn't valid, and for a time whose hour is 24: such a text is valid, but only
    // together with a date. The value is computed once and then kept, also when the
    // type changes. A time is a fraction of a day, a date has none. *pVar is written on
    // success only; what it held isn't freed.
    HRESULT GetValue(VARIANT* pVar)
    {
        if (!pVar || !m_bValid || !HasCachedValue())
            return ComputeAndGetValue(pVar);
        *pVar = m_value;
        return S_OK;
    }
    bool HasCachedValue() const { return m_value.vt != VT_EMPTY; }
    void SetCachedDate(DATE date);

    // The variable of a letter, null if the template doesn't declare it. A change
    // through it doesn't touch the cached value.
    tagMATHVALUE* FindVariable(OLECHAR letter);
    // Its integer value, 0 if it isn't declared.
    LONGLONG VariableOr0(OLECHAR letter);
    // The hour with the PM word taken into account; 0 to 24 in a valid text.
    LONGLONG HourOfDay();

    // Exchanges type, template, valid flag and cached value. Afterwards the variables of
    // both are 0.
    void Swap(CDataField& other);

private:
    struct CivilDay
    {
        WORD nYear = 0, nMonth = 0, nDay = 0;
        bool operator==(const CivilDay&) const = default;
    };

    HRESULT ComputeAndGetValue(VARIANT* pVar);
    void StoreTemplate(string_view_t sTemplate);
    void Rebuild();
    HRESULT Evaluate(string_view_t sText);
    template <class Number>
    HRESULT EvaluateNumber(OLECHAR letter, string_view_t sText,
                           bool (*read)(string_view_t, Number&), tagMATHVALUE (*make)(Number));
    bool FollowsRules();
    bool IsDateInRange();
    bool IsTimeInRange();
    HRESULT ComputeValue();
    DATE ComputeDate();
    static DATE DateOf(CivilDay day);
    DATE ComputeTime(); // REQUIRES: HourOfDay() of 0 to 23

    string_t m_szTemplate; // as set, whatever the type makes of it
    TemplateVariables m_vars;
    CompiledTemplate m_compiled; // of a Date or Time; else empty
    unsigned m_uiType = 1;
    bool m_bValid = false;
    VARIANT m_value{};  // VT_EMPTY until asked for; never a kind that owns memory
    CivilDay m_lastDay; // of the last date worked out
    DATE m_lastDate = 0;
};

} // namespace Hesperon::specifics
