// SPDX-License-Identifier: MIT
// camhost view: a live picture and the settings of a camera, as a page for the browser on
// this machine.
#include <optional>

#include "camhost/base/texts.h"
#include "camhost/commands/define_command.h"
#include "camhost/pictures/frame_layout.h"
#include "camhost/view/view_owner.h"
#include "camhost/view/view_routes.h"
#include "camhost/web/web_server.h"

namespace camhost {

namespace {

// Its thread has ended before anything that it uses is gone.
class CServing {
public:
    explicit CServing(CWebServer& server) : m_server(server) {}
    CServing(const CServing&) = delete;
    CServing& operator=(const CServing&) = delete;
    ~CServing() { m_server.stop(); }

private:
    CWebServer& m_server;
};

CJson resultJson(const CViewOwner& owner, const std::string& address) {
    const GrabCounts& counts = owner.counts();
    CJson result = CJson::object(
        {{"address", address}, {"frames", counts.frames}, {"seconds", counts.seconds}});
    if (const auto rate = counts.framesPerSecond()) {
        result.set("fps", *rate);
    }
    result.set("timeouts", counts.timeouts);
    result.set("lost", counts.losses);
    result.set("lost_seconds", counts.lostSeconds);
    result.set("refused", owner.refusals());
    return result;
}

// Nothing when all went well.
std::optional<Failure> failureOf(ViewEnd end, const CViewOwner& owner) {
    const GrabCounts& counts = owner.counts();
    const std::string frames =
        std::to_string(counts.frames) + (counts.frames == 1 ? " frame" : " frames");
    if (end == ViewEnd::Interrupted) {
        return Failure{.exit = ExitCode::Interrupted,
                       .code = "interrupted",
                       .message = "interrupted after " + frames};
    }
    if (owner.isLost()) {
        return Failure{.exit = ExitCode::DeviceLost,
                       .code = "device_lost",
                       .message = "the camera is lost; " + frames};
    }
    if (counts.frames == 0 && counts.timeouts > 0) {
        return Failure{.exit = ExitCode::NoFrame, .code = "no_frame", .message = "no frame came"};
    }
    return std::nullopt;
}

}  // namespace

class CViewCommand : public CCommand {
public:
    CommandHelp help() const override {
        return {"view", "a live picture and its settings in the browser",
                "  camhost -c 1A2B view\n"
                "  camhost view --port 8080 --no-open --read-only"};
    }

    bool needsCamera() const override { return false; }

    void takeOptions(COptionList& list) override {
        list.count("--port", m_port, "N", "of this machine's own address (0: any free one)");
        list.flag("--no-open", m_noOpen, "only print the address");
        list.flag("--read-only", m_readOnly, "the page changes nothing in a camera");
    }

    ExitCode run(CommandContext& context) override {
        constexpr std::uint64_t largestPort = 65535;
        if (m_port > largestPort) {
            throw Failure{.exit = ExitCode::Usage,
                          .code = "usage",
                          .message = "--port takes a number within 0 and 65535"};
        }
        CRecordChannel& camera = chooseCamera(context);
        context.report.setCamera(identityJson(camera));
        CWebServer server(static_cast<std::uint16_t>(m_port));
        const ViewAddress address{server.port(), tokenOf(context.system.randomBytes(tokenBytes))};
        CViewModel model(factsOf(context.cameras), m_readOnly);
        model.setWake([&server] { server.wake(); });
        CJobs jobs;
        CWorker worker;
        const CViewRoutes routes(model, jobs, worker, address, pageFiles());
        CViewOwner owner({context.system, context.report, context.cameras, model, jobs,
                          camera.index(), context.dialogs});
        const CServing serving(server);
        server.start([&routes](const HttpRequest& request) { return routes.answer(request); });
        owner.begin();
        announce(context, camera, address.text());
        return ended(context, owner, address.text());
    }

private:
    // The first that is open, unless one is named: all can be chosen in the page.
    static CRecordChannel& chooseCamera(const CommandContext& context) {
        if (!context.wantedCamera.empty()) {
            return context.cameras.select(context.wantedCamera);
        }
        for (const auto& camera : context.cameras.all()) {
            if (!camera->neverOpened()) {
                return *camera;
            }
        }
        return context.cameras.select("");
    }

    void announce(CommandContext& context, const CRecordChannel& camera,
                  const std::string& address) const {
        const std::string text =
            "view of " + camera.selector() + " \"" + printable(camera.name()) + "\": " + address;
        if (context.report.json()) {
            context.report.message(text);
        } else {
            context.report.line(text);
            context.report.flush();
        }
        if (!m_noOpen && !context.system.openBrowser(address)) {
            context.report.message("no browser opens by itself: open that address in one");
        }
    }

    // Totals are told however it ends.
    static ExitCode ended(CommandContext& context, CViewOwner& owner, const std::string& address) {
        const auto tellTotals = [&] {
            context.report.setResult(resultJson(owner, address));
            context.report.line(closingLine(owner.counts(), owner.pixelText()));
        };
        std::optional<Failure> failure;
        try {
            failure = failureOf(owner.run(), owner);
        } catch (const Failure&) {
            tellTotals();
            throw;
        }
        tellTotals();
        if (failure) {
            context.report.failure(*failure);
        }
        return failure ? failure->exit : ExitCode::Done;
    }

    std::uint64_t m_port = 0;
    bool m_noOpen = false;
    bool m_readOnly = false;
};

template std::unique_ptr<CCommand> makeCommand<CViewCommand>();

}  // namespace camhost
