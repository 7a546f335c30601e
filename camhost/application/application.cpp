// SPDX-License-Identifier: MIT
#include "camhost/application/application.h"

#include <exception>

#include "camhost/application/command_line.h"
#include "camhost/application/command_table.h"
#include "camhost/application/program_outline.h"
#include "camhost/base/report.h"
#include "camhost/base/texts.h"
#include "camhost/camera/cameras.h"

namespace camhost {

namespace {

std::string oneLine(std::string text) {
    while (!text.empty() && text.back() == '\n') {
        text.pop_back();
    }
    return printable(text);
}

ExitCode reportUsage(const CommandLine& line, CReport& report) {
    report.failure({.exit = ExitCode::Usage, .code = "usage", .message = oneLine(line.text)});
    report.message("try:   " + line.help);
    return ExitCode::Usage;
}

// For the virtual cameras; they are read when their library is loaded.
void chooseVirtualCameras(const GlobalOptions& options, CSystem& system) {
    system.setVariable("VIRTUAL_CAMERAS_QUIET", "1");  // camhost tells it, as an error
    if (!options.rig.empty()) {
        system.setVariable("VIRTUAL_CAMERAS_RIG", options.rig);
    }
    if (!options.clock.empty()) {
        system.setVariable("VIRTUAL_CAMERAS_CLOCK", options.clock);
    }
}

void explainNoCameras(const CCameras& cameras, CSystem& system) {
    if (const std::string mistake = system.rigMistake(); !mistake.empty()) {
        throw Failure{.exit = ExitCode::Usage, .code = "bad_rig", .message = mistake};
    }
    if (cameras.all().empty() && !system.captureLibraryPresent()) {
        throw Failure{.exit = ExitCode::NotFound,
                      .code = "capture_library_missing",
                      .message =
                          "the capture library (ORV_CAPLB11*.dll) is not beside the "
                          "adapter " +
                          system.adapterFile()};
    }
}

// As it can be pasted.
std::string argumentText(const std::string& argument) {
    return argument.find_first_of(" #&()\\") == argument.npos ? argument : "\"" + argument + "\"";
}

std::string hintPrefix(const GlobalOptions& options, const CRecordChannel& camera) {
    std::string prefix = "camhost";
    const auto add = [&](const char* name, const std::string& value) {
        prefix += value.empty() ? "" : std::string(" ") + name + " " + argumentText(value);
    };
    add("--adapter", options.adapter);
    add("--rig", options.rig);
    add("--clock", options.clock);
    add("-c", options.camera.empty() ? "" : camera.selector());
    return prefix;
}

void chooseCamera(CommandContext& context, const GlobalOptions& options) {
    CRecordChannel& camera = context.cameras.select(options.camera);
    if (camera.neverOpened()) {
        throw Failure{.exit = ExitCode::NotFound,
                      .code = "camera_not_open",
                      .message = camera.selector() + " \"" + camera.name() +
                                 "\" did not open; in use elsewhere?"};
    }
    context.camera = &camera;
    context.hintPrefix = hintPrefix(options, camera);
    context.report.setCamera(identityJson(camera));
}

ExitCode runCommand(CCommand& command, const GlobalOptions& options, CSystem& system,
                    CReport& report) {
    const GetVideoChannelEntry entry = system.loadAdapter(options.adapter);
    report.detail("adapter " + system.adapterFile());
    CCameras cameras(entry);
    explainNoCameras(cameras, system);
    CommandContext context{system, report, cameras};
    context.dialogs = options.dialogs;
    context.wantedCamera = options.camera;
    if (command.needsCamera()) {
        chooseCamera(context, options);
    }
    const ExitCode result = command.run(context);
    cameras.close();
    return result;
}

ExitCode runWithoutAdapter(CCommand& command, const GlobalOptions& options, CSystem& system,
                           CReport& report) {
    const ProgramOutline program = programOutline(allCommands());
    CCameras none;
    CommandContext context{system, report, none};
    context.dialogs = options.dialogs;
    context.wantedAdapter = options.adapter;
    context.program = &program;
    return command.run(context);
}

ExitCode guardedRun(CCommand& command, const GlobalOptions& options, CSystem& system,
                    CReport& report) {
    try {
        chooseVirtualCameras(options, system);
        system.guardDialogs(!options.dialogs);
        return command.needsAdapter() ? runCommand(command, options, system, report)
                                      : runWithoutAdapter(command, options, system, report);
    } catch (const Failure& failure) {
        report.failure(failure);
        return failure.exit;
    } catch (const std::exception& error) {
        report.failure({.code = "internal", .message = error.what()});
        return ExitCode::Refused;
    }
}

// A command that went well although a box was shown did not go well.
ExitCode judgeDialogs(ExitCode result, CSystem& system, CReport& report) {
    CJson list = CJson::array();
    std::string first;
    for (const Dialog& dialog : system.dialogsClosed()) {
        list.add(CJson::object({{"caption", dialog.caption}, {"text", dialog.text}}));
        first = first.empty() ? dialog.caption + ": " + dialog.text : first;
    }
    if (first.empty()) {
        return result;
    }
    report.setExtra("dialogs", std::move(list));
    if (result != ExitCode::Done) {
        return result;
    }
    report.failure({.exit = ExitCode::NotFound,
                    .code = "dialog",
                    .message = "the adapter showed a message box",
                    .adapterMessage = first});
    return ExitCode::NotFound;
}

}  // namespace

int runApplication(const std::vector<std::string>& arguments, CSystem& system,
                   std::ostream& results, std::ostream& messages) {
    const Commands commands = allCommands();
    const CommandLine line = readCommandLine(arguments, commands);
    if (line.outcome == CommandLineOutcome::Help) {
        results << line.text;
        return static_cast<int>(CReport(results, messages).finish(ExitCode::Done));
    }
    CReport report(results, messages);
    report.setJson(line.options.json);
    report.setVerbosity(line.options.quiet ? -1 : line.options.verbose);
    report.setTerminal(system.messagesOnTerminal());
    report.setCommand(line.command);
    ExitCode result = ExitCode::Usage;
    CCommand* command = findCommand(commands, line.command);
    if (line.outcome == CommandLineOutcome::Error || command == nullptr) {
        result = reportUsage(line, report);
    } else {
        result = guardedRun(*command, line.options, system, report);
        system.guardDialogs(false);
        result = judgeDialogs(result, system, report);
    }
    return static_cast<int>(report.finish(result));
}

}  // namespace camhost
