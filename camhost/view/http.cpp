// SPDX-License-Identifier: MIT
#include "camhost/view/http.h"

#include <array>

#include "camhost/base/report.h"

namespace camhost {

namespace {

constexpr std::array<std::pair<int, std::string_view>, 15> reasons{{
    {200, "OK"},
    {202, "Accepted"},
    {204, "No Content"},
    {400, "Bad Request"},
    {403, "Forbidden"},
    {404, "Not Found"},
    {405, "Method Not Allowed"},
    {408, "Request Timeout"},
    {409, "Conflict"},
    {413, "Content Too Large"},
    {415, "Unsupported Media Type"},
    {431, "Request Header Fields Too Large"},
    {500, "Internal Server Error"},
    {501, "Not Implemented"},
    {503, "Service Unavailable"},
}};

// The page takes nothing from elsewhere, stands in no frame, and what it shows stays out of
// caches and of other pages' reach.
constexpr std::string_view everywhere =
    "Content-Security-Policy: default-src 'none'; script-src 'self'; style-src 'self'; "
    "img-src 'self' blob: data:; connect-src 'self'; form-action 'none'; "
    "frame-ancestors 'none'; base-uri 'none'\r\n"
    "X-Content-Type-Options: nosniff\r\n"
    "X-Frame-Options: DENY\r\n"
    "Referrer-Policy: no-referrer\r\n"
    "Cache-Control: no-store\r\n"
    "Cross-Origin-Resource-Policy: same-origin\r\n"
    "Cross-Origin-Opener-Policy: same-origin\r\n";

std::string_view reasonOf(int status) {
    for (const auto& [code, reason] : reasons) {
        if (code == status) {
            return reason;
        }
    }
    return "Other";
}

}  // namespace

void HttpResponse::setText(std::string text) {
    const auto owner = std::make_shared<const std::string>(std::move(text));
    const auto* begin = reinterpret_cast<const std::uint8_t*>(owner->data());
    body = {{owner, {begin, owner->size()}}};
}

std::size_t HttpResponse::size() const {
    std::size_t bytes = 0;
    for (const HttpPart& part : body) {
        bytes += part.bytes.size();
    }
    return bytes;
}

HttpResponse emptyResponse(int status) {
    return {.status = status};
}

HttpResponse jsonResponse(int status, std::string json) {
    HttpResponse response{.status = status, .type = "application/json"};
    response.setText(std::move(json));
    return response;
}

HttpResponse jsonResponse(int status, const CJson& json) {
    return jsonResponse(status, json.toText());
}

HttpResponse failureResponse(int status, const Failure& failure) {
    return jsonResponse(status, CJson::object({{"error", failureJson(failure)}}));
}

HttpResponse badRequest(std::string message, int status) {
    return failureResponse(status, {.code = "usage", .message = std::move(message)});
}

std::string responseHead(const HttpResponse& response, bool keepAlive) {
    std::string head = "HTTP/1.1 " + std::to_string(response.status) + " ";
    head += reasonOf(response.status);
    head += "\r\n";
    head += everywhere;
    const auto add = [&head](std::string_view name, std::string_view value) {
        head += name;
        head += ": ";
        head += value;
        head += "\r\n";
    };
    for (const auto& [name, value] : response.headers) {
        add(name, value);
    }
    if (!response.type.empty()) {
        add("Content-Type", response.type);
    }
    if (response.status != 204) {
        add("Content-Length", std::to_string(response.size()));
    }
    add("Connection", keepAlive ? "keep-alive" : "close");
    return head + "\r\n";
}

}  // namespace camhost
