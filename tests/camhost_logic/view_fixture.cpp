// SPDX-License-Identifier: MIT
#include "tests/camhost_logic/view_fixture.h"

#include <limits>

namespace camhost::test {

Seen seen(const HttpResponse& response) {
    Seen seen{response.status, response.type, {}, {}};
    for (const HttpPart& part : response.body) {
        seen.body.append(part.bytes.begin(), part.bytes.end());
    }
    for (const auto& [name, value] : response.headers) {
        seen.headers += name + ": " + value + "\n";
    }
    return seen;
}

CJson Seen::json() const {
    std::string reason;
    const auto json = CJson::parse(body, reason);
    EXPECT_TRUE(json) << reason << ": " << body;
    return json.value_or(CJson());
}

std::string Seen::at(std::initializer_list<const char*> path) const {
    CJson at = json();
    for (const char* name : path) {
        const auto member = at.find(name);
        if (!member) {
            return "absent";
        }
        at = *member;
    }
    return at.text().value_or(at.toText());
}

std::optional<Seen> CPendingRequest::look(bool timeIsUp) {
    if (auto* waiting = std::get_if<HttpWaiting>(&m_answer)) {
        auto response = waiting->look(timeIsUp);
        if (!response) {
            return std::nullopt;
        }
        m_answer = *std::move(response);
    }
    return seen(std::get<HttpResponse>(m_answer));
}

double CPendingRequest::seconds() const {
    const auto* waiting = std::get_if<HttpWaiting>(&m_answer);
    return waiting != nullptr ? waiting->seconds : 0.0;
}

void CViewTest::open(bool readOnly) {
    static constexpr std::uint8_t page[] = {'p', 'a', 'g', 'e'};
    static constexpr PageFile files[] = {{"index.html", "text/html; charset=utf-8", page},
                                         {"view.js", "text/javascript; charset=utf-8", page}};
    m_cameras = std::make_unique<CCameras>(m_system.loadAdapter(""));
    m_model = std::make_unique<CViewModel>(factsOf(*m_cameras), readOnly);
    m_worker = std::make_unique<CWorker>();
    m_routes =
        std::make_unique<CViewRoutes>(*m_model, m_jobs, *m_worker, ViewAddress{port, token}, files);
    m_owner = std::make_unique<CViewOwner>(
        ViewSetup{m_system, m_report, *m_cameras, *m_model, m_jobs, 0, false});
}

void CViewTest::begin(bool readOnly) {
    open(readOnly);
    m_owner->begin();
}

void CViewTest::turns(int count) {
    for (int i = 0; i < count; ++i) {
        ASSERT_TRUE(m_owner->turn());
    }
}

HttpRequest CViewTest::request(const std::string& method, const std::string& path,
                               const std::string& body) const {
    HttpRequest request{.method = method,
                        .target = std::string("/") + token + "/" + path,
                        .host = "127.0.0.1:8080",
                        .origin = std::nullopt,
                        .contentType = method == "GET" ? "" : "application/json",
                        .body = body};
    return request;
}

CPendingRequest CViewTest::ask(const std::string& method, const std::string& path,
                               const std::string& body) {
    return CPendingRequest(m_routes->answer(request(method, path, body)));
}

Seen CViewTest::get(const std::string& path) {
    return ask("GET", path)
        .look()
        .value_or(Seen{.status = -1, .type = {}, .body = {}, .headers = {}});
}

Seen CViewTest::done(const std::string& method, const std::string& path, const std::string& body) {
    CPendingRequest request = ask(method, path, body);
    m_owner->turn();
    return request.look().value_or(Seen{.status = -1, .type = {}, .body = {}, .headers = {}});
}

Seen CViewTest::set(const std::string& key, const std::string& text) {
    return done("PUT", "api/settings", CJson::object({{"key", key}, {"text", text}}).toText());
}

std::string CViewTest::state(std::initializer_list<const char*> path) {
    return get("api/state").at(path);
}

std::string CViewTest::eventLines() {
    std::string lines;
    for (const CJson& event : get("api/events").json().find("events")->elements()) {
        lines += *event.find("kind")->text() + ": " + *event.find("text")->text() + "\n";
    }
    return lines;
}

std::string CViewTest::setting(const std::string& key, const char* member) {
    for (const CJson& each : get("api/settings").json().find("settings")->elements()) {
        if (each.find("key")->text() == key) {
            const auto found = each.find(member);
            return found ? found->text().value_or(found->toText()) : "absent";
        }
    }
    return "no such setting";
}

}  // namespace camhost::test
