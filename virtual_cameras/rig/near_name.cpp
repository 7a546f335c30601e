// SPDX-License-Identifier: MIT
#include "virtual_cameras/rig/near_name.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

namespace virtual_cameras {

namespace {

std::size_t editDistance(std::string_view left, std::string_view right) {
    std::vector<std::size_t> row(right.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < left.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 0; j < right.size(); ++j) {
            const std::size_t replaced = diagonal + (left[i] == right[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
        }
    }
    return row[right.size()];
}

}  // namespace

bool sameIgnoringCase(std::string_view left, std::string_view right) {
    const auto lower = [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    };
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [&](char a, char b) { return lower(a) == lower(b); });
}

std::string meantText(std::string_view wrong, const std::vector<std::string_view>& known) {
    constexpr std::size_t nearEnough = 3;
    std::string_view best;
    std::size_t distance = nearEnough;
    for (const std::string_view candidate : known) {
        const std::size_t candidateDistance = editDistance(wrong, candidate);
        if (candidateDistance < distance) {
            distance = candidateDistance;
            best = candidate;
        }
    }
    return best.empty() ? std::string()
                        : "; did you mean " + std::string("\"").append(best) + "\"" + "?";
}

}  // namespace virtual_cameras
