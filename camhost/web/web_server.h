// SPDX-License-Identifier: MIT
// HTTP on this machine's own address, on a thread of its own. What stands behind it needs
// long to compile: web_server.cpp alone includes it.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "camhost/view/http.h"

namespace camhost {

struct WebLimits {
    std::size_t headerBytes = std::size_t{8} << 10U;
    std::uint64_t bodyBytes = std::uint64_t{1} << 20U;
    std::size_t connections = 64;
    double requestSeconds = 30.0;  // until a request is whole, and between two
    double sendingSeconds = 30.0;  // until an answer is taken
    double endingSeconds = 1.0;    // that last answers have
};

class CWebServer {
public:
    // Answers requests whose size is within the limits; on the server's thread.
    using Handler = std::function<HttpAnswer(const HttpRequest&)>;

    // Takes the port, 0 for any free one. Throws a Failure when it can't be had.
    explicit CWebServer(std::uint16_t port, const WebLimits& limits = {});
    CWebServer(const CWebServer&) = delete;
    CWebServer& operator=(const CWebServer&) = delete;
    ~CWebServer();

    std::uint16_t port() const;
    void start(Handler handler);
    // Last answers are sent before. Not on the server's thread.
    void stop();
    // Any thread, also after the stop: what waits may be there.
    void wake();

private:
    class CImpl;
    std::unique_ptr<CImpl> m_impl;
};

}  // namespace camhost
