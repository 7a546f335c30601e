// SPDX-License-Identifier: MIT
// Any request to the view: it is answered at once or when its time is up, with a head that
// is one head, and what it asks of the owner is within the limits.
#include "camhost/view/recording.h"
#include "camhost/view/view_routes.h"
#include "fuzz/input/fuzz_input.h"
#include "velmora/host_blocks.h"

namespace {

using namespace camhost;

constexpr const char* token = "0123456789abcdef0123456789abcdef";
constexpr std::uint16_t port = 8080;
constexpr std::uint8_t page[] = {'p', 'a', 'g', 'e'};
constexpr PageFile files[] = {{"index.html", "text/html; charset=utf-8", page}};

// What begins with "=" stands for what a tab of the view would send.
std::string lineOr(CFuzzInput& input, const std::string& proper) {
    const std::string line = input.takeLine();
    return line.starts_with('=') ? proper + line.substr(1) : line;
}

HttpRequest requestOf(CFuzzInput& input) {
    HttpRequest request;
    request.method = input.takeLine();
    request.target = lineOr(input, std::string("/") + token + "/");
    request.host = lineOr(input, "127.0.0.1:8080");
    const std::string origin = lineOr(input, "http://127.0.0.1:8080");
    if (origin != "-") {
        request.origin = origin;
    }
    request.contentType = lineOr(input, "application/json");
    request.body = input.takeRest();
    return request;
}

void checkHead(const HttpResponse& response) {
    const std::string head = responseHead(response, true);
    require(head.find("\r\n\r\n") == head.size() - 4, "a head ends once");
    for (std::size_t i = 0; i < head.size(); ++i) {
        const auto byte = static_cast<unsigned char>(head[i]);
        require(byte >= 0x20 || byte == '\r' || byte == '\n', "a head holds no controls");
        require(byte != '\r' || head[i + 1] == '\n', "lines end in both");
    }
}

void checkJob(const Job& job) {
    if (const auto* record = std::get_if<RecordJob>(&job)) {
        require(record->frames <= CRecording::mostFrames, "a recording has an end");
    }
    if (const auto* choice = std::get_if<CameraJob>(&job)) {
        require(choice->camera >= 0, "no camera stands before the first");
    }
}

bool reachesTheView(const HttpRequest& request) {
    const std::string host = request.host.value_or("");
    return behindToken(request.target, token) && host.size() == 14 && host.ends_with(":8080");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    CFuzzInput input(data, size);
    CViewModel model({{0, "1A2B", "SIM Mono 23", 5, 3}}, input.take<std::uint8_t>() == 'r');
    auto frame = std::make_unique<ViewFrame>(FrameLayout{5, 3, HOST_PIXEL_RAW8});
    frame->number = 1;
    frame->serial = "1A2B";
    model.addFrame(std::move(frame));
    model.setState({}, 0.0);
    CJobs jobs;
    // One thread for all inputs, idle at the end of each.
    static CWorker& worker = *new CWorker;
    const CViewRoutes routes(model, jobs, worker, {port, token}, files);

    const HttpRequest request = requestOf(input);
    HttpAnswer answer = routes.answer(request);
    const std::optional<CJobs::Waiting> job = jobs.next();
    require(!job || reachesTheView(request), "only the view's own pages reach a camera");
    if (job) {
        checkJob(job->job);
        job->slot->set(emptyResponse(204));
    }
    worker.waitUntilIdle();
    if (auto* waiting = std::get_if<HttpWaiting>(&answer)) {
        std::optional<HttpResponse> response = waiting->look(false);
        response = response ? std::move(response) : waiting->look(true);
        require(response.has_value(), "there is an answer when the time is up");
        answer = *std::move(response);
    }
    checkHead(std::get<HttpResponse>(answer));
    return 0;
}
