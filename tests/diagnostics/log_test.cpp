#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

#include "diagnostics/FaultmereClient.h"

namespace {

using namespace FaultmereUtil;
using testing::ElementsAre;

const Report kFault{Report::Kind::Assertion, "pVal", std::source_location::current(), 42};
const Report kMessage{Report::Kind::Trace, "two\r\nlines", std::source_location::current(), 43};

std::string LineOf(const char* szKind, const Report& report, const char* szText)
{
    return std::string(szKind) + ": " + report.place.file_name() + "(" +
           std::to_string(report.place.line()) + "): " + report.place.function_name() +
           ": thread " + std::to_string(report.nThread) + ": " + szText;
}

class LogFile : public testing::Test
{
protected:
    LogFile() { std::filesystem::remove(m_path); }
    ~LogFile() override { std::filesystem::remove(m_path); }

    std::vector<std::string> Lines() const
    {
        std::ifstream file(m_path, std::ios::binary);
        std::vector<std::string> lines;
        for (std::string sLine; std::getline(file, sLine);)
            lines.push_back(sLine);
        return lines;
    }
    std::string Name() const
    {
        const std::u8string sName = m_path.u8string();
        return {sName.begin(), sName.end()};
    }

    const std::filesystem::path m_path =
        std::filesystem::temp_directory_path() /
        (std::string("tabulex_") + testing::UnitTest::GetInstance()->current_test_info()->name() +
         ".log");
};

TEST_F(LogFile, GetsALineAReportAtOnce)
{
    const Receiver log = LogTo(Name());
    EXPECT_EQ(kGoOn, log(kFault));
    EXPECT_THAT(Lines(), ElementsAre(LineOf("assertion", kFault, "pVal")));
    EXPECT_EQ(kGoOn, log(kMessage));
    EXPECT_THAT(Lines(), ElementsAre(LineOf("assertion", kFault, "pVal"),
                                     LineOf("trace", kMessage, "two  lines")));
}

TEST_F(LogFile, IsAppendedTo)
{
    LogTo(Name())(kFault);
    LogTo(Name())(kFault);
    EXPECT_EQ(2u, Lines().size());
}

TEST_F(LogFile, HearsReports)
{
    const Receiver before = SetReceiver(LogTo(Name()));
    ReportAssertion("pVal");
    Trace("message");
    SetReceiver(before);
    EXPECT_THAT(Lines(), ElementsAre(testing::EndsWith(": pVal"), testing::EndsWith(": message")));
}

TEST(Log, ThatCannotBeOpenedIsSilent)
{
    EXPECT_EQ(kGoOn, LogTo("no/such/folder/log.txt")(kFault));
}

TEST(Log, OfDashIsStandardError)
{
    testing::internal::CaptureStderr();
    EXPECT_EQ(kGoOn, LogTo("-")(kFault));
    EXPECT_EQ(LineOf("assertion", kFault, "pVal") + "\n", testing::internal::GetCapturedStderr());
}

} // namespace
