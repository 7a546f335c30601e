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

// What happens to a camera. A time that it lasts is the event's.

// Also how it comes back: empty and missing values leave things as they were.
struct RigPlug {
    std::string format;
    std::optional<std::int64_t> serial;  // then it is another device of the same model
    std::size_t place = 0;               // in the list, from 1
};

struct RigUnplug {
    RigPlug back;
};

// No frame falls due.
struct RigStall {};

struct RigDrop {
    std::uint32_t frames = 1;
};

struct RigSlow {
    double framesPerSecond = 0.0;
};

enum class FailBehaviour { answersFalse, answersCode, throws, answersEmpty };

struct RigFail {
    std::string operation;    // as the call log shows it
    std::uint32_t count = 1;  // calls; 0: all from then on
    FailBehaviour how = FailBehaviour::answersFalse;
    std::int32_t code = 0;
    std::string text;
};

// One pulse.
struct RigTrigger {};

// Where among the camera's properties, and what stands there from then on.
struct RigChange {
    std::size_t item = 0;
    std::size_t element = 0;
    std::size_t interfaceIndex = 0;
    RigInterface value;
};

using RigAction =
    std::variant<RigUnplug, RigPlug, RigStall, RigDrop, RigSlow, RigFail, RigTrigger, RigChange>;

enum class EventTrigger { frame, time, call };

// Counts, and nanoseconds since the rig came in.
struct RigEvent {
    EventTrigger trigger = EventTrigger::time;
    std::string operation;  // whose calls count
    std::uint64_t first = 0;
    // From one start to the next; both 0: it starts once.
    std::uint64_t leastInterval = 0;
    std::uint64_t mostInterval = 0;
    std::uint32_t times = 0;  // 0: without end
    std::uint32_t seed = 1;   // for intervals between least and most
    std::uint64_t lasts = 0;  // nanoseconds; 0: until something else ends it
    RigAction action;
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
    std::vector<RigEvent> events;

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
