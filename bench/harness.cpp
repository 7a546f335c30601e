// SPDX-License-Identifier: MIT
#include "bench/harness.h"

#include <algorithm>
#include <chrono>
#include <stdexcept>

namespace bench {

namespace {

// Runs that are timed together, so that reading the clock does not count.
constexpr double secondsPerBatch = 100e-6;

std::size_t runsPerBatch(const Candidate& candidate) {
    candidate.run();
    for (std::size_t runs = 1;; runs *= 2) {
        const double start = now();
        for (std::size_t i = 0; i < runs; ++i) {
            candidate.run();
        }
        if (now() - start >= secondsPerBatch) {
            return runs;
        }
    }
}

double sample(const Candidate& candidate, std::size_t batch, const Effort& effort) {
    std::vector<double> times;
    const double start = now();
    double last = start;
    do {
        for (std::size_t i = 0; i < batch; ++i) {
            candidate.run();
        }
        const double end = now();
        times.push_back((end - last) / static_cast<double>(batch));
        last = end;
    } while (last - start < effort.secondsPerSample ||
             times.size() * batch < effort.leastRunsPerSample);
    const auto quartile = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 4);
    std::nth_element(times.begin(), quartile, times.end());
    return *quartile * 1e6;
}

}  // namespace

double now() {
    using Seconds = std::chrono::duration<double>;
    return Seconds(std::chrono::steady_clock::now().time_since_epoch()).count();
}

std::vector<Series> measure(const std::vector<Candidate>& candidates, const Effort& effort) {
    std::vector<Series> all;
    std::vector<std::size_t> batches;
    for (const Candidate& candidate : candidates) {
        all.push_back({candidate.name, {}});
        batches.push_back(runsPerBatch(candidate));
    }
    for (std::size_t round = 0; round < effort.samples; ++round) {
        for (std::size_t turn = 0; turn < candidates.size(); ++turn) {
            const std::size_t which = (round + turn) % candidates.size();
            all[which].microseconds.push_back(sample(candidates[which], batches[which], effort));
        }
    }
    return all;
}

double median(std::vector<double> values) {
    if (values.empty()) {
        throw std::logic_error("a median of nothing");
    }
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

double pairedRatio(const Series& subject, const Series& reference) {
    std::vector<double> ratios;
    for (std::size_t i = 0; i < subject.microseconds.size(); ++i) {
        ratios.push_back(subject.microseconds[i] / reference.microseconds.at(i));
    }
    return median(ratios);
}

const Series& named(const std::vector<Series>& all, const std::string& name) {
    const auto found = std::find_if(all.begin(), all.end(),
                                    [&](const Series& series) { return series.name == name; });
    if (found == all.end()) {
        throw std::logic_error("nothing measured is called " + name);
    }
    return *found;
}

}  // namespace bench
