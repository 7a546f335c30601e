// SPDX-License-Identifier: MIT
// What requests are answered with: guards, page, numbers, frames, recordings.
#include <gmock/gmock.h>

#include <map>
#include <regex>
#include <set>

#include "camhost/base/files.h"
#include "camhost/pictures/png_text.h"
#include "tests/camhost_logic/view_fixture.h"

namespace camhost::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;
using testing::StartsWith;

class ViewRoutes : public CViewTest {
protected:
    Seen answer(const HttpRequest& request) {
        return CPendingRequest(m_routes->answer(request)).look().value();
    }
    int statusOf(const std::string& method, const std::string& path, const std::string& body = "") {
        return answer(request(method, path, body)).status;
    }
};

TEST_F(ViewRoutes, ForeignHostsAreRefused) {
    begin();
    HttpRequest asked = request("GET", "api/state");
    EXPECT_EQ(answer(asked).status, 200);
    asked.host = "localhost:8080";
    EXPECT_EQ(answer(asked).status, 200);
    for (const char* host : {"evil.example:8080", "127.0.0.1", "127.0.0.1:8081", "127.0.0.1:80800",
                             "[::1]:8080", "", "localhost.evil.example:8080"}) {
        asked.host = host;
        EXPECT_EQ(answer(asked).status, 400) << host;
    }
    asked.host = std::nullopt;
    EXPECT_EQ(answer(asked).status, 400);
}

TEST_F(ViewRoutes, ForeignOriginsAreRefused) {
    begin();
    HttpRequest asked = request("GET", "api/state");
    asked.origin = "http://127.0.0.1:8080";
    EXPECT_EQ(answer(asked).status, 200);
    for (const char* origin : {"null", "", "https://127.0.0.1:8080", "http://127.0.0.1:8081",
                               "http://evil.example", "http://127.0.0.1:8080.evil.example"}) {
        asked.origin = origin;
        EXPECT_EQ(answer(asked).status, 403) << origin;
    }
}

TEST_F(ViewRoutes, WithoutTheTokenThereIsNothing) {
    begin();
    for (const char* target :
         {"/", "", "/api/state", "/0123456789abcdef0123456789abcdeF/", "//",
          "/0123456789abcdef0123456789abcde/", "/0123456789abcdef0123456789abcdef0/",
          "http://127.0.0.1:8080/0123456789abcdef0123456789abcdef/", "*"}) {
        HttpRequest asked = request("GET", "");
        asked.target = target;
        const Seen outcome = answer(asked);
        EXPECT_EQ(outcome.status, 404) << target;
        EXPECT_EQ(outcome.body, "") << target;
    }
}

TEST_F(ViewRoutes, OnlyBuiltInFilesAreServed) {
    begin();
    EXPECT_EQ(get("").body, "page");
    EXPECT_EQ(get("").type, "text/html; charset=utf-8");
    EXPECT_EQ(get("view.js").type, "text/javascript; charset=utf-8");
    EXPECT_EQ(get("view.js?v=1").status, 200);
    for (const char* path : {"../view.js", "%76iew.js", "view.js/", "./view.js", "C:/x", "api"}) {
        EXPECT_EQ(get(path).status, 404) << path;
    }
    EXPECT_EQ(statusOf("POST", "view.js", "{}"), 405);
}

TEST_F(ViewRoutes, OtherMethodsAreNotAllowed) {
    begin();
    const Seen outcome = answer(request("DELETE", "api/settings"));
    EXPECT_EQ(outcome.status, 405);
    EXPECT_EQ(outcome.headers, "Allow: GET, HEAD, PUT\n");
    EXPECT_EQ(statusOf("POST", "api/state", "{}"), 405);
    EXPECT_EQ(statusOf("OPTIONS", "api/state"), 405);
    EXPECT_EQ(answer(request("GET", "api/live")).headers, "Allow: POST\n");
    EXPECT_EQ(statusOf("HEAD", "api/state"), 200);
}

TEST_F(ViewRoutes, TheManualListsNoOtherRequestsThanThereAre) {
    begin();
    const std::string manual = readTextFile(VELMORA_SOURCE_DIR "/docs/camhost.md");
    // Of lines that begin with "| `METHOD api/..."; some tell of two.
    const std::regex row("`(GET|PUT|POST) (api/[a-z./]+)");
    std::map<std::string, std::set<std::string>> listed;
    for (std::sregex_iterator found(manual.begin(), manual.end(), row), end; found != end;
         ++found) {
        std::set<std::string>& methods = listed[(*found)[2]];
        methods.insert((*found)[1]);
        if ((*found)[1] == "GET") {
            methods.insert("HEAD");
        }
    }
    EXPECT_EQ(listed.size(), 14U);
    for (const auto& [path, methods] : listed) {
        std::string allowed;
        for (const std::string& method : methods) {
            allowed += (allowed.empty() ? "" : ", ") + method;
        }
        EXPECT_EQ(answer(request("DELETE", path)).headers, "Allow: " + allowed + "\n") << path;
    }
}

TEST_F(ViewRoutes, BodiesMustBeJson) {
    begin();
    HttpRequest asked = request("PUT", "api/settings", R"({"key":"framerate","text":"15"})");
    for (const char* type :
         {"", "text/plain", "application/x-www-form-urlencoded", "application/jsonx"}) {
        asked.contentType = type;
        EXPECT_EQ(answer(asked).status, 415) << type;
    }
    for (const char* body :
         {"", "[]", "{", "7", R"({"key":"framerate"})", R"({"key":1,"text":"15"})",
          R"({"key":"x","text":"1","manual":1})", R"({"key":"x","text":"1","camera":-1})",
          R"({"key":"x","text":"1","camera":1.5})", R"({"key":"x\u0000","text":"1"})",
          R"({"key":"x","text":"1\u0000"})"}) {
        EXPECT_EQ(statusOf("PUT", "api/settings", body), 400) << body;
    }
    EXPECT_FALSE(m_jobs.next()) << "none of them reached the camera";
    asked.contentType = "Application/JSON ; charset=utf-8";
    EXPECT_FALSE(CPendingRequest(m_routes->answer(asked)).look());
    EXPECT_TRUE(m_jobs.next());
}

TEST_F(ViewRoutes, NumbersOutOfRangeAreRefused) {
    begin();
    turns(1);
    for (const char* path :
         {"api/state?after=-1", "api/state?after=", "api/state?after=1e3",
          "api/frame?after=18446744073709551616", "api/frame?after=9007199254740993",
          "api/frame?step=0", "api/frame?step=3", "api/frame?step=128", "api/frame?step=x",
          "api/frame?wait=11", "api/frame?wait=-1", "api/frame?wait=nan", "api/frame?wait=inf",
          "api/events?after=0x10", "api/frame.png?bayer=rgbg", "api/frame.png?demosaic=good",
          "api/frame.png?number=+1"}) {
        EXPECT_EQ(get(path).status, 400) << path;
    }
    for (const char* body : {R"({"frames":-1})", R"({"frames":10001})", R"({"frames":1.5})",
                             R"({"frames":1,"bayer":"x"})", R"({"frames":"1"})", "{}"}) {
        EXPECT_EQ(statusOf("POST", "api/recording", body), 400) << body;
    }
    EXPECT_EQ(statusOf("POST", "api/camera", R"({"camera":257})"), 400);
}

TEST_F(ViewRoutes, AReadOnlyViewChangesNothingInACamera) {
    begin(true);
    EXPECT_EQ(get("api/state").at({"readOnly"}), "true");
    for (const auto& [method, path] :
         {std::pair("PUT", "api/settings"), std::pair("POST", "api/commands"),
          std::pair("POST", "api/camera"), std::pair("POST", "api/live"),
          std::pair("POST", "api/load")}) {
        const Seen outcome = answer(request(method, path, "{}"));
        EXPECT_EQ(outcome.status, 403) << path;
        EXPECT_EQ(outcome.at({"error", "code"}), "read_only") << path;
    }
    EXPECT_EQ(done("POST", "api/recording", R"({"frames":1})").status, 202);
    EXPECT_EQ(done("GET", "api/settings.json", "").status, 200);
}

TEST_F(ViewRoutes, AFileOfSettingsThatIsNoneIsRefusedAsOnTheCommandLine) {
    begin();
    const Seen outcome = answer(request("POST", "api/load", R"({"schema":"other"})"));
    EXPECT_EQ(outcome.status, 400);
    EXPECT_EQ(outcome.at({"error", "message"}),
              R"("the body" is no settings file: its schema is not "camhost-settings/1")");
}

TEST_F(ViewRoutes, AStateIsWaitedForUntilItIsAnother) {
    begin();
    const std::string version = get("api/state").at({"version"});
    CPendingRequest waiting = ask("GET", "api/state?after=" + version);
    EXPECT_DOUBLE_EQ(waiting.seconds(), 10.0);
    EXPECT_FALSE(waiting.look());
    set("gain value range", "7");
    EXPECT_TRUE(waiting.look());
    const std::string now = get("api/state").at({"version"});
    CPendingRequest idle = ask("GET", "api/state?wait=1.5&after=" + now);
    EXPECT_DOUBLE_EQ(idle.seconds(), 1.5);
    EXPECT_FALSE(idle.look());
    EXPECT_EQ(idle.look(true)->at({"version"}), now);
}

TEST_F(ViewRoutes, AVersionOfAnEarlierViewIsAnsweredAtOnce) {
    begin();
    EXPECT_EQ(get("api/state?after=1000000").status, 200);
    EXPECT_EQ(get("api/settings?after=1000000").status, 200);
}

TEST_F(ViewRoutes, EventsAreThoseBehindANumber) {
    begin();
    set("gain value range", "7");
    EXPECT_EQ(get("api/events").at({"next"}), "3");
    EXPECT_THAT(get("api/events?after=1").body, HasSubstr(R"("events":[{"number":2,"time":0.0,)"));
    CPendingRequest waiting = ask("GET", "api/events?after=2");
    EXPECT_FALSE(waiting.look());
    EXPECT_EQ(waiting.look(true)->body, R"({"next":3,"events":[]})");
}

TEST_F(ViewRoutes, TwoTabsAgreeOnEveryValue) {
    begin();
    CPendingRequest one = ask("PUT", "api/settings", R"({"key":"gain value range","text":"1"})");
    CPendingRequest two = ask("PUT", "api/settings", R"({"key":"gain value range","text":"2"})");
    turns(1);
    one.look();
    two.look();
    const std::string version = get("api/settings").at({"version"});
    EXPECT_EQ(get("api/settings?after=0").body, get("api/settings").body);
    EXPECT_EQ(setting("gain value range", "text"), "2");
    EXPECT_FALSE(ask("GET", "api/settings?after=" + version).look());
}

TEST_F(ViewRoutes, TheNewestFrameIsGiven) {
    camera().frame = {0, 1, 2, 3, 4, 5, 6, 7};
    begin();
    CPendingRequest first = ask("GET", "api/frame?wait=2");
    EXPECT_FALSE(first.look());
    turns(3);
    const Seen newest = first.look().value();
    EXPECT_EQ(newest.status, 200);
    EXPECT_EQ(newest.type, "application/octet-stream");
    EXPECT_EQ(newest.body, std::string("\0\1\2\3\4\5\6\7", 8));
    EXPECT_THAT(newest.headers,
                StartsWith(R"(X-Frame: {"number":3,"camera":0,"width":4,"height":2,"rowBytes":4,)"
                           R"("step":1,"fullWidth":4,"fullHeight":2,"pixelType":"Mono8",)"
                           R"("lost":false,"ageMs":)"));
    CPendingRequest next = ask("GET", "api/frame?after=3");
    EXPECT_FALSE(next.look());
    EXPECT_EQ(next.look(true)->status, 204);
    EXPECT_EQ(get("api/frame?after=2").status, 200);
}

TEST_F(ViewRoutes, ASlowTabHoldsNobodyUp) {
    begin();
    turns(1);
    std::vector<HttpAnswer> unread;
    for (int i = 0; i < 40; ++i) {
        unread.push_back(m_routes->answer(request("GET", "api/frame?step=1")));
        turns(1);
    }
    EXPECT_EQ(m_owner->counts().frames, 41U);
    const Seen oldest = seen(std::get<HttpResponse>(unread.front()));
    EXPECT_THAT(oldest.headers, HasSubstr(R"("number":1,)"));
    EXPECT_THAT(get("api/frame").headers, HasSubstr(R"("number":41,)"));
}

TEST_F(ViewRoutes, WhatAClosedTabAskedForIsDone) {
    begin();
    ask("PUT", "api/settings", R"({"key":"gain value range","text":"5"})");
    turns(1);
    EXPECT_EQ(setting("gain value range", "text"), "5");
}

TEST_F(ViewRoutes, ASnapshotIsThePictureOfAGrab) {
    camera().pixelType = HOST_PIXEL_RAW8;
    camera().choices["videoformat"].emplace_back("BY8 (4x2)");
    begin();
    turns(3);
    CPendingRequest asked = ask("GET", "api/frame.png?number=2");
    m_worker->waitUntilIdle();
    const Seen png = asked.look().value();
    EXPECT_EQ(png.type, "image/png");
    EXPECT_EQ(png.headers, "Content-Disposition: attachment; filename=\"1A2B_000002.png\"\n");
    EXPECT_THAT(readPngTexts(std::vector<std::uint8_t>(png.body.begin(), png.body.end())),
                ElementsAre(Pair("Software", "camhost"), Pair("PixelType", "Raw8"),
                            Pair("BayerOrder", "GRBG"), Pair("RowOrder", "as delivered"),
                            Pair("CameraSerial", "1A2B"), Pair("FrameNumber", "2")));
}

TEST_F(ViewRoutes, AFrameThatIsNotKeptHasNoPicture) {
    begin();
    EXPECT_EQ(get("api/frame.png").at({"error", "code"}), "no_frame");
    turns(30);
    EXPECT_EQ(get("api/frame.png?number=1").at({"error", "code"}), "frame_gone");
    EXPECT_EQ(get("api/frame.png?number=14").at({"error", "code"}), "frame_gone");
    CPendingRequest kept = ask("GET", "api/frame.png?number=15");
    m_worker->waitUntilIdle();
    EXPECT_EQ(kept.look()->status, 200);
}

TEST_F(ViewRoutes, ARecordingIsAZipOfPictures) {
    begin();
    EXPECT_EQ(done("GET", "api/recording.zip", "").status, 404);
    EXPECT_EQ(done("POST", "api/recording", R"({"frames":2})").status, 202);
    turns(3);
    m_owner->waitForRecording();
    turns(1);
    EXPECT_EQ(state({"recording"}), R"({"number":1,"asked":2,"done":2,"ready":true})");
    const Seen zip = done("GET", "api/recording.zip", "");
    EXPECT_EQ(zip.type, "application/zip");
    EXPECT_THAT(zip.body, StartsWith("PK\x03\x04"));
    EXPECT_THAT(zip.body, HasSubstr("1A2B_000002.png"));
    EXPECT_THAT(zip.body, HasSubstr("1A2B_000003.png"));
    EXPECT_EQ(done("POST", "api/recording", R"({"frames":0})").status, 202);
    EXPECT_EQ(state({"recording"}), "absent");
}

TEST_F(ViewRoutes, TooManyJobsAreRefused) {
    begin();
    for (int i = 0; i < 256; ++i) {
        EXPECT_FALSE(ask("POST", "api/live", R"({"live":true})").look());
    }
    EXPECT_EQ(ask("POST", "api/live", R"({"live":true})").look()->status, 503);
}

}  // namespace
}  // namespace camhost::test
