// What a call throws, as text.
#pragma once

#include <stdexcept>
#include <string>

// The text of the std::range_error that the call throws; empty if it throws
// nothing. Any other exception passes through and fails the test.
template <class Call>
std::string FaultOf(Call call)
{
    try {
        call();
    } catch (const std::range_error& fault) {
        return fault.what();
    }
    return {};
}
