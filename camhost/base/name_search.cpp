// SPDX-License-Identifier: MIT
#include "camhost/base/name_search.h"

#include <algorithm>
#include <utility>

#include "camhost/base/texts.h"

namespace camhost {

namespace {

bool matchesWhole(std::string_view text, std::string_view pattern) {
    std::size_t t = 0;
    std::size_t p = 0;
    std::size_t star = pattern.npos;
    std::size_t resume = 0;
    while (t < text.size()) {
        if (p < pattern.size() && (pattern[p] == '?' || pattern[p] == text[t])) {
            ++t;
            ++p;
        } else if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            resume = t;
        } else if (star != pattern.npos) {
            p = star + 1;
            t = ++resume;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', p) == pattern.npos;
}

// As many words of the text's beginning as the other has.
std::string_view firstWords(std::string_view text, std::string_view other) {
    auto words = std::count(other.begin(), other.end(), ' ') + 1;
    std::size_t end = 0;
    for (; words > 0 && end != text.npos; --words) {
        end = text.find(' ', end == 0 ? 0 : end + 1);
    }
    return text.substr(0, end);
}

struct Candidate {
    std::size_t distance;
    std::string name;
};

std::vector<std::string> nearest(std::vector<Candidate> found) {
    constexpr std::size_t most = 3;
    std::stable_sort(found.begin(), found.end(), [](const Candidate& a, const Candidate& b) {
        return a.distance < b.distance;
    });
    std::vector<std::string> result;
    for (std::size_t i = 0; i < found.size() && i < most; ++i) {
        result.push_back(found[i].name);
    }
    return result;
}

// Those that begin with words like the wanted ones.
std::vector<Candidate> withNearBeginning(const std::string& wanted,
                                         const std::vector<std::string>& names) {
    const std::size_t limit = wanted.size() < 6 ? 1 : 2;
    std::vector<Candidate> found;
    for (const std::string& name : names) {
        const std::string candidate = folded(name);
        const std::size_t distance = editDistance(wanted, firstWords(candidate, wanted));
        if (wanted.size() > 2 && distance <= limit) {
            found.push_back({distance, name});
        }
    }
    return found;
}

}  // namespace

std::size_t editDistance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> beforeLast(b.size() + 1);
    std::vector<std::size_t> last(b.size() + 1);
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) {
        last[j] = j;
    }
    for (std::size_t i = 1; i <= a.size(); ++i) {
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t change = last[j - 1] + (a[i - 1] == b[j - 1] ? 0U : 1U);
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, change});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                row[j] = std::min(row[j], beforeLast[j - 2] + 1);
            }
        }
        std::swap(beforeLast, last);
        std::swap(last, row);
    }
    return last[b.size()];
}

std::vector<std::string> nearNames(std::string_view asked, const std::vector<std::string>& names) {
    std::string wanted = folded(asked);
    wanted.erase(wanted.find_last_not_of(' ') + 1);
    if (wanted.empty()) {
        return {};
    }
    const std::size_t limit = std::max<std::size_t>(2, wanted.size() / 4);
    std::vector<Candidate> found;
    for (const std::string& name : names) {
        const std::string candidate = folded(name);
        std::size_t distance = editDistance(wanted, candidate);
        const bool contained = wanted.size() >= 3 && candidate.find(wanted) != candidate.npos;
        if (distance <= limit || contained) {
            if (contained) {
                distance = std::min(distance, limit);
            }
            found.push_back({distance, name});
        }
    }
    return nearest(found.empty() ? withNearBeginning(wanted, names) : std::move(found));
}

std::string quotedList(const std::vector<std::string>& names) {
    std::string result;
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (i > 0) {
            result += i + 1 == names.size() ? " or " : ", ";
        }
        result += '"' + names[i] + '"';
    }
    return result;
}

bool matchesPattern(std::string_view text, std::string_view pattern) {
    const std::string where = folded(text);
    const std::string what = folded(pattern);
    if (what.find_first_of("*?") == what.npos) {
        return where.find(what) != where.npos;
    }
    return matchesWhole(where, what);
}

}  // namespace camhost
