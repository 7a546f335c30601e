// SPDX-License-Identifier: MIT
#include "virtual_cameras/rig/rigs.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <tuple>

#include "virtual_cameras/control/environment.h"
#include "virtual_cameras/live/camera.h"
#include "virtual_cameras/live/grabber_state.h"
#include "virtual_cameras/live/session.h"
#include "virtual_cameras/rig/built_in_rigs.h"
#include "virtual_cameras/rig/rig_parser.h"

namespace virtual_cameras {

namespace {

std::optional<ScenePattern> patternCalled(std::string_view name) {
    struct Entry {
        std::string_view name;
        ScenePattern pattern;
    };
    constexpr Entry entries[] = {{"counter", ScenePattern::counter},
                                 {"colorchart", ScenePattern::colorChart},
                                 {"gradient", ScenePattern::gradient},
                                 {"noise", ScenePattern::noise},
                                 {"flat", ScenePattern::flat}};
    for (const Entry& entry : entries) {
        if (entry.name == name) {
            return entry.pattern;
        }
    }
    return std::nullopt;
}

std::optional<std::string> contentOf(const std::string& path) {
    std::ifstream file(std::filesystem::path(std::u8string(path.begin(), path.end())),
                       std::ios::binary);
    if (!file) {
        return std::nullopt;
    }
    return std::string(std::istreambuf_iterator<char>(file), {});
}

// A built-in rig, or a file of that name.
std::variant<Rig, std::string> rigOfEnvironment(const std::string& value) {
    auto builtIn = rigByName(value);
    if (std::holds_alternative<Rig>(builtIn)) {
        return builtIn;
    }
    const auto content = contentOf(value);
    if (!content) {
        return value + ": there is no such built-in rig, and no such file";
    }
    auto rig = rigByText(*content);
    if (const auto* message = std::get_if<std::string>(&rig)) {
        return value + ":" + *message;
    }
    return rig;
}

}  // namespace

Rig standardRig() {
    return std::get<Rig>(rigByName("standard"));
}

std::variant<Rig, std::string> rigByName(std::string_view name) {
    const std::size_t colon = name.find(':');
    const auto toml = builtInRig(name.substr(0, colon));
    if (!toml) {
        return "1:1: there is no built-in rig \"" + std::string(name) + "\"";
    }
    auto rig = rigByText(*toml);
    if (colon == std::string_view::npos || !std::holds_alternative<Rig>(rig)) {
        return rig;
    }
    const auto pattern = patternCalled(name.substr(colon + 1));
    if (!pattern) {
        return "1:" + std::to_string(colon + 2) + ": there is no scene \"" +
               std::string(name.substr(colon + 1)) + "\"";
    }
    for (RigCamera& camera : std::get<Rig>(rig).cameras) {
        camera.scene.pattern = *pattern;
    }
    return rig;
}

std::variant<Rig, std::string> rigByText(std::string_view toml) {
    auto parsed = parseRig(toml);
    if (const auto* error = std::get_if<RigError>(&parsed)) {
        return errorText(*error);
    }
    return std::get<Rig>(std::move(parsed));
}

std::vector<std::shared_ptr<Camera>> camerasOf(const Rig& rig) {
    std::vector<std::shared_ptr<Camera>> cameras;
    for (const RigCamera& camera : rig.cameras) {
        cameras.push_back(std::make_shared<Camera>(camera));
    }
    return cameras;
}

void replaceCameras(CWorldLock& world, const Rig& rig) {
    const std::vector<std::shared_ptr<Camera>> before = world->cameras;
    for (const std::shared_ptr<Camera>& camera : before) {
        unplugCamera(world, camera);
        camera->attached = false;
        camera->properties->orphan(world);
    }
    world->cameras = camerasOf(rig);
}

void applyEnvironment(CWorldLock& world) {
    if (const auto clock = environmentText("VIRTUAL_CAMERAS_CLOCK"); clock && !world->clockChosen) {
        if (*clock == "fast") {
            setClock(world, VIRTUAL_CAMERAS_CLOCK_FAST);
        } else if (*clock != "real") {
            std::ignore = std::fprintf(
                stderr, "VIRTUAL_CAMERAS_CLOCK: must be real or fast, not %s\n", clock->c_str());
        }
    }
    const auto value = environmentText("VIRTUAL_CAMERAS_RIG");
    if (!value || world->rigChosen) {
        return;
    }
    const auto rig = rigOfEnvironment(*value);
    if (const auto* message = std::get_if<std::string>(&rig)) {
        std::ignore = std::fprintf(stderr, "%s\n", message->c_str());
        replaceCameras(world, Rig{});
    } else {
        replaceCameras(world, std::get<Rig>(rig));
    }
}

}  // namespace virtual_cameras
