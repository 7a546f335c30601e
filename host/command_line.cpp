// SPDX-License-Identifier: MIT
#include "host/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "host/text_tools.h"
#include "host/value_guards.h"

namespace camhost {

namespace {

// Without the list that the library would add to the help a second time.
CLI::Validator oneOf(const std::vector<std::string>& words) {
    return CLI::IsMember(words).description("");
}

std::string aboveZero(const std::string& text) {
    const auto value = wholeNumber(text);
    return value && *value > 0.0 ? std::string() : "takes a number above 0, not " + text;
}

void addGlobalOptions(CLI::App& app, Options& options) {
    app.add_option("--adapter", options.adapter, "the adapter to load")->type_name("DLL");
    app.add_option("-c,--camera", options.camera, "serial, part of the name, or #index")
        ->type_name("CAMERA");
    app.add_option("--rig", options.rig, "which virtual cameras there are")->type_name("NAME|FILE");
    app.add_option("--clock", options.clock, "how virtual cameras deliver frames")
        ->check(oneOf({"real", "fast"}))
        ->type_name("real|fast");
    app.add_flag("--json", options.json, "one JSON object instead of text");
    app.add_flag("-q,--quiet", options.quiet, "no messages but warnings and errors");
    app.add_flag("-v,--verbose", options.verbose, "more messages");
    app.add_flag("--dialogs", options.dialogs, "leave the adapter's message boxes open");
}

CLI::App* addCommand(CLI::App& app, const char* name, const char* what, const char* examples) {
    CLI::App* command = app.add_subcommand(name, what);
    command->fallthrough();
    command->footer(std::string("Examples:\n") + examples);
    return command;
}

void addArguments(CLI::App* command, const char* name, Options& options, const char* what) {
    command->add_option(name, options.arguments, what)->required()->type_name("");
}

void addDescribingCommands(CLI::App& app, Options& options) {
    addCommand(app, "list", "cameras: index, serial, name, size, state",
               "  camhost list\n"
               "  camhost --rig standard list --json");
    addCommand(app, "info", "what the adapter says about one camera and its picture",
               "  camhost -c 1A2B info\n"
               "  camhost -c 1A2B info --json");

    CLI::App* props = addCommand(app, "props", "settings, one line each",
                                 "  camhost -c 1A2B props exposure\n"
                                 "  camhost -c 1A2B props -L --all");
    props->add_option("PATTERN", options.pattern, "part of a key, or a pattern with * and ?")
        ->type_name("");
    props->add_flag("-L,--choices", options.choices, "add what each setting can be");
    props->add_flag("--all", options.all, "also limits, formats by number and list entries");
    props->add_flag("--plain", options.plain, "fields separated by tabs");

    CLI::App* get = addCommand(app, "get", "value and range of settings",
                               "  camhost -c 1A2B get framerate videoformat\n"
                               "  camhost -c 1A2B get \"exposure value abs\" --plain");
    addArguments(get, "KEY", options, "keys of settings");
    get->add_flag("--plain", options.plain, "fields separated by tabs");

    CLI::App* choices = addCommand(app, "choices", "the texts that a setting can be",
                                   "  camhost -c 1A2B choices videoformat\n"
                                   "  camhost -c 1A2B choices \"trigger mode strings\" --probe");
    addArguments(choices, "KEY", options, "keys of settings");
    choices->add_flag("--probe", options.probe, "learn them from a refusal, where that is safe");

    addCommand(app, "commands", "actions that the camera offers",
               "  camhost -c 1A2B commands\n"
               "  camhost -c 1A2B commands --json");
    CLI::App* diff = addCommand(app, "diff", "what differs from a saved file",
                                "  camhost -c 1A2B diff bench.json\n"
                                "  camhost -c 1A2B diff bench.json --strict");
    diff->add_option("FILE", options.file, "made by save")->required()->type_name("");
    diff->add_flag("--strict", options.strict, "exit 6 when something differs");
}

void addChangingCommands(CLI::App& app, Options& options) {
    CLI::App* set = addCommand(app, "set", "change settings, and read back what came of it",
                               "  camhost -c 1A2B set framerate=30 \"gain value range=12\"\n"
                               "  camhost -c 1A2B set --manual \"exposure value abs=0.01\"");
    addArguments(set, "KEY=VALUE", options, "assignments");
    set->add_flag("--manual", options.manual, "switch a setting's automatic off first");
    set->add_flag("--strict", options.strict, "exit 6 when the read-back differs");
    set->add_flag("--raw", options.raw, "hand the text over unchecked");
    set->add_flag("--dry-run", options.dryRun, "check and show, change nothing");

    CLI::App* exec = addCommand(app, "exec", "do what a camera's button does",
                                "  camhost -c 1A2B exec \"exposure one push\"\n"
                                "  camhost -c 1A2B exec propertydialog");
    addArguments(exec, "COMMAND", options, "as listed by commands");

    CLI::App* params =
        addCommand(app, "params", "apply one block of camera parameters",
                   "  camhost -c 1A2B params exposure=0.01 contrast=0.5\n"
                   "  camhost -c 1A2B params trigger=on polarity=off roi=0,0,640,480");
    addArguments(params, "NAME=VALUE", options,
                 "exposure=S contrast=F brightness=F trigger=on|off polarity=on|off roi=X,Y,W,H");
    params->add_flag("--strict", options.strict, "exit 6 when the read-back differs");

    CLI::App* save = addCommand(app, "save", "write all settings to a file",
                                "  camhost -c 1A2B save bench.json\n"
                                "  camhost -c 1A2B save bench.json --json");
    save->add_option("FILE", options.file, "to write")->required()->type_name("");

    CLI::App* load = addCommand(app, "load", "set what a file holds, in a safe order",
                                "  camhost -c 1A2B load bench.json\n"
                                "  camhost -c 1A2B load bench.json --strict");
    load->add_option("FILE", options.file, "made by save")->required()->type_name("");
    load->add_flag("--strict", options.strict, "exit 6 when a read-back differs");
}

void addGrab(CLI::App& app, Options& options) {
    GrabOptions& grab = options.grab;
    CLI::App* command = addCommand(app, "grab", "save frames to files",
                                   "  camhost -c 77C01 grab -n 100 -o shot_%04d.png --on-loss 10\n"
                                   "  camhost -c 77C01 grab --pixelformat rgb24 -o colours.png");
    command->add_option("-n,--frames", grab.frames, "how many (1)")
        ->check(aboveZero)
        ->type_name("N");
    command->add_option("-o,--output", grab.output, "file name, numbered by %04d")
        ->type_name("PATTERN");
    command->add_option("--format", grab.format, "of the files (by their name, else png)")
        ->check(oneOf({"png", "raw", "pnm", "none"}))
        ->type_name("png|raw|pnm|none");
    command->add_option("--pixelformat", grab.pixelFormat, "set before the first frame")
        ->type_name("mono8|raw8|rgb24");
    command->add_option("--set", grab.assignments, "a setting to make first (may be repeated)")
        ->take_all()
        ->expected(1)
        ->type_name("KEY=VALUE");
    command->add_flag("--manual", options.manual, "switch the automatics of these off first");
    command->add_option("--bayer", grab.bayer, "mosaic of raw frames (auto)")
        ->check(oneOf({"auto", "rggb", "grbg", "gbrg", "bggr"}))
        ->type_name("auto|rggb|grbg|gbrg|bggr");
    command->add_option("--demosaic", grab.demosaic, "make colours of raw frames (none)")
        ->check(oneOf({"none", "fast"}))
        ->type_name("none|fast");
    command->add_option("--skip", grab.skip, "frames to leave out first (0)")->type_name("K");
    command->add_option("--timeout", grab.timeout, "seconds without a frame that end it (5)")
        ->check(aboveZero)
        ->type_name("S");
    command->add_option("--on-loss", grab.onLoss, "when the camera goes away (10)")
        ->type_name("wait|fail|SECONDS");
}

bool asksForJson(const std::vector<std::string>& arguments) {
    return std::find(arguments.begin(), arguments.end(), "--json") != arguments.end();
}

// The library only says that a command is missing.
void nameUnknownCommand(const CLI::App& app, CommandLine& line) {
    const std::vector<std::string> rest = app.remaining();
    if (!app.get_subcommands().empty() || rest.empty()) {
        return;
    }
    if (rest.front().starts_with('-')) {
        line.text = "there is no option \"" + rest.front() + "\"";
        return;
    }
    std::vector<std::string> names;
    for (const CLI::App* command : app.get_subcommands(nullptr)) {
        names.push_back(command->get_name());
    }
    line.text = "there is no command \"" + rest.front() + "\"";
    if (const auto near = nearNames(rest.front(), names); !near.empty()) {
        line.text += "; did you mean " + quotedList(near) + "?";
    }
}

void parse(CLI::App& app, const std::vector<std::string>& arguments, CommandLine& line) {
    try {
        std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
        app.parse(std::move(reversed));
    } catch (const CLI::CallForHelp&) {
        line.outcome = CommandLineOutcome::Help;
        line.text = app.help();
    } catch (const CLI::ParseError& error) {
        line.outcome = CommandLineOutcome::Error;
        line.text = error.what();
        line.options.json = asksForJson(arguments);
        nameUnknownCommand(app, line);
    }
    for (const CLI::App* command : app.get_subcommands()) {
        line.options.command = command->get_name();
    }
    line.help = line.options.command.empty() ? "camhost --help"
                                             : "camhost " + line.options.command + " --help";
}

}  // namespace

CommandLine readCommandLine(const std::vector<std::string>& arguments) {
    CommandLine line;
    CLI::App app("Drives cameras through a camera adapter.", "camhost");
    app.require_subcommand(1);
    app.footer(
        "Exit codes: 0 done, 1 refused, 2 usage, 3 adapter or camera not found, 4 no frame in\n"
        "time, 5 device lost, 6 done in part, 130 interrupted.\n"
        "Examples:\n"
        "  camhost list\n"
        "  camhost -c 1A2B grab -n 10 -o shot_%02d.png");
    addGlobalOptions(app, line.options);
    addDescribingCommands(app, line.options);
    addChangingCommands(app, line.options);
    addGrab(app, line.options);
    parse(app, arguments, line);
    return line;
}

}  // namespace camhost
