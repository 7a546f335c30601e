// SPDX-License-Identifier: MIT
// JSON documents: the library's own, which keeps members in the order in which they
// were added, behind a class of few operations. Its header is slow to compile and
// slower to check; json.cpp alone includes it. Portable.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace camhost {

class CJson {
public:
    using Member = std::pair<std::string, CJson>;

    CJson();  // null
    CJson(bool value);
    CJson(double value);
    CJson(std::string_view value);
    CJson(const std::string& value) : CJson(std::string_view(value)) {}
    CJson(const char* value) : CJson(std::string_view(value)) {}
    CJson(const std::vector<std::string>& values);
    template <std::integral Integer>
    CJson(Integer value) : CJson(Whole{static_cast<std::int64_t>(value)}) {}
    CJson(const CJson& other);
    CJson(CJson&& other) noexcept;
    CJson& operator=(CJson other) noexcept;
    ~CJson();

    static CJson object(std::initializer_list<std::pair<const char*, CJson>> members = {});
    static CJson array();

    // Of objects; a member that is there already keeps its place.
    void set(const std::string& key, CJson value);
    // Of arrays.
    void add(CJson value);

    bool empty() const;
    bool isObject() const;
    std::optional<std::string> text() const;
    std::optional<CJson> find(const std::string& key) const;
    std::vector<Member> members() const;  // none of what is no object
    std::vector<CJson> elements() const;  // none of what is no array

    // Bytes that are not UTF-8 come out as the replacement character. With an
    // indentation of 0 the text is one line.
    std::string toText(int indentation = 0) const;
    // Nothing, and a reason (with line and column where it has them), when the text is not
    // JSON, is nested more deeply than `deepest`, or has more members in all its objects
    // than `mostMembers`.
    static constexpr int deepest = 32;
    static constexpr std::size_t mostMembers = 10000;
    static std::optional<CJson> parse(std::string_view text, std::string& reason);

private:
    struct Whole {
        std::int64_t value;
    };
    explicit CJson(Whole whole);
    explicit CJson(nlohmann::ordered_json document);

    std::unique_ptr<nlohmann::ordered_json> m_document;
};

}  // namespace camhost
