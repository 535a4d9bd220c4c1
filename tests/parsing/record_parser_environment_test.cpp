// The record parser's property Environment.

#include <gtest/gtest.h>

#include "platform/values.h"
#include "src/parsing/RecordParser.h"
#include "tests/parsing/FieldText.h"

using namespace Hesperon::specifics;

namespace {

class RecordParserEnvironment : public testing::Test
{
protected:
    RecordParserEnvironment() { EXPECT_EQ(S_OK, CreateObject(m_parser)); }

    std::string Get() const
    {
        Bstr text;
        EXPECT_EQ(S_OK, m_parser->get_Environment(text.put()));
        return Shown(text.view());
    }
    HRESULT Put(string_view_t sText) const { return m_parser->put_Environment(Bstr(sText).get()); }
    // The last template of the dates, an exclamation mark after a default one.
    std::string LastDate() const
    {
        const Bstr type(OLESTR("Date"));
        LONG nCount = 0, bDefault = 0;
        Bstr name;
        EXPECT_EQ(S_OK, m_parser->GetTemplateItemCount(type.get(), &nCount));
        EXPECT_EQ(S_OK, m_parser->GetTemplateItem(type.get(), nCount - 1, name.put(), &bDefault));
        return Shown(name.view()) + (bDefault ? "!" : "");
    }

    com_ptr<CRecordParser> m_parser;
};

constexpr string_view_t kOneMore =
    OLESTR("<RECORD_PARSER_ENVIRONMENT><TYPE><NAME>\"Date\"</NAME>"
           "<TEMPLATE>\"*D+*M\"</TEMPLATE></TYPE></RECORD_PARSER_ENVIRONMENT>");

TEST_F(RecordParserEnvironment, BeginsWithTheDefaultTemplates)
{
    const std::string sText = Get();
    EXPECT_TRUE(sText.starts_with("<RECORD_PARSER_ENVIRONMENT><TYPE><NAME>\"Date\"</NAME>"
                                  "<TEMPLATE>\"*y/*m/*d\"</TEMPLATE>"))
        << sText;
    EXPECT_TRUE(sText.ends_with("<TEMPLATE>\"*h:*m:*s.*f\"</TEMPLATE></TYPE>"
                                "</RECORD_PARSER_ENVIRONMENT>"))
        << sText;
    EXPECT_EQ("mmm_*d_*y!", LastDate());
}

TEST_F(RecordParserEnvironment, AddsTemplatesThatCanBeRemoved)
{
    EXPECT_EQ(S_OK, Put(kOneMore));
    EXPECT_EQ("*d+*m", LastDate());
    const std::string sText = Get();
    EXPECT_NE(std::string::npos, sText.find("<TEMPLATE>\"*d+*m\"</TEMPLATE></TYPE>"));
    EXPECT_EQ(S_OK, Put(kOneMore));
    EXPECT_EQ(sText, Get());
}

TEST_F(RecordParserEnvironment, GoesOverToAnotherParser)
{
    EXPECT_EQ(S_OK, Put(kOneMore));
    com_ptr<CRecordParser> other;
    ASSERT_EQ(S_OK, CreateObject(other));
    Bstr text;
    EXPECT_EQ(S_OK, m_parser->get_Environment(text.put()));
    EXPECT_EQ(S_OK, other->put_Environment(text.get()));
    Bstr again;
    EXPECT_EQ(S_OK, other->get_Environment(again.put()));
    EXPECT_EQ(Shown(text.view()), Shown(again.view()));
}

TEST_F(RecordParserEnvironment, IsASoftNoForTextThatCantBeRead)
{
    EXPECT_EQ(S_FALSE, Put(string_t(kOneMore) + OLESTR("stray")));
    EXPECT_EQ("*d+*m", LastDate()); // kept
    EXPECT_EQ(S_FALSE, Put(OLESTR("stray")));
    EXPECT_EQ(S_OK, Put(OLESTR("")));
    EXPECT_EQ(S_OK, m_parser->put_Environment(nullptr));
    EXPECT_EQ(E_POINTER, m_parser->get_Environment(nullptr));
}

} // namespace
