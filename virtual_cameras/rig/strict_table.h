// SPDX-License-Identifier: MIT
// Reading one TOML table without letting anything pass unread: a wrong type, a
// missing value and an unknown key are errors with their place. Rig parser only.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Of some broken texts toml++ asserts what it then reports as an error all the same. With
// NDEBUG it would let the compiler rely on some of that.
#define TOML_ASSERT(condition) static_assert(true)
#pragma push_macro("NDEBUG")
#undef NDEBUG
#include <toml++/toml.h>
#pragma pop_macro("NDEBUG")

#include "virtual_cameras/rig/rig_parser.h"

namespace virtual_cameras {

// Thrown inside the parser, and turned into its result at its border.
struct RigFailure {
    RigError error;
};

[[noreturn]] void failAt(const toml::source_region& place, std::string message);

class CStrictTable {
public:
    struct Entry {
        std::string_view key;
        const toml::node* node;
        toml::source_position place;
    };

    // `what` names the table in messages, such as "camera".
    CStrictTable(const toml::node& node, std::string_view what);

    const toml::source_region& place() const { return m_table->source(); }

    // Null when there is no such key. Either way the key counts as known.
    const toml::node* find(std::string_view key);
    std::string text(std::string_view key, std::string_view otherwise);
    std::string neededText(std::string_view key);
    bool flag(std::string_view key, bool otherwise);
    std::int32_t neededInteger(std::string_view key);
    std::int64_t integer(std::string_view key, std::int64_t otherwise);
    double number(std::string_view key, double otherwise);
    double neededNumber(std::string_view key);

    // Everything that was not asked for, in file order.
    std::vector<Entry> rest() const;
    // Fails when something was not asked for, else when something needed is missing: a key
    // that is needed and mistyped is told by the near name, so the missing one waits.
    void finish() const;
    void requireNeeded() const;
    [[noreturn]] void failUnknown(const Entry& entry) const;

private:
    const toml::node* needed(std::string_view key);

    const toml::table* m_table;
    std::string m_what;
    std::vector<std::string_view> m_known;
    std::string_view m_missing;  // the first that is needed and not there
};

std::string textOf(const toml::node& node, std::string_view what);
double numberOf(const toml::node& node, std::string_view what);
bool flagOf(const toml::node& node, std::string_view what);
std::int64_t serialOf(const toml::node& node);
const toml::array& arrayOf(const toml::node& node, std::string_view what);

}  // namespace virtual_cameras
