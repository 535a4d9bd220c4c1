// DateEdit: a date that is typed as YYYY-MM-DD, with or without HH:MM:SS.
//
// The text always has this form: digits overwrite digits, and the rest stays. With no date
// there are underscores in their place.
#pragma once

#include <optional>
#include <string>

#include "platform/component.h"
#include "tools/tabulex/import/terminal/Input.h"

namespace tabulex {

class DateEdit
{
public:
    static int WidthOf(bool bWithTime) { return bWithTime ? 19 : 10; }
    // "2024-01-03 09:30:00"
    static std::string TextOf(const std::optional<SYSTEMTIME>& date, bool bWithTime);

    // Shows a date, unless it is the one that it has anyway; the caret goes to the front.
    void Load(const std::optional<SYSTEMTIME>& date, bool bWithTime);

    // The date that the text says is the one it has from now on; text and caret stay.
    void Keep(const SYSTEMTIME& date) { m_date = date; }

    const std::string& Text() const { return m_sText; }
    int Caret() const { return static_cast<int>(m_nCaret); }

    // True if the key belongs to the edit.
    bool Handle(const Input& input);
    // The date that the text says, once it says one: any day from 1900 to 2078. Where no time is
    // shown, that of the date that was loaded stays; with one, milliseconds are 0.
    std::optional<SYSTEMTIME> Value() const;

private:
    bool IsDigitPlace(std::size_t n) const
    {
        return m_sText[n] != '-' && m_sText[n] != ':' && m_sText[n] != ' ';
    }
    void Step(int nStep);
    void Type(char c);

    std::optional<SYSTEMTIME> m_date; // as loaded
    bool m_bWithTime = false;
    std::string m_sText;
    std::size_t m_nCaret = 0; // on the place of a digit
};

bool IsSameMoment(const std::optional<SYSTEMTIME>& a, const std::optional<SYSTEMTIME>& b);

} // namespace tabulex
