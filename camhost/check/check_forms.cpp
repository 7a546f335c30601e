// SPDX-License-Identifier: MIT
#include "camhost/check/check_forms.h"

#include <algorithm>

#include "camhost/base/number_texts.h"
#include "camhost/base/texts.h"

namespace camhost {

namespace {

const char* wordOf(Outcome outcome) {
    constexpr const char* words[] = {"ok", "not_supported", "fail"};
    return words[static_cast<std::size_t>(outcome)];
}

const char* shownWord(Outcome outcome) {
    constexpr const char* words[] = {"OK", "OK (Not Supported)", "FAIL"};
    return words[static_cast<std::size_t>(outcome)];
}

// U+FFFE and U+FFFF are UTF-8, and nothing that XML can hold.
std::string withoutNoncharacters(std::string text) {
    for (const std::string_view none : {"\xEF\xBF\xBE", "\xEF\xBF\xBF"}) {
        for (auto at = text.find(none); at != text.npos; at = text.find(none, at)) {
            text.replace(at, none.size(), " ");
        }
    }
    return text;
}

// Of an attribute or a text; foreign bytes that XML can not hold are blanks.
std::string xml(const std::string& text) {
    std::string escaped;
    for (const char c : withoutNoncharacters(printable(text))) {
        switch (c) {
            case '&':
                escaped += "&amp;";
                break;
            case '<':
                escaped += "&lt;";
                break;
            case '>':
                escaped += "&gt;";
                break;
            case '"':
                escaped += "&quot;";
                break;
            default:
                escaped += c;
        }
    }
    return escaped;
}

std::string countAttributes(const Counts& counts) {
    return " tests=\"" + std::to_string(counts.total) + "\" failures=\"" +
           std::to_string(counts.failing) + "\" skipped=\"" + std::to_string(counts.notSupported) +
           "\"";
}

std::string caseText(const Finding& finding) {
    constexpr int decimals = 3;
    std::string text = "    <testcase classname=\"" + xml(finding.group) + "\" name=\"" +
                       xml(finding.name) + "\" time=\"" + fixedText(finding.seconds, decimals) +
                       "\"";
    if (finding.outcome == Outcome::Holds) {
        return text + "/>\n";
    }
    const std::string message = xml(join(finding.reasons, "; "));
    const char* element = finding.outcome == Outcome::Fails ? "failure" : "skipped";
    return text + ">\n      <" + element + " message=\"" + message + "\"/>\n    </testcase>\n";
}

std::string suiteText(const std::vector<Finding>& findings) {
    std::string text = "  <testsuite name=\"" + xml(findings.front().group) + "\"" +
                       countAttributes(countsOf(findings)) + ">\n";
    for (const Finding& finding : findings) {
        text += caseText(finding);
    }
    return text + "  </testsuite>\n";
}

}  // namespace

std::vector<std::string> findingLines(const Finding& finding) {
    std::vector<std::string> lines;
    if (finding.outcome == Outcome::Fails) {
        for (const std::string& reason : finding.reasons) {
            lines.push_back("\t\tfail: " + printable(reason));
        }
    }
    lines.push_back("\ttest " + finding.name + ": " + shownWord(finding.outcome));
    return lines;
}

std::string totalLine(const Counts& counts) {
    return "Total: " + std::to_string(counts.total) +
           ", Succeeded: " + std::to_string(counts.holding) +
           ", Not Supported: " + std::to_string(counts.notSupported) +
           ", Failed: " + std::to_string(counts.failing);
}

CJson findingsJson(const std::vector<Finding>& findings) {
    CJson tests = CJson::array();
    for (const Finding& finding : findings) {
        CJson test = CJson::object({{"group", finding.group},
                                    {"name", finding.name},
                                    {"outcome", wordOf(finding.outcome)}});
        if (!finding.reasons.empty()) {
            test.set("reasons", finding.reasons);
        }
        tests.add(std::move(test));
    }
    const Counts counts = countsOf(findings);
    return CJson::object({{"tests", std::move(tests)},
                          {"total", counts.total},
                          {"succeeded", counts.holding},
                          {"not_supported", counts.notSupported},
                          {"failed", counts.failing}});
}

std::string junitText(const std::string& adapter, const std::vector<Finding>& findings) {
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites name=\"" +
                       xml(adapter) + "\"" + countAttributes(countsOf(findings)) + ">\n";
    auto first = findings.begin();
    while (first != findings.end()) {
        const auto next = std::find_if(
            first, findings.end(), [&](const Finding& each) { return each.group != first->group; });
        text += suiteText({first, next});
        first = next;
    }
    return text + "</testsuites>\n";
}

}  // namespace camhost
