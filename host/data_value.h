// SPDX-License-Identifier: MIT
// A small tree of values that JSON text is made from and read into, with the
// members of an object in the order in which they were added. Portable.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace camhost {

class CData {
public:
    using Array = std::vector<CData>;
    using Member = std::pair<std::string, CData>;
    using Object = std::vector<Member>;
    using Variant =
        std::variant<std::nullptr_t, bool, std::int64_t, double, std::string, Array, Object>;

    CData() = default;
    CData(bool value) : m_value(value) {}
    CData(int value) : m_value(std::int64_t{value}) {}
    CData(std::int64_t value) : m_value(value) {}
    CData(double value) : m_value(value) {}
    CData(const char* value) : m_value(std::string(value)) {}
    CData(std::string value) : m_value(std::move(value)) {}
    CData(Array value) : m_value(std::move(value)) {}
    CData(Object value) : m_value(std::move(value)) {}

    static CData object() { return CData(Object{}); }
    static CData array() { return CData(Array{}); }

    // Both turn an empty value into a container first.
    void set(std::string_view key, CData value);
    void add(CData value);

    // Null when this is no object, or has no such member.
    const CData* find(std::string_view key) const;
    std::optional<std::string> text() const;
    const Variant& variant() const { return m_value; }

private:
    Variant m_value = nullptr;
};

}  // namespace camhost
