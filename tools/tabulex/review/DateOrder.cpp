// Only the three orders that are in use are tried, and only those that fit the place of a year in
// four digits. A day is reread without its text: the numbers of its parts are taken in the
// template's order and read in the other one. No such day, as in month 13, speaks against that
// order.

#include "tools/tabulex/review/DateOrder.h"

#include <algorithm>
#include <array>
#include <chrono>

namespace tabulex {

namespace {

using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr std::string_view kOrders[] = {"ymd", "dmy", "mdy"};
constexpr LONG kUnixEpoch = 25569; // as a DATE

bool IsDatePart(char c)
{
    return c == 'd' || c == 'm' || c == 'y';
}

// The parts in their order, each once; empty for a template that names the month, or has other
// parts.
std::string OrderOf(std::string_view sTemplate)
{
    if (sTemplate.find("mmm") != std::string_view::npos)
        return {};
    std::string order;
    for (const char c : sTemplate)
        if (IsDatePart(c) && (order.empty() || order.back() != c))
            order += c;
    std::string sorted = order;
    std::ranges::sort(sorted);
    return sorted == "dmy" ? order : std::string();
}

std::string InOrder(std::string_view sTemplate, std::string_view from, std::string_view to)
{
    std::string result(sTemplate);
    for (char& c : result)
        if (IsDatePart(c))
            c = to[from.find(c)];
    return result;
}

// As the component takes years of two digits: up to 49 they are of this century.
int WholeYear(int nYear)
{
    return nYear < 50 ? nYear + 2000 : nYear + 1900;
}

} // namespace

DateOrder::DateOrder(std::string_view sTemplate, bool bShortYear)
    : m_sOrder(OrderOf(sTemplate)), m_bShortYear(bShortYear)
{
    if (m_sOrder.empty() || (!bShortYear && m_sOrder.back() != 'y'))
        return;
    for (const std::string_view order : kOrders) {
        if (order == m_sOrder || (!bShortYear && order.back() != 'y'))
            continue;
        m_orders.emplace_back(order);
        m_templates.push_back(InOrder(sTemplate, m_sOrder, order));
    }
}

std::optional<LONG> DateOrder::Reread(std::size_t n, LONG nDay) const
{
    const year_month_day date{sys_days{std::chrono::days{nDay - kUnixEpoch}}};
    const int nYear = static_cast<int>(date.year());
    std::array<int, 3> parts{};
    for (std::size_t i = 0; i < parts.size(); ++i)
        parts[i] = m_sOrder[i] == 'y'   ? (m_bShortYear ? nYear % 100 : nYear)
                   : m_sOrder[i] == 'm' ? static_cast<int>(static_cast<unsigned>(date.month()))
                                        : static_cast<int>(static_cast<unsigned>(date.day()));
    const auto part = [&](char c) { return parts[m_orders[n].find(c)]; };
    const year_month_day other{std::chrono::year{m_bShortYear ? WholeYear(part('y')) : part('y')},
                               std::chrono::month{static_cast<unsigned>(part('m'))},
                               std::chrono::day{static_cast<unsigned>(part('d'))}};
    if (!other.ok())
        return std::nullopt;
    return static_cast<LONG>(sys_days{other}.time_since_epoch().count()) + kUnixEpoch;
}

bool HasShortYear(std::string_view sTemplate, std::string_view sText)
{
    std::size_t nDigits = 0;
    std::size_t nLongest = 0;
    for (const char c : sText) {
        nDigits = c >= '0' && c <= '9' ? nDigits + 1 : 0;
        nLongest = std::max(nLongest, nDigits);
    }
    const bool bDivided = std::ranges::any_of(
        sTemplate, [](char c) { return !IsDatePart(c) && c != '*' && c != '?'; });
    // Without dividers all digits are one number: six with a short year, eight with a long one.
    return nLongest < (bDivided ? 3 : 7);
}

} // namespace tabulex
