// SPDX-License-Identifier: MIT
#include "camhost/view/guards.h"

#include "camhost/base/texts.h"

namespace camhost {

namespace {

std::string local(const char* name, std::uint16_t port) {
    return std::string(name) + ":" + std::to_string(port);
}

bool isLocal(std::string_view host, std::uint16_t port) {
    return host == local("127.0.0.1", port) || sameIgnoringCase(host, local("localhost", port));
}

bool sameSecret(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) {
        return false;
    }
    unsigned difference = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        difference |= static_cast<unsigned char>(a[i]) ^
                      static_cast<unsigned>(static_cast<unsigned char>(b[i]));
    }
    return difference == 0;
}

}  // namespace

std::string ViewAddress::text() const {
    return "http://" + local("127.0.0.1", port) + "/" + token + "/";
}

std::string tokenOf(std::span<const std::uint8_t> random) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string token;
    for (const std::uint8_t byte : random) {
        token += digits[byte >> 4U];
        token += digits[byte & 0xFU];
    }
    return token;
}

std::optional<std::string_view> behindToken(std::string_view target, std::string_view token) {
    const std::size_t slash = target.find('/', 1);
    if (token.empty() || slash == target.npos || !target.starts_with('/') ||
        !sameSecret(target.substr(1, slash - 1), token)) {
        return std::nullopt;
    }
    return target.substr(slash + 1);
}

std::optional<HttpResponse> refuseForeign(const HttpRequest& request, std::uint16_t port) {
    if (!request.host || !isLocal(*request.host, port)) {
        return failureResponse(400, {.code = "host", .message = "asked for by another name"});
    }
    constexpr std::string_view scheme = "http://";
    if (request.origin &&
        (!request.origin->starts_with(scheme) ||
         !isLocal(std::string_view(*request.origin).substr(scheme.size()), port))) {
        return failureResponse(403, {.code = "origin", .message = "asked for by another page"});
    }
    return std::nullopt;
}

bool isJsonType(std::string_view contentType) {
    const std::string_view bare = contentType.substr(0, contentType.find(';'));
    return sameIgnoringCase(normalisedKey(bare), "application/json");
}

}  // namespace camhost
