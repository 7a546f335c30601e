// SPDX-License-Identifier: MIT
#include "virtual_cameras/live/camera.h"

#include <algorithm>
#include <utility>

#include "virtual_cameras/live/grabber_state.h"

namespace virtual_cameras {

namespace {

template <class Entry>
std::size_t indexOf(const std::optional<std::vector<Entry>>& list, const std::string& name) {
    if (!list || name.empty()) {
        return 0;
    }
    const auto found = std::find_if(list->begin(), list->end(),
                                    [&](const Entry& entry) { return entry.name == name; });
    return static_cast<std::size_t>(found - list->begin());
}

}  // namespace

Camera::Camera(const RigCamera& description)
    : Camera(description, std::make_shared<CEventSchedule>(description.events)) {}

Camera::Camera(const RigCamera& description, std::shared_ptr<CEventSchedule> goingOn)
    : rig(description),
      id(cameraId(description)),
      channel(indexOf(description.channels, description.channel)),
      events(std::move(goingOn)),
      properties(new CPropertyTree(description)) {
    chooseNorm(indexOf(rig.norms, rig.norm));
    if (!hasNorms() && format) {
        chooseFormat(indexOf(rig.formats, rig.format));
    }
}

Camera::~Camera() {
    properties->release();
}

const std::optional<std::vector<RigFormat>>& Camera::formatsOf(std::size_t normIndex) const {
    return hasNorms() ? (*rig.norms)[normIndex].formats : rig.formats;
}

const RigFormat* Camera::currentFormat() const {
    return format ? &(*formatsOf(norm))[*format] : nullptr;
}

const std::optional<std::vector<double>>& Camera::ratesOf(const RigFormat& of) const {
    return of.frameRates ? of.frameRates : rig.frameRates;
}

void Camera::chooseNorm(std::size_t index) {
    norm = index;
    format.reset();
    const auto& formats = formatsOf(norm);
    frameRate = rig.frameRate;
    if (formats && !formats->empty()) {
        chooseFormat(0);
    }
}

// The rate stays where the new format allows it.
void Camera::chooseFormat(std::size_t index) {
    const bool first = !format;
    format = index;
    const auto& rates = ratesOf(*currentFormat());
    if (!rates || rates->empty()) {
        frameRate = rig.frameRate;
    } else if (first) {
        frameRate = rates->front();
    } else {
        chooseFrameRate(frameRate);
    }
}

bool Camera::chooseFormatCalled(std::string_view name) {
    const std::size_t count = hasNorms() ? rig.norms->size() : 1;
    for (std::size_t i = 0; i < count; ++i) {
        const auto& formats = formatsOf(i);
        for (std::size_t j = 0; formats && j < formats->size(); ++j) {
            if ((*formats)[j].name == name) {
                if (i != norm) {
                    chooseNorm(i);
                }
                chooseFormat(j);
                return true;
            }
        }
    }
    return false;
}

bool Camera::chooseFrameRate(double framesPerSecond) {
    const RigFormat* current = currentFormat();
    if (current == nullptr || !ratesOf(*current) || ratesOf(*current)->empty() ||
        !(framesPerSecond > 0.0)) {
        return false;
    }
    const auto& rates = *ratesOf(*current);
    const auto [lowest, highest] = std::minmax_element(rates.begin(), rates.end());
    frameRate = std::clamp(framesPerSecond, *lowest, *highest);
    return true;
}

double Camera::deliveryRate() const {
    return trouble.slowedTo > 0.0 ? std::min(trouble.slowedTo, frameRate) : frameRate;
}

void Camera::updateProperties(CWorldLock& world) const {
    const bool open = std::any_of(grabbers.begin(), grabbers.end(),
                                  [](const GrabberState* opener) { return !opener->lost; });
    properties->setAnswers(world, attached && plugged && open);
}

}  // namespace virtual_cameras
