#include <gtest/gtest.h>

#include "src/parsing/DataTypes.h"
#include "src/parsing/templates/TemplateDryRun.h"
#include "tests/parsing/FieldText.h"

using namespace Hesperon::specifics;

namespace {

TEST(DryRun, LooksAtLengthsAndDigitsAlone)
{
    struct
    {
        unsigned uiType;
        string_view_t sTemplate;
        string_view_t sText;
        bool bExpected;
    } rows[] = {
        {TypeDate, OLESTR("yyyymmdd"), OLESTR("20039999"), true},
        {TypeDate, OLESTR("yyyymmdd"), OLESTR("2003125"), false},
        {TypeDate, OLESTR("*y/*m/*d"), OLESTR("x/1/1"), false},
        {TypeDate, OLESTR("*d-mmm-*y"), OLESTR("1-xyz-3"), true},
        {TypeDate, OLESTR("*d-*m-*y"), OLESTR("1-x-3"), true}, // the star's own symbol is m
        {TypeDate, OLESTR("*d-*m-*y"), OLESTR("1-xx-3"), false},
        {TypeDate, OLESTR("*d-*m-*y"), OLESTR("1-1"), false},
        {TypeDate, OLESTR("*d-*m"), OLESTR("1-"), true}, // the text ends early
        {TypeDate, OLESTR("??yy"), OLESTR("xy12"), true},
        {TypeDate, OLESTR("y??y"), OLESTR("1xy2"), false},
        {TypeDate, OLESTR("y??y"), OLESTR("1x22"), true},
        {TypeDate, OLESTR("xx"), OLESTR("12"), true}, // letters aren't looked up
        // Dividers at the end stay on both sides.
        {TypeDate, OLESTR("*y/*m/"), OLESTR("3/1/"), true},
        {TypeDate, OLESTR("*m/*y"), OLESTR("3/1/"), false},
        {TypeTime, OLESTR("*hmm"), OLESTR("9:30"), true},
        {TypeTime, OLESTR("*hmm"), OLESTR("5"), false}, // evaluation would take it
        {TypeTime, OLESTR("*hmm"), OLESTR("25"), false},
        {TypeTime, OLESTR("*h:mm"), OLESTR("9:3"), false},
        {TypeTime, OLESTR("*h:*mtt@pm"), OLESTR("9:30pm"), true},
        {TypeTime, OLESTR("*h:*mtt@pm"), OLESTR("9:30"), false},
        {TypeTime, OLESTR("*h:*m"), OLESTR(""), true},
        // A sign of each chunk doesn't count for its length.
        {TypeDate, OLESTR("yy/mm"), OLESTR("-03/+12"), true},
        {TypeDate, OLESTR("yyy"), OLESTR("-03"), false},
        {TypeDate, OLESTR("*y"), OLESTR("--3"), false},
        {TypeDate, OLESTR("*y"), OLESTR("-"), false},
        {TypeTime, OLESTR("h*m"), OLESTR("930"), false},
        {TypeTime, OLESTR("*"), OLESTR("930"), false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE("\"" + Shown(row.sTemplate) + "\" on \"" + Shown(row.sText) + "\"");
        EXPECT_EQ(CouldTake(row.uiType, row.sTemplate, row.sText), row.bExpected);
    }
}

} // namespace
