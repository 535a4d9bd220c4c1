// What the tests of file access speak in: files on disk that go with the test,
// reports that are listened to, and waits that end.
#pragma once

#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <fstream>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "diagnostics/FaultmereClient.h"
#include "platform/Thread.h"
#include "platform/values.h"
#include "src/files/SharedFile.h"

namespace files_test {

inline constexpr std::chrono::seconds kPatience(60); // a sanitizer on a busy machine

// A file of its own name in the temporary folder.
class TestFile
{
public:
    explicit TestFile(const std::string& bytes) : TestFile() { Write(bytes); }
    // Not there yet.
    TestFile()
    {
        static std::atomic<unsigned> nNext = 0;
        const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
        m_path = std::filesystem::temp_directory_path() /
                 ("files-test-" + std::to_string(now) + "-" + std::to_string(++nNext) + ".txt");
    }
    ~TestFile()
    {
        std::error_code ignored;
        std::filesystem::remove(m_path, ignored);
    }
    TestFile(const TestFile&) = delete;
    TestFile& operator=(const TestFile&) = delete;

    void Write(const std::string& bytes) const { Put(bytes, std::ios::trunc); }
    void Append(const std::string& bytes) const { Put(bytes, std::ios::app); }
    void Truncate(std::uintmax_t nSize) const { std::filesystem::resize_file(m_path, nSize); }
    // Changes bytes in place.
    void Patch(std::uint64_t nOffset, const std::string& bytes) const
    {
        std::fstream stream(m_path, std::ios::binary | std::ios::in | std::ios::out);
        stream.seekp(static_cast<std::streamoff>(nOffset));
        stream << bytes;
    }

    string_t Name() const { return PathFromBytes(m_path.generic_string()); }
    std::string Bytes() const { return m_path.generic_string(); }

    std::shared_ptr<Hesperon::specifics::CSharedFile> Open() const
    {
        int nError = 0;
        return std::make_shared<Hesperon::specifics::CSharedFile>(File::Open(Name(), nError));
    }

private:
    void Put(const std::string& bytes, std::ios::openmode mode) const
    {
        std::ofstream stream(m_path, std::ios::binary | mode);
        stream << bytes;
        stream.close();
        ASSERT_TRUE(stream) << m_path;
    }

    std::filesystem::path m_path;
};

// Listens to assertions and traces for as long as it lives.
class Reports
{
public:
    using Hook = std::function<void(const std::string&)>;

    // The hook runs on the reporting thread behind each report's entry.
    explicit Reports(Hook hook = {})
        : m_hook(std::move(hook)), m_before(FaultmereUtil::SetReceiver([this](const auto& report) {
              {
                  std::lock_guard lock(m_lock);
                  m_texts.push_back(report.sText);
              }
              if (m_hook)
                  m_hook(report.sText);
              return FaultmereUtil::kGoOn;
          }))
    {}
    ~Reports() { FaultmereUtil::SetReceiver(m_before); }
    Reports(const Reports&) = delete;
    Reports& operator=(const Reports&) = delete;

    std::vector<std::string> Texts() const
    {
        std::lock_guard lock(m_lock);
        return m_texts;
    }

private:
    mutable std::mutex m_lock;
    std::vector<std::string> m_texts; // guarded by m_lock
    Hook m_hook;
    FaultmereUtil::Receiver m_before;
};

// Something that happens on another thread, and the wait for it.
class Signal
{
public:
    void Raise()
    {
        std::lock_guard lock(m_lock);
        m_bRaised = true;
        m_changed.notify_all();
    }
    // False if it doesn't happen in time.
    bool Await()
    {
        std::unique_lock lock(m_lock);
        return m_changed.wait_for(lock, kPatience, [this] { return m_bRaised; });
    }

private:
    std::mutex m_lock;
    std::condition_variable m_changed;
    bool m_bRaised = false;
};

// Looks again and again, for what gives no sign when it happens.
template <class Condition>
bool Eventually(Condition holds)
{
    const auto tEnd = std::chrono::steady_clock::now() + kPatience;
    while (!holds()) {
        if (std::chrono::steady_clock::now() > tEnd)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

inline string_t Wide(std::string_view text)
{
    return string_t(text.begin(), text.end());
}

inline std::string Narrow(string_view_t text)
{
    return std::string(text.begin(), text.end());
}

// "line 0\nline 1\n" ...; all lines differ.
inline std::string NumberedLines(std::size_t nLines, const std::string& sTail = "")
{
    std::string bytes;
    for (std::size_t n = 0; n < nLines; ++n)
        bytes += "line " + std::to_string(n) + sTail + "\n";
    return bytes;
}

} // namespace files_test
