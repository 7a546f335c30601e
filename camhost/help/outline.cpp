// SPDX-License-Identifier: MIT
#include "camhost/help/outline.h"

#include <algorithm>

#include "camhost/base/texts.h"

namespace camhost {

void COutlineList::word(const char* name, std::string&, const char* what, Need need) {
    m_options.push_back({.value = name, .what = what, .required = need == Need::Required});
}

void COutlineList::words(const char* name, std::vector<std::string>&, const char* what) {
    m_options.push_back({.value = name, .what = what, .required = true, .repeated = true});
}

void COutlineList::wordOf(const char*, std::string&, const std::vector<std::string>& choices,
                          const char* what) {
    m_options.push_back({.value = join(choices, "|"), .what = what, .required = true});
}

void COutlineList::flag(const char* names, bool&, const char* what) {
    m_options.push_back({.names = split(names, ','), .what = what});
}

void COutlineList::countedFlag(const char* names, int&, const char* what) {
    m_options.push_back({.names = split(names, ','), .what = what, .repeated = true});
}

void COutlineList::text(const char* names, std::string&, const char* placeholder,
                        const char* what) {
    m_options.push_back({.names = split(names, ','), .value = placeholder, .what = what});
}

void COutlineList::choice(const char* names, std::string&, const std::vector<std::string>& choices,
                          const char* what) {
    m_options.push_back({.names = split(names, ','), .value = join(choices, "|"), .what = what});
}

void COutlineList::texts(const char* names, std::vector<std::string>&, const char* placeholder,
                         const char* what) {
    m_options.push_back(
        {.names = split(names, ','), .value = placeholder, .what = what, .repeated = true});
}

void COutlineList::count(const char* names, std::uint64_t&, const char* placeholder,
                         const char* what) {
    m_options.push_back({.names = split(names, ','), .value = placeholder, .what = what});
}

void COutlineList::countAboveZero(const char* names, std::uint64_t& value, const char* placeholder,
                                  const char* what) {
    count(names, value, placeholder, what);
}

void COutlineList::secondsAboveZero(const char* names, double&, const char* placeholder,
                                    const char* what) {
    m_options.push_back({.names = split(names, ','), .value = placeholder, .what = what});
}

std::string completedBy(const std::string& value) {
    constexpr std::pair<std::string_view, const char*> kinds[] = {
        {"FILE", "@file"},     {"DLL", "@file"},    {"NAME|FILE", "@file"},
        {"CAMERA", "@camera"}, {"KEY", "@setting"}, {"KEY=VALUE", "@assignment"},
        {"COMMAND", "@action"}};
    for (const auto& [placeholder, kind] : kinds) {
        if (value == placeholder) {
            return kind;
        }
    }
    // What stands in small letters is typed as it stands.
    std::vector<std::string> words = split(value, '|');
    std::erase_if(words, [](const std::string& word) {
        return word.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789") != word.npos;
    });
    return words.empty() ? "@none" : join(words, " ");
}

}  // namespace camhost
