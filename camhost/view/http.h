// SPDX-License-Identifier: MIT
// A request and its answer, apart from sockets: what web/ reads and writes, and what the
// routes decide on. Portable.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "camhost/base/failure.h"
#include "camhost/base/json.h"

namespace camhost {

struct HttpRequest {
    std::string method;
    std::string target;               // path and query, as sent
    std::optional<std::string> host;  // none when there is not exactly one
    std::optional<std::string> origin;
    std::string contentType;
    std::string body;
};

// Bytes of a body, and what keeps them alive until they are sent.
struct HttpPart {
    std::shared_ptr<const void> owner;
    std::span<const std::uint8_t> bytes;
};

struct HttpResponse {
    int status = 200;
    std::string type{};  // empty for no content
    std::vector<std::pair<std::string, std::string>> headers{};
    std::vector<HttpPart> body{};

    void setText(std::string text);
    std::size_t size() const;
};

// An answer that is not there yet. Who serves the request looks now and again, each time
// it is woken and once when the time is up, when there always is one.
struct HttpWaiting {
    double seconds = 0.0;
    std::function<std::optional<HttpResponse>(bool timeIsUp)> look;
};

using HttpAnswer = std::variant<HttpResponse, HttpWaiting>;

HttpResponse emptyResponse(int status);
HttpResponse jsonResponse(int status, const CJson& json);
HttpResponse jsonResponse(int status, std::string json);
// As the JSON of the command line tells a failure.
HttpResponse failureResponse(int status, const Failure& failure);
// A usage Failure as a response.
HttpResponse badRequest(std::string message, int status = 400);

// Status line and headers with the empty line behind them; those that every answer
// carries are among them.
std::string responseHead(const HttpResponse& response, bool keepAlive);

}  // namespace camhost
