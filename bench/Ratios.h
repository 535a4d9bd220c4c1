// A console reporter that ends with the ratios between benchmarks of one run, which
// is what counts: absolute times differ from machine to machine.
#pragma once

#include <map>
#include <string>

#include <benchmark/benchmark.h>

class RatioReporter : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run>& runs) override;
    void Finalize() override;

private:
    std::map<std::string, double> m_seconds; // best of the repetitions, by name
};
