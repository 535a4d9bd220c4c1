#include "tests/parsing/FieldText.h"

#include <chrono>
#include <cmath>

#include <fmt/format.h>

using namespace Hesperon::specifics;

namespace {

std::string ShownDay(DATE date)
{
    using namespace std::chrono;
    const year_month_day day(sys_days(1899y / December / 30) + days(std::lround(date)));
    return fmt::format("{:04}-{:02}-{:02}", static_cast<int>(day.year()),
                       static_cast<unsigned>(day.month()), static_cast<unsigned>(day.day()));
}

std::string ShownTime(DATE date)
{
    const LONGLONG n = std::llround(date * 86400000);
    return fmt::format("{:02}:{:02}:{:02}.{:03}", n / 3600000, n / 60000 % 60, n / 1000 % 60,
                       n % 1000);
}

} // namespace

std::string Shown(string_view_t sText)
{
    std::string shown;
    for (OLECHAR c : sText)
        shown += c >= 0x20 && c < 0x7F ? std::string(1, static_cast<char>(c))
                                       : fmt::format("{{{:04x}}}", static_cast<unsigned>(c));
    return shown;
}

CDataField Column(unsigned uiType, string_view_t sTemplate)
{
    CDataField field;
    field.SetTypeAndTemplate(uiType, sTemplate);
    return field;
}

std::string ShownValue(CDataField& field)
{
    VARIANT value{};
    if (FAILED(field.GetValue(&value)))
        return kRefused;
    switch (value.vt) {
    case VT_R8:
        return fmt::format("{}", value.dblVal);
    case VT_I8:
        return fmt::format("{}", value.llVal);
    case VT_DATE:
        return field.GetType() == 1 ? ShownDay(value.date) : ShownTime(value.date);
    default:
        return fmt::format("kind {}", value.vt);
    }
}

std::string Read(unsigned uiType, string_view_t sTemplate, string_view_t sText)
{
    CDataField field;
    field.SetTypeAndTemplate(uiType, sTemplate);
    field.ParseField(sText);
    return ShownValue(field);
}
