// SPDX-License-Identifier: MIT
#include "host/data_value.h"

namespace camhost {

void CData::set(std::string_view key, CData value) {
    if (!std::holds_alternative<Object>(m_value)) {
        m_value = Object{};
    }
    auto& members = std::get<Object>(m_value);
    for (Member& member : members) {
        if (member.first == key) {
            member.second = std::move(value);
            return;
        }
    }
    members.emplace_back(std::string(key), std::move(value));
}

void CData::add(CData value) {
    if (!std::holds_alternative<Array>(m_value)) {
        m_value = Array{};
    }
    std::get<Array>(m_value).push_back(std::move(value));
}

const CData* CData::find(std::string_view key) const {
    if (const auto* members = std::get_if<Object>(&m_value)) {
        for (const Member& member : *members) {
            if (member.first == key) {
                return &member.second;
            }
        }
    }
    return nullptr;
}

std::optional<std::string> CData::text() const {
    if (const auto* text = std::get_if<std::string>(&m_value)) {
        return *text;
    }
    return std::nullopt;
}

}  // namespace camhost
