// SPDX-License-Identifier: MIT
#include "camhost/application/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "camhost/application/program_outline.h"
#include "camhost/base/name_search.h"
#include "camhost/base/number_texts.h"
#include "camhost/base/texts.h"

namespace camhost {

namespace {

// In letters of any case. Without the list that the library would add to the help a
// second time.
CLI::Validator oneOf(const std::vector<std::string>& words) {
    return CLI::IsMember(words, CLI::ignore_case).description("");
}

// The library's own reading takes -1 for the largest count there is, and 010 for eight.
CLI::Validator plainCount() {
    const auto rewrite = [](std::string& text) {
        const auto value = wholeCount(withoutPlus(text));
        if (!value) {
            return "takes a whole number, not " + text;
        }
        text = std::to_string(*value);
        return std::string();
    };
    return {rewrite, ""};
}

std::string aboveZero(const std::string& text) {
    const auto value = wholeNumber(text);
    return value && *value > 0.0 ? std::string() : "takes a number above 0, not " + text;
}

class CLineOptions : public COptionList {
public:
    explicit CLineOptions(CLI::App& app) : m_app(app) {}

    void word(const char* name, std::string& value, const char* what, Need need) override {
        m_app.add_option(name, value, what)->required(need == Need::Required)->type_name("");
    }
    void words(const char* name, std::vector<std::string>& values, const char* what) override {
        m_app.add_option(name, values, what)->required()->type_name("");
    }
    void wordOf(const char* name, std::string& value, const std::vector<std::string>& choices,
                const char* what) override {
        m_app.add_option(name, value, what)
            ->transform(oneOf(choices))
            ->required()
            ->type_name(join(choices, "|"));
    }
    void flag(const char* names, bool& on, const char* what) override {
        m_app.add_flag(names, on, what);
    }
    void countedFlag(const char* names, int& times, const char* what) override {
        m_app.add_flag(names, times, what);
    }
    void text(const char* names, std::string& value, const char* placeholder,
              const char* what) override {
        m_app.add_option(names, value, what)->type_name(placeholder);
    }
    void choice(const char* names, std::string& value, const std::vector<std::string>& choices,
                const char* what) override {
        // A check alone would leave the letters as they were typed.
        m_app.add_option(names, value, what)
            ->transform(oneOf(choices))
            ->type_name(join(choices, "|"));
    }
    void texts(const char* names, std::vector<std::string>& values, const char* placeholder,
               const char* what) override {
        m_app.add_option(names, values, what)->take_all()->expected(1)->type_name(placeholder);
    }
    void count(const char* names, std::uint64_t& value, const char* placeholder,
               const char* what) override {
        m_app.add_option(names, value, what)->transform(plainCount())->type_name(placeholder);
    }
    void countAboveZero(const char* names, std::uint64_t& value, const char* placeholder,
                        const char* what) override {
        m_app.add_option(names, value, what)
            ->transform(plainCount())
            ->check(aboveZero)
            ->type_name(placeholder);
    }
    void secondsAboveZero(const char* names, double& value, const char* placeholder,
                          const char* what) override {
        m_app.add_option(names, value, what)->check(aboveZero)->type_name(placeholder);
    }

private:
    CLI::App& m_app;
};

void addCommand(CLI::App& app, CCommand& command) {
    const CommandHelp help = command.help();
    CLI::App* line = app.add_subcommand(help.name, help.what);
    line->fallthrough();
    line->footer(std::string("Examples:\n") + help.examples);
    CLineOptions list(*line);
    command.takeOptions(list);
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
    const std::string version = "camhost " + programFacts().version + "\n";
    try {
        std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
        app.parse(std::move(reversed));
    } catch (const CLI::CallForHelp&) {
        line.outcome = CommandLineOutcome::Help;
        line.text = app.help();
    } catch (const CLI::CallForVersion&) {
        line.outcome = CommandLineOutcome::Help;
        line.text = version;
    } catch (const CLI::ParseError& error) {
        line.outcome = CommandLineOutcome::Error;
        line.text = error.what();
        line.options.json = asksForJson(arguments);
        nameUnknownCommand(app, line);
    }
    for (const CLI::App* command : app.get_subcommands()) {
        line.command = command->get_name();
    }
    line.help = line.command.empty() ? "camhost --help" : "camhost " + line.command + " --help";
}

}  // namespace

void takeGlobalOptions(COptionList& list, GlobalOptions& options) {
    list.text("--adapter", options.adapter, "DLL", "the adapter to load");
    list.text("-c,--camera", options.camera, "CAMERA", "serial, part of the name, or #index");
    list.text("--rig", options.rig, "NAME|FILE", "which virtual cameras there are");
    list.choice("--clock", options.clock, {"real", "fast"}, "how virtual cameras deliver frames");
    list.flag("--json", options.json, "one JSON object instead of text");
    list.flag("-q,--quiet", options.quiet, "no messages but warnings and errors");
    list.countedFlag("-v,--verbose", options.verbose, "more messages");
    list.flag("--dialogs", options.dialogs, "leave the adapter's message boxes open");
}

CommandLine readCommandLine(const std::vector<std::string>& arguments, const Commands& commands) {
    CommandLine line;
    const ProgramOutline program = programFacts();
    std::string what = program.what + ".";
    what.front() = static_cast<char>(what.front() - 'a' + 'A');
    CLI::App app(what, program.name);
    // On Windows the library takes "/x.json" for an option by default, which is a file.
    app.allow_windows_style_options(false);
    app.require_subcommand(1);
    app.set_version_flag("--version", program.version, versionHelp);
    app.footer(helpFooter(program));
    CLineOptions list(app);
    takeGlobalOptions(list, line.options);
    for (const auto& command : commands) {
        addCommand(app, *command);
    }
    parse(app, arguments, line);
    return line;
}

}  // namespace camhost
