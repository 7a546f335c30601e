// SPDX-License-Identifier: MIT
// What doctor has found out, one line after the other. Portable.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "camhost/base/json.h"

namespace camhost {

struct Diagnosis {
    std::string check;      // "import"; in the JSON with "_" for blanks
    std::string subject{};  // the library or camera it is about, where there are several
    std::string text{};
    std::string remedy{};  // only when it is wrong
    std::string note{};    // only when it is right
    bool isRight = true;
};

class CDiagnoses {
public:
    using Watcher = std::function<void(const Diagnosis&)>;
    explicit CDiagnoses(Watcher watcher) : m_watcher(std::move(watcher)) {}

    void right(Diagnosis diagnosis);
    void wrong(Diagnosis diagnosis);

    const std::vector<Diagnosis>& all() const { return m_all; }
    std::size_t countWrong() const;

private:
    void add(Diagnosis diagnosis);

    Watcher m_watcher;
    std::vector<Diagnosis> m_all;
};

// "OK    import KERNEL32.dll: ..."; below it the remedy or the note, indented.
std::vector<std::string> diagnosisLines(const Diagnosis& diagnosis);
CJson diagnosesJson(const std::vector<Diagnosis>& diagnoses);

}  // namespace camhost
