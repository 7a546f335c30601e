// SPDX-License-Identifier: MIT
#include "camhost/measure/sample_series.h"

#include <algorithm>
#include <numeric>

#include "camhost/base/number_texts.h"

namespace camhost {

namespace {

// In whole numbers, in which no rounding moves a rank.
double percentile(const std::vector<double>& sorted, std::size_t percent) {
    const std::size_t rank = (sorted.size() * percent + 99) / 100;
    return sorted[std::max<std::size_t>(rank, 1) - 1];
}

}  // namespace

std::optional<SampleSummary> CSampleSeries::summary() const {
    if (m_samples.empty()) {
        return std::nullopt;
    }
    std::vector<double> sorted = m_samples;
    std::sort(sorted.begin(), sorted.end());
    const double sum = std::accumulate(sorted.begin(), sorted.end(), 0.0);
    return SampleSummary{sorted.front(),         sum / static_cast<double>(sorted.size()),
                         percentile(sorted, 50), percentile(sorted, 95),
                         percentile(sorted, 99), sorted.back()};
}

std::string summaryText(const SampleSummary& summary) {
    constexpr int decimals = 2;
    return "min " + fixedText(summary.minimum, decimals) + "  mean " +
           fixedText(summary.mean, decimals) + "  p50 " + fixedText(summary.median, decimals) +
           "  p95 " + fixedText(summary.p95, decimals) + "  p99 " +
           fixedText(summary.p99, decimals) + "  max " + fixedText(summary.maximum, decimals) +
           " ms";
}

CJson summaryJson(const SampleSummary& summary) {
    return CJson::object({{"min", summary.minimum},
                          {"mean", summary.mean},
                          {"p50", summary.median},
                          {"p95", summary.p95},
                          {"p99", summary.p99},
                          {"max", summary.maximum}});
}

}  // namespace camhost
