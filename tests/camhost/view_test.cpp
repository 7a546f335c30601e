// SPDX-License-Identifier: MIT
// camhost.exe view with the built adapter and the virtual cameras, visited as by a browser.
#include <winsock2.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string_view>

#include "tests/camhost/program.h"

namespace camhost::test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

// One request on a connection of its own; the whole of the answer.
class CBrowser {
public:
    explicit CBrowser(const std::string& out) {
        WSADATA data{};
        WSAStartup(MAKEWORD(2, 2), &data);
        constexpr std::string_view start = "http://127.0.0.1:";
        const auto port = out.find(start) + start.size();
        const auto path = out.find('/', port);
        m_port = out.substr(port, path - port);
        m_path = out.substr(path, out.find('\n', path) - path);
    }
    CBrowser(const CBrowser&) = delete;
    CBrowser& operator=(const CBrowser&) = delete;
    ~CBrowser() { WSACleanup(); }

    std::string ask(const std::string& method, const std::string& path,
                    const std::string& body = "") const {
        const SOCKET socket = ::socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(static_cast<std::uint16_t>(std::stoul(m_port)));
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        std::string answer;
        if (connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) {
            const std::string request = method + " " + m_path + path +
                                        " HTTP/1.1\r\nHost: 127.0.0.1:" + m_port +
                                        "\r\nConnection: close\r\nContent-Type: application/json"
                                        "\r\nContent-Length: " +
                                        std::to_string(body.size()) + "\r\n\r\n" + body;
            ::send(socket, request.data(), static_cast<int>(request.size()), 0);
            char bytes[65536];
            for (int got = 0; (got = recv(socket, bytes, sizeof bytes, 0)) > 0;) {
                answer.append(bytes, static_cast<std::size_t>(got));
            }
        }
        closesocket(socket);
        return answer;
    }

private:
    std::string m_port;
    std::string m_path;
};

TEST(View, ShowsACameraSetsASettingAndEndsWhenToldTo) {
    const Outcome outcome = visitCamhost(
        {"--rig", "standard", "-c", "1A2B", "view", "--no-open"}, "/\n",
        [](const std::string& out) {
            const CBrowser browser(out);
            EXPECT_THAT(browser.ask("GET", ""), HasSubstr("Content-Type: text/html"));
            EXPECT_THAT(browser.ask("GET", "api/state"), HasSubstr(R"("serial":"1A2B")"));
            const std::string frame = browser.ask("GET", "api/frame?step=4");
            EXPECT_THAT(frame, StartsWith("HTTP/1.1 200 OK\r\n"));
            EXPECT_THAT(frame,
                        HasSubstr(R"("fullWidth":1280,"fullHeight":960,"pixelType":"Mono8")"));
            EXPECT_EQ(frame.size() - frame.find("\r\n\r\n") - 4, 320U * 240U);
            EXPECT_THAT(
                browser.ask("PUT", "api/settings", R"({"key":"gain value range","text":"7"})"),
                HasSubstr(R"("before":"100","after":"7","matches":true)"));
            EXPECT_THAT(
                browser.ask("PUT", "api/settings", R"({"key":"pixelformat","text":"RGB24"})"),
                StartsWith("HTTP/1.1 200 OK\r\n"));
            EXPECT_THAT(browser.ask("GET", "api/state"), HasSubstr(R"("pixelType":"RGB24")"));
            EXPECT_THAT(browser.ask("POST", "api/camera", R"({"camera":1})"),
                        StartsWith("HTTP/1.1 200 OK\r\n"));
            EXPECT_THAT(browser.ask("GET", "api/state"), HasSubstr(R"("camera":1,"live":"live")"));
            EXPECT_THAT(browser.ask("POST", "api/end", "{}"), StartsWith("HTTP/1.1 200 OK\r\n"));
        });
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_THAT(outcome.out, StartsWith("view of 1A2B \"SIM Mono 23\": http://127.0.0.1:"));
    EXPECT_THAT(outcome.out, HasSubstr("\ndone: "));
    EXPECT_THAT(outcome.out, HasSubstr("timeouts 0, lost 0, "));
    EXPECT_EQ(outcome.err, "");
}

TEST(View, EndsAtCtrlCWithItsTotals) {
    const Outcome outcome =
        interruptCamhost({"--rig", "standard", "-c", "1A2B", "--json", "view", "--no-open"}, "/\n");
    EXPECT_EQ(outcome.exit, 130);
    EXPECT_THAT(outcome.out, HasSubstr(R"("code":"interrupted")"));
    EXPECT_THAT(outcome.out, HasSubstr(R"("result":{"address":"http://127.0.0.1:)"));
}

}  // namespace
}  // namespace camhost::test
