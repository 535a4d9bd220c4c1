// The assertions and traces of a test, as texts in the order in which they came.
#pragma once

#include <algorithm>
#include <mutex>
#include <string>
#include <vector>

#include "diagnostics/FaultmereClient.h"

class ReportLog
{
public:
    ReportLog()
        : m_previous(FaultmereUtil::SetReceiver([this](const FaultmereUtil::Report& report) {
              std::lock_guard lock(m_lock);
              m_texts.push_back(report.sText);
              return FaultmereUtil::kGoOn;
          }))
    {}
    ~ReportLog() { FaultmereUtil::SetReceiver(std::move(m_previous)); }

    std::vector<std::string> Texts()
    {
        std::lock_guard lock(m_lock);
        return m_texts;
    }
    void Clear()
    {
        std::lock_guard lock(m_lock);
        m_texts.clear();
    }

private:
    std::mutex m_lock;
    std::vector<std::string> m_texts;
    FaultmereUtil::Receiver m_previous;
};
