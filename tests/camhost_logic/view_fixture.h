// SPDX-License-Identifier: MIT
// The view without sockets: a test makes requests as tabs do and gives the owner its turns,
// on a made-up adapter with a clock of its own.
#pragma once

#include <memory>
#include <optional>
#include <sstream>
#include <string>

#include "camhost/view/view_owner.h"
#include "camhost/view/view_routes.h"
#include "tests/camhost_logic/camhost_fixture.h"

namespace camhost::test {

// An answer as a tab reads it.
struct Seen {
    int status = 0;
    std::string type;
    std::string body;
    std::string headers;  // each ends in "\n"

    CJson json() const;
    // The text of a member, down the path, as JSON has it.
    std::string at(std::initializer_list<const char*> path) const;
};
Seen seen(const HttpResponse& response);

// A request that is on its way.
class CPendingRequest {
public:
    explicit CPendingRequest(HttpAnswer answer) : m_answer(std::move(answer)) {}

    std::optional<Seen> look(bool timeIsUp = false);
    double seconds() const;

private:
    HttpAnswer m_answer;
};

class CViewTest : public CCamhostTest {
protected:
    static constexpr std::uint16_t port = 8080;
    static constexpr const char* token = "0123456789abcdef0123456789abcdef";

    // Cameras are what they are by then.
    void open(bool readOnly = false);
    void begin(bool readOnly = false);
    void turns(int count);

    HttpRequest request(const std::string& method, const std::string& path,
                        const std::string& body = "") const;
    CPendingRequest ask(const std::string& method, const std::string& path,
                        const std::string& body = "");
    // Answered at once.
    Seen get(const std::string& path);
    // Answered by the owner's next turn.
    Seen done(const std::string& method, const std::string& path, const std::string& body);
    Seen set(const std::string& key, const std::string& text);
    std::string state(std::initializer_list<const char*> path);
    // Kind and text of each, one a line.
    std::string eventLines();
    std::string setting(const std::string& key, const char* member);

    void waits(std::initializer_list<Wait> list) { camera().waits = list; }

    std::ostringstream m_out;
    std::ostringstream m_err;
    CReport m_report{m_out, m_err};
    std::unique_ptr<CCameras> m_cameras;
    std::unique_ptr<CViewModel> m_model;
    CJobs m_jobs;
    std::unique_ptr<CWorker> m_worker;
    std::unique_ptr<CViewRoutes> m_routes;
    std::unique_ptr<CViewOwner> m_owner;
};

}  // namespace camhost::test
