// The forms that values of a recipe's options have. Readers throw std::invalid_argument with one
// sentence for the user; printers give what the readers take.
#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "intake/Recipe.h"

namespace tabulex::intake {

// A word for a value.
template <class Value>
struct Choice
{
    const char* pszWord;
    Value value;
};

inline constexpr Choice<Decimal> kDecimals[] = {{"comma", Decimal::Comma},
                                                {"point", Decimal::Point}};
inline constexpr Choice<Thousands> kThousands[] = {{"comma", Thousands::Comma},
                                                   {"point", Thousands::Point},
                                                   {"blank", Thousands::Blank},
                                                   {"apostrophe", Thousands::Apostrophe}};
inline constexpr Choice<Order> kOrders[] = {{"moment", Order::Moment},
                                            {"symbol", Order::SymbolAndMoment}};
inline constexpr Choice<DateForm> kDateForms[] = {{"ymd", DateForm::YearMonthDay},
                                                  {"ydm", DateForm::YearDayMonth},
                                                  {"dmy", DateForm::DayMonthYear},
                                                  {"mdy", DateForm::MonthDayYear},
                                                  {"ym", DateForm::YearMonth},
                                                  {"my", DateForm::MonthYear},
                                                  {"epoch-s", DateForm::EpochSeconds},
                                                  {"epoch-ms", DateForm::EpochMilliseconds},
                                                  {"epoch-us", DateForm::EpochMicroseconds},
                                                  {"epoch-ns", DateForm::EpochNanoseconds},
                                                  {"serial", DateForm::SerialDays}};
inline constexpr Choice<ClockForm> kClockForms[] = {
    {"time", ClockForm::Any},
    {"hhmm", ClockForm::HoursMinutes},
    {"hhmmss", ClockForm::HoursMinutesSeconds},
    {"hhmmssfff", ClockForm::HoursMinutesMilliseconds},
    {"second-of-day", ClockForm::SecondsOfDay},
    {"ms-of-day", ClockForm::MillisecondsOfDay}};

template <class Value, std::size_t N>
std::optional<Value> FindChoice(const Choice<Value> (&choices)[N], const std::string& word)
{
    for (const auto& choice : choices)
        if (word == choice.pszWord)
            return choice.value;
    return std::nullopt;
}

template <class Value, std::size_t N>
Value ReadChoice(const Choice<Value> (&choices)[N], const std::string& word)
{
    if (const auto value = FindChoice(choices, word))
        return *value;
    std::string known;
    for (const auto& choice : choices)
        known += (known.empty() ? "" : ", ") + std::string(choice.pszWord);
    throw std::invalid_argument("'" + word + "' is not one of " + known);
}

// Empty for a value that has no word.
template <class Value, std::size_t N>
std::string WordOf(const Choice<Value> (&choices)[N], Value value)
{
    for (const auto& choice : choices)
        if (choice.value == value)
            return choice.pszWord;
    return {};
}

std::uint64_t ReadCount(const std::string& value);
std::uint32_t ReadColumnNumber(const std::string& value);

// A word or the character itself. Nothing is printed for 0.
char ReadSeparator(const std::string& value);
std::vector<std::string> SeparatorText(char cDivider);

// "3:/"
Split ReadSplit(const std::string& value);
std::string SplitText(const Split& split);

// "1+2:dmy+time"
Moment ReadMoment(const std::string& value);
std::string MomentText(const Moment& moment);

// "2=Open", "1+3.2=Symbol"
Take ReadTake(const std::string& value);
std::string TakeText(const Take& take);

// "Volume:8"
Scale ReadScale(const std::string& value);
std::string ScaleText(const Scale& scale);

// "FROM:TO", or FROM alone
Zones ReadZones(const std::string& value);
std::string ZonesText(const Zones& zones);

// "2013-10-07"
CalendarDate ReadDay(const std::string& value);
std::string DayText(const CalendarDate& date);

} // namespace tabulex::intake
