// The scanner of documents; each row is a document.

#include <gtest/gtest.h>

#include "tests/values/Heard.h"

namespace {

struct DocumentRow
{
    string_view_t sDocument;
    const char* sHeard;
};

template <std::size_t N>
void Check(const DocumentRow (&rows)[N])
{
    for (const DocumentRow& row : rows) {
        SCOPED_TRACE(std::string(row.sDocument.begin(), row.sDocument.end()));
        EXPECT_EQ(row.sHeard, Heard(row.sDocument));
        EXPECT_EQ(row.sHeard, PlainlyHeard(row.sDocument));
    }
}

TEST(Scanner, ReportsTagsAndTextInTheirOrder)
{
    constexpr DocumentRow kRows[] = {
        {OLESTR(""), "ok"},
        {OLESTR(" \t\r\n"), "ok"},
        {OLESTR("<A>text</A>"), "+A 'text' -A ok"},
        {OLESTR("\r\n<A>\r\n<B>x</B>\r\n</A>\r\n"), "+A +B 'x' -B -A ok"},
        {OLESTR("text<A>"), "'text' +A ok"},
        {OLESTR("<A></B>"), "+A -B ok"}, // tags needn't match
        {OLESTR("<a><A>"), "+a +A ok"},
        {OLESTR("< A >x</ A >"), "+A 'x' -A ok"},
        {OLESTR("< /A>"), "+/A ok"}, // the slash of an end tag must follow the '<'
        {OLESTR("<A><>"), "+A broken"},
        {OLESTR("<A></>"), "+A broken"},
        {OLESTR("<A></ >"), "+A broken"},
        {OLESTR("<A>< >"), "+A broken"},
        {OLESTR("<A</A>"), "+A</A ok"},
        {OLESTR("<A\u3000>\u2003x</A>"), "+A 'x' -A ok"}, // blanks of any script
    };
    Check(kRows);
}

TEST(Scanner, EndsWithItsTextOrAtAZero)
{
    constexpr DocumentRow kRows[] = {
        {OLESTR("<A>x</A>stray"), "+A 'x' -A broken"}, // nothing follows the text
        {OLESTR("<A>x</A>\r\n\r\n"), "+A 'x' -A ok"},
        {OLESTR("stray"), "broken"},
        {OLESTR("<"), "broken"},
        {OLESTR("<A"), "broken"},
        {OLESTR("</"), "broken"},
        {OLESTR("</A"), "broken"},
        {OLESTR("< "), "broken"},
        {OLESTR("<A "), "broken"},
        {OLESTR("<A/"), "broken"},
        {OLESTR("<A /"), "+A -A broken"}, // reported before the missing end is noticed
    };
    Check(kRows);
    constexpr string_view_t kWithZero(OLESTR("<A>x</A>\0<B>stray"), 17);
    EXPECT_EQ("+A 'x' -A ok", Heard(kWithZero));
    EXPECT_EQ("+A 'x' -A ok", PlainlyHeard(kWithZero));
}

TEST(Scanner, TrimsQuotesOnly)
{
    constexpr DocumentRow kRows[] = {
        {OLESTR("<A>\"x\"</A>"), "+A 'x' -A ok"},
        {OLESTR("<A>\"\"\"x\"y\"\"</A>"), "+A 'x\"y' -A ok"},
        {OLESTR("<A>\" x \"</A>"), "+A ' x ' -A ok"},
        {OLESTR("<A> x \t</A>"), "+A 'x {0009}' -A ok"}, // blanks in front of the text go
        {OLESTR("<A>x\" </A>"), "+A 'x\" ' -A ok"},
        {OLESTR("<A>\"\"</A>"), "+A '' -A ok"},
        {OLESTR("<A>\"</A>"), "+A '' -A ok"},
        {OLESTR("<\"A\">x</\"A\">"), "+A 'x' -A ok"},
        {OLESTR("<\"\">"), "+ ok"},
    };
    Check(kRows);
}

TEST(Scanner, ReportsTheEndOfAnElementThatClosesItself)
{
    constexpr DocumentRow kRows[] = {
        {OLESTR("<A/>"), "+A -A ok"},         {OLESTR("<A />"), "+A -A ok"},
        {OLESTR("<A b=\"c\"/>"), "+A -A ok"}, {OLESTR("<A//>"), "+A/ -A/ ok"},
        {OLESTR("<//>"), "broken"}, // no name is left
        {OLESTR("</A/>"), "-A ok"}, // an end tag ends once
        {OLESTR("<A/b>"), "+A/b ok"},
    };
    Check(kRows);
}

TEST(Scanner, StepsOverOneCharacterBehindASlash)
{
    constexpr DocumentRow kRows[] = {
        {OLESTR("<A /x>y</A>"), "+A -A '>y' -A ok"},
        {OLESTR("<A / >y</A>"), "+A -A '>y' -A ok"},
        {OLESTR("<A /<B>"), "+A -A broken"}, // "B>" is text that no tag follows
    };
    Check(kRows);
}

TEST(Scanner, DropsAttributes)
{
    constexpr DocumentRow kRows[] = {
        {OLESTR("<A b=c d='e>' f=\"/>\" g>x</A>"), "broken"}, // g runs on to a blank or '='
        {OLESTR("<A b=c d='e>' f=\"/>\" g >x</A>"), "+A 'x' -A ok"},
        {OLESTR("<A b = c>x</A>"), "+A 'x' -A ok"},
        {OLESTR("<A\tb\n=\r\"c\"d='e'>x</A>"), "+A 'x' -A ok"},
        {OLESTR("<A =>x</A>"), "+A 'x' -A ok"},    // neither name nor value
        {OLESTR("<A b=c/>x</A>"), "+A 'x' -A ok"}, // the slash is the value's
        {OLESTR("<A b/ >x</A>"), "+A 'x' -A ok"},  // or the name's
        {OLESTR("<A ?>x</A>"), "broken"},
        {OLESTR("</A b=c>x<B>"), "-A 'x' +B ok"},
        {OLESTR("<A b"), "broken"},
        {OLESTR("<A b "), "broken"},
        {OLESTR("<A b="), "broken"},
        {OLESTR("<A b= "), "broken"},
        {OLESTR("<A b=c"), "broken"},
        {OLESTR("<A b=\"c>"), "broken"},
        {OLESTR("<A b=\"c\""), "broken"},
        {OLESTR("<A b='c\">"), "broken"},
    };
    Check(kRows);
}

TEST(Scanner, PassesCommentsAndInstructions)
{
    constexpr DocumentRow kRows[] = {
        {OLESTR("<?xml version=\"1.0\"?><A>"), "+A ok"},
        {OLESTR("<?XML?><A>"), "+?XML? +A ok"}, // no blank: the name is another
        {OLESTR("<?XML ?><A>"), "+A ok"},
        {OLESTR("<?xml><A>"), "+A ok"},
        {OLESTR("<?xml/><A>"), "+A ok"},
        {OLESTR("<?xml ?x<A>"), "+A ok"},
        {OLESTR("</?xml>"), "-?xml ok"},
        {OLESTR("<!-- x --><A>"), "+A ok"},
        {OLESTR("<!--x--><A>"), "+A ok"},
        {OLESTR("<!----><A>"), "+A ok"},
        {OLESTR("<!-- <B> -- > --><A>"), "+A ok"},
        {OLESTR("<A><!-- x "), "+A broken"},
        {OLESTR("<A><!-->"), "+A broken"},
        {OLESTR("<A><!--/>"), "+A broken"},
        {OLESTR("<A><!-- --"), "+A broken"},
        {OLESTR("</!-- x><A>"), "broken"}, // no comment to be skipped, but attributes
        {OLESTR("</!-- x ><A>"), "+A ok"},
        {OLESTR("<!A>"), "+!A ok"},
    };
    Check(kRows);
}

TEST(Scanner, LeavesScriptsAndStylesUnread)
{
    constexpr DocumentRow kRows[] = {
        {OLESTR("<script><A>x</A></script><B>"), "+script -script +B ok"},
        {OLESTR("<SCRIPT a=b>1 <2 </Script><B>"), "+SCRIPT -Script +B ok"},
        {OLESTR("<script>1 <2</script><B>"), "+script broken"}, // a name of 2</script
        {OLESTR("<style></script><A/></ STYLE ><B>"), "+style -STYLE +B ok"},
        {OLESTR("<script><script></script></script>"), "+script -script -script ok"},
        {OLESTR("<script><!-- </script> --><A>"), "+script -script '-->' +A ok"},
        {OLESTR("<script><></script>"), "+script -script ok"}, // a nameless tag is content
        {OLESTR("<script></script/>"), "+script broken"},      // another name
        {OLESTR("<script/><A>x</A>"), "+script -script +A 'x' -A ok"},
        {OLESTR("<script /><A>x</A>"), "+script -script +A 'x' -A ok"},
        {OLESTR("</script><A>x</A>"), "-script +A 'x' -A ok"},
        {OLESTR("<script>x"), "+script broken"},
        {OLESTR("<script><"), "+script broken"},
        {OLESTR("<script></script"), "+script broken"},
        {OLESTR("<scripts><A/></scripts>"), "+scripts +A -A -scripts ok"},
    };
    Check(kRows);
}

} // namespace
