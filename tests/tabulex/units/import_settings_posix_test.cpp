// The command line that stands for the settings of a dialog.
#include <gtest/gtest.h>

#include "tests/tabulex/units/TestFolder.h"
#include "tools/tabulex/import/SettingsText.h"
#include "tools/tabulex/text/ShellWord.h"
#include "tools/tabulex/text/Text.h"

using namespace tabulex;

namespace {

ResolutionOffers UsualOffers()
{
    ResolutionOffers offers("None");
    for (const ResolutionOffer& offer : DefaultResolutions())
        offers.Add(offer);
    return offers;
}

} // namespace

TEST(QuoteForShell, LeavesPlainWordsAndQuotesTheRest)
{
    struct Row
    {
        const char* pszText;
        const char* pszWord;
    };
    const Row rows[] = {
        {"quotes.csv", "quotes.csv"},
        {"/data/a_b-c.txt", "/data/a_b-c.txt"},
        {"", "''"},
        {"two words", "'two words'"},
        {"it's", "'it'\\''s'"},
        {"$HOME", "'$HOME'"},
        {"a|b;c", "'a|b;c'"},
        {"*d/*m", "'*d/*m'"},
        {"~x", "'~x'"},
        {"\xE8\x82\xA1", "'\xE8\x82\xA1'"},
        {"line\nbreak", "$'line\\012break'"},
        {"\x1B[2J'\\", "$'\\033[2J\\'\\\\'"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(QuoteForShell(row.pszText), row.pszWord);
}

TEST(ConvertCommandLine, HasAnOptionForEachSetting)
{
    Settings settings;
    settings.sEnvironment = "my env";
    settings.nCodePage = 936;
    settings.sPriceMultiplier = "1/10";
    settings.nDividers = 1 << 2 | 1 << 5;
    settings.nLinesToSkip = 2;
    settings.columns = {{0, "Date", "*d/*m/*y"}, {3, "none", ""}, {4, "Up Volume", ""}};
    settings.sResolution = "Minutes";
    settings.nSize = 5;
    settings.bBarEndTime = true;
    settings.dtFrom = 45294.5;
    GeneralOptions general;
    general.sEncoding = "gbk";
    EXPECT_EQ(ConvertCommandLine("-odd name", {}, settings, general, UsualOffers()),
              "tabulex convert './-odd name' --environment 'my env' --resolution Minutes --size 5 "
              "--dividers ',\\t' --lines-to-skip 2 --column '1=Date:*d/*m/*y' --column 4=none "
              "--column '5=Up Volume' --code-page 936 --bar-end-time --price-multiplier 1/10 "
              "--from 2024-01-03T12:00:00 --encoding gbk");
}

TEST(ConvertCommandLine, HasTheOptionsOfARecipe)
{
    intake::Recipe recipe;
    recipe.cells.bQuotes = true;
    recipe.linesOut.comments = {"# "};
    recipe.takes = {{{{2}}, "Up Volume"}};
    EXPECT_EQ(ConvertCommandLine("q.csv", recipe, {}, {}, UsualOffers()),
              "tabulex convert q.csv --comment '# ' --quotes --take '2=Up Volume'");
}

TEST(ConvertCommandLine, NamesOffersThatArentTheUsualOnes)
{
    ResolutionOffers offers("None");
    offers.Add({4, "Day|1"});
    EXPECT_EQ(ConvertCommandLine("q.csv", {}, {}, {}, offers),
              "tabulex convert q.csv --offer '4=Day|1'");
    EXPECT_EQ(ConvertCommandLine("q.csv", {}, {}, {}, UsualOffers()), "tabulex convert q.csv");
}

namespace {

constexpr const char* kMinutes = "Date,Time,Open,High,Low,Close,Volume\n"
                                 "2003/01/13,09:30:00,1,2,1,2,10\n"
                                 "2003/01/13,09:35:00,1,2,1,2,11\n"
                                 "2003/01/14,09:30:00,1,2,1,2,12\n"
                                 "2003/01/14,09:35:00,1,2,1,2,13\n"
                                 "2003/01/15,09:30:00,1,2,1,2,14\n";

class FoundSettings : public testing::Test
{
protected:
    void SetUp() override
    {
        m_sPath = m_folder / "quotes.csv";
        std::ofstream(m_sPath) << kMinutes;
        m_host.Open(m_sPath);
    }
    std::string Command()
    {
        const Settings settings = FindSettings(m_host, m_sPath, {});
        EXPECT_EQ(WhatSettingsLack(m_host, m_sPath, settings), "");
        const std::string line = ConvertCommandLine(m_sPath, {}, settings, {}, m_offers);
        return line.substr(line.find(m_sPath) + m_sPath.size());
    }

    TestFolder m_folder;
    std::string m_sPath;
    ResolutionOffers m_offers = UsualOffers();
    Host m_host{m_offers};
};

} // namespace

TEST_F(FoundSettings, AreNoneWhereNothingWasChanged)
{
    EXPECT_EQ(Command(), "");
}

TEST_F(FoundSettings, NameWhatWasChanged)
{
    m_host.Records().SetFieldName(6, nullptr);
    EXPECT_EQ(Command(), " --column 7=none");
    m_host.Records().put_ResolutionSize(15);
    EXPECT_EQ(Command(), " --size 15 --column 7=none");
    m_host.Data().put_StartDateTime(Variant::FromDate(37635.0));
    EXPECT_EQ(Command(), " --size 15 --column 7=none --from 2003-01-14T00:00:00");
    m_host.Records().put_UseBarsEndTime(VARIANT_TRUE);
    EXPECT_NE(Command().find(" --bar-end-time"), std::string::npos);
}

TEST_F(FoundSettings, NameATemplate)
{
    m_host.Records().SetFieldTemplate(Bstr(FromUtf8("yyyy/mm/dd")).get(), 0);
    EXPECT_EQ(Command(), " --column 1=Date:yyyy/mm/dd");
}

TEST(BytesFromPath, GivesBackWhatPathFromBytesTook)
{
    for (const std::string path : {"plain", "\xE8\x82\xA1", "bad\xFF\x80", ""})
        EXPECT_EQ(BytesFromPath(PathFromBytes(path)), path);
}
