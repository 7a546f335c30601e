#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: check_portability.sh [ROOT]
# Fails where a source holds what only Microsoft's compiler or library refuses, as far as
# its text tells: no build here can.
# - An iterator of the standard library taken for a pointer. GNU's and LLVM's libraries have
#   plain pointers for the iterators of some classes; in Microsoft's they are classes.
# - A name of the standard library without its header, which another header of those two
#   libraries brings along.
# - Words of GNU's compilers and of POSIX in what Windows builds.
# - Numbers that become unsigned before their minus, and members that an alignment pads:
#   warnings there, and so errors.
set -euo pipefail
cd "${1:-"$(dirname "$0")/.."}"

mapfile -t sources < <(find . -name build -prune -o \
    \( -name '*.h' -o -name '*.c' -o -name '*.cpp' \) -print | sort)
if [ ${#sources[@]} -eq 0 ]; then
    echo "check_portability.sh: no sources found" >&2
    exit 1
fi

# What no build for Windows with Microsoft's tools compiles.
elsewhere='bench/native bench/peers cmake/msvc_abi fuzz/any_library scripts tests/camhost_wire
tests/channel tests/failing_allocations tests/failing_calls tests/process_per_test tests/soak
tests/visits tests/win32 tests/win32_subset'

# Headers, each with names that no other one promises. A header with "|" is one of several
# that do. <cstddef> and the iterators' functions come with every container.
headers='
algorithm: adjacent_find all_of any_of binary_search clamp copy_if copy_n count_if equal fill fill_n find find_if find_if_not for_each generate is_sorted is_sorted_until lower_bound max max_element min min_element minmax minmax_element mismatch none_of nth_element remove_if replace_if reverse rotate sort stable_sort transform unique upper_bound
array: array to_array
atomic: atomic atomic_flag atomic_thread_fence memory_order_acq_rel memory_order_acquire memory_order_relaxed memory_order_release memory_order_seq_cst
bit: bit_cast bit_width countl_zero countr_zero endian has_single_bit popcount
cctype: isalnum isalpha isdigit isprint isspace isxdigit tolower toupper
charconv: chars_format from_chars to_chars
chrono: chrono
cmath: ceil exp2 floor isfinite isinf isnan llround lround pow round signbit sqrt trunc
condition_variable: condition_variable condition_variable_any
cstdint: int16_t int32_t int64_t int8_t intptr_t uint16_t uint32_t uint64_t uint8_t uintptr_t
cstdio: FILE fclose fflush fgets fopen fprintf fputs fread fwrite printf snprintf sscanf
cstdlib: _Exit abort atof atoi atoll exit free getenv malloc strtod strtol strtoll strtoul strtoull
cstring: memchr memcmp memcpy memmove memset strchr strcmp strlen strncmp strstr
deque: deque
exception: current_exception exception exception_ptr make_exception_ptr rethrow_exception terminate
filesystem: filesystem
fstream: fstream ifstream ofstream
functional: function invoke less mem_fn reference_wrapper
future: async future packaged_task promise
iterator: back_inserter inserter istreambuf_iterator ostream_iterator
limits: numeric_limits
list: list
locale: locale numpunct
map: map multimap
memory: default_delete enable_shared_from_this make_shared make_unique shared_ptr unique_ptr weak_ptr
mutex: call_once lock_guard mutex once_flag recursive_mutex scoped_lock
mutex|shared_mutex: unique_lock
new: align_val_t bad_alloc nothrow
numeric: accumulate gcd iota midpoint
optional: make_optional nullopt optional
random: mt19937 mt19937_64 random_device uniform_int_distribution
regex: regex regex_match regex_replace regex_search smatch
set: multiset set
span: span
sstream: istringstream ostringstream stringstream
stdexcept: domain_error invalid_argument length_error logic_error out_of_range runtime_error
stop_token: stop_source stop_token
string: getline stod stoi stol stoll stoul stoull string to_string to_wstring wstring
string|string_view: string_view wstring_view
system_error: errc error_code system_category
thread: jthread this_thread thread
tuple: apply forward_as_tuple ignore make_tuple tie tuple
typeinfo: type_info
unordered_map: unordered_map
unordered_set: unordered_set
utility: as_const declval exchange forward in_place index_sequence make_pair move pair piecewise_construct swap
variant: get_if holds_alternative monostate variant visit
vector: vector
'

# Statement by statement, each on one line and without comments and texts.
problems=$(awk -v headers="$headers" -v elsewhere="$elsewhere" '
BEGIN {
    count = split(headers, rows, "\n")
    for (i = 1; i <= count; ++i) {
        size = split(rows[i], words, "[: ]+")
        for (j = 2; j <= size; ++j) header[words[j]] = words[1]
    }
    folders = split(elsewhere, folder, "[ \n]+")
}
function judge(statement,    algorithm, member) {
    # What returns an iterator of what it was given.
    algorithm = "std::(ranges::)?(find(_if|_if_not|_end|_first_of)?|adjacent_find|search(_n)?|" \
                "mismatch|lower_bound|upper_bound|(min|max)_element|partition(_point)?|" \
                "is_sorted_until|unique|remove(_if)?|rotate|copy(_if|_n)?|transform|" \
                "fill_n|c?begin|c?end|next|prev)\\("
    member = "(\\.|->)c?r?(begin|end)\\(\\)"
    if (statement ~ "auto ?\\* ?(const )?[A-Za-z_0-9]+ ?= ?" algorithm ||
        statement ~ "auto ?\\* ?(const )?[A-Za-z_0-9]+ ?= ?[^=]*" member)
        return "\"auto*\" from an iterator: say \"auto\""
    if (statement ~ "[A-Za-z_0-9>] ?\\* ?(const )?[A-Za-z_0-9]+ ?= ?" algorithm ||
        statement ~ "[A-Za-z_0-9>] ?\\* ?(const )?[A-Za-z_0-9]+ ?= ?[A-Za-z_0-9.>()-]*" member "( ?[-+][^;]*)?[;{]?$")
        return "a pointer from an iterator: take data() and a size"
    if (statement ~ "_cast<[^>]*\\* ?>\\([A-Za-z_0-9.>-]*" member "\\)")
        return "a pointer from an iterator: take data() and a size"
    if (statement ~ "(from_chars|to_chars|memcpy|memmove|memset|memcmp|memchr)\\(.*" member)
        return "an iterator where a pointer is asked for: take data() and a size"
    return ""
}
# What is wrong for Windows alone.
function judgeForWindows(statement) {
    if (statement ~ /__attribute__|__builtin_|__int128|__typeof__|__asm__|\[\[(gnu|clang)::/)
        return "a word of GNU'"'"'s compilers: put it behind their own #if"
    if (statement ~ /(^|[^A-Za-z_0-9:.>])(ssize_t|strcasecmp|strncasecmp|setenv|unsetenv|usleep|gmtime_r|localtime_r|M_PI)([^A-Za-z_0-9]|$)/ ||
        statement ~ /[^A-Za-z_0-9:]::(strcasecmp|setenv|unsetenv|usleep|gmtime_r|localtime_r)\(/)
        return "a name of POSIX: put it behind #if"
    if (statement ~ /-(2147483648|9223372036854775808)([^0-9.eEuUlL]|$)/)
        return "a number that is unsigned before its minus: write the one above it, and - 1"
    if (statement ~ /(struct|class|union) alignas/ ||
        (scope[depth] == "class" && statement ~ /^ ?(static )?alignas ?\(/ && statement !~ /^ ?static/))
        return "an alignment that pads a class: take members of that size"
    return ""
}
function report(line, what) { printf "%s:%d: %s\n", FILENAME, line, what }
function finish(    found) {
    gsub(/[ \t]+/, " ", statement)
    found = judge(statement)
    if (found == "" && isForWindows && !hidden) found = judgeForWindows(statement)
    if (found != "") report(first, found)
    if (statement ~ /\{$/)
        scope[++depth] = statement ~ /(^|[ >])(struct|class|union) [^()=]*\{$/ ? "class" : "other"
    if (statement ~ /\}$/ && depth > 0) --depth
    statement = ""
}
# The names of a line, each with the place where it stands first.
function noteNames(text,    name) {
    while (match(text, /std::[A-Za-z_0-9]+/)) {
        name = substr(text, RSTART + 5, RLENGTH - 5)
        text = substr(text, RSTART + RLENGTH)
        if (name == "ranges" && text ~ /^::[a-z_0-9]+/) {
            match(text, /^::[a-z_0-9]+/)
            name = substr(text, 3, RLENGTH - 2)
            text = substr(text, RLENGTH + 1)
        }
        if (name in header && !((FILENAME, name) in line)) {
            line[FILENAME, name] = FNR
            names[FILENAME] = names[FILENAME] " " name
        }
    }
}
# Branches that no compiler of Microsoft sees: 1 hides what follows, and 2 what its #else has.
function takeCondition(text) {
    if (text ~ /^#if/) {
        ++level
        branch[level] = 0
        if (text ~ /^#if(ndef +| +!defined\(|.*__clang__|.*__GNUC__|.*__has_feature)/ &&
            text ~ /_WIN32|__clang__|__GNUC__|__has_feature/)
            branch[level] = 1
        else if (text ~ /_WIN32|_MSC_VER/)
            branch[level] = 2
    } else if (text ~ /^#(else|elif)/) {
        branch[level] = branch[level] == 2 ? 1 : 0
    } else if (text ~ /^#endif/) {
        --level
    }
    hidden = 0
    for (i = 1; i <= level; ++i) if (branch[i] == 1) hidden = 1
}
function takeInclude(text,    name, beside) {
    name = text
    sub(/^#include *[<"]/, "", name)
    sub(/[>"].*/, "", name)
    beside = FILENAME
    sub(/[^\/]*$/, "", beside)
    includes[FILENAME] = includes[FILENAME] " ./" name " ./include/" name " " beside name
    if (text ~ /^#include *</) {
        has[FILENAME, name] = 1
        if (isForWindows && !hidden && name ~ /^(unistd|dirent|dlfcn|pthread|cpuid|strings|sys\/[a-z]+)\.h$/)
            report(FNR, "<" name "> is not there: put it behind #if")
    }
}
FNR == 1 {
    statement = rawEnd = ""
    isComment = 0
    depth = level = hidden = 0
    isForWindows = 1
    for (i = 1; i <= folders; ++i)
        if (index(FILENAME, "./" folder[i] "/") == 1) isForWindows = 0
}
{
    text = $0
    if (rawEnd != "") {
        place = index(text, rawEnd)
        if (place == 0) next
        text = "\"" substr(text, place + length(rawEnd) - 1)
        rawEnd = ""
    }
    if (isComment) {
        if (!sub(/^.*\*\//, "", text)) next
        isComment = 0
    }
    gsub(/'"'"'(\\.[0-9A-Fa-f]*|[^\\'"'"'])'"'"'/, "0", text)
    if (match(text, /R"[A-Za-z_]*\(/)) {
        rawEnd = ")" substr(text, RSTART + 2, RLENGTH - 3) "\""
        place = index(substr(text, RSTART), rawEnd)
        if (place != 0) {
            text = substr(text, 1, RSTART - 1) "\"" substr(text, RSTART + place - 2 + length(rawEnd))
            sub(/""/, "\"\"", text)
            rawEnd = ""
        } else {
            text = substr(text, 1, RSTART - 1)
        }
    }
    if (text ~ /^[ \t]*#/) {
        sub(/^[ \t]*#[ \t]*/, "#", text)
        if (text ~ /^#include/) takeInclude(text); else takeCondition(text)
        next
    }
    gsub(/"([^"\\]|\\.)*"/, "\"\"", text)
    sub(/(^|[ \t])\/\/.*/, "", text)
    gsub(/\/\*([^*]|\*[^\/])*\*\//, "", text)
    if (sub(/\/\*.*/, "", text)) isComment = 1
    noteNames(text)
    while (text != "") {
        if (statement ~ /^[ \t]*$/) { statement = ""; first = FNR }
        place = match(text, /[;{}]/)
        if (place == 0) { statement = statement " " text; break }
        statement = statement " " substr(text, 1, place)
        text = substr(text, place + 1)
        finish()
    }
}
# Whether the file includes one of the headers, by itself or through files of ours.
function includesOneOf(file, wanted,    parts, amount, i) {
    if (seen[file] == search) return 0
    seen[file] = search
    amount = split(wanted, parts, "|")
    for (i = 1; i <= amount; ++i) if ((file, parts[i]) in has) return 1
    amount = split(includes[file], parts, " ")
    for (i = 1; i <= amount; ++i)
        if (includesOneOf(parts[i], wanted)) return 1
    return 0
}
END {
    for (i = 1; i < ARGC; ++i) {
        file = ARGV[i]
        amount = split(names[file], used, " ")
        for (j = 1; j <= amount; ++j) {
            ++search
            if (!includesOneOf(file, header[used[j]]))
                printf "%s:%d: std::%s without <%s>\n", file, line[file, used[j]], used[j],
                       header[used[j]]
        }
    }
}' "${sources[@]}")

[ -z "$problems" ] || echo "$problems" >&2
count=0
[ -z "$problems" ] || count=$(wc -l <<<"$problems")
echo "${#sources[@]} files, $count problems"
[ -z "$problems" ]
