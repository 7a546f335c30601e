// SPDX-License-Identifier: MIT
#include "camhost/web/web_server.h"

#include <utility>  // before Asio, which uses it without

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/core/tcp_stream.hpp>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/read.hpp>
#include <boost/beast/http/string_body.hpp>

#include <array>
#include <chrono>
#include <exception>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <variant>
#include <vector>

namespace camhost {

namespace {

namespace net = boost::asio;
namespace beast = boost::beast;
namespace http = boost::beast::http;
using net::ip::tcp;
using Error = boost::system::error_code;

std::chrono::milliseconds milliseconds(double seconds) {
    return std::chrono::milliseconds(static_cast<std::int64_t>(seconds * 1000.0));
}

std::string textOf(beast::string_view text) {
    return {text.data(), text.size()};
}

// None when there is not exactly one such header.
std::optional<std::string> onlyOne(const http::fields& fields, http::field name) {
    return fields.count(name) == 1 ? std::optional(textOf(fields[name])) : std::nullopt;
}

HttpRequest requestOf(http::request<http::string_body>& from) {
    HttpRequest request;
    request.method = textOf(from.method_string());
    request.target = textOf(from.target());
    request.host = onlyOne(from, http::field::host);
    if (from.count(http::field::origin) > 0) {
        request.origin = onlyOne(from, http::field::origin).value_or("");
    }
    request.contentType = textOf(from[http::field::content_type]);
    request.body = std::move(from.body());
    return request;
}

HttpResponse tooMuch(const Error& error, const WebLimits& limits) {
    if (error == http::error::header_limit || error == http::error::buffer_overflow) {
        return badRequest("more than " + std::to_string(limits.headerBytes) + " bytes of headers",
                          431);
    }
    if (error == http::error::body_limit) {
        return badRequest("more than " + std::to_string(limits.bodyBytes) + " bytes of content",
                          413);
    }
    return badRequest("no request that can be read");
}

}  // namespace

// All but the constructor, port(), start() and wake() is done on the thread of m_context.
class CWebServer::CImpl {
public:
    CImpl(std::uint16_t port, const WebLimits& limits);
    CImpl(const CImpl&) = delete;
    CImpl& operator=(const CImpl&) = delete;
    ~CImpl();

    std::uint16_t port() const { return m_port; }
    void start(Handler handler);
    void stop();
    void wake();

private:
    class CSession;

    void accept();
    void acceptAgain();
    void lookAtAll();
    void forget(const std::shared_ptr<CSession>& session);
    void endAll();

    const WebLimits m_limits;
    net::io_context m_context{1};
    tcp::acceptor m_acceptor{m_context};
    net::steady_timer m_end{m_context};
    net::steady_timer m_pause{m_context};
    std::uint16_t m_port = 0;
    Handler m_handler;
    std::set<std::shared_ptr<CSession>> m_sessions;
    bool m_stopping = false;
    std::thread m_thread;
};

// One connection: request, answer, and again. Held by what it waits for.
class CWebServer::CImpl::CSession : public std::enable_shared_from_this<CSession> {
public:
    CSession(CImpl& server, tcp::socket socket)
        : m_server(server), m_stream(std::move(socket)), m_timer(m_stream.get_executor()) {}

    void read();
    void refuse(HttpResponse response);
    void look(bool timeIsUp);
    // At once when nothing is on its way.
    void stop();

private:
    void onRead(const Error& error);
    void onAnswer(HttpAnswer answer);
    void send(HttpResponse response);
    void onSent(const Error& error);
    void drain();
    void close();

    CImpl& m_server;
    beast::tcp_stream m_stream;
    net::steady_timer m_timer;
    beast::flat_buffer m_buffer;
    std::optional<http::request_parser<http::string_body>> m_parser;
    std::optional<HttpWaiting> m_waiting;
    HttpResponse m_response;
    std::string m_head;
    std::array<char, 4096> m_rest{};
    bool m_isIdle = false;
    bool m_keepsAlive = false;
    bool m_wantsNoBody = false;
};

void CWebServer::CImpl::CSession::read() {
    m_parser.emplace();
    m_parser->header_limit(static_cast<std::uint32_t>(m_server.m_limits.headerBytes));
    m_parser->body_limit(m_server.m_limits.bodyBytes);
    m_stream.expires_after(milliseconds(m_server.m_limits.requestSeconds));
    m_isIdle = true;
    http::async_read(
        m_stream, m_buffer, *m_parser,
        [self = shared_from_this()](const Error& error, std::size_t) { self->onRead(error); });
}

void CWebServer::CImpl::CSession::onRead(const Error& error) {
    m_isIdle = false;
    const auto& ofHttp = http::make_error_code(http::error::end_of_stream).category();
    if (error && (error.category() != ofHttp || error == http::error::end_of_stream ||
                  error == http::error::partial_message)) {
        close();
        return;
    }
    if (error) {
        refuse(tooMuch(error, m_server.m_limits));
        return;
    }
    http::request<http::string_body> message = m_parser->release();
    m_keepsAlive = message.keep_alive() && !m_server.m_stopping;
    m_wantsNoBody = message.method() == http::verb::head;
    try {
        onAnswer(m_server.m_handler(requestOf(message)));
    } catch (const std::exception& failure) {
        refuse(failureResponse(500, {.code = "internal", .message = failure.what()}));
    }
}

void CWebServer::CImpl::CSession::onAnswer(HttpAnswer answer) {
    if (auto* response = std::get_if<HttpResponse>(&answer)) {
        send(std::move(*response));
        return;
    }
    m_waiting = std::get<HttpWaiting>(std::move(answer));
    constexpr double endless = 86400.0;
    if (m_waiting->seconds < endless) {
        m_timer.expires_after(milliseconds(m_waiting->seconds));
        m_timer.async_wait([self = shared_from_this()](const Error& error) {
            if (!error) {
                self->look(true);
            }
        });
    }
    look(false);
}

void CWebServer::CImpl::CSession::look(bool timeIsUp) {
    if (!m_waiting) {
        return;
    }
    std::optional<HttpResponse> response;
    try {
        response = m_waiting->look(timeIsUp);
    } catch (const std::exception& failure) {
        response = failureResponse(500, {.code = "internal", .message = failure.what()});
    }
    if (response) {
        m_waiting.reset();
        m_timer.cancel();
        send(*std::move(response));
    }
}

void CWebServer::CImpl::CSession::send(HttpResponse response) {
    m_response = std::move(response);
    m_head = responseHead(m_response, m_keepsAlive);
    std::vector<net::const_buffer> buffers{net::buffer(m_head)};
    if (!m_wantsNoBody) {
        for (const HttpPart& part : m_response.body) {
            buffers.emplace_back(part.bytes.data(), part.bytes.size());
        }
    }
    m_stream.expires_after(milliseconds(m_server.m_limits.sendingSeconds));
    net::async_write(
        m_stream, buffers,
        [self = shared_from_this()](const Error& error, std::size_t) { self->onSent(error); });
}

void CWebServer::CImpl::CSession::onSent(const Error& error) {
    m_response = {};  // what it held may be wanted elsewhere
    if (error) {
        close();
    } else if (m_keepsAlive && !m_server.m_stopping) {
        read();
    } else {
        drain();
    }
}

// A close with something unread would take back the answer that is on its way.
void CWebServer::CImpl::CSession::drain() {
    constexpr double patience = 2.0;
    Error ignored;
    m_stream.socket().shutdown(tcp::socket::shutdown_send, ignored);
    m_stream.expires_after(milliseconds(patience));
    m_isIdle = true;
    m_stream.async_read_some(net::buffer(m_rest),
                             [self = shared_from_this()](const Error& error, std::size_t) {
                                 if (error || self->m_server.m_stopping) {
                                     self->close();
                                 } else {
                                     self->drain();
                                 }
                             });
}

void CWebServer::CImpl::CSession::refuse(HttpResponse response) {
    m_keepsAlive = false;
    send(std::move(response));
}

void CWebServer::CImpl::CSession::stop() {
    m_keepsAlive = false;
    if (m_isIdle) {
        close();
    } else {
        look(false);
    }
}

void CWebServer::CImpl::CSession::close() {
    Error ignored;
    m_timer.cancel();
    m_stream.socket().close(ignored);
    m_server.forget(shared_from_this());
}

CWebServer::CImpl::CImpl(std::uint16_t port, const WebLimits& limits) : m_limits(limits) {
    const tcp::endpoint here(net::ip::address_v4::loopback(), port);
    Error error;
    m_acceptor.open(here.protocol(), error);
#ifdef _WIN32
    // Nobody else may listen on this port as well.
    if (!error) {
        using CExclusive = net::detail::socket_option::boolean<SOL_SOCKET, SO_EXCLUSIVEADDRUSE>;
        m_acceptor.set_option(CExclusive(true), error);
    }
#else
    // A port whose last connections are still fading away is free.
    if (!error) {
        m_acceptor.set_option(tcp::acceptor::reuse_address(true), error);
    }
#endif
    if (!error) {
        m_acceptor.bind(here, error);
    }
    if (!error) {
        m_acceptor.listen(net::socket_base::max_listen_connections, error);
    }
    if (error) {
        // Wine knows no words for this one.
        const std::string reason = error == net::error::address_in_use
                                       ? " is in use"
                                       : " can not be listened on: " + error.message();
        throw Failure{.exit = ExitCode::Usage,
                      .code = "port",
                      .message = "port " + std::to_string(port) + reason,
                      .hint = port == 0 ? "" : "without --port any free one is taken"};
    }
    m_port = m_acceptor.local_endpoint().port();
}

CWebServer::CImpl::~CImpl() {
    stop();
}

void CWebServer::CImpl::stop() {
    if (m_thread.joinable()) {
        net::post(m_context, [this] { endAll(); });
        m_thread.join();
    }
}

void CWebServer::CImpl::forget(const std::shared_ptr<CSession>& session) {
    m_sessions.erase(session);
    if (m_stopping && m_sessions.empty()) {
        m_end.cancel();
    }
}

void CWebServer::CImpl::start(Handler handler) {
    m_handler = std::move(handler);
    accept();
    m_thread = std::thread([this] { m_context.run(); });
}

void CWebServer::CImpl::wake() {
    net::post(m_context, [this] { lookAtAll(); });
}

// Looking may end a session.
void CWebServer::CImpl::lookAtAll() {
    const std::vector<std::shared_ptr<CSession>> all(m_sessions.begin(), m_sessions.end());
    for (const std::shared_ptr<CSession>& session : all) {
        session->look(false);
    }
}

// The system has no connection to give: soon it may.
void CWebServer::CImpl::acceptAgain() {
    constexpr double pause = 0.1;
    m_pause.expires_after(milliseconds(pause));
    m_pause.async_wait([this](const Error& error) {
        if (!error && !m_stopping) {
            accept();
        }
    });
}

void CWebServer::CImpl::accept() {
    m_acceptor.async_accept([this](const Error& error, tcp::socket socket) {
        if (m_stopping || error == net::error::operation_aborted) {
            return;
        }
        if (error) {
            acceptAgain();
            return;
        }
        // Those that are being refused need a moment to read it.
        if (m_sessions.size() < 2 * m_limits.connections) {
            const auto session = std::make_shared<CSession>(*this, std::move(socket));
            m_sessions.insert(session);
            if (m_sessions.size() > m_limits.connections) {
                session->refuse(failureResponse(
                    503, {.code = "busy", .message = "there are too many connections"}));
            } else {
                session->read();
            }
        }
        accept();
    });
}

void CWebServer::CImpl::endAll() {
    m_stopping = true;
    m_pause.cancel();
    Error ignored;
    m_acceptor.close(ignored);
    const std::vector<std::shared_ptr<CSession>> all(m_sessions.begin(), m_sessions.end());
    for (const std::shared_ptr<CSession>& session : all) {
        session->stop();
    }
    // Without anything left to do the context ends by itself; at the latest it ends now.
    m_end.expires_after(milliseconds(m_limits.endingSeconds));
    m_end.async_wait([this](const Error& error) {
        if (!error) {
            m_context.stop();
        }
    });
    if (m_sessions.empty()) {
        m_end.cancel();
    }
}

CWebServer::CWebServer(std::uint16_t port, const WebLimits& limits)
    : m_impl(std::make_unique<CImpl>(port, limits)) {}

CWebServer::~CWebServer() = default;

std::uint16_t CWebServer::port() const {
    return m_impl->port();
}

void CWebServer::start(Handler handler) {
    m_impl->start(std::move(handler));
}

void CWebServer::stop() {
    m_impl->stop();
}

void CWebServer::wake() {
    m_impl->wake();
}

}  // namespace camhost
