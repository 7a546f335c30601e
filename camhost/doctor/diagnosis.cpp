// SPDX-License-Identifier: MIT
#include "camhost/doctor/diagnosis.h"

#include <algorithm>
#include <utility>

#include "camhost/base/texts.h"

namespace camhost {

void CDiagnoses::right(Diagnosis diagnosis) {
    diagnosis.isRight = true;
    add(std::move(diagnosis));
}

void CDiagnoses::wrong(Diagnosis diagnosis) {
    diagnosis.isRight = false;
    add(std::move(diagnosis));
}

std::size_t CDiagnoses::countWrong() const {
    return static_cast<std::size_t>(std::count_if(
        m_all.begin(), m_all.end(), [](const Diagnosis& diagnosis) { return !diagnosis.isRight; }));
}

void CDiagnoses::add(Diagnosis diagnosis) {
    m_all.push_back(std::move(diagnosis));
    m_watcher(m_all.back());
}

std::vector<std::string> diagnosisLines(const Diagnosis& diagnosis) {
    std::vector<std::string> lines{printable(
        (diagnosis.isRight ? "OK    " : "FAIL  ") + diagnosis.check +
        (diagnosis.subject.empty() ? "" : " ") + diagnosis.subject + ": " + diagnosis.text)};
    for (const std::string& below : {diagnosis.remedy, diagnosis.note}) {
        if (!below.empty()) {
            lines.push_back("      " + printable(below));
        }
    }
    return lines;
}

CJson diagnosesJson(const std::vector<Diagnosis>& diagnoses) {
    CJson list = CJson::array();
    for (const Diagnosis& diagnosis : diagnoses) {
        std::string check = lowered(diagnosis.check);
        std::replace(check.begin(), check.end(), ' ', '_');
        CJson row = CJson::object({{"check", check}});
        if (!diagnosis.subject.empty()) {
            row.set("subject", diagnosis.subject);
        }
        row.set("outcome", diagnosis.isRight ? "ok" : "fail");
        row.set("text", diagnosis.text);
        if (!diagnosis.remedy.empty()) {
            row.set("remedy", diagnosis.remedy);
        }
        if (!diagnosis.note.empty()) {
            row.set("note", diagnosis.note);
        }
        list.add(std::move(row));
    }
    return list;
}

}  // namespace camhost
