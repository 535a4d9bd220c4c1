// The two parts of the environment, as they are written and read.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "src/parsing/EnvironmentDocument.h"
#include "tests/parsing/FieldText.h"
#include "tests/support/ReportLog.h"

using namespace Hesperon::specifics;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

TypeTable EmptyLists()
{
    TypeTable types;
    for (unsigned uiType = 0; uiType < TYPES_COUNT; ++uiType)
        types.emplace(uiType, CDataType(uiType));
    return types;
}

// "Date *y/*m/*d; Time", an exclamation mark after what can't be removed.
std::string Lists(const TypeTable& types)
{
    const auto list = [&](unsigned uiType) {
        std::string s = Shown(TypeName(uiType));
        for (const tagTEMPLATE& entry : types.at(uiType).Templates())
            s += " " + Shown(entry.szTemplate) + (entry.bDefault ? "!" : "");
        return s;
    };
    return list(TypeDate) + "; " + list(TypeTime);
}

constexpr string_view_t kEmptyLists =
    OLESTR("<RECORD_PARSER_ENVIRONMENT><TYPE><NAME>\"Date\"</NAME></TYPE>"
           "<TYPE><NAME>\"Time\"</NAME></TYPE></RECORD_PARSER_ENVIRONMENT>");

// ---- templates

TEST(TemplateDocument, IsOneLineOfTheTwoLists)
{
    TypeTable types = EmptyLists();
    EXPECT_EQ(Shown(kEmptyLists), Shown(WriteTemplates(types)));
    types[TypeDate].AddTemplate(OLESTR("*y/*m/*d"), true);
    types[TypeDate].AddTemplate(OLESTR("*d \"of\" *m & *y"), false);
    types[TypeTime].AddTemplate(OLESTR("*h:*m"), false);
    types[TypeOpen].AddTemplate(OLESTR("*i.*f"), false);
    EXPECT_EQ("<RECORD_PARSER_ENVIRONMENT>"
              "<TYPE><NAME>\"Date\"</NAME><TEMPLATE>\"*y/*m/*d\"</TEMPLATE>"
              "<TEMPLATE>\"*d \"of\" *m & *y\"</TEMPLATE></TYPE>"
              "<TYPE><NAME>\"Time\"</NAME><TEMPLATE>\"*h:*m\"</TEMPLATE></TYPE>"
              "</RECORD_PARSER_ENVIRONMENT>",
              Shown(WriteTemplates(types)));
}

TEST(TemplateDocument, OfEmptyListsReadsBack)
{
    TypeTable types = EmptyLists();
    EXPECT_TRUE(ReadTemplates(kEmptyLists, types));
    EXPECT_EQ("Date; Time", Lists(types));
}

TEST(TemplateDocument, OfTheDefaultListsReadsBackInOrder)
{
    const string_t sText = WriteTemplates(DefaultTypes());
    TypeTable types = EmptyLists();
    EXPECT_TRUE(ReadTemplates(sText, types));
    EXPECT_EQ(Shown(sText), Shown(WriteTemplates(types)));
    EXPECT_EQ(25U, types[TypeDate].Templates().size());
    EXPECT_EQ(10U, types[TypeTime].Templates().size());
}

TEST(TemplateDocument, AddsToTheListsByTheirOwnRules)
{
    TypeTable types = EmptyLists();
    types[TypeDate].AddTemplate(OLESTR("*y/*m/*d"), true);
    const string_view_t sText =
        OLESTR("<RECORD_PARSER_ENVIRONMENT><TYPE><NAME>Date</NAME><TEMPLATE>\"*Y/*M/*D\"</TEMPLATE>"
               "<TEMPLATE>\"*D-*M\"</TEMPLATE></TYPE></RECORD_PARSER_ENVIRONMENT>");
    EXPECT_TRUE(ReadTemplates(sText, types));
    EXPECT_TRUE(ReadTemplates(sText, types));
    EXPECT_EQ("Date *y/*m/*d! *d-*m; Time", Lists(types));
    EXPECT_EQ(3U, types[TypeDate].Templates()[0].nCount); // known ones are counted
    EXPECT_EQ(2U, types[TypeDate].Templates()[1].nCount);
}

TEST(TemplateDocument, LosesQuotesAtTheEndsOfATemplate)
{
    TypeTable types = EmptyLists();
    types[TypeTime].AddTemplate(OLESTR("*h:*m\""), false);
    types[TypeTime].AddTemplate(OLESTR("*h \"*m\" *s"), false);
    const string_t sText = WriteTemplates(types);
    types = EmptyLists();
    EXPECT_TRUE(ReadTemplates(sText, types));
    EXPECT_EQ("Date; Time *h:*m *h \"*m\" *s", Lists(types));
}

TEST(TemplateDocument, CantHoldATagWithinATemplate)
{
    TypeTable types = EmptyLists();
    types[TypeDate].AddTemplate(OLESTR("*y<*m"), false);
    types[TypeTime].AddTemplate(OLESTR("*h"), false);
    const string_t sText = WriteTemplates(types);
    types = EmptyLists();
    // <*m"</TEMPLATE> is a tag, so TEMPLATE stays open and the next name goes unread.
    EXPECT_TRUE(ReadTemplates(sText, types));
    EXPECT_EQ("Date *y *h; Time", Lists(types));
}

struct ReadRow
{
    string_view_t sText; // R, T, N and E stand for the elements' names
    bool bRead;
    const char* sLists;
};

string_t WithNames(string_view_t sShort)
{
    string_t s;
    for (const OLECHAR c : sShort) {
        switch (c) {
        case 'R':
            s += OLESTR("RECORD_PARSER_ENVIRONMENT");
            break;
        case 'T':
            s += OLESTR("TYPE");
            break;
        case 'N':
            s += OLESTR("NAME");
            break;
        case 'E':
            s += OLESTR("TEMPLATE");
            break;
        default:
            s += c;
        }
    }
    return s;
}

TEST(TemplateDocument, IsReadByTheElementsThatAreOpen)
{
    constexpr ReadRow kRows[] = {
        {OLESTR(""), true, "Date; Time"},
        {OLESTR("<R><T><N>date</N><E>*y</E></T></R>"), true, "Date *y; Time"},
        {OLESTR("<R><T><N>dAte</N><E>*y</E><E>*m</E></T><T><N>time</N><E>*h</E></T></R>"), true,
         "Date *y *m; Time *h"},
        // A template outside of a type, of the document, or within another element.
        {OLESTR("<R><T><N>date</N></T><E>*y</E></R>"), true, "Date; Time"},
        {OLESTR("<T><N>date</N><E>*y</E></T>"), true, "Date; Time"},
        {OLESTR("<R><T><N>date</N><N><E>*y</E></N></T></R>"), true, "Date; Time"},
        {OLESTR("<R><T><N>date</N>*y</T></R>"), true, "Date; Time"},
        {OLESTR("<R><T><N>date</N><E/>*y</T></R>"), true, "Date; Time"},
        // Unknown elements change nothing, and names are matched with case.
        {OLESTR("<x><R><x/><T><N>date</N><x><E>*y</E></T></x></R></x>"), true, "Date *y; Time"},
        {OLESTR("<R><T><N>date</N><e>*y</e></T></R>"), true, "Date; Time"},
        // One end closes an element that was opened twice.
        {OLESTR("<R><T><T><N>date</N><E>*y</E></T><E>*m</E></T></R>"), true, "Date *y; Time"},
        // The name holds until the next one.
        {OLESTR("<R><T><N>date</N></T><T><E>*y</E></T></R>"), true, "Date *y; Time"},
        {OLESTR("<R><T><N>date</N><N>time</N><E>*h</E></T></R>"), true, "Date; Time *h"},
        // A comment splits a text in two.
        {OLESTR("<R><T><N>date</N><E>*y<!-- x -->*m</E></T></R>"), true, "Date *y *m; Time"},
        {OLESTR("<?xml version=\"1.0\"?><R><T><N>date</N><E>*y</E></T></R>"), true,
         "Date *y; Time"},
        {OLESTR("<R><T><N>date</N><E>\"\"</E></T></R>"), true, "Date; Time"},
        // What was read before a fault is kept.
        {OLESTR("<R><T><N>date</N><E>*y</E><!-- "), false, "Date *y; Time"},
        {OLESTR("<R><T><N>date</N><E>*y</E></T></R>stray"), false, "Date *y; Time"},
        {OLESTR("<R><T><N>date</N><E>*y"), false, "Date; Time"},
    };
    ReportLog reports;
    for (const ReadRow& row : kRows) {
        SCOPED_TRACE(Shown(row.sText));
        TypeTable types = EmptyLists();
        EXPECT_EQ(row.bRead, ReadTemplates(WithNames(row.sText), types));
        EXPECT_EQ(row.sLists, Lists(types));
    }
    EXPECT_THAT(reports.Texts(), IsEmpty());
}

TEST(TemplateDocument, OfAnotherTypeIsReported)
{
    constexpr string_view_t kTexts[] = {
        OLESTR("<R><T><N>Open</N><E>*i.*f</E></T></R>"),
        OLESTR("<R><T><E>*y</E></T></R>"),
        OLESTR("<R><T><N>\"\"</N><E>*y</E></T></R>"),
        OLESTR("<R><T><N>Date </N><E>*y</E></T></R>"),
    };
    for (const string_view_t sText : kTexts) {
        SCOPED_TRACE(Shown(sText));
        ReportLog reports;
        TypeTable types = EmptyLists();
        EXPECT_TRUE(ReadTemplates(WithNames(sText), types));
        EXPECT_EQ("Date; Time", Lists(types));
        EXPECT_THAT(types[TypeOpen].Templates(), IsEmpty());
        EXPECT_THAT(reports.Texts(), ElementsAre("0"));
    }
}

// ---- the whole text

TEST(EnvironmentDocument, HoldsTheFolderAndTheTemplates)
{
    EXPECT_EQ(string_t(OLESTR("<ENVIRONMENT>\r\n"
                              "<TABULEXCONVERTOR_ENVIRONMENT>\r\n"
                              "<PATH>\"c:\\quotes\"</PATH>\r\n"
                              "<RECT><LEFT>0</LEFT><TOP>0</TOP><RIGHT>0</RIGHT><BOTTOM>0</BOTTOM>"
                              "</RECT>\r\n"
                              "</TABULEXCONVERTOR_ENVIRONMENT>\r\n"
                              "\r\n"
                              "<inner>\r\n"
                              "</ENVIRONMENT>\r\n")),
              WriteEnvironment(OLESTR("c:\\quotes"), OLESTR("<inner>")));
}

TEST(EnvironmentDocument, IsReadByEachSideForItself)
{
    const string_t sText =
        WriteEnvironment(OLESTR(" c:\\my data "), WriteTemplates(DefaultTypes()));
    TypeTable types = EmptyLists();
    EXPECT_TRUE(ReadTemplates(sText, types));
    EXPECT_EQ(Shown(WriteTemplates(DefaultTypes())), Shown(WriteTemplates(types)));
    string_t sFolder;
    EXPECT_TRUE(ReadFolder(sText, sFolder));
    EXPECT_EQ(" c:\\my data ", Shown(sFolder));
}

struct FolderRow
{
    string_view_t sText; // V stands for the outer element's name
    bool bRead;
    const char* sFolder; // "before" where it is left alone
};

TEST(EnvironmentDocument, FindsTheFolderByTheElementsThatAreOpen)
{
    constexpr FolderRow kRows[] = {
        {OLESTR("<V><PATH>\" c:\\data \"</PATH></V>"), true, " c:\\data "},
        {OLESTR("<V><PATH> c:\\data </PATH></V>"), true, "c:\\data "},
        {OLESTR("<V><PATH>\"\"</PATH></V>"), true, ""},
        {OLESTR("<V><PATH></PATH></V>"), true, "before"},
        {OLESTR("<V><path>x</path></V>"), true, "before"},
        {OLESTR("<PATH>x</PATH>"), true, "before"},
        {OLESTR("<V><RECT><PATH>x</PATH></RECT></V>"), true, "before"},
        {OLESTR("<V><PATH><LEFT>x</LEFT></PATH></V>"), true, "before"},
        {OLESTR("<V><PATH>x</PATH><RECT><LEFT>1</LEFT><TOP>2</TOP></RECT></V>"), true, "x"},
        {OLESTR("<V><PATH>x</PATH><PATH>y</PATH></V>"), true, "y"},
        {OLESTR("<V><PATH>\"c:\\a\"b\"</PATH></V>"), true, "c:\\a\"b"},
        {OLESTR("<V><PATH>x</PATH></V>\r\n"), true, "x"},
        {OLESTR("<V><PATH>x</PATH></V>stray"), false, "x"},
        {OLESTR("<V><PATH>x</PATH><!-- "), false, "x"},
        {OLESTR("<V><PATH>x"), false, "before"},
        {OLESTR("stray"), false, "before"},
        {OLESTR(""), true, "before"},
    };
    for (const FolderRow& row : kRows) {
        SCOPED_TRACE(Shown(row.sText));
        string_t sText;
        for (const OLECHAR c : row.sText)
            sText += c == 'V' ? string_t(OLESTR("TABULEXCONVERTOR_ENVIRONMENT")) : string_t(1, c);
        string_t sFolder = OLESTR("before");
        EXPECT_EQ(row.bRead, ReadFolder(sText, sFolder));
        EXPECT_EQ(row.sFolder, Shown(sFolder));
    }
}

} // namespace
