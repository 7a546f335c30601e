// SPDX-License-Identifier: MIT
#include "host/json_text.h"

#include <nlohmann/json.hpp>

namespace camhost {

namespace {

using Json = nlohmann::ordered_json;

Json toJson(const CData& value);

struct Writer {
    Json operator()(std::nullptr_t) const { return nullptr; }
    Json operator()(bool value) const { return value; }
    Json operator()(std::int64_t value) const { return value; }
    Json operator()(double value) const { return value; }
    Json operator()(const std::string& value) const { return value; }
    Json operator()(const CData::Array& values) const {
        Json array = Json::array();
        for (const CData& value : values) {
            array.push_back(toJson(value));
        }
        return array;
    }
    Json operator()(const CData::Object& members) const {
        Json object = Json::object();
        for (const auto& [key, value] : members) {
            object[key] = toJson(value);
        }
        return object;
    }
};

Json toJson(const CData& value) {
    return std::visit(Writer{}, value.variant());
}

CData fromJson(const Json& json) {
    if (json.is_boolean()) {
        return json.get<bool>();
    }
    if (json.is_number_integer()) {
        return json.get<std::int64_t>();
    }
    if (json.is_number()) {
        return json.get<double>();
    }
    if (json.is_string()) {
        return json.get<std::string>();
    }
    CData value;
    if (json.is_array()) {
        value = CData::array();
        for (const Json& element : json) {
            value.add(fromJson(element));
        }
    } else if (json.is_object()) {
        value = CData::object();
        for (const auto& [key, element] : json.items()) {
            value.set(key, fromJson(element));
        }
    }
    return value;
}

}  // namespace

std::string toJsonText(const CData& value, int indentation) {
    return toJson(value).dump(indentation > 0 ? indentation : -1, ' ', false,
                              Json::error_handler_t::replace);
}

std::optional<CData> parseJsonText(std::string_view text, std::string& reason) {
    try {
        return fromJson(Json::parse(text.begin(), text.end()));
    } catch (const Json::parse_error& error) {
        reason = error.what();
        // The library's own tag, such as "[json.exception.parse_error.101] ".
        if (const auto end = reason.find("] "); reason.starts_with("[") && end != reason.npos) {
            reason.erase(0, end + 2);
        }
        return std::nullopt;
    }
}

}  // namespace camhost
