// SPDX-License-Identifier: MIT
#include "host/application.h"

#include <algorithm>
#include <exception>

#include "host/command_line.h"
#include "host/commands.h"
#include "host/text_tools.h"

namespace camhost {

namespace {

std::string oneLine(std::string text) {
    while (!text.empty() && text.back() == '\n') {
        text.pop_back();
    }
    return printable(text);
}

ExitCode reportUsage(const CommandLine& line, CReport& report) {
    report.failure({ExitCode::Usage, "usage", oneLine(line.text), {}, {}});
    report.message("try:   " + line.help);
    return ExitCode::Usage;
}

CData cameraData(const CChannel& camera) {
    CData data;
    data.set("index", camera.index());
    data.set("serial", camera.serial());
    data.set("name", camera.name());
    return data;
}

// For the virtual cameras; they are read when their library is loaded.
void chooseVirtualCameras(const Options& options, CSystem& system) {
    if (!options.rig.empty()) {
        system.setVariable("VIRTUAL_CAMERAS_RIG", options.rig);
    }
    if (!options.clock.empty()) {
        system.setVariable("VIRTUAL_CAMERAS_CLOCK", options.clock);
    }
}

void explainNoCameras(const CCameras& cameras, CSystem& system) {
    if (cameras.all().empty() && !system.captureLibraryPresent()) {
        throw Failure{ExitCode::NotFound,
                      "capture_library_missing",
                      "the capture library (ORV_CAPLB11*.dll) is not beside the adapter " +
                          system.adapterFile(),
                      {},
                      {}};
    }
}

ExitCode runCommand(const Command& command, const Options& options, CSystem& system,
                    CReport& report) {
    const GetVideoChannelEntry entry = system.loadAdapter(options.adapter);
    report.detail("adapter " + system.adapterFile());
    CCameras cameras(entry);
    explainNoCameras(cameras, system);
    CommandContext context{options, system, report, cameras, nullptr};
    if (command.needsCamera) {
        context.camera = &cameras.select(options.camera);
        report.setCamera(cameraData(*context.camera));
    }
    const ExitCode result = command.run(context);
    cameras.close();
    return result;
}

ExitCode guardedRun(const Command& command, const Options& options, CSystem& system,
                    CReport& report) {
    try {
        chooseVirtualCameras(options, system);
        system.guardDialogs(!options.dialogs);
        return runCommand(command, options, system, report);
    } catch (const Failure& failure) {
        report.failure(failure);
        return failure.exit;
    } catch (const std::exception& error) {
        report.failure({ExitCode::Refused, "internal", error.what(), {}, {}});
        return ExitCode::Refused;
    }
}

// A command that went well although a box was shown did not go well.
ExitCode judgeDialogs(ExitCode result, CSystem& system, CReport& report) {
    CData list = CData::array();
    std::string first;
    for (const Dialog& dialog : system.dialogsClosed()) {
        CData data;
        data.set("caption", dialog.caption);
        data.set("text", dialog.text);
        list.add(std::move(data));
        first = first.empty() ? dialog.caption + ": " + dialog.text : first;
    }
    if (first.empty()) {
        return result;
    }
    report.setExtra("dialogs", std::move(list));
    if (result != ExitCode::Done) {
        return result;
    }
    report.failure({ExitCode::NotFound, "dialog", "the adapter showed a message box", first, {}});
    return ExitCode::NotFound;
}

}  // namespace

int runApplication(const std::vector<std::string>& arguments, CSystem& system,
                   std::ostream& results, std::ostream& messages) {
    const CommandLine line = readCommandLine(arguments);
    if (line.outcome == CommandLineOutcome::Help) {
        results << line.text;
        results.flush();
        return static_cast<int>(ExitCode::Done);
    }
    CReport report(results, messages);
    report.setJson(line.options.json);
    report.setVerbosity(line.options.quiet ? -1 : line.options.verbose);
    report.setTerminal(system.messagesOnTerminal());
    report.setCommand(line.options.command);
    ExitCode result = ExitCode::Usage;
    const Command* command = findCommand(line.options.command);
    if (line.outcome == CommandLineOutcome::Error || command == nullptr) {
        result = reportUsage(line, report);
    } else {
        result = guardedRun(*command, line.options, system, report);
        system.guardDialogs(false);
        result = judgeDialogs(result, system, report);
    }
    report.finish(result);
    return static_cast<int>(result);
}

}  // namespace camhost
