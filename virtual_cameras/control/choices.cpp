// SPDX-License-Identifier: MIT
#include "virtual_cameras/control/choices.h"

#include <cstdio>
#include <string>
#include <tuple>

#include "virtual_cameras/control/environment.h"
#include "virtual_cameras/files/files.h"
#include "virtual_cameras/live/deliveries.h"
#include "virtual_cameras/rig/rig_names.h"

namespace virtual_cameras {

namespace {

// Read and written under the world's lock only.
struct Choices {
    bool rigIsIn = false;
    // Through the control interface.
    bool rigChosen = false;
    bool clockChosen = false;
    std::string rigMistake;
};

Choices& choices(CWorldLock&) {
    static Choices instance;
    return instance;
}

void putIn(CWorldLock& world, const Rig& rig) {
    choices(world).rigIsIn = true;
    cameraList().replace(world, rig);
}

constexpr std::size_t longestRigFile = std::size_t{1} << 20U;

// A built-in rig, or a file of that name.
std::variant<Rig, std::string> rigOfEnvironment(const std::string& value) {
    auto builtIn = rigByName(value);
    if (std::holds_alternative<Rig>(builtIn)) {
        return builtIn;
    }
    if (isBuiltInRig(value)) {
        return value + ":" + std::get<std::string>(builtIn);
    }
    const auto content = fileContent(value, longestRigFile + 1);
    if (!content) {
        return value + ": there is no such built-in rig, and no such file" + builtInRigsHint(value);
    }
    if (content->size() > longestRigFile) {
        return value + ": a rig file has at most " + std::to_string(longestRigFile) + " bytes";
    }
    auto rig = rigByText(*content, folderOf(value));
    if (const auto* message = std::get_if<std::string>(&rig)) {
        return value + ":" + *message;
    }
    return rig;
}

void applyClock(CWorldLock& world) {
    const auto clock = environmentText("VIRTUAL_CAMERAS_CLOCK");
    if (!clock || choices(world).clockChosen) {
        return;
    }
    if (*clock == "fast") {
        deliveries().setClock(world, VIRTUAL_CAMERAS_CLOCK_FAST);
    } else if (*clock != "real") {
        std::ignore = std::fprintf(stderr, "VIRTUAL_CAMERAS_CLOCK: must be real or fast, not %s\n",
                                   clock->c_str());
    }
}

void applyRig(CWorldLock& world) {
    const auto value = environmentText("VIRTUAL_CAMERAS_RIG");
    choices(world).rigMistake.clear();
    if (!value || choices(world).rigChosen) {
        return;
    }
    const auto rig = rigOfEnvironment(*value);
    if (const auto* message = std::get_if<std::string>(&rig)) {
        choices(world).rigMistake = *message;
        if (!environmentText("VIRTUAL_CAMERAS_QUIET")) {
            std::ignore = std::fprintf(stderr, "%s\n", message->c_str());
        }
        putIn(world, Rig{});
    } else {
        putIn(world, std::get<Rig>(rig));
    }
}

}  // namespace

const CCameraList& presentCameras(CWorldLock& world) {
    if (!choices(world).rigIsIn) {
        putIn(world, standardRig());
    }
    return cameraList();
}

void chooseRig(CWorldLock& world, const Rig& rig) {
    choices(world).rigChosen = true;
    putIn(world, rig);
}

void chooseClock(CWorldLock& world, std::int32_t mode) {
    choices(world).clockChosen = true;
    deliveries().setClock(world, mode);
}

void applyEnvironment(CWorldLock& world) {
    applyClock(world);
    applyRig(world);
    presentCameras(world);
}

std::string rigMistake(CWorldLock& world) {
    return choices(world).rigMistake;
}

void forgetChoices(CWorldLock& world) {
    putIn(world, standardRig());
    deliveries().resetClock(world);
    choices(world).rigMistake.clear();
    choices(world).rigChosen = false;
    choices(world).clockChosen = false;
}

}  // namespace virtual_cameras
