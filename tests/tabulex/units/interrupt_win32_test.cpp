// Ctrl-C in a console of the test's own, which no other program shares.
#include <chrono>
#include <fstream>
#include <thread>

#include <gtest/gtest.h>

#include "platform/component.h"
#include "tests/tabulex/units/TestFolder.h"
#include "tools/tabulex/system/ExitStatus.h"

using namespace tabulex;

namespace {

constexpr DWORD kMostMilliseconds = 60'000;

// Long enough to be interrupted.
void MakeMinutes(const std::string& path)
{
    std::ofstream file(path);
    file << "Date,Time,Open,High,Low,Close,Volume\n";
    for (int i = 0; i < 400'000; ++i)
        file << 1990 + i / 525'600 << "/01/" << 1 + i / 1440 % 31 << ',' << i / 60 % 24 << ':'
             << i % 60 << ":00,10.5,11.5,9.5,10.25,1000\n";
}

// The tool beside this program, on a quote file of the folder.
class RunningTool
{
public:
    explicit RunningTool(const TestFolder& folder)
    {
        MakeMinutes(folder / "big.csv");
        wchar_t place[MAX_PATH];
        GetModuleFileNameW(nullptr, place, MAX_PATH);
        const auto tool = std::filesystem::path(place).parent_path() / "tabulex.exe";
        std::wstring line = L"\"" + tool.native() + L"\" convert --quiet \"" +
                            PathOf(folder / "big.csv").native() + L"\" --output \"" +
                            PathOf(folder / "out.csv").native() + L"\"";
        STARTUPINFOW start{};
        start.cb = sizeof start;
        m_bStarted = CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr,
                                    nullptr, &start, &m_process) != FALSE;
    }
    ~RunningTool()
    {
        TerminateProcess(m_process.hProcess, 1); // if the test has failed
        CloseHandle(m_process.hProcess);
        CloseHandle(m_process.hThread);
    }
    RunningTool(const RunningTool&) = delete;
    RunningTool& operator=(const RunningTool&) = delete;

    bool HasStarted() const { return m_bStarted; }
    // The exit status; STILL_ACTIVE if it doesn't end.
    DWORD Wait() const
    {
        DWORD nStatus = STILL_ACTIVE;
        WaitForSingleObject(m_process.hProcess, kMostMilliseconds);
        GetExitCodeProcess(m_process.hProcess, &nStatus);
        return nStatus;
    }

private:
    PROCESS_INFORMATION m_process{};
    bool m_bStarted;
};

void WaitFor(const std::string& path)
{
    for (DWORD n = 0; n < kMostMilliseconds && !std::filesystem::exists(PathOf(path)); n += 10)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
}

} // namespace

TEST(Interrupts, RollBackAndLeaveNothing)
{
    FreeConsole();
    ASSERT_TRUE(AllocConsole());
    const TestFolder folder;
    const RunningTool tool(folder);
    ASSERT_TRUE(tool.HasStarted());
    WaitFor(folder / "out.csv.0.part");
    SetConsoleCtrlHandler(nullptr, TRUE); // this program, which is on the same console, ignores it
    EXPECT_TRUE(GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0));
    EXPECT_EQ(tool.Wait(), static_cast<DWORD>(ExitStatus::Interrupted));
    EXPECT_EQ(folder.Entries(), 1u); // the quote file
}
