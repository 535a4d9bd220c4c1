// The assertions and traces that are reported while it lives, as texts in the order in which
// they came. One at a time in the process.
#pragma once

#include <functional>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "diagnostics/FaultmereClient.h"

class ReportLog
{
public:
    using Hook = std::function<void(const std::string& sText)>;

    // The hook is called on the reporting thread, after the text was added.
    explicit ReportLog(Hook hook = {})
        : m_hook(std::move(hook)),
          m_before(FaultmereUtil::SetReceiver([this](const FaultmereUtil::Report& report) {
              Add(report.sText);
              return FaultmereUtil::kGoOn;
          }))
    {}
    ~ReportLog() { FaultmereUtil::SetReceiver(std::move(m_before)); }
    ReportLog(const ReportLog&) = delete;
    ReportLog& operator=(const ReportLog&) = delete;

    std::vector<std::string> Texts() const
    {
        const std::lock_guard lock(m_lock);
        return m_texts;
    }
    void Clear()
    {
        const std::lock_guard lock(m_lock);
        m_texts.clear();
    }

private:
    void Add(const std::string& sText)
    {
        {
            const std::lock_guard lock(m_lock);
            m_texts.push_back(sText);
        }
        if (m_hook)
            m_hook(sText);
    }

    const Hook m_hook;
    mutable std::mutex m_lock;
    std::vector<std::string> m_texts; // guarded by m_lock
    FaultmereUtil::Receiver m_before;
};
