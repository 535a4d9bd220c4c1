// Collects the texts of the assertions that are reported while it lives. One at a
// time in the process.
#pragma once

#include <string>
#include <vector>

#include "diagnostics/FaultmereClient.h"

class Reports
{
public:
    Reports()
        : m_before(FaultmereUtil::SetReceiver([this](const FaultmereUtil::Report& report) {
              m_texts.push_back(report.sText);
              return FaultmereUtil::kGoOn;
          }))
    {}
    ~Reports() { FaultmereUtil::SetReceiver(m_before); }
    Reports(const Reports&) = delete;
    Reports& operator=(const Reports&) = delete;

    const std::vector<std::string>& Texts() const { return m_texts; }

private:
    std::vector<std::string> m_texts;
    FaultmereUtil::Receiver m_before;
};
