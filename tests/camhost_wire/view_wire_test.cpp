// SPDX-License-Identifier: MIT
// The view on the wire: what its socket refuses and in which words, and whole visits of a
// tab to camhost view on a made-up adapter.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

#include "camhost/view/view_routes.h"
#include "camhost/web/web_server.h"
#include "tests/camhost_logic/made_up_adapter.h"
#include "tests/camhost_wire/wire_client.h"

namespace camhost::test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* token = "0123456789abcdef0123456789abcdef";
constexpr std::uint8_t page[] = {'p', 'a', 'g', 'e'};
constexpr PageFile files[] = {{"index.html", "text/html; charset=utf-8", page}};

// The server and the routes, with nobody who owns a camera.
class ViewWire : public testing::Test {
protected:
    ViewWire() { serve({}); }
    ~ViewWire() override { m_server->stop(); }

    void serve(const WebLimits& limits, bool isReadOnly = false) {
        if (m_server) {
            m_server->stop();
        }
        m_model = std::make_unique<CViewModel>(std::vector<CameraFacts>{}, isReadOnly);
        m_server = std::make_unique<CWebServer>(std::uint16_t{0}, limits);
        m_routes = std::make_unique<CViewRoutes>(*m_model, m_jobs, m_worker,
                                                 ViewAddress{m_server->port(), token}, files);
        m_model->setWake([this] { m_server->wake(); });
        m_server->start([this](const HttpRequest& request) { return m_routes->answer(request); });
    }
    std::string host() const { return "127.0.0.1:" + std::to_string(m_server->port()); }
    std::string hostLine() const { return "Host: " + host() + "\r\n"; }
    // Each line ends in "\r\n".
    std::string head(const std::string& method, const std::string& path,
                     const std::string& lines) const {
        return method + " /" + token + "/" + path + " HTTP/1.1\r\n" + lines + "\r\n";
    }
    WireAnswer ask(const std::string& bytes) const {
        CWireClient client(m_server->port());
        client.send(bytes);
        return client.receive();
    }
    WireAnswer get(const std::string& path) const { return ask(head("GET", path, hostLine())); }
    WireAnswer put(const std::string& type, const std::string& body) const {
        return ask(head("PUT", "api/settings",
                        hostLine() + "Content-Type: " + type +
                            "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n") +
                   body);
    }

    std::unique_ptr<CViewModel> m_model;
    CJobs m_jobs;
    CWorker m_worker;
    std::unique_ptr<CWebServer> m_server;
    std::unique_ptr<CViewRoutes> m_routes;
};

TEST_F(ViewWire, ThePageComesWithHeadersThatKeepOthersOut) {
    const WireAnswer answer = get("");
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(answer.body, "page");
    for (const char* line :
         {"\r\nContent-Security-Policy: default-src 'none'; script-src 'self'; ",
          "frame-ancestors 'none'; base-uri 'none'\r\n", "\r\nX-Content-Type-Options: nosniff\r\n",
          "\r\nX-Frame-Options: DENY\r\n", "\r\nReferrer-Policy: no-referrer\r\n",
          "\r\nCache-Control: no-store\r\n", "\r\nCross-Origin-Resource-Policy: same-origin\r\n",
          "\r\nCross-Origin-Opener-Policy: same-origin\r\n",
          "\r\nContent-Type: text/html; charset=utf-8\r\n"}) {
        EXPECT_TRUE(answer.has(line)) << line;
    }
    EXPECT_FALSE(answer.has("Access-Control")) << "no page of another origin reads it";
}

TEST_F(ViewWire, AMissingOrForeignHostIsRefused) {
    EXPECT_EQ(ask(head("GET", "", "")).status, 400);
    EXPECT_EQ(ask(head("GET", "", "Host: evil.example\r\n")).status, 400);
    EXPECT_EQ(ask(head("GET", "", hostLine() + "Host: evil.example\r\n")).status, 400);
    EXPECT_TRUE(ask(head("GET", "", "")).has("X-Frame-Options: DENY\r\n"));
}

TEST_F(ViewWire, AForeignOriginIsRefused) {
    EXPECT_EQ(ask(head("GET", "", hostLine() + "Origin: http://" + host() + "\r\n")).status, 200);
    EXPECT_EQ(ask(head("GET", "", hostLine() + "Origin: http://evil.example\r\n")).status, 403);
    EXPECT_EQ(ask(head("GET", "", hostLine() + "Origin: null\r\n")).status, 403);
    EXPECT_EQ(ask(head("GET", "", hostLine() + "Origin:\r\n")).status, 403);
    EXPECT_EQ(
        ask(head("GET", "",
                 hostLine() + "Origin: http://" + host() + "\r\nOrigin: http://evil.example\r\n"))
            .status,
        403);
}

TEST_F(ViewWire, AWrongTokenFindsNothing) {
    const WireAnswer answer =
        ask("GET /0123456789abcdef0123456789abcdee/ HTTP/1.1\r\n" + hostLine() + "\r\n");
    EXPECT_EQ(answer.status, 404);
    EXPECT_EQ(answer.body, "");
    EXPECT_EQ(ask("GET / HTTP/1.1\r\n" + hostLine() + "\r\n").status, 404);
}

TEST_F(ViewWire, OnlyBuiltInFilesAreServed) {
    EXPECT_EQ(get("index.html").status, 200);
    for (const char* path :
         {"view.js", "../index.html", "..%2findex.html", "%69ndex.html", "./index.html",
          "index.html/", "/etc/passwd", "C:%5cwindows%5cwin.ini", "index.html%00.js"}) {
        EXPECT_EQ(get(path).status, 404) << path;
    }
}

TEST_F(ViewWire, AReadOnlyViewTakesNothingThatChangesACamera) {
    serve({}, true);
    const std::string lines =
        hostLine() + "Content-Type: application/json\r\nContent-Length: 2\r\n";
    EXPECT_EQ(ask(head("PUT", "api/settings", lines) + "{}").status, 403);
    for (const char* path : {"api/commands", "api/camera", "api/live", "api/load"}) {
        EXPECT_EQ(ask(head("POST", path, lines) + "{}").status, 403) << path;
    }
    EXPECT_EQ(get("").status, 200);
    EXPECT_FALSE(m_jobs.next()) << "none of them reached the owner of the camera";
}

TEST_F(ViewWire, OtherMethodsAreRefused) {
    EXPECT_EQ(ask(head("DELETE", "api/settings", hostLine())).status, 405);
    EXPECT_EQ(ask(head("OPTIONS", "api/settings", hostLine())).status, 405);
    EXPECT_EQ(ask(head("BREW", "", hostLine())).status, 405);
    EXPECT_TRUE(ask(head("POST", "api/state", hostLine() + "Content-Length: 0\r\n"))
                    .has("Allow: GET, HEAD\r\n"));
}

TEST_F(ViewWire, ABodyOfAnotherTypeIsRefused) {
    EXPECT_EQ(put("text/plain", "{}").status, 415);
    EXPECT_EQ(put("application/x-www-form-urlencoded", "a=b").status, 415);
    EXPECT_EQ(put("application/json", "{").status, 400);
}

TEST_F(ViewWire, ABodyThatIsTooBigIsRefused) {
    EXPECT_EQ(put("application/json", std::string((1U << 20U) + 1, ' ')).status, 413);
    EXPECT_EQ(put("application/json", std::string(1U << 20U, ' ')).status, 400);
    CWireClient chunked(m_server->port());
    chunked.send(head("PUT", "api/settings",
                      hostLine() + "Content-Type: application/json\r\nTransfer-Encoding: "
                                   "chunked\r\n") +
                 "100001\r\n" + std::string(0x100001, ' ') + "\r\n0\r\n\r\n");
    EXPECT_EQ(chunked.receive().status, 413);
}

TEST_F(ViewWire, HeadersThatAreTooBigAreRefused) {
    const std::string filler(7000, 'x');
    EXPECT_EQ(ask(head("GET", "", hostLine() + "X: " + filler + "\r\n")).status, 200);
    EXPECT_EQ(
        ask(head("GET", "", hostLine() + "X: " + filler + "\r\nY: " + filler + "\r\n")).status,
        431);
    EXPECT_EQ(ask("GET /" + std::string(10000, 'x') + " HTTP/1.1\r\n").status, 431);
}

TEST_F(ViewWire, NumbersOutOfRangeAreRefused) {
    EXPECT_EQ(get("api/frame?step=3").status, 400);
    EXPECT_EQ(get("api/state?after=-1").status, 400);
    EXPECT_EQ(get("api/frame?wait=1e9").status, 400);
}

TEST_F(ViewWire, WhatIsNoHttpIsRefused) {
    EXPECT_EQ(ask("\x16\x03\x01 hello\r\n\r\n").status, 400);
    EXPECT_EQ(ask(head("GET", "", hostLine() + "Content-Length: -1\r\n")).status, 400);
    CWireClient client(m_server->port());
    client.send("nonsense\r\n\r\n");
    EXPECT_EQ(client.receive().status, 400);
    EXPECT_TRUE(client.isClosed());
}

TEST_F(ViewWire, OneConnectionTakesManyRequests) {
    CWireClient client(m_server->port());
    client.send(head("GET", "", hostLine()) + head("HEAD", "", hostLine()));
    EXPECT_EQ(client.receive().body, "page");
    client.send(head("GET", "", hostLine() + "Connection: close\r\n"));
    // The answer to HEAD has the length of the page, and no page.
    EXPECT_THAT(client.receive().body, StartsWith("HTTP"));
}

TEST_F(ViewWire, TooManyConnectionsAreRefused) {
    serve({.connections = 3});
    std::vector<std::unique_ptr<CWireClient>> open;
    for (int i = 0; i < 3; ++i) {
        open.push_back(std::make_unique<CWireClient>(m_server->port()));
        open.back()->send(head("GET", "", hostLine()));
        EXPECT_EQ(open.back()->receive().status, 200);
    }
    CWireClient more(m_server->port());
    const WireAnswer answer = more.receive();
    EXPECT_EQ(answer.status, 503);
    EXPECT_TRUE(answer.has("Connection: close\r\n"));
    open.front()->send(head("GET", "", hostLine()));
    EXPECT_EQ(open.front()->receive().status, 200) << "those that are there stay";
}

TEST_F(ViewWire, APortThatIsTakenIsSaidToBeInUse) {
    std::string message;
    try {
        const CWebServer second(m_server->port());
    } catch (const Failure& failure) {
        message = failure.message;
    }
    EXPECT_EQ(message, "port " + std::to_string(m_server->port()) + " is in use");
}

TEST_F(ViewWire, AConnectionThatSaysNothingIsClosed) {
    serve({.requestSeconds = 0.05});
    CWireClient client(m_server->port());
    client.send("GET / HTTP/1.1\r\n");
    EXPECT_TRUE(client.isClosed());
}

TEST_F(ViewWire, AWaitEndsWhenThereIsSomethingNew) {
    m_model->setState({}, 0.0);
    CWireClient client(m_server->port());
    client.send(head("GET", "api/state?after=1", hostLine()));
    m_model->addEvent(0.0, "started", "1A2B");
    EXPECT_THAT(client.receive().body, HasSubstr(R"("version":2,)"));
}

TEST_F(ViewWire, AWaitEndsWhenItsTimeIsUp) {
    const WireAnswer answer = get("api/frame?wait=0.05");
    EXPECT_EQ(answer.status, 204);
    EXPECT_FALSE(answer.has("Content-Length"));
}

TEST_F(ViewWire, AClosedTabIsForgotten) {
    for (int i = 0; i < 70; ++i) {
        CWireClient client(m_server->port());
        client.send(head("GET", "api/frame?wait=10", hostLine()));
        client.abandon();
    }
    m_model->end();  // everything that waits is answered now
    int status = 503;
    while (status == 503) {
        status = get("").status;
    }
    EXPECT_EQ(status, 200);
}

TEST_F(ViewWire, ListensOnThisMachinesOwnAddressAlone) {
    EXPECT_THROW(CWireClient(m_server->port(), "127.0.0.2"), std::runtime_error);
}

TEST_F(ViewWire, APortThatIsTakenIsAFailure) {
    EXPECT_THROW(CWebServer(m_server->port()), Failure);
}

// The whole command, whose browser is a test on a thread of its own.
class ViewVisit : public testing::Test {
protected:
    ViewVisit() { m_system.cameras.push_back(ordinaryCamera()); }

    template <class Visit>
    Outcome visited(std::vector<std::string> arguments, Visit visit) {
        arguments.insert(arguments.begin(), "view");
        std::thread browser;
        m_system.onOpened = [&](const std::string& address) {
            browser = std::thread([&, address] {
                m_address = address;
                const auto colon = address.rfind(':');
                const auto slash = address.find('/', colon);
                m_port = static_cast<std::uint16_t>(
                    std::stoul(address.substr(colon + 1, slash - colon - 1)));
                m_path = address.substr(slash);
                visit();
                ask("POST", "api/end", "{}");
            });
            return true;
        };
        const Outcome outcome = run(m_system, arguments);
        if (browser.joinable()) {
            browser.join();
        }
        return outcome;
    }
    std::string request(const std::string& method, const std::string& path,
                        const std::string& body = "") const {
        return method + " " + m_path + path +
               " HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(m_port) +
               "\r\nContent-Type: application/json\r\nContent-Length: " +
               std::to_string(body.size()) + "\r\n\r\n" + body;
    }
    WireAnswer ask(const std::string& method, const std::string& path,
                   const std::string& body = "") const {
        CWireClient client(m_port);
        client.send(request(method, path, body));
        return client.receive();
    }

    CMadeUpSystem m_system;
    std::string m_address;  // the browser's thread, as what follows
    std::string m_path;
    std::uint16_t m_port = 0;
};

TEST_F(ViewVisit, SeesTheFrameSetsASettingAndEndsTheView) {
    const Outcome outcome = visited({}, [this] {
        const WireAnswer frame = ask("GET", "api/frame");
        EXPECT_EQ(frame.body, std::string("\0\1\2\3\4\5\6\7", 8));
        EXPECT_TRUE(frame.has(R"("pixelType":"Mono8")"));
        EXPECT_THAT(ask("PUT", "api/settings", R"({"key":"gain value range","text":"7"})").body,
                    HasSubstr(R"("after":"7","matches":true)"));
        EXPECT_THAT(ask("GET", "api/state").body, HasSubstr(R"("live":"live")"));
        EXPECT_THAT(ask("GET", "api/frame.png").body, StartsWith("\x89PNG"));
    });
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_THAT(outcome.out, StartsWith("view of 1A2B \"SIM Mono 23\": http://127.0.0.1:"));
    EXPECT_THAT(outcome.out, HasSubstr("/a5a5a5a5a5a5a5a5a5a5a5a5a5a5a5a5/\ndone: "));
    EXPECT_THAT(outcome.out, HasSubstr("timeouts 0, lost 0, Mono8\n"));
    EXPECT_EQ(m_system.cameras[0].values["gain value range"], "7");
    EXPECT_FALSE(m_system.cameras[0].live);
}

TEST_F(ViewVisit, TellsItsTotalsAsJson) {
    const Outcome outcome = visited({"--json"}, [this] { ask("GET", "api/frame"); });
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_THAT(outcome.out, HasSubstr(R"("result":{"address":"http://127.0.0.1:)"));
    EXPECT_THAT(outcome.out, HasSubstr(R"("refused":0)"));
    EXPECT_THAT(outcome.err, StartsWith("view of 1A2B"));
}

TEST_F(ViewVisit, ATabThatReadsNothingHoldsNobodyUp) {
    visited({}, [this] {
        CWireClient slow(m_port);
        for (int i = 0; i < 200; ++i) {
            slow.send(request("GET", "api/settings"));
        }
        CWireClient quick(m_port);
        std::string last;
        for (int i = 0; i < 20; ++i) {
            quick.send(request("GET", "api/frame"));
            EXPECT_EQ(quick.receive().status, 200);
        }
    });
}

TEST_F(ViewVisit, EndsAtCtrlCWithItsTotals) {
    m_system.interruptAfter = 101.0;
    const Outcome outcome = run(m_system, {"view", "--no-open"});
    EXPECT_EQ(outcome.exit, 130);
    EXPECT_THAT(outcome.out, HasSubstr("done: 8 frames in 1.0 s, 8.0 fps while live"));
    EXPECT_EQ(outcome.err, "error: interrupted after 8 frames\n");
    EXPECT_TRUE(m_system.opened.empty());
}

// Waits that go on until the browser has seen what they are.
TEST_F(ViewVisit, EndsWithFourWhenNoFrameCame) {
    m_system.cameras[0].otherwise = {0, HOST_STATUS_NO_FRAME, 1.0, {}};
    const Outcome outcome = visited({}, [this] {
        EXPECT_THAT(ask("GET", "api/events?after=1").body, HasSubstr(R"("kind":"timeout")"));
    });
    EXPECT_EQ(outcome.exit, 4);
    EXPECT_THAT(outcome.out, HasSubstr("\ndone: 0 frames in "));
    EXPECT_THAT(outcome.err, EndsWith("error: no frame came\n"));
}

TEST_F(ViewVisit, EndsWithFiveWhenTheCameraIsLostByThen) {
    m_system.cameras[0].waits = {{0, HOST_STATUS_DONE, 0.125, {}}};
    m_system.cameras[0].otherwise = {1, HOST_STATUS_NO_DEVICE, 0.0, {}};
    const Outcome outcome = visited({}, [this] {
        EXPECT_THAT(ask("GET", "api/events?after=1").body, HasSubstr(R"("kind":"lost")"));
    });
    EXPECT_EQ(outcome.exit, 5);
    EXPECT_THAT(outcome.out, HasSubstr("\ndone: 1 frame in "));
    EXPECT_THAT(outcome.err, EndsWith("error: the camera is lost; 1 frame\n"));
}

TEST_F(ViewVisit, APortThatCanNotBeIsAWrongLine) {
    EXPECT_EQ(run(m_system, {"view", "--port", "65536"}).exit, 2);
}

}  // namespace
}  // namespace camhost::test
