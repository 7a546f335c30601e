// SPDX-License-Identifier: MIT
#include "camhost/base/texts.h"
#include "camhost/help/completion.h"

namespace camhost {

namespace {

constexpr const char* bashHead =
    R"bash(# Completion of camhost's command line for bash, made by "camhost completion bash".
# In this shell:  source <(camhost completion bash)
# In every one:   camhost completion bash > ~/.local/share/bash-completion/completions/camhost

)bash";

constexpr const char* bashOptionsHead = R"bash(
# The options of a command, and those of every command.
_camhost_options() {
    case $1 in
)bash";

constexpr const char* takesHead = R"bash(
# What follows "COMMAND OPTION", or "COMMAND ": words, or "@" and a kind of thing.
_camhost_takes() {
    case $1 in
)bash";

constexpr const char* bashBody = R"bash(    esac
}

# A word as it is meant, from how it is typed.
_camhost_plain() {
    case $1 in
    \'*) set -- "${1#\'}"; printf '%s' "${1%\'}" ;;
    \"*) set -- "${1#\"}"; sed 's/\\\(["\\$`]\)/\1/g' <<<"${1%\"}" ;;
    *) sed 's/\\\(.\)/\1/g' <<<"$1" ;;
    esac
}

# _camhost_things KIND PROGRAM OPTION...: what there is of that kind, one a line.
_camhost_things() {
    local kind=$1 key type rest
    shift
    if [[ $kind == @camera ]]; then
        "$@" -q list 2>/dev/null | while read -r _ key rest; do
            [[ $key == serial || $key == n/a ]] || printf '%s\n' "$key"
        done
        return
    fi
    "$@" -q props --plain 2>/dev/null | while IFS=$'\t' read -r key type rest; do
        case $kind,$type,${rest##*$'\t'} in
        @action,command,* | @setting,*) ;;
        @assignment,command,* | @assignment,*read-only*) continue ;;
        @assignment,*) ;;
        *) continue ;;
        esac
        [[ $kind == @setting && $type == command ]] || printf '%s\n' "$key"
    done
}

# _camhost_reply WORD KIND PROGRAM OPTION...
_camhost_reply() {
    local word=$1 kind=$2 plain thing ending=
    plain=$(_camhost_plain "$word")
    case $kind in
    @none) return ;;
    @file)
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$plain")
        return
        ;;
    @assignment)
        [[ $plain != *=* ]] || return
        compopt -o nospace 2>/dev/null
        ending==
        ;;
    esac
    shift
    while IFS= read -r thing; do
        [[ ${thing,,} == "${plain,,}"* ]] || continue
        # Behind an open quote blanks stand as they are.
        [[ $word == [\"\']* ]] || thing=$(printf '%q' "$thing")
        COMPREPLY+=("$thing$ending")
    done < <(_camhost_things "$@")
}

_camhost() {
    local IFS=$' \t\n' words=() given=() command= takes= word= last= i
    COMPREPLY=()
    # "=" parts words for bash, and not for camhost.
    for ((i = 1; i <= COMP_CWORD; ++i)); do
        if [[ ${#words[@]} -gt 0 && (${COMP_WORDS[i]} == '=' || ${COMP_WORDS[i - 1]} == '=') ]]; then
            words[${#words[@]} - 1]+=${COMP_WORDS[i]}
        else
            words+=("${COMP_WORDS[i]}")
        fi
    done
    last=$((${#words[@]} - 1))
    for ((i = 0; i < last; ++i)); do
        case ${words[i]} in
        --adapter=* | --rig=* | --camera=*) given+=("$(_camhost_plain "${words[i]}")") ;;
        --*=*) ;;
        -*)
            takes=$(_camhost_takes "$command ${words[i]}")
            [[ -n $takes ]] || continue
            ((i + 1 < last)) || break
            takes=
            i=$((i + 1))
            case ${words[i - 1]} in
            --adapter | --rig | --camera | -c)
                given+=("${words[i - 1]}" "$(_camhost_plain "${words[i]}")")
                ;;
            esac
            ;;
        *) [[ -n $command ]] || command=${words[i]} ;;
        esac
    done
    word=${words[last]}
    if [[ -z $takes ]]; then
        case $word in
        --*=*)
            takes=$(_camhost_takes "$command ${word%%=*}")
            word=${word#*=}
            ;;
        -*) takes=$(_camhost_options "$command") ;;
        *)
            if [[ -n $command ]]; then
                takes=$(_camhost_takes "$command ")
            else
                takes=$_camhost_commands
            fi
            ;;
        esac
    fi
    case $takes in
    '') ;;
    @*) _camhost_reply "$word" "$takes" "$(_camhost_plain "${COMP_WORDS[0]/#\~/$HOME}")" "${given[@]}" ;;
    *) mapfile -t COMPREPLY < <(compgen -W "$takes" -- "$word") ;;
    esac
}

complete -F _camhost camhost camhost.exe camhost.sh
)bash";

std::string optionNames(const std::vector<OptionOutline>& options) {
    std::vector<std::string> names;
    for (const OptionOutline& option : options) {
        names.insert(names.end(), option.names.begin(), option.names.end());
    }
    return join(names, " ");
}

// The patterns of one line of "case", such as "'grab -o' | 'grab --output'"; a command of
// "*" is any.
std::string patterns(const std::string& command, const OptionOutline& option) {
    const std::string before = command == "*" ? "*' " : "'" + command + " ";
    if (option.names.empty()) {
        return before + "'";
    }
    std::vector<std::string> all;
    for (const std::string& name : option.names) {
        all.push_back(before + name + "'");
    }
    return join(all, " | ");
}

std::string takesLines(const std::string& command, const std::vector<OptionOutline>& options) {
    std::string lines;
    for (const OptionOutline& option : options) {
        if (!option.value.empty()) {
            lines += "    " + patterns(command, option) + ") echo '" + completedBy(option.value) +
                     "' ;;\n";
        }
    }
    return lines;
}

}  // namespace

std::string bashCompletion(const ProgramOutline& program) {
    std::vector<std::string> names;
    std::string options;
    std::string takes;
    for (const CommandOutline& command : program.commands) {
        names.push_back(command.name);
        if (const std::string own = optionNames(command.options); !own.empty()) {
            options += "    '" + command.name + "') echo '" + own + "' ;;\n";
        }
        takes += takesLines(command.name, command.options);
    }
    return bashHead + ("_camhost_commands='" + join(names, " ") + "'\n") + bashOptionsHead +
           options + "    esac\n    echo '" + optionNames(program.options) + "'\n}\n" + takesHead +
           takes + takesLines("*", program.options) + bashBody;
}

}  // namespace camhost
