// SPDX-License-Identifier: MIT
// Usage: bench_report FOLDER
// Puts the JSON files of a folder into tables (Markdown, to the output), with what
// became of the targets, and into data files beside them, for the graphs.
#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

using nlohmann::ordered_json;

std::string number(int decimals, double value) {
    char text[32];
    std::snprintf(text, sizeof(text), "%.*f", decimals, value);
    return text;
}

std::string microseconds(double value) {
    return number(value < 10 ? 2 : value < 100 ? 1 : 0, value);
}

std::vector<ordered_json> readAll(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() == ".json") {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    std::vector<ordered_json> documents;
    for (const auto& file : files) {
        std::ifstream in(file);
        documents.push_back(ordered_json::parse(in));
    }
    if (documents.empty()) {
        throw std::runtime_error("no results in " + folder.string());
    }
    return documents;
}

void printLine(const std::vector<std::string>& cells) {
    for (const std::string& cell : cells) {
        std::printf("| %s ", cell.c_str());
    }
    std::printf("|\n");
}

void printHead(const std::vector<std::string>& cells) {
    printLine(cells);
    printLine(std::vector<std::string>(cells.size(), "---"));
}

// Titles in the order in which they first appear.
std::vector<std::string> titles(const ordered_json& entries) {
    std::vector<std::string> found;
    for (const auto& entry : entries) {
        const auto title = entry.at("table").get<std::string>();
        if (std::find(found.begin(), found.end(), title) == found.end()) {
            found.push_back(title);
        }
    }
    return found;
}

std::vector<const ordered_json*> casesOf(const ordered_json& entries, const std::string& title) {
    std::vector<const ordered_json*> found;
    for (const auto& entry : entries) {
        if (entry.at("table") == title) {
            found.push_back(&entry);
        }
    }
    return found;
}

std::string graphFile(const std::string& title, const std::string& system) {
    std::string name = title + "_" + system + ".dat";
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return c == ' ' || c == '/'; }, '_');
    std::transform(name.begin(), name.end(), name.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return name;
}

// As a label under a graph: one word a line.
std::string quoted(const std::string& name) {
    std::string text = "\"";
    for (const char c : name) {
        text += c == ' ' ? "\\n" : std::string(1, c);
    }
    return text + '"';
}

class CReport {
public:
    explicit CReport(std::filesystem::path folder) : m_folder(std::move(folder)) {}

    void print() {
        const std::vector<ordered_json> documents = readAll(m_folder);
        for (const ordered_json& document : documents) {
            printDocument(document);
        }
        std::printf("## Targets\n\n%zu met, %zu missed.\n", m_met, m_missed.size());
        for (const std::string& line : m_missed) {
            std::printf("- missed: %s\n", line.c_str());
        }
    }

private:
    void printDocument(const ordered_json& document) {
        m_system = document.at("system").get<std::string>();
        std::printf("## %s, %s\n\nProcessor: %s. Load average %s before, %s after.\n",
                    document.at("program").get<std::string>().c_str(), m_system.c_str(),
                    document.at("processor").get<std::string>().c_str(),
                    document.at("loadBefore").get<std::string>().c_str(),
                    document.at("loadAfter").get<std::string>().c_str());
        for (const auto& absent : document.at("absent")) {
            std::printf("Absent: %s (%s).\n", absent.at("peer").get<std::string>().c_str(),
                        absent.at("reason").get<std::string>().c_str());
        }
        std::printf("\n");
        for (const std::string& title : titles(document.at("cases"))) {
            printCases(title, casesOf(document.at("cases"), title));
        }
        for (const std::string& title : titles(document.at("values"))) {
            printValues(title, casesOf(document.at("values"), title));
        }
    }

    // Rows as in the first case; a case may lack some.
    void printCases(const std::string& title, const std::vector<const ordered_json*>& cases) {
        std::vector<std::string> head = {title + " (us; ratio to the first row)"};
        std::vector<std::string> names;
        for (const ordered_json* one : cases) {
            head.push_back(one->at("name").get<std::string>());
            for (const auto& row : one->at("rows")) {
                const auto name = row.at("name").get<std::string>();
                if (std::find(names.begin(), names.end(), name) == names.end()) {
                    names.push_back(name);
                }
            }
        }
        printHead(head);
        std::ofstream graph(m_folder / graphFile(title, m_system));
        writeGraphHead(graph, names);
        for (const std::string& name : names) {
            std::vector<std::string> cells = {name};
            for (const ordered_json* one : cases) {
                const ordered_json* row = rowOf(*one, name);
                cells.push_back(row == nullptr
                                    ? "-"
                                    : microseconds(row->at("median").get<double>()) + " (" +
                                          number(2, row->at("ratio").get<double>()) + ")");
            }
            printLine(cells);
        }
        for (const ordered_json* one : cases) {
            graph << quoted(one->at("name").get<std::string>());
            for (const std::string& name : names) {
                const ordered_json* row = rowOf(*one, name);
                graph << ' '
                      << (row == nullptr ? "nan" : number(4, row->at("ratio").get<double>()));
            }
            graph << '\n';
        }
        printTargets(title, cases);
        std::printf("\n");
    }

    static void writeGraphHead(std::ofstream& graph, const std::vector<std::string>& names) {
        graph << "case";
        for (const std::string& name : names) {
            graph << " \"" << name << '"';
        }
        graph << '\n';
    }

    static const ordered_json* rowOf(const ordered_json& one, const std::string& name) {
        for (const auto& row : one.at("rows")) {
            if (row.at("name") == name) {
                return &row;
            }
        }
        return nullptr;
    }

    // One row per subject, reference and limit.
    void printTargets(const std::string& title, const std::vector<const ordered_json*>& cases) {
        std::vector<std::string> lines;
        std::map<std::string, std::vector<std::string>> cells;
        for (std::size_t i = 0; i < cases.size(); ++i) {
            for (const auto& target : cases[i]->at("targets")) {
                const std::string line = "**" + target.at("subject").get<std::string>() +
                                         "** at most " +
                                         number(2, target.at("limit").get<double>()) + " x " +
                                         target.at("reference").get<std::string>();
                if (cells.emplace(line, std::vector<std::string>(cases.size(), "")).second) {
                    lines.push_back(line);
                }
                cells[line][i] = judge(title, *cases[i], target);
            }
        }
        for (const std::string& line : lines) {
            std::vector<std::string> row = {line};
            row.insert(row.end(), cells[line].begin(), cells[line].end());
            printLine(row);
        }
    }

    std::string judge(const std::string& title, const ordered_json& one,
                      const ordered_json& target) {
        const std::string ratio = number(2, target.at("ratio").get<double>());
        if (target.at("met").get<bool>()) {
            ++m_met;
            return ratio + " met";
        }
        m_missed.push_back(m_system + ": " + title + ", " + one.at("name").get<std::string>() +
                           ": " + target.at("subject").get<std::string>() + " takes " +
                           number(3, target.at("ratio").get<double>()) + " x " +
                           target.at("reference").get<std::string>() + ", at most " +
                           number(2, target.at("limit").get<double>()));
        return ratio + " **missed**";
    }

    // Values by themselves: a line per name, a column per row name.
    void printValues(const std::string& title, const std::vector<const ordered_json*>& values) {
        std::vector<std::string> columns;
        std::vector<std::string> names;
        std::map<std::string, std::map<std::string, std::string>> cells;
        for (const ordered_json* value : values) {
            const std::string column = value->at("row").get<std::string>() + " (" +
                                       value->at("unit").get<std::string>() + ")";
            const auto name = value->at("name").get<std::string>();
            if (std::find(columns.begin(), columns.end(), column) == columns.end()) {
                columns.push_back(column);
            }
            if (std::find(names.begin(), names.end(), name) == names.end()) {
                names.push_back(name);
            }
            cells[name][column] = number(4, value->at("value").get<double>());
        }
        std::vector<std::string> head = {title};
        head.insert(head.end(), columns.begin(), columns.end());
        printHead(head);
        std::ofstream graph(m_folder / graphFile(title, m_system));
        writeGraphHead(graph, columns);
        for (const std::string& name : names) {
            std::vector<std::string> line = {name};
            graph << quoted(name);
            for (const std::string& column : columns) {
                const std::string& cell = cells[name][column];
                line.push_back(cell.empty() ? "-" : cell);
                graph << ' ' << (cell.empty() ? "nan" : cell);
            }
            graph << '\n';
            printLine(line);
        }
        std::printf("\n");
    }

    std::filesystem::path m_folder;
    std::string m_system;
    std::size_t m_met = 0;
    std::vector<std::string> m_missed;
};

}  // namespace

int main(int count, char** arguments) try {
    if (count != 2) {
        throw std::runtime_error("usage: bench_report FOLDER");
    }
    CReport(arguments[1]).print();
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "bench_report: %s\n", error.what());
    return 1;
}
