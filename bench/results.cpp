// SPDX-License-Identifier: MIT
#include "bench/results.h"

#include <cstdio>
#include <exception>
#include <fstream>
#include <stdexcept>
#include <string_view>

namespace bench {

namespace {

#if defined(_WIN32)
constexpr const char* systemName = "windows";
#else
constexpr const char* systemName = "native";
#endif

// Also of the build machine, under Wine. Empty elsewhere.
std::string firstLine(const char* file, std::string_view start) {
    std::ifstream lines(file);
    for (std::string line; std::getline(lines, line);) {
        if (line.rfind(start, 0) == 0) {
            return line;
        }
    }
    return {};
}

std::string processorName() {
    const std::string line = firstLine("/proc/cpuinfo", "model name");
    const auto colon = line.find(": ");
    return colon == line.npos ? "unknown" : line.substr(colon + 2);
}

std::string load() {
    const std::string line = firstLine("/proc/loadavg", "");
    return line.substr(0, line.find(' '));
}

nlohmann::ordered_json judged(const std::vector<Series>& series, const Target& target) {
    const double ratio =
        pairedRatio(named(series, target.subject), named(series, target.reference));
    return {{"subject", target.subject},
            {"reference", target.label.empty() ? target.reference : target.label},
            {"limit", target.limit},
            {"ratio", ratio},
            {"met", ratio <= target.limit}};
}

}  // namespace

CResults::CResults(const std::string& program, bool judges)
    : m_document{{"program", program},
                 {"system", systemName},
                 {"processor", processorName()},
                 {"loadBefore", load()},
                 {"cases", nlohmann::ordered_json::array()},
                 {"values", nlohmann::ordered_json::array()},
                 {"absent", nlohmann::ordered_json::array()}},
      m_judges(judges) {}

void CResults::addCase(const std::string& table, const std::string& name,
                       const std::vector<Series>& series, const std::vector<Target>& targets) {
    nlohmann::ordered_json rows = nlohmann::ordered_json::array();
    std::printf("%s, %s\n", table.c_str(), name.c_str());
    for (const Series& one : series) {
        const double middle = median(one.microseconds);
        const double ratio = pairedRatio(one, series.front());
        rows.push_back({{"name", one.name},
                        {"median", middle},
                        {"ratio", ratio},
                        {"samples", one.microseconds}});
        std::printf("  %-36s %12.2f us %8.3f\n", one.name.c_str(), middle, ratio);
    }
    nlohmann::ordered_json judgements = nlohmann::ordered_json::array();
    for (const Target& target : m_judges ? targets : std::vector<Target>()) {
        const nlohmann::ordered_json& last = judgements.emplace_back(judged(series, target));
        std::printf("  %s: %.3f x %s, at most %.2f: %s\n", target.subject.c_str(),
                    last["ratio"].get<double>(), last["reference"].get<std::string>().c_str(),
                    target.limit, last["met"].get<bool>() ? "met" : "MISSED");
    }
    std::fflush(stdout);
    m_document["cases"].push_back(
        {{"table", table}, {"name", name}, {"rows", rows}, {"targets", judgements}});
}

void CResults::addValue(const std::string& table, const std::string& name, const std::string& row,
                        double value, const std::string& unit) {
    std::printf("%s, %s: %s %.2f %s\n", table.c_str(), name.c_str(), row.c_str(), value,
                unit.c_str());
    std::fflush(stdout);
    m_document["values"].push_back(
        {{"table", table}, {"name", name}, {"row", row}, {"value", value}, {"unit", unit}});
}

void CResults::addAbsent(const std::string& peer, const std::string& reason) {
    std::printf("absent: %s (%s)\n", peer.c_str(), reason.c_str());
    m_document["absent"].push_back({{"peer", peer}, {"reason", reason}});
}

void CResults::finish(const std::string& file) {
    m_document["loadAfter"] = load();
    if (!file.empty()) {
        std::ofstream out(file);
        out << m_document.dump(1) << '\n';
        if (!out.flush()) {
            throw std::runtime_error("cannot write " + file);
        }
    }
}

Effort Options::effort() const {
    return smoke ? Effort{1, 0.0, 1} : Effort{};
}

namespace {

Options readOptions(int count, char** arguments) {
    Options options;
    for (int i = 1; i < count; ++i) {
        const std::string_view argument = arguments[i];
        if (argument == "--smoke") {
            options.smoke = true;
        } else if (argument == "--json" && i + 1 < count) {
            options.jsonFile = arguments[++i];
        } else {
            throw std::runtime_error("usage: " + std::string(arguments[0]) +
                                     " [--smoke] [--json FILE]");
        }
    }
    return options;
}

}  // namespace

int runBenchmark(const char* name, int count, char** arguments, void (*run)(const Options&)) try {
    run(readOptions(count, arguments));
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s: %s\n", name, error.what());
    return 1;
}

}  // namespace bench
