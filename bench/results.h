// SPDX-License-Identifier: MIT
// What a benchmark found, as JSON: bench_report puts the files of several programs
// into one table.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "bench/harness.h"

namespace bench {

// A ratio of two series that is to stay at or below its limit.
struct Target {
    std::string subject;
    std::string reference;
    double limit;
    std::string label = {};  // what to call the reference, if not by its name
};

class CResults {
public:
    // `program` as in NAME_bench. Targets are judged in the long form alone: the times
    // of the short one mean nothing.
    CResults(const std::string& program, bool judges);

    // One column of a table: the medians of all series, their ratios to the first
    // one's, and what became of the targets.
    void addCase(const std::string& table, const std::string& name,
                 const std::vector<Series>& series, const std::vector<Target>& targets);
    // A value by itself, with its unit.
    void addValue(const std::string& table, const std::string& name, const std::string& row,
                  double value, const std::string& unit);
    // A peer that could not be measured, and why.
    void addAbsent(const std::string& peer, const std::string& reason);

    // Writes the file, if there is a name, and the cases as text to the output.
    void finish(const std::string& file);

private:
    nlohmann::ordered_json m_document;
    bool m_judges;
};

// The command line of every benchmark: [--smoke] [--json FILE].
struct Options {
    // Everything once, on small things: checked, but hardly timed.
    bool smoke = false;
    std::string jsonFile;
    Effort effort() const;
};

// The main program of NAME_bench: 0, or 1 with what was thrown on the error output.
int runBenchmark(const char* name, int count, char** arguments, void (*run)(const Options&));

}  // namespace bench
