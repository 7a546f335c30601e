// SPDX-License-Identifier: MIT
#include "camhost/help/manual_page.h"

#include <algorithm>

#include "camhost/base/texts.h"

namespace camhost {

namespace {

// Text of a line: nothing in it is a request, and its signs stay what they are, so that they
// can be pasted.
std::string escaped(const std::string& text) {
    std::string result;
    for (const char c : text) {
        switch (c) {
            case '\\':
                result += "\\e";
                break;
            case '-':
                result += "\\-";
                break;
            case '\'':
                result += "\\(aq";
                break;
            case '`':
                result += "\\(ga";
                break;
            case '^':
                result += "\\(ha";
                break;
            case '~':
                result += "\\(ti";
                break;
            case '"':
                result += "\\(dq";
                break;
            default:
                result += c;
        }
    }
    return result.starts_with('.') ? "\\&" + result : result;
}

std::string bold(const std::string& text) {
    return "\\fB" + escaped(text) + "\\fR";
}

// What is to be replaced stands in italics; words of a choice are typed as they stand.
std::string valueText(const std::string& value) {
    std::vector<std::string> parts;
    for (const std::string& part : split(value, '|')) {
        parts.push_back(part == lowered(part) ? bold(part) : "\\fI" + escaped(part) + "\\fR");
    }
    return join(parts, "|");
}

// "-n, --frames N", or the word by its place.
std::string optionTag(const OptionOutline& option) {
    std::vector<std::string> names;
    for (const std::string& name : option.names) {
        names.push_back(bold(name));
    }
    std::string tag = join(names, ", ");
    if (!option.value.empty()) {
        tag += (tag.empty() ? "" : " ") + valueText(option.value);
    }
    return tag;
}

std::string optionEntries(const std::vector<OptionOutline>& options) {
    std::string text;
    for (const OptionOutline& option : options) {
        text += ".TP\n" + optionTag(option) + "\n" + escaped(option.what) + "\n";
    }
    return text;
}

std::string exampleLines(const std::string& examples) {
    std::string text = ".PP\n.nf\n";
    for (std::string line : split(examples, '\n')) {
        line.erase(0, line.find_first_not_of(' '));
        text += escaped(line) + "\n";
    }
    return text + ".fi\n";
}

std::string synopsisOf(const CommandOutline& command) {
    std::string text = bold(command.name);
    const auto isOption = [](const OptionOutline& option) { return !option.names.empty(); };
    if (std::any_of(command.options.begin(), command.options.end(), isOption)) {
        text += " [\\fIOPTION\\fR...]";
    }
    for (const OptionOutline& option : command.options) {
        if (!isOption(option)) {
            const std::string word = valueText(option.value) + (option.repeated ? "..." : "");
            text += " " + (option.required ? word : "[" + word + "]");
        }
    }
    return text;
}

std::string commandSection(const CommandOutline& command) {
    return ".SS " + escaped(command.name) + "\n" + synopsisOf(command) + "\n.PP\n" +
           escaped(command.what) + "\n" + optionEntries(command.options) +
           exampleLines(command.examples);
}

}  // namespace

std::string manualPage(const ProgramOutline& program) {
    std::string page = ".\\\" SPDX-License-Identifier: MIT\n.TH " + upperCased(program.name) +
                       " 1 \"\" \"" + program.name + " " + program.version +
                       "\" \"User Commands\"\n.SH NAME\n" + program.name + " \\- " +
                       escaped(program.what) + "\n.SH SYNOPSIS\n" + bold(program.name) +
                       " [\\fIOPTION\\fR...] \\fICOMMAND\\fR ...\n.SH OPTIONS\n"
                       "They may stand before or behind the command.\n" +
                       optionEntries(program.options) + ".SH COMMANDS\n";
    for (const CommandOutline& command : program.commands) {
        page += commandSection(command);
    }
    page += ".SH EXIT STATUS\n";
    for (const auto& [code, meaning] : program.exitCodes) {
        page += ".TP\n" + bold(std::to_string(code)) + "\n" + escaped(meaning) + "\n";
    }
    return page + ".SH EXAMPLES\n" + exampleLines(program.examples);
}

}  // namespace camhost
