// SPDX-License-Identifier: MIT
// What any call at all must keep to, counted over all calls of a check, so that it fails a
// line of its own and not that of the call at which it was seen. Portable.
#pragma once

#include <array>
#include <string>
#include <vector>

namespace camhost {

enum class Breach { Message, Value, Name, Choice, Attribute, NotUtf8, Result, NeedlessMessage };

class CBreaches {
public:
    void note(Breach breach, const std::string& what) {
        std::vector<std::string>& list = m_lists[static_cast<std::size_t>(breach)];
        if (list.size() < most) {
            list.push_back(what);
        }
    }
    // The first few.
    const std::vector<std::string>& of(Breach breach) const {
        return m_lists[static_cast<std::size_t>(breach)];
    }

private:
    static constexpr std::size_t most = 4;
    std::array<std::vector<std::string>, static_cast<std::size_t>(Breach::NeedlessMessage) + 1>
        m_lists;
};

}  // namespace camhost
