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
    const std::string wanted = normalisedKey(asked);
    if (wanted.empty()) {
        return {};
    }
    const std::size_t limit = std::max<std::size_t>(2, wanted.size() / 4);
    std::vector<std::pair<std::size_t, std::string>> found;
    for (const std::string& name : names) {
        const std::string candidate = lowered(name);
        std::size_t distance = editDistance(wanted, candidate);
        const bool contained = wanted.size() >= 3 && candidate.find(wanted) != candidate.npos;
        if (distance <= limit || contained) {
            if (contained) {
                distance = std::min(distance, limit);
            }
            found.emplace_back(distance, name);
        }
    }
    std::stable_sort(found.begin(), found.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<std::string> result;
    for (std::size_t i = 0; i < found.size() && i < 3; ++i) {
        result.push_back(found[i].second);
    }
    return result;
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
    const std::string where = lowered(text);
    const std::string what = lowered(pattern);
    if (what.find_first_of("*?") == what.npos) {
        return where.find(what) != where.npos;
    }
    return matchesWhole(where, what);
}

}  // namespace camhost
