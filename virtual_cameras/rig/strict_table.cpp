// SPDX-License-Identifier: MIT
#include "virtual_cameras/rig/strict_table.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <system_error>
#include <utility>

#include "virtual_cameras/rig/near_name.h"

namespace virtual_cameras {

namespace {

std::string quoted(std::string_view text) {
    return '"' + std::string(text) + '"';
}

}  // namespace

void failAt(const toml::source_region& place, std::string message) {
    throw RigFailure{{place.begin.line, place.begin.column, std::move(message)}};
}

std::string textOf(const toml::node& node, std::string_view what) {
    if (const auto* value = node.as_string()) {
        return value->get();
    }
    failAt(node.source(), std::string(what) + " must be a text");
}

double numberOf(const toml::node& node, std::string_view what) {
    if (const auto value = node.value<double>(); value && node.is_number()) {
        return *value;
    }
    failAt(node.source(), std::string(what) + " must be a number");
}

bool flagOf(const toml::node& node, std::string_view what) {
    if (const auto* value = node.as_boolean()) {
        return value->get();
    }
    failAt(node.source(), std::string(what) + " must be true or false");
}

const toml::array& arrayOf(const toml::node& node, std::string_view what) {
    if (const auto* value = node.as_array()) {
        return *value;
    }
    failAt(node.source(), std::string(what) + " must be a list");
}

std::int64_t serialOf(const toml::node& node) {
    const std::string text = textOf(node, "serial");
    std::uint64_t serial = 0;
    const auto parsed = std::from_chars(text.data(), text.data() + text.size(), serial, 16);
    if (text.empty() || parsed.ec != std::errc() || parsed.ptr != text.data() + text.size()) {
        failAt(node.source(), "serial must be hexadecimal digits, such as \"1A2B\"");
    }
    return static_cast<std::int64_t>(serial);
}

CStrictTable::CStrictTable(const toml::node& node, std::string_view what)
    : m_table(node.as_table()), m_what(what) {
    if (m_table == nullptr) {
        failAt(node.source(), m_what + " must be a table");
    }
}

const toml::node* CStrictTable::find(std::string_view key) {
    m_known.push_back(key);
    return m_table->get(key);
}

const toml::node* CStrictTable::needed(std::string_view key) {
    const toml::node* node = find(key);
    if (node == nullptr && m_missing.empty()) {
        m_missing = key;
    }
    return node;
}

std::string CStrictTable::text(std::string_view key, std::string_view otherwise) {
    const toml::node* node = find(key);
    return node != nullptr ? textOf(*node, key) : std::string(otherwise);
}

std::string CStrictTable::neededText(std::string_view key) {
    const toml::node* node = needed(key);
    return node != nullptr ? textOf(*node, key) : std::string();
}

bool CStrictTable::flag(std::string_view key, bool otherwise) {
    const toml::node* node = find(key);
    return node != nullptr ? flagOf(*node, key) : otherwise;
}

std::int32_t CStrictTable::neededInteger(std::string_view key) {
    const toml::node* node = needed(key);
    if (node == nullptr) {
        return 0;
    }
    const auto* value = node->as_integer();
    if (value == nullptr || value->get() < std::numeric_limits<std::int32_t>::min() ||
        value->get() > std::numeric_limits<std::int32_t>::max()) {
        failAt(node->source(), std::string(key) + " must be a whole number of 32 bits");
    }
    return static_cast<std::int32_t>(value->get());
}

std::int64_t CStrictTable::integer(std::string_view key, std::int64_t otherwise) {
    const toml::node* node = find(key);
    if (node != nullptr && !node->is_integer()) {
        failAt(node->source(), std::string(key) + " must be a whole number");
    }
    return node != nullptr ? node->as_integer()->get() : otherwise;
}

double CStrictTable::number(std::string_view key, double otherwise) {
    const toml::node* node = find(key);
    return node != nullptr ? numberOf(*node, key) : otherwise;
}

double CStrictTable::neededNumber(std::string_view key) {
    const toml::node* node = needed(key);
    return node != nullptr ? numberOf(*node, key) : 0.0;
}

std::vector<CStrictTable::Entry> CStrictTable::rest() const {
    std::vector<Entry> entries;
    for (const auto& [key, node] : *m_table) {
        if (std::find(m_known.begin(), m_known.end(), key.str()) == m_known.end()) {
            entries.push_back({key.str(), &node, key.source().begin});
        }
    }
    std::sort(entries.begin(), entries.end(),
              [](const Entry& left, const Entry& right) { return left.place < right.place; });
    return entries;
}

void CStrictTable::finish() const {
    const std::vector<Entry> entries = rest();
    if (!entries.empty()) {
        failUnknown(entries.front());
    }
    requireNeeded();
}

void CStrictTable::requireNeeded() const {
    if (!m_missing.empty()) {
        failAt(m_table->source(), m_what + " needs " + quoted(m_missing));
    }
}

void CStrictTable::failUnknown(const Entry& entry) const {
    throw RigFailure{
        {entry.place.line, entry.place.column,
         "unknown key " + quoted(entry.key) + " in " + m_what + meantText(entry.key, m_known)}};
}

}  // namespace virtual_cameras
