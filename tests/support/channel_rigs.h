// SPDX-License-Identifier: MIT
// Small cameras for tests, as texts of the rig language.
#pragma once

#include <string>
#include <string_view>

namespace rigs {

// A camera with the scene that numbers its own frames, rows and columns.
// `formats` is the inside of the list; `rest` is more text of the rig language.
inline std::string camera(std::string_view name, std::string_view serial, std::string_view formats,
                          std::string_view rest = "") {
    std::string text = "[[camera]]\nname = \"" + std::string(name) + "\"\n";
    if (!serial.empty()) {
        text += "serial = \"" + std::string(serial) + "\"\n";
    }
    text += "formats = [" + std::string(formats) + "]\nscene = \"counter\"\n";
    return text + std::string(rest) + "\n";
}

// 8 x 4 pixels each.
inline std::string grey(std::string_view rest = "") {
    return camera("SIM Mono 23", "1A2B", "\"Y800 (8x4)\"", rest);
}
// Raw8 by default, through an RGB32 sink.
inline std::string color(std::string_view rest = "") {
    return camera("SIM Color 23", "3C4D", "\"RGB24 (8x4)\"", rest);
}
// Raw8 by default, straight from the sensor: the last grey format is current.
inline std::string raw(std::string_view rest = "") {
    return camera("SIM Raw 23", "5E6F", "\"BY8 (8x4)\", \"Y800 (8x4)\"", rest);
}

inline std::string range(std::string_view item, int minimum, int maximum, int value) {
    return "[[camera.item]]\nname = \"" + std::string(item) +
           "\"\nValue.range = { min = " + std::to_string(minimum) +
           ", max = " + std::to_string(maximum) + ", value = " + std::to_string(value) + " }\n";
}

// An exposure with an absolute value of 0.04 and an automatic that is on.
inline constexpr std::string_view exposure = R"(
[[camera.item]]
name = "Exposure"
Value.abs = { min = 0.0001, max = 30.0, value = 0.04 }
Auto.switch = true
)";
// The same with a switch on the value itself.
inline constexpr std::string_view exposureWithValueSwitch = R"(
[[camera.item]]
name = "Exposure"
Value.abs = { min = 0.0001, max = 30.0, value = 0.04 }
Value.switch = true
Auto.switch = true
)";
inline constexpr std::string_view trigger = R"(
[[camera.item]]
name = "Trigger"
Enable.switch = false
Polarity.switch = false
)";

}  // namespace rigs
