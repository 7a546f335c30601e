// SPDX-License-Identifier: MIT
#include "camhost/base/json.h"

#include <nlohmann/json.hpp>

namespace camhost {

using Document = nlohmann::ordered_json;

namespace {

// The controls that JSON lets stand as they are, and a terminal may act on: U+007F, and
// U+0080 to U+009F. They occur in strings only.
std::string withEscapedControls(const std::string& text) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string escaped;
    escaped.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        const auto next = static_cast<unsigned char>(i + 1 < text.size() ? text[i + 1] : 0);
        const bool isHigh = byte == 0xC2 && next >= 0x80 && next <= 0x9F;
        if (byte != 0x7F && !isHigh) {
            escaped += text[i];
            continue;
        }
        const unsigned control = isHigh ? next : byte;
        escaped += "\\u00";
        escaped += digits[control >> 4U];
        escaped += digits[control & 0xFU];
        i += isHigh ? 1 : 0;
    }
    return escaped;
}

}  // namespace

CJson::CJson() : CJson(Document()) {}
CJson::CJson(bool value) : CJson(Document(value)) {}
CJson::CJson(double value) : CJson(Document(value)) {}
CJson::CJson(std::string_view value) : CJson(Document(value)) {}
CJson::CJson(const std::vector<std::string>& values) : CJson(Document(values)) {}
CJson::CJson(Whole whole) : CJson(Document(whole.value)) {}
CJson::CJson(Document document) : m_document(std::make_unique<Document>(std::move(document))) {}
CJson::CJson(const CJson& other) : CJson(Document(*other.m_document)) {}
CJson::CJson(CJson&& other) noexcept = default;
CJson& CJson::operator=(CJson other) noexcept {
    m_document.swap(other.m_document);
    return *this;
}
CJson::~CJson() = default;

CJson CJson::object(std::initializer_list<std::pair<const char*, CJson>> members) {
    CJson object(Document::object());
    for (const auto& [key, value] : members) {
        object.set(key, value);
    }
    return object;
}

CJson CJson::array() {
    return CJson(Document::array());
}

void CJson::set(const std::string& key, CJson value) {
    (*m_document)[key] = std::move(*value.m_document);
}

void CJson::add(CJson value) {
    m_document->push_back(std::move(*value.m_document));
}

bool CJson::empty() const {
    return m_document->empty();
}

bool CJson::isObject() const {
    return m_document->is_object();
}

std::optional<std::string> CJson::text() const {
    return m_document->is_string() ? std::optional(m_document->get<std::string>()) : std::nullopt;
}

std::optional<CJson> CJson::find(const std::string& key) const {
    const auto found = m_document->find(key);
    return found == m_document->end() ? std::nullopt : std::optional(CJson(Document(*found)));
}

std::vector<CJson::Member> CJson::members() const {
    std::vector<Member> members;
    if (isObject()) {
        for (const auto& [key, value] : m_document->items()) {
            members.emplace_back(key, CJson(Document(value)));
        }
    }
    return members;
}

std::vector<CJson> CJson::elements() const {
    std::vector<CJson> elements;
    if (m_document->is_array()) {
        for (const Document& element : *m_document) {
            elements.push_back(CJson(Document(element)));
        }
    }
    return elements;
}

std::string CJson::toText(int indentation) const {
    const std::string text = m_document->dump(indentation > 0 ? indentation : -1, ' ', false,
                                              Document::error_handler_t::replace);
    return withEscapedControls(text);
}

std::optional<CJson> CJson::parse(std::string_view text, std::string& reason) {
    // Taking a document apart recurses: a deep one would end the program.
    bool isTooDeep = false;
    // Members keep their order, and each new one is compared with all that there are.
    std::size_t members = 0;
    const auto isWithinLimits = [&](int depth, Document::parse_event_t event, const Document&) {
        isTooDeep = isTooDeep || depth > deepest;
        members += event == Document::parse_event_t::key ? 1U : 0U;
        return !isTooDeep && members <= mostMembers;
    };
    try {
        Document document = Document::parse(text.begin(), text.end(), isWithinLimits);
        if (isTooDeep) {
            reason = "it is nested more than " + std::to_string(deepest) + " deep";
            return std::nullopt;
        }
        if (members > mostMembers) {
            reason = "it has more than " + std::to_string(mostMembers) + " members";
            return std::nullopt;
        }
        return CJson(std::move(document));
    } catch (const Document::exception& error) {
        reason = error.what();
        // The library's own tag, such as "[json.exception.parse_error.101] ".
        if (const auto end = reason.find("] "); reason.starts_with("[") && end != reason.npos) {
            reason.erase(0, end + 2);
        }
        return std::nullopt;
    }
}

}  // namespace camhost
