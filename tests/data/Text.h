// Texts of tests: UTF-16 to something that can be printed and compared, and back.
#pragma once

#include <charconv>
#include <optional>
#include <string>
#include <vector>

#include "platform/CodePage.h"
#include "platform/values.h"

inline std::string Utf8(string_view_t sText)
{
    return EncodeText(65001, sText);
}

inline string_t Wide(std::string_view sText)
{
    string_t result;
    DecodeBytes(65001, sText, result);
    return result;
}

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
