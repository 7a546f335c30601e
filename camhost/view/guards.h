// SPDX-License-Identifier: MIT
// Who may ask: requests to this machine's own address, with the secret of the address, and
// from no page but the view's own. Portable.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "camhost/view/http.h"

namespace camhost {

struct ViewAddress {
    std::uint16_t port = 0;
    std::string token;

    std::string text() const;  // "http://127.0.0.1:PORT/TOKEN/"
};

// 32 hexadecimal digits.
std::string tokenOf(std::span<const std::uint8_t> random);
inline constexpr std::size_t tokenBytes = 16;

// The path behind the token, with the query; nothing without the right token. Takes as
// long for any wrong token of its length.
std::optional<std::string_view> behindToken(std::string_view target, std::string_view token);

// The refusal of a request of foreign or unknown provenance.
std::optional<HttpResponse> refuseForeign(const HttpRequest& request, std::uint16_t port);

bool isJsonType(std::string_view contentType);

}  // namespace camhost
