// The calls on fakes, as texts in the order in which they came.
#pragma once

#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace dialog_test {

using Calls = std::vector<std::string>;

// Outlives the fakes that write to it. Safe from any thread.
class CallLog
{
public:
    void Add(std::string sCall)
    {
        const std::lock_guard lock(m_lock);
        m_calls.push_back(std::move(sCall));
    }
    // The calls since the last Take.
    Calls Take()
    {
        const std::lock_guard lock(m_lock);
        return std::exchange(m_calls, {});
    }

private:
    std::mutex m_lock;
    Calls m_calls; // guarded by m_lock
};

} // namespace dialog_test
