// SPDX-License-Identifier: MIT
#include "camhost/doctor/doctor.h"

#include <algorithm>
#include <utility>

#include "camhost/base/failure.h"
#include "camhost/base/files.h"
#include "camhost/base/texts.h"

namespace camhost {

namespace {

constexpr const char* seeAbove = "mend what fails above, and try again";
constexpr const char* ownFault = "copy the adapter there anew; else it is its own start that fails";

bool samePath(const std::string& a, const std::string& b) {
    return folded(a) == folded(b);
}

bool sameBytes(const std::string& a, const std::string& b) {
    constexpr std::size_t largest = std::size_t{1} << 28U;
    try {
        return readFile(a, largest) == readFile(b, largest);
    } catch (const Failure&) {
        return false;
    }
}

std::string label(const CRecordChannel& camera) {
    return camera.selector() + " \"" + camera.name() + "\"";
}

}  // namespace

CDoctor::CDoctor(CSystem& system, std::string wantedAdapter, bool dialogs,
                 CDiagnoses::Watcher watcher)
    : m_system(system),
      m_wantedAdapter(std::move(wantedAdapter)),
      m_dialogs(dialogs),
      m_diagnoses(std::move(watcher)),
      m_files(system.librarySearch(), m_diagnoses) {}

void CDoctor::run() {
    if (!m_files.checkAdapter(m_wantedAdapter)) {
        return;
    }
    m_files.checkContents();
    if (m_files.hasExport()) {
        load();
    }
    checkSearchOrder();
}

void CDoctor::load() {
    GetVideoChannelEntry entry = nullptr;
    try {
        entry = m_system.loadAdapter(m_wantedAdapter);
        m_diagnoses.right({.check = "load", .text = "the adapter is loaded"});
        CCameras cameras(entry);
        m_loadedCaptureFile = m_system.librarySearch().loadedFile(nameOf(m_files.captureFile()));
        checkCameras(cameras);
        cameras.close();
    } catch (const Failure& failure) {
        m_diagnoses.wrong({.check = entry == nullptr ? "load" : "cameras",
                           .text = failure.message,
                           .remedy = m_diagnoses.countWrong() > 0 ? seeAbove : ownFault});
    }
}

void CDoctor::checkCameras(const CCameras& cameras) {
    const bool hadDialogs = checkDialogs();
    if (const std::string mistake = m_system.rigMistake(); !mistake.empty()) {
        m_diagnoses.wrong({.check = "cameras",
                           .text = mistake,
                           .remedy = "name another rig with --rig, or mend its file"});
        return;
    }
    std::vector<std::string> names;
    for (const auto& camera : cameras.all()) {
        names.push_back(label(*camera));
        if (camera->neverOpened()) {
            m_diagnoses.wrong({.check = "camera",
                               .subject = label(*camera),
                               .text = "it did not open; in use elsewhere?",
                               .remedy = "close what uses it, or unplug it and plug it in again"});
        }
    }
    if (!names.empty()) {
        m_diagnoses.right(
            {.check = "cameras", .text = std::to_string(names.size()) + ": " + join(names, ", ")});
    } else if (!hadDialogs) {
        m_diagnoses.right({.check = "cameras",
                           .text = "none",
                           .note = "is one plugged in, and its driver installed?"});
    }
}

// The guard hands out what it has read when it ends.
bool CDoctor::checkDialogs() {
    m_system.guardDialogs(false);
    const std::vector<Dialog> dialogs = m_system.dialogsClosed();
    m_system.guardDialogs(!m_dialogs);
    for (const Dialog& dialog : dialogs) {
        m_diagnoses.wrong(
            {.check = "message box",
             .text = dialog.caption + ": " + dialog.text,
             .remedy = m_diagnoses.countWrong() > 0
                           ? seeAbove
                           : "it is the adapter's own; its words are all that is known"});
    }
    return !dialogs.empty();
}

// A file that is taken although the system has another one of its name.
void CDoctor::checkHidden(const Resolved& resolved) {
    for (const SearchFolder& folder : m_system.librarySearch().folders()) {
        const std::string own = folder.path + resolved.library;
        if (folder.isSystem && isFile(own) && !samePath(own, resolved.file) &&
            !sameBytes(own, resolved.file)) {
            m_diagnoses.wrong({.check = "search order",
                               .subject = resolved.library,
                               .text = resolved.file + " is taken in the place of " + own,
                               .remedy = "remove or rename it, unless it was put there for this"});
        }
    }
}

void CDoctor::checkSearchOrder() {
    const std::size_t before = m_diagnoses.countWrong();
    for (const Resolved& resolved : m_files.resolved()) {
        checkHidden(resolved);
    }
    const std::string& capture = m_files.captureFile();
    if (!m_loadedCaptureFile.empty() && !capture.empty() &&
        !samePath(m_loadedCaptureFile, capture)) {
        m_diagnoses.wrong({.check = "search order",
                           .subject = nameOf(capture),
                           .text = m_loadedCaptureFile + " is taken in the place of " + capture,
                           .remedy = "remove or rename it"});
    }
    if (m_diagnoses.countWrong() == before) {
        m_diagnoses.right({.check = "search order",
                           .text = "no file is taken in the place of another",
                           .note = otherCopies()});
    }
}

// Of the capture library, where a search by its name alone would find them.
std::string CDoctor::otherCopies() const {
    const std::string& capture = m_files.captureFile();
    std::vector<std::string> others;
    if (capture.empty()) {
        return {};
    }
    for (const SearchFolder& folder : m_system.librarySearch().folders()) {
        const std::string other = folder.path + nameOf(capture);
        const auto same = [&](const std::string& known) { return samePath(known, other); };
        if (isFile(other) && !same(capture) && std::none_of(others.begin(), others.end(), same)) {
            others.push_back(other);
        }
    }
    return others.empty() ? ""
                          : "not taken, but for other programs in the way: " + join(others, ", ");
}

}  // namespace camhost
