// SPDX-License-Identifier: MIT
#include "tests/camhost_wire/wire_client.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <stdexcept>

namespace camhost::test {

namespace {

std::size_t lengthOf(const std::string& head) {
    constexpr std::string_view name = "Content-Length: ";
    const auto at = head.find(name);
    return at == head.npos ? 0 : std::stoul(head.substr(at + name.size()));
}

}  // namespace

CWireClient::CWireClient(std::uint16_t port, const char* at)
    : m_socket(socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = inet_addr(at);
    if (connect(m_socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        close(m_socket);
        throw std::runtime_error("nobody listens");
    }
    // Far longer than any answer takes: a test that meets it fails.
    const timeval patience{30, 0};
    setsockopt(m_socket, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
}

CWireClient::~CWireClient() {
    close(m_socket);
}

void CWireClient::send(std::string_view bytes) const {
    while (!bytes.empty()) {
        const ssize_t sent = ::send(m_socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent <= 0) {
            return;
        }
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
}

bool CWireClient::readMore() {
    char bytes[65536];
    const ssize_t got = recv(m_socket, bytes, sizeof bytes, 0);
    if (got > 0) {
        m_unread.append(bytes, static_cast<std::size_t>(got));
    }
    return got > 0;
}

WireAnswer CWireClient::receive() {
    constexpr std::string_view blank = "\r\n\r\n";
    std::size_t end = m_unread.find(blank);
    while (end == m_unread.npos) {
        if (!readMore()) {
            return {};
        }
        end = m_unread.find(blank);
    }
    WireAnswer answer;
    answer.head = m_unread.substr(0, end + blank.size());
    m_unread.erase(0, answer.head.size());
    const std::size_t length = lengthOf(answer.head);
    while (m_unread.size() < length && readMore()) {
    }
    answer.body = m_unread.substr(0, length);
    m_unread.erase(0, answer.body.size());
    answer.status = std::stoi(answer.head.substr(answer.head.find(' ')));
    return answer;
}

bool CWireClient::isClosed() {
    return m_unread.empty() && !readMore();
}

void CWireClient::abandon() {
    const linger atOnce{1, 0};
    setsockopt(m_socket, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    close(m_socket);
    m_socket = -1;
}

}  // namespace camhost::test
