// SPDX-License-Identifier: MIT
// Times that were measured, in milliseconds, and what they come to. Portable.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "camhost/base/json.h"

namespace camhost {

struct SampleSummary {
    double minimum = 0.0;
    double mean = 0.0;
    double median = 0.0;
    double p95 = 0.0;
    double p99 = 0.0;
    double maximum = 0.0;
};

class CSampleSeries {
public:
    void add(double seconds) { m_samples.push_back(seconds * 1000.0); }
    // Nothing of no samples. A percentile is a sample: the smallest that so many of a
    // hundred do not exceed.
    std::optional<SampleSummary> summary() const;

private:
    std::vector<double> m_samples;
};

// "min 124.00  mean 125.00  p50 125.00  p95 126.00  p99 126.00  max 126.00 ms"
std::string summaryText(const SampleSummary& summary);
CJson summaryJson(const SampleSummary& summary);

}  // namespace camhost
