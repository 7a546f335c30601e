// SPDX-License-Identifier: MIT
// A rig: what the virtual cameras are, as plain data. Made by the rig parser,
// read by everything that plays a camera.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "platform/windows.h"
#include "virtual_cameras/scenes/scenes.h"

namespace virtual_cameras {

struct RigRange {
    std::int32_t minimum = 0;
    std::int32_t maximum = 0;
    std::int32_t value = 0;
};

struct RigAbsolute {
    double minimum = 0.0;
    double maximum = 0.0;
    double value = 0.0;
    bool shared = false;  // one quantity with the range of the same element
};

struct RigSwitch {
    bool on = false;
};

struct RigButton {
    std::string setsElement;  // empty: a push is only counted
    double setsTo = 0.0;
};

struct RigStrings {
    std::vector<std::string> choices;
    std::string value;
};

// Only its identifier is known.
struct RigUnknown {};

struct RigInterface {
    GUID identifier;
    std::variant<RigRange, RigAbsolute, RigSwitch, RigButton, RigStrings, RigUnknown> kind;
};

struct RigElement {
    std::string name;
    GUID identifier;
    std::vector<RigInterface> interfaces;
};

struct RigItem {
    std::string name;
    GUID identifier;
    std::vector<RigElement> elements;
};

struct RigFormat {
    std::string name;  // narrow
    std::string text;  // what the wide text says; usually the same
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::optional<std::vector<double>> frameRates;  // instead of the camera's
};

struct RigNorm {
    std::string name;
    std::optional<std::vector<RigFormat>> formats;
};

struct RigChannel {
    std::string name;
    std::string text;
};

struct RigScene {
    const SceneKind* kind = &usualScene();
    SceneSettings settings;
};

enum class OpenBehaviour { succeeds, fails, throws };

struct RigCamera {
    std::string name;
    std::string model;
    std::optional<std::int64_t> serial;
    bool colour = false;
    BayerOrder bayer = BayerOrder::GBRG;
    RigScene scene;

    // A missing list and an empty one are two things.
    std::optional<std::vector<RigFormat>> formats;  // without norms
    std::string format;                             // the current one; empty: the first
    std::optional<std::vector<RigNorm>> norms;
    std::string norm;
    std::optional<std::vector<RigChannel>> channels;
    std::string channel;
    std::optional<std::vector<double>> frameRates;
    double frameRate = 25.0;  // where there is no list

    bool properties = true;  // false: no collection at all
    std::vector<RigItem> items;

    OpenBehaviour open = OpenBehaviour::succeeds;
    std::string openText;
    bool exclusive = false;  // a second grabber cannot open it
};

struct Rig {
    std::vector<RigCamera> cameras;
};

// How tests and tools name a camera: the serial text, or the name without one.
std::string cameraId(const RigCamera& camera);

}  // namespace virtual_cameras
