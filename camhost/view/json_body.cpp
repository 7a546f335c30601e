// SPDX-License-Identifier: MIT
#include "camhost/view/json_body.h"

#include "camhost/base/failure.h"
#include "camhost/base/number_texts.h"

namespace camhost {

namespace {

Failure wrongBody(const std::string& what) {
    return {.exit = ExitCode::Usage, .code = "usage", .message = what};
}

Failure missing(const char* name) {
    return wrongBody("the body has no \"" + std::string(name) + "\"");
}

CJson parsed(const std::string& text) {
    std::string reason;
    std::optional<CJson> json = CJson::parse(text, reason);
    if (!json) {
        throw wrongBody("the body is no JSON: " + reason);
    }
    if (!json->isObject()) {
        throw wrongBody("the body is no JSON object");
    }
    return *std::move(json);
}

}  // namespace

CJsonBody::CJsonBody(const std::string& text) : m_json(parsed(text)) {}

std::string CJsonBody::text(const char* name) const {
    if (!find(name)) {
        throw missing(name);
    }
    return text(name, "");
}

std::string CJsonBody::text(const char* name, const char* absent) const {
    const std::optional<CJson> member = find(name);
    if (!member) {
        return absent;
    }
    const std::optional<std::string> text = member->text();
    // To the adapter a zero is the end, and what is checked would be more than what is set.
    if (!text || text->find('\0') != text->npos) {
        throw wrongBody("\"" + std::string(name) + "\" is no text");
    }
    return *text;
}

bool CJsonBody::flag(const char* name) const {
    if (!find(name)) {
        throw missing(name);
    }
    return flag(name, false);
}

bool CJsonBody::flag(const char* name, bool absent) const {
    const std::optional<CJson> member = find(name);
    if (!member) {
        return absent;
    }
    const std::string text = member->toText();
    if (text != "true" && text != "false") {
        throw wrongBody("\"" + std::string(name) + "\" is neither true nor false");
    }
    return text == "true";
}

std::int32_t CJsonBody::number(const char* name, std::int32_t most) const {
    const std::optional<std::int32_t> value = optionalNumber(name, most);
    if (!value) {
        throw missing(name);
    }
    return *value;
}

std::optional<std::int32_t> CJsonBody::optionalNumber(const char* name, std::int32_t most) const {
    const std::optional<CJson> member = find(name);
    if (!member) {
        return std::nullopt;
    }
    const std::optional<std::int32_t> value = wholeInteger(member->toText());
    if (!value || *value < 0 || *value > most) {
        throw wrongBody("\"" + std::string(name) + "\" is no whole number within 0 and " +
                        std::to_string(most));
    }
    return value;
}

}  // namespace camhost
