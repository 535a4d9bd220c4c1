// Records of the fake record parser: fields between commas, some of them numbers.
#pragma once

#include <charconv>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/Text.h"

inline std::vector<string_t> Split(string_view_t sText)
{
    std::vector<string_t> fields;
    for (;;) {
        const std::size_t nAt = sText.find(OLECHAR(','));
        fields.emplace_back(sText.substr(0, nAt));
        if (nAt == sText.npos)
            return fields;
        sText.remove_prefix(nAt + 1);
    }
}

inline std::optional<double> Number(string_view_t sText)
{
    const std::string s = Utf8(sText);
    double fNumber = 0;
    const auto [end, error] = std::from_chars(s.data(), s.data() + s.size(), fNumber);
    if (error != std::errc() || end != s.data() + s.size())
        return {};
    return fNumber;
}
