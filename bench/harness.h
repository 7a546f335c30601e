// SPDX-License-Identifier: MIT
// Times candidates against one another: in turn, in an order that rotates, so that a
// machine that changes its pace meets them all alike. Only ratios of samples that lie
// beside one another count.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace bench {

struct Candidate {
    std::string name;
    std::function<void()> run;  // once: a frame, a call
};

struct Effort {
    std::size_t samples = 15;
    double secondsPerSample = 0.004;
    std::size_t leastRunsPerSample = 5;
};

// What one candidate took, one value per sample.
struct Series {
    std::string name;
    std::vector<double> microseconds;
};

// Every sample is the lower quartile of its runs: what else the machine did meanwhile
// falls out, what the work itself costs does not.
std::vector<Series> measure(const std::vector<Candidate>& candidates, const Effort& effort);

double median(std::vector<double> values);
// The median of the ratios, sample by sample.
double pairedRatio(const Series& subject, const Series& reference);

const Series& named(const std::vector<Series>& all, const std::string& name);

// Seconds since some moment.
double now();

}  // namespace bench
