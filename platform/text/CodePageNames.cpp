#include "platform/text/CodePageNames.h"

#include <charconv>

namespace {

// Of several names of one number the first is that by which a converter is opened.
constexpr CodePageName kRegistered[] = {
    {65001, "utf-8"},        {1200, "utf-16le"},     {1200, "utf-16"},
    {1201, "utf-16be"},      {12000, "utf-32le"},    {12000, "utf-32"},
    {12001, "utf-32be"},     {65000, "utf-7"},       {20127, "us-ascii"},
    {28591, "iso-8859-1"},   {28592, "iso-8859-2"},  {28593, "iso-8859-3"},
    {28594, "iso-8859-4"},   {28595, "iso-8859-5"},  {28596, "iso-8859-6"},
    {28597, "iso-8859-7"},   {28598, "iso-8859-8"},  {28599, "iso-8859-9"},
    {28603, "iso-8859-13"},  {28605, "iso-8859-15"}, {936, "gbk"},
    {936, "gb2312"},         {950, "big5"},          {932, "shift_jis"},
    {949, "ks_c_5601-1987"}, {54936, "gb18030"},     {51932, "euc-jp"},
    {51936, "euc-cn"},       {51949, "euc-kr"},      {50220, "iso-2022-jp"},
    {50225, "iso-2022-kr"},  {52936, "hz-gb-2312"},  {20866, "koi8-r"},
    {21866, "koi8-u"},       {874, "tis-620"},       {10000, "macintosh"},
};

} // namespace

std::span<const CodePageName> RegisteredCodePages()
{
    return kRegistered;
}

std::string PlainName(std::string_view name)
{
    std::string plain;
    for (const char c : name)
        if (c != '-' && c != '_' && c != ' ')
            plain += c >= 'A' && c <= 'Z' ? static_cast<char>(c + 0x20) : c;
    return plain;
}

UINT RegisteredCodePage(std::string_view name)
{
    const std::string plain = PlainName(name);
    for (const CodePageName& row : kRegistered)
        if (plain == PlainName(row.name))
            return row.nCodePage;
    return 0;
}

UINT CodePageInName(std::string_view name)
{
    const std::string plain = PlainName(name);
    std::string_view digits = plain;
    for (const std::string_view prefix : {"windows", "cp", "ibm"})
        if (digits.starts_with(prefix)) {
            digits.remove_prefix(prefix.size());
            break;
        }
    UINT n = 0;
    const char* end = digits.data() + digits.size();
    const auto result = std::from_chars(digits.data(), end, n);
    return result.ec == std::errc() && result.ptr == end ? n : 0;
}
