#include "src/UIComponents/DecimalText.h"

#include <gtest/gtest.h>

using namespace Hesperon::specifics::UILayer;

TEST(DecimalText, IsReadUpToTheFirstOtherCharacter)
{
    struct
    {
        const OLECHAR* pszText;
        LONG nValue;
        ULONG nAbsolute;
    } const kRows[] = {
        {OLESTR(""), 0, 0},
        {OLESTR("12"), 12, 12},
        {OLESTR("-12"), -12, 12},
        {OLESTR("+7"), 7, 7},
        {OLESTR(" \t\r\n8 9"), 8, 8},
        {OLESTR("12abc"), 12, 12},
        {OLESTR("abc"), 0, 0},
        {OLESTR("N/A"), 0, 0},
        {OLESTR("- 5"), 0, 0},
        {OLESTR("--5"), 0, 0},
        {OLESTR("007"), 7, 7},
        {OLESTR("2147483647"), 2147483647, 2147483647},
        {OLESTR("2147483648"), 2147483647, 2147483647},
        {OLESTR("99999999999999999999999"), 2147483647, 2147483647},
        {OLESTR("-2147483648"), -2147483647 - 1, 2147483648},
        {OLESTR("-99999999999999999999999"), -2147483647 - 1, 2147483648},
    };
    for (const auto& row : kRows) {
        EXPECT_EQ(DecimalValue(row.pszText), row.nValue);
        EXPECT_EQ(AbsoluteDecimalValue(row.pszText), row.nAbsolute);
    }
}
