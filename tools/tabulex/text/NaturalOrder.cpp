// Numbers are compared as texts, the longer one being greater, so that none is too long. Zeros in
// front don't count until all else is equal; then the bytes decide, so that the order never depends
// on that in which the system lists its files.

#include "tools/tabulex/text/NaturalOrder.h"

#include <algorithm>
#include <compare>

namespace tabulex {

namespace {

constexpr std::string_view kDigits = "0123456789";

bool BeginsNumber(std::string_view text)
{
    return !text.empty() && kDigits.find(text[0]) != std::string_view::npos;
}

// Takes the digits at the front, without the zeros that don't count.
std::string_view TakeNumber(std::string_view& text)
{
    std::string_view number =
        text.substr(0, std::min(text.find_first_not_of(kDigits), text.size()));
    text.remove_prefix(number.size());
    number.remove_prefix(std::min(number.find_first_not_of('0'), number.size()));
    return number;
}

std::strong_ordering CompareNumbers(std::string_view a, std::string_view b)
{
    return a.size() != b.size() ? a.size() <=> b.size() : a.compare(b) <=> 0;
}

} // namespace

bool NaturalLess(std::string_view a, std::string_view b)
{
    std::string_view restA = a, restB = b;
    while (!restA.empty() && !restB.empty()) {
        if (BeginsNumber(restA) && BeginsNumber(restB)) {
            const auto order = CompareNumbers(TakeNumber(restA), TakeNumber(restB));
            if (order != 0)
                return order < 0;
        } else if (restA[0] != restB[0]) {
            return static_cast<unsigned char>(restA[0]) < static_cast<unsigned char>(restB[0]);
        } else {
            restA.remove_prefix(1);
            restB.remove_prefix(1);
        }
    }
    return restA.empty() && restB.empty() ? a < b : restA.empty();
}

} // namespace tabulex
