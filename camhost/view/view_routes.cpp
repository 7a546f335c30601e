// SPDX-License-Identifier: MIT
#include "camhost/view/view_routes.h"

#include <algorithm>
#include <array>
#include <exception>
#include <limits>
#include <utility>

#include "camhost/view/frame_bytes.h"
#include "camhost/view/frame_picture.h"
#include "camhost/view/json_body.h"
#include "camhost/view/recording.h"

namespace camhost {

namespace {

constexpr double longestWait = 10.0;                                 // seconds
constexpr double forever = std::numeric_limits<double>::infinity();  // the owner always answers
constexpr std::uint64_t largestStep = 64;
constexpr std::int32_t mostCameras = 256;

HttpResponse notFound(std::string code, std::string message) {
    return failureResponse(404, {.code = std::move(code), .message = std::move(message)});
}

Failure wrongQuery(std::string message) {
    return {.exit = ExitCode::Usage, .code = "usage", .message = std::move(message)};
}

std::optional<BayerOrder> bayerChoice(std::string_view name) {
    const std::optional<BayerOrder> order = parseBayer(name);
    if (!order && name != "auto") {
        throw wrongQuery("bayer takes auto, rggb, grbg, gbrg or bggr");
    }
    return order;
}

bool demosaicChoice(std::string_view name) {
    if (name != "none" && name != "fast") {
        throw wrongQuery("demosaic takes none or fast");
    }
    return name == "fast";
}

std::uint64_t stepOf(const CQuery& query) {
    const std::uint64_t step = query.number("step").value_or(1);
    if (step == 0 || step > largestStep || (step & (step - 1)) != 0) {
        throw wrongQuery("step takes 1, 2, 4 and so on up to " + std::to_string(largestStep));
    }
    return step;
}

bool isReading(std::string_view method) {
    return method == "GET" || method == "HEAD";
}

HttpResponse notAllowed(const std::string& allowed) {
    HttpResponse response =
        failureResponse(405, {.code = "method", .message = "this takes " + allowed});
    response.headers.emplace_back("Allow", allowed);
    return response;
}

SettingsFile sentFile(const std::string& body) {
    return parseSettingsFile(body, "the body");
}

// On the worker's thread, to which nothing may be thrown.
HttpResponse pictureResponse(const ViewFrame& frame, const PictureChoice& choice) {
    try {
        const Picture picture = pictureOf(frame, choice);
        HttpResponse response{.type = "image/png"};
        auto bytes = std::make_shared<const std::vector<std::uint8_t>>(encoded(picture));
        response.body = {{bytes, *bytes}};
        response.headers.emplace_back("Content-Disposition",
                                      "attachment; filename=\"" + picture.name + "\"");
        return response;
    } catch (const Failure& failure) {
        return failureResponse(500, failure);
    } catch (const std::exception& error) {
        return failureResponse(500, {.code = "internal", .message = error.what()});
    }
}

}  // namespace

struct CViewRoutes::Route {
    std::string_view method;
    std::string_view path;
    bool changesTheCamera;
    HttpAnswer (CViewRoutes::*answer)(const HttpRequest& request, const CQuery& query) const;
};

std::span<const CViewRoutes::Route> CViewRoutes::routes() {
    static constexpr std::array<Route, 15> table{{
        {"GET", "api/state", false, &CViewRoutes::state},
        {"GET", "api/events", false, &CViewRoutes::events},
        {"GET", "api/frame", false, &CViewRoutes::frame},
        {"GET", "api/frame.png", false, &CViewRoutes::framePng},
        {"GET", "api/settings", false, &CViewRoutes::settings},
        {"GET", "api/settings.json", false, &CViewRoutes::saved},
        {"GET", "api/recording.zip", false, &CViewRoutes::zip},
        {"PUT", "api/settings", true, &CViewRoutes::set},
        {"POST", "api/commands", true, &CViewRoutes::command},
        {"POST", "api/camera", true, &CViewRoutes::camera},
        {"POST", "api/live", true, &CViewRoutes::live},
        {"POST", "api/load", true, &CViewRoutes::load},
        {"POST", "api/recording", false, &CViewRoutes::recording},
        {"POST", "api/diff", false, &CViewRoutes::diff},
        {"POST", "api/end", false, &CViewRoutes::end},
    }};
    return table;
}

HttpAnswer CViewRoutes::answer(const HttpRequest& request) const {
    if (auto refusal = refuseForeign(request, m_address.port)) {
        return *std::move(refusal);
    }
    const auto behind = behindToken(request.target, m_address.token);
    if (!behind) {
        return emptyResponse(404);
    }
    const std::size_t mark = behind->find('?');
    const CQuery query(mark == behind->npos ? std::string_view{} : behind->substr(mark + 1));
    try {
        return answerPath(request, behind->substr(0, mark), query);
    } catch (const Failure& failure) {
        return failureResponse(400, failure);
    }
}

HttpAnswer CViewRoutes::answerPath(const HttpRequest& request, std::string_view path,
                                   const CQuery& query) const {
    const std::string_view sent = request.method;
    const std::string_view method = isReading(sent) ? std::string_view("GET") : sent;
    std::string allowed;
    for (const Route& route : routes()) {
        if (route.path != path) {
            continue;
        }
        if (route.method != method) {
            allowed += (allowed.empty() ? "" : ", ") +
                       std::string(route.method == "GET" ? "GET, HEAD" : route.method);
            continue;
        }
        if (method != "GET" && !isJsonType(request.contentType)) {
            return badRequest("the body must be application/json", 415);
        }
        if (route.changesTheCamera && m_model.isReadOnly()) {
            return failureResponse(
                403, {.code = "read_only", .message = "this view is for looking only"});
        }
        return (this->*route.answer)(request, query);
    }
    return allowed.empty() ? file(path, request.method) : notAllowed(allowed);
}

HttpAnswer CViewRoutes::file(std::string_view path, const std::string& method) const {
    const std::string_view name = path.empty() ? "index.html" : path;
    const auto found = std::find_if(m_files.begin(), m_files.end(),
                                    [&](const PageFile& each) { return each.name == name; });
    if (found == m_files.end()) {
        return notFound("not_found", "there is nothing of that name");
    }
    if (!isReading(method)) {
        return notAllowed("GET, HEAD");
    }
    HttpResponse response{.type = std::string(found->type)};
    response.body = {{nullptr, found->bytes}};
    return response;
}

HttpAnswer CViewRoutes::whenThere(
    double seconds, std::function<std::optional<HttpResponse>(bool timeIsUp)> look) const {
    if (auto now = look(seconds <= 0.0)) {
        return *std::move(now);
    }
    return HttpWaiting{seconds, std::move(look)};
}

HttpAnswer CViewRoutes::give(Job job) const {
    const std::shared_ptr<CAnswerSlot> slot = m_jobs.add(std::move(job));
    if (!slot) {
        return failureResponse(503, {.code = "busy", .message = "too much is asked for"});
    }
    return whenThere(forever, [slot](bool) { return slot->get(); });
}

HttpAnswer CViewRoutes::state(const HttpRequest&, const CQuery& query) const {
    const auto after = query.number("after");
    const double wait = query.seconds("wait", longestWait, longestWait);
    return whenThere(wait, [&model = m_model, after](bool timeIsUp) -> std::optional<HttpResponse> {
        auto text = model.stateText(timeIsUp || model.hasEnded() ? std::nullopt : after);
        return text ? std::optional(jsonResponse(200, *std::move(text))) : std::nullopt;
    });
}

HttpAnswer CViewRoutes::settings(const HttpRequest&, const CQuery& query) const {
    const auto after = query.number("after");
    const double wait = query.seconds("wait", longestWait, longestWait);
    return whenThere(wait, [&model = m_model, after](bool timeIsUp) -> std::optional<HttpResponse> {
        auto text = model.settingsText(timeIsUp || model.hasEnded() ? std::nullopt : after);
        return text ? std::optional(jsonResponse(200, *std::move(text))) : std::nullopt;
    });
}

HttpAnswer CViewRoutes::events(const HttpRequest&, const CQuery& query) const {
    const auto after = query.number("after");
    const double wait = query.seconds("wait", after ? longestWait : 0.0, longestWait);
    return whenThere(
        wait,
        [&model = m_model, from = after.value_or(0)](bool timeIsUp) -> std::optional<HttpResponse> {
            auto text = model.eventsText(from, timeIsUp || model.hasEnded());
            return text ? std::optional(jsonResponse(200, *std::move(text))) : std::nullopt;
        });
}

HttpAnswer CViewRoutes::frame(const HttpRequest&, const CQuery& query) const {
    const std::uint64_t after = query.number("after").value_or(0);
    const std::uint64_t step = stepOf(query);
    const double wait = query.seconds("wait", longestWait, longestWait);
    return whenThere(
        wait, [&model = m_model, after, step](bool timeIsUp) -> std::optional<HttpResponse> {
            if (const SharedFrame frame = model.frames().newest(after)) {
                return frameResponse(frame, step, model.isLost(frame->camera));
            }
            return timeIsUp || model.hasEnded() ? std::optional(emptyResponse(204)) : std::nullopt;
        });
}

HttpAnswer CViewRoutes::framePng(const HttpRequest&, const CQuery& query) const {
    const PictureChoice choice{bayerChoice(query.find("bayer").value_or("auto")),
                               demosaicChoice(query.find("demosaic").value_or("none"))};
    const auto number = query.number("number");
    const SharedFrame frame =
        number ? m_model.frames().numbered(*number) : m_model.frames().newest();
    if (!frame) {
        return number ? notFound("frame_gone", "that frame is not kept any longer")
                      : notFound("no_frame", "there is no frame yet");
    }
    auto slot = std::make_shared<CAnswerSlot>();
    const bool taken = m_worker.add([slot, frame, choice, &model = m_model] {
        slot->set(pictureResponse(*frame, choice));
        model.wake();
    });
    if (!taken) {
        return failureResponse(503, {.code = "busy", .message = "too much is asked for"});
    }
    return whenThere(forever, [slot, &model = m_model](bool) {
        auto response = slot->get();
        return response || !model.hasEnded() ? response : std::optional(endedResponse());
    });
}

HttpAnswer CViewRoutes::saved(const HttpRequest&, const CQuery&) const {
    return give(SaveJob{});
}

HttpAnswer CViewRoutes::zip(const HttpRequest&, const CQuery&) const {
    return give(ZipJob{});
}

HttpAnswer CViewRoutes::set(const HttpRequest& request, const CQuery&) const {
    const CJsonBody body(request.body);
    return give(SetJob{body.text("key"), body.text("text"), body.flag("manual", false),
                       body.optionalNumber("camera", mostCameras)});
}

HttpAnswer CViewRoutes::command(const HttpRequest& request, const CQuery&) const {
    const CJsonBody body(request.body);
    return give(ActionJob{body.text("command"), body.flag("manual", false),
                          body.optionalNumber("camera", mostCameras)});
}

HttpAnswer CViewRoutes::camera(const HttpRequest& request, const CQuery&) const {
    return give(CameraJob{CJsonBody(request.body).number("camera", mostCameras)});
}

HttpAnswer CViewRoutes::live(const HttpRequest& request, const CQuery&) const {
    return give(LiveJob{CJsonBody(request.body).flag("live")});
}

HttpAnswer CViewRoutes::recording(const HttpRequest& request, const CQuery&) const {
    const CJsonBody body(request.body);
    const auto frames = body.number("frames", static_cast<std::int32_t>(CRecording::mostFrames));
    return give(RecordJob{static_cast<std::uint64_t>(frames),
                          bayerChoice(body.text("bayer", "auto")),
                          demosaicChoice(body.text("demosaic", "none"))});
}

HttpAnswer CViewRoutes::load(const HttpRequest& request, const CQuery&) const {
    return give(LoadJob{sentFile(request.body)});
}

HttpAnswer CViewRoutes::diff(const HttpRequest& request, const CQuery&) const {
    return give(DiffJob{sentFile(request.body)});
}

HttpAnswer CViewRoutes::end(const HttpRequest& request, const CQuery&) const {
    const CJsonBody body(request.body);
    return give(EndJob{});
}

}  // namespace camhost
