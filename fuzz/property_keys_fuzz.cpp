// SPDX-License-Identifier: MIT
// Keys from any text: lowering, trimming and numbering. Each line of the input is one
// name that a camera may give.
#include <string>
#include <unordered_set>

#include "fuzz/input/fuzz_input.h"
#include "properties/property_keys.h"

namespace {

// Enough for numbers of three digits. Each further name of the same text counts up from the
// first number again.
constexpr std::size_t mostNames = 128;

using Keys = std::unordered_set<std::string>;

bool hasCapitals(std::string_view text) {
    return std::any_of(text.begin(), text.end(), [](char c) { return c >= 'A' && c <= 'Z'; });
}

void checkNormalised(const std::string& key) {
    const std::string normalised{std::string_view(normalisedKey(key))};
    require(!hasCapitals(normalised), "a normalised key has no capitals");
    if (key.find_last_not_of(' ') + 1 > longestKey) {
        require(normalised.size() == longestKey + 1, "a key too long for any table stays so");
        return;
    }
    require(normalised.empty() || normalised.back() != ' ', "nor a blank at its end");
    require(normalised.size() <= key.size(), "it is not longer than the key");
    require(normalisedKey(normalised) == std::string_view(normalised),
            "normalising twice changes nothing");
    for (std::size_t i = 0; i < key.size(); ++i) {
        const bool capital = key[i] >= 'A' && key[i] <= 'Z';
        const char expected = capital ? static_cast<char>(key[i] + 32) : key[i];
        require(i < normalised.size() ? normalised[i] == expected : key[i] == ' ',
                "each character is lowered in its place, or a blank that was cut");
    }
}

void checkUnique(Keys& taken, const std::string& key) {
    const auto isTaken = [&taken](std::string_view asked) {
        return taken.contains(std::string(asked));
    };
    const std::string unique = uniqueKey(key, isTaken);
    require(unique.size() <= 254, "a unique key has 254 characters at most");
    const bool whole = unique == std::string_view(key).substr(0, 254);
    if (!whole) {
        const std::size_t digits = unique.find_last_not_of("0123456789") + 1;
        bool isNumbered = false;
        for (std::size_t at = digits; at < unique.size(); ++at) {
            isNumbered = isNumbered || (unique[at] != '0' && key.starts_with(unique.substr(0, at)));
        }
        require(isNumbered, "it is the key itself, or its beginning and a number");
        require(isTaken(std::string_view(key).substr(0, 254)), "a free key gets no number");
    }
    require(taken.insert(unique).second, "a unique key was not taken");
    const bool listed = isListedKey(unique);
    require(!listed || unique.find('_') == std::string::npos, "no listed key has an underscore");
    require(isSwitchKey(unique) == (unique.find(" switch") != std::string::npos),
            "a switch is known by its suffix");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    CFuzzInput input(data, size);
    Keys taken;
    for (std::size_t i = 0; i < mostNames && !input.isEmpty(); ++i) {
        const std::string name = input.takeLine();
        checkNormalised(name);
        checkUnique(taken, baseKey(name, "Value") + " range");
        checkUnique(taken, name);
        checkUnique(taken, name);
    }
    return 0;
}
