// SPDX-License-Identifier: MIT
// A client that writes what it likes to a socket, and reads what comes back.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace camhost::test {

struct WireAnswer {
    int status = 0;  // 0: none came
    std::string head;
    std::string body;

    bool has(std::string_view line) const { return head.find(line) != head.npos; }
};

class CWireClient {
public:
    // Throws when nobody listens there.
    explicit CWireClient(std::uint16_t port, const char* address = "127.0.0.1");
    CWireClient(const CWireClient&) = delete;
    CWireClient& operator=(const CWireClient&) = delete;
    ~CWireClient();

    // What the other side no longer reads is lost.
    void send(std::string_view bytes) const;
    // By its Content-Length.
    WireAnswer receive();
    // Whether the other side has closed behind what was received.
    bool isClosed();
    // Closes at once, with what is unread thrown away.
    void abandon();

private:
    bool readMore();

    int m_socket = -1;
    std::string m_unread;
};

}  // namespace camhost::test
