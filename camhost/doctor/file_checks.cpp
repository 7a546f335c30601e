// SPDX-License-Identifier: MIT
#include "camhost/doctor/file_checks.h"

#include <algorithm>
#include <iterator>
#include <unordered_set>
#include <utility>

#include "camhost/base/failure.h"
#include "camhost/base/files.h"
#include "camhost/base/texts.h"

namespace camhost {

namespace {

constexpr std::size_t largestLibrary = std::size_t{1} << 28U;

constexpr const char* entryPoint = "GetVideoChannel";
constexpr const char* captureStart = "orv_caplb11";

constexpr const char* adapterRemedy = "copy the adapter for 64-bit Windows (x64) there anew";
constexpr const char* captureRemedy =
    "copy the capture library for 64-bit Windows (x64) there anew, from its maker's installation";

const char* kindName(NameKind kind) {
    switch (kind) {
        case NameKind::Gnu:
            return "GNU's";
        case NameKind::Microsoft:
            return "Microsoft's";
        case NameKind::Plain:
            break;
    }
    return "plain C";
}

// Who brings a library that is not there, by the start of its name.
std::string whereFrom(const std::string& library) {
    const std::string name = lowered(library);
    const auto startsWithAny = [&](const std::vector<const char*>& starts) {
        return std::any_of(starts.begin(), starts.end(),
                           [&](const char* start) { return name.starts_with(start); });
    };
    if (startsWithAny({"msvcp140d", "vcruntime140d", "vcruntime140_1d", "ucrtbased"})) {
        return "that belongs to a debug build: take a release build";
    }
    if (startsWithAny({"msvcp", "vcruntime", "ucrtbase", "api-ms-win-crt"})) {
        return "install the Visual C++ redistributable for x64";
    }
    if (startsWithAny({"libgcc", "libstdc++", "libwinpthread", "libc++"})) {
        return "copy the compiler's " + library + " beside camhost.exe, or link it in statically";
    }
    return "install what brings " + library;
}

// At most three, and how many more there are.
std::string someOf(const std::vector<std::string>& names) {
    constexpr std::size_t few = 3;
    const auto shown = static_cast<std::ptrdiff_t>(std::min(few, names.size()));
    std::string text = join({names.begin(), names.begin() + shown}, ", ");
    if (names.size() > few) {
        text += " and " + std::to_string(names.size() - few) + " more";
    }
    return text;
}

}  // namespace

// Nothing when the line that says why was wrong.
std::optional<DllFile> CFileChecks::readLibrary(const std::string& file, const char* check,
                                                const char* remedy) {
    std::string reason;
    std::optional<DllFile> library;
    try {
        library = readDllFile(readFile(file, largestLibrary), reason);
    } catch (const Failure& failure) {
        reason = failure.message;
    }
    if (!library) {
        reason = file + " is damaged, or no library: " + reason;
    } else if (!library->isLibrary) {
        reason = file + " is a program, and no library";
    } else if (library->machine != machineX64) {
        reason = file + " is for " + machineName(library->machine) + ", and not for x64";
    } else {
        m_diagnoses.right({.check = check, .text = "a library for x64"});
        return library;
    }
    m_diagnoses.wrong({.check = check, .text = reason, .remedy = remedy});
    return std::nullopt;
}

void CFileChecks::tellMissingAdapter(const std::string& wanted) {
    std::string remedy = wanted.empty() ? "put it beside camhost.exe, or name it with --adapter"
                                        : "name the adapter file behind --adapter";
    for (const SearchFolder& folder : m_search.folders()) {
        if (const std::string other = folder.path + nameOf(m_adapterFile); isFile(other)) {
            remedy += "; there is one " + folder.what + ": " + other;
            break;
        }
    }
    m_diagnoses.wrong({.check = "adapter",
                       .text = m_adapterFile + " is not there" +
                               (wanted.empty() ? " (looked for beside camhost)" : ""),
                       .remedy = remedy});
}

bool CFileChecks::checkAdapter(const std::string& wanted) {
    m_adapterFile = m_search.adapterPath(wanted);
    if (!isFile(m_adapterFile)) {
        tellMissingAdapter(wanted);
        return false;
    }
    m_diagnoses.right(
        {.check = "adapter",
         .text = m_adapterFile + (wanted.empty() ? " (beside camhost)" : " (named by --adapter)")});
    auto adapter = readLibrary(m_adapterFile, "adapter file", adapterRemedy);
    m_adapter = adapter ? std::move(*adapter) : DllFile();
    return m_adapter.isLibrary;
}

void CFileChecks::checkContents() {
    checkExport();
    for (const DllImport& import : m_adapter.imports) {
        checkImport("import", import, {});
    }
    for (const DllImport& import : m_adapter.delayedImports) {
        const std::string count = std::to_string(import.functions.size());
        if (lowered(import.library).starts_with(captureStart)) {
            m_diagnoses.right({.check = "delayed import",
                               .subject = import.library,
                               .text = count + " functions, bound at the first call"});
            checkCaptureLibrary(import);
        } else {
            checkImport("delayed import", import, {});
        }
    }
}

void CFileChecks::checkExport() {
    const auto& exports = m_adapter.exports;
    m_hasExport = std::find(exports.begin(), exports.end(), entryPoint) != exports.end();
    if (m_hasExport) {
        m_diagnoses.right({.check = "export", .text = entryPoint});
        return;
    }
    m_diagnoses.wrong({.check = "export",
                       .text = std::string("it does not export ") + entryPoint,
                       .remedy = "it is another library: name the camera adapter with --adapter"});
}

// The folder, where there is one, is looked into before all others.
void CFileChecks::checkImport(const char* check, const DllImport& import,
                              const std::string& firstFolder) {
    const std::string beside = firstFolder + import.library;
    const FoundLibrary found = !firstFolder.empty() && isFile(beside)
                                   ? FoundLibrary{.file = beside}
                                   : m_search.find(import.library, import.functions);
    if (found.file.empty()) {
        m_diagnoses.wrong({.check = check,
                           .subject = import.library,
                           .text = "it can not be loaded: " + found.reason,
                           .remedy = whereFrom(import.library)});
        return;
    }
    m_resolved.push_back({import.library, found.file});
    if (!found.missing.empty()) {
        m_diagnoses.wrong(
            {.check = check,
             .subject = import.library,
             .text = found.file + " lacks " + someOf(found.missing),
             .remedy = "it is another version than is wanted: " + whereFrom(import.library)});
        return;
    }
    m_diagnoses.right({.check = check, .subject = import.library, .text = found.file});
}

void CFileChecks::checkCaptureLibrary(const DllImport& import) {
    const std::string folder = folderOf(m_adapterFile);
    m_captureFile = folder + import.library;
    if (!isFile(m_captureFile)) {
        m_diagnoses.wrong({.check = "capture library",
                           .text = m_captureFile + " is not there",
                           .remedy = "put the capture library beside the adapter, under that name: "
                                     "no other folder is searched"});
        return;
    }
    m_diagnoses.right(
        {.check = "capture library", .text = m_captureFile + " (beside the adapter)"});
    const auto library = readLibrary(m_captureFile, "capture library file", captureRemedy);
    if (!library) {
        return;
    }
    checkNames(import, *library);
    for (const DllImport& own : library->imports) {
        checkImport("capture library import", own, folder);
    }
}

void CFileChecks::checkNames(const DllImport& import, const DllFile& library) {
    const NameKind wanted = kindOfNames(import.functions);
    const NameKind found = kindOfNames(library.exports);
    if (wanted == found) {
        m_diagnoses.right({.check = "kind of ABI",
                           .text = std::string(kindName(found)) + ", that of the adapter"});
    } else {
        m_diagnoses.wrong(
            {.check = "kind of ABI",
             .text = std::string("the adapter wants ") + kindName(wanted) +
                     ", the capture library has " + kindName(found),
             .remedy = "take the adapter that was built with the compiler of the capture library"});
    }
    const std::unordered_set<std::string> exports(library.exports.begin(), library.exports.end());
    std::vector<std::string> missing;
    std::copy_if(import.functions.begin(), import.functions.end(), std::back_inserter(missing),
                 [&](const std::string& name) { return !exports.contains(name); });
    const std::string count = std::to_string(import.functions.size());
    if (missing.empty()) {
        m_diagnoses.right({.check = "functions", .text = "all " + count + " are exported by it"});
        return;
    }
    m_diagnoses.wrong({.check = "functions",
                       .text = std::to_string(missing.size()) + " of " + count +
                               " are not exported by it: " + someOf(missing),
                       .remedy = "take the version of the capture library that the adapter was "
                                 "built for"});
}

}  // namespace camhost
