// SPDX-License-Identifier: MIT
#include "virtual_cameras/rig/built_in_rigs.h"

namespace virtual_cameras {

namespace {

// Five cameras that differ in everything their users can meet.
constexpr std::string_view standard = R"toml(
rig = 1

# Monochrome, with the usual features. Exposure and its absolute value are one.
[[camera]]
name = "SIM Mono 23"
model = "SIM 23M"
serial = "1A2B"
formats = ["Y800 (640x480)", "Y800 (1280x960)"]
framerates = [60.0, 30.0, 15.0, 3.75]

[[camera.item]]
name = "Brightness"
Value.range = { min = 0, max = 255, value = 51 }

[[camera.item]]
name = "Contrast"
Value.range = { min = -10, max = 30, value = 0 }

[[camera.item]]
name = "Exposure"
Value.range = { min = 1, max = 10000, value = 333 }
Value.abs = { min = 0.0001, max = 1.0, shared = true }
Auto.switch = true

[[camera.item]]
name = "Gain"
Value.range = { min = 0, max = 1023, value = 100 }
Auto.switch = false
"One Push".button = { sets = "Value", to = 260 }

[[camera.item]]
name = "Trigger"
Enable.switch = false
Polarity.switch = false
Mode.strings = { choices = ["Edge", "Level"], value = "Edge" }
"Software Trigger".button = true

[[camera.item]]
name = "Partial scan"
"X Offset".range = { min = 0, max = 1280, value = 0 }
"Y Offset".range = { min = 0, max = 960, value = 0 }
"Auto-center".switch = true

# Colour, raw by default. Its names are awkward on purpose.
[[camera]]
name = "SIM Colour 5"
model = "SIM 5C"
serial = "77C01"
formats = ["BY8 (640x480)", "BY8 (1280x960)", "RGB24 (640x480)", "RGB32 (640x480)", "RGB32 (1280x960)"]
framerates = [3.75, 7.5, 15.0, 30.0, 59.999]

[[camera.item]]
name = "Brightness"
Value.range = { min = -64, max = 64, value = 0 }

[[camera.item]]
name = "Exposure"
Value.abs = { min = 0.0001, max = 30.0, value = 0.033333 }
Value.switch = true
Auto.switch = true

[[camera.item]]
name = "White Balance"
Auto.switch = false
"One Push".button = true
Red.range = { min = 0, max = 255, value = 64 }
Green.range = { min = 0, max = 255, value = 64 }
Blue.range = { min = 0, max = 255, value = 64 }
Mode.strings = { choices = ["Grey World", "Daylight 5500 K", "Glühlampe"], value = "Grey World" }

[[camera.item]]
name = "Saturation"
Value.range = { min = 100, max = -100, value = 0 }

[[camera.item]]
name = "SATURATION"
Value.range = { min = 0, max = 7, value = 3 }

[[camera.item]]
name = "Saturation"
Value.range = { min = -7, max = -1, value = -4 }
value.range = { min = 1, max = 2, value = 1 }

[[camera.item]]
name = "Binning factor"
Value.strings = { choices = ["1x1", "2x2", "4x4"], value = "1x1" }
Horizontal.range = { min = 1, max = 4, value = 1 }

[[camera.item]]
name = "Tone_Curve"
Enable.switch = false
Gamma.abs = { min = 0.1, max = 4.0, value = 1.0 }

[[camera.item]]
name = "Schärfe"
Value.range = { min = 0, max = 14, value = 7 }

[[camera.item]]
name = "Trigger"
Enable.switch = false
Polarity.switch = true

[[camera.item]]
name = "Strobe"
Mode.strings = { choices = ["", "exposure"], value = "" }
Polarity.strings = {}
Vendor.unknown = true

# Colour, and its current format is the raw mosaic under the name Y800.
[[camera]]
name = "SIM Colour 1"
model = "SIM 1C"
serial = "2F00D"
formats = ["BY8 (320x240)", "BY8 (640x480)", "BY8 (800x600)", "BY8 (1024x768)", "BY8 (1280x960)", "RGB24 (320x240)", "RGB24 (640x480)", "RGB24 (800x600)", "RGB24 (1024x768)", "RGB24 (1280x960)", "RGB32 (320x240)", "RGB32 (640x480)", "RGB32 (800x600)", "RGB32 (1024x768)", { name = "Y800 (640x480)", text = "Y800 (640x480)" }, "Y800 (640x480)"]
format = "Y800 (640x480)"
framerates = [30.0, 29.97, 10.0]

[[camera.item]]
name = "Contrast"
Value.range = { min = 0, max = 255, value = 51 }

[[camera.item]]
name = "Gain"
Value.abs = { min = -6.0, max = 24.0, value = 0.0 }

[[camera.item]]
name = "Focus"
Value.range = { min = 1000, max = 1000, value = 1000 }
"One Push".button = true

[[camera.item]]
name = "Vendor"
Data.unknown = "{6B1D2C61-31A9-4B6C-8B0E-52A2A9D0C7F4}"
Empty = {}

# One of the two models whose raw frames are aligned already.
[[camera]]
name = "QRM 52"
model = "QRM 52XAV07"
serial = "FEDCBA9876543210"
formats = ["BY8 (640x480)", "Y800 (640x480)"]
framerates = [30.0, 15.0]
colour = true
bayer = "GRBG"

[[camera.item]]
name = "Exposure"
Value.range = { min = -13, max = -1, value = -5 }
Auto.switch = false

[[camera.item]]
name = "Iris"
Auto.switch = true
"One Push".button = true

# An analogue frame grabber: norms and inputs, no frame rates, no serial number.
[[camera]]
name = "SIM Frame Grabber"
model = "SIM AFG"
norm = [
  { name = "PAL_B", formats = ["Y800 (768x576)", "RGB24 (384x288)", "RGB24 (768x576)"] },
  { name = "NTSC_M", formats = ["Y800 (640x480)", "RGB24 (640x480)"] },
  { name = "SECAM_L", formats = [] },
]
current_norm = "PAL_B"
channels = ["Composite 1", { name = "S-Video", text = "S-Vidéo" }, { name = "Zusatz ä", text = "Zusatz ä" }]
framerate = 25.0

[[camera.item]]
name = "Brightness"
Value.range = { min = 0, max = 10000, value = 5000 }

[[camera.item]]
name = "Contrast"
Value.range = { min = 0, max = 10000, value = 5000 }

[[camera.item]]
name = "Hue"
Value.range = { min = 180, max = -180, value = 0 }
)toml";

constexpr std::string_view empty = R"toml(
rig = 1
)toml";

// The two rigs in which the first of two cameras cannot be opened.
constexpr std::string_view failingOpen = R"toml(
rig = 1

[[camera]]
name = "SIM Broken 1"
model = "SIM 1B"
serial = "B0B0"
open = "fail"
open_text = "The video capture device does not answer."
formats = ["Y800 (640x480)"]
framerates = [30.0]

[[camera.item]]
name = "Brightness"
Value.range = { min = 0, max = 255, value = 51 }

[[camera]]
name = "SIM Mono 23"
model = "SIM 23M"
serial = "1A2B"
formats = ["Y800 (640x480)"]
framerates = [30.0]

[[camera.item]]
name = "Brightness"
Value.range = { min = 0, max = 255, value = 51 }
)toml";

constexpr std::string_view throwing = R"toml(
rig = 1

[[camera]]
name = "SIM Broken 1"
model = "SIM 1B µ"
serial = "B0B0"
open = "throw"
open_text = "The video capture device could not be initialised."
formats = ["Y800 (640x480)"]
framerates = [30.0]

[[camera]]
name = "SIM Mono 23"
model = "SIM 23M"
serial = "1A2B"
formats = ["Y800 (640x480)"]
framerates = [30.0]

[[camera.item]]
name = "Brightness"
Value.range = { min = 0, max = 255, value = 51 }
)toml";

// Widths and heights that nothing divides.
constexpr std::string_view odd = R"toml(
rig = 1

[[camera]]
name = "SIM Odd Mono"
serial = "DD1"
formats = ["Y800 (1x1)", "Y800 (7x5)", "Y800 (641x479)"]
framerates = [30.0]

[[camera]]
name = "SIM Odd Colour"
serial = "DD2"
formats = ["RGB32 (1x1)", "BY8 (7x5)", "BY8 (641x479)"]
format = "BY8 (641x479)"
framerates = [30.0]

[[camera]]
name = "SIM Odd Raw"
serial = "DD3"
formats = ["BY8 (7x5)", "Y800 (7x5)", "Y800 (641x479)"]
framerates = [30.0]
colour = true
)toml";

constexpr std::string_view noProperties = R"toml(
rig = 1

[[camera]]
name = "SIM Plain"
serial = "F1A1"
formats = ["Y800 (640x480)"]
framerates = [30.0]
properties = false
)toml";

// Lists that are missing, and lists that are empty.
constexpr std::string_view bare = R"toml(
rig = 1

[[camera]]
name = "SIM Missing"
serial = "BA1"

[[camera]]
name = "SIM Empty"
serial = "BA2"
formats = []
norm = []
channels = []
framerates = []
item = []

[[camera]]
name = "SIM No Rates"
serial = "BA3"
formats = ["Y800 (640x480)"]
framerates = []
)toml";

struct BuiltIn {
    std::string_view name;
    std::string_view toml;
};

constexpr BuiltIn builtIns[] = {
    {"standard", standard}, {"empty", empty}, {"failing-open", failingOpen},
    {"throwing", throwing}, {"odd", odd},     {"no-properties", noProperties},
    {"bare", bare}};

}  // namespace

std::optional<std::string_view> builtInRig(std::string_view name) {
    for (const BuiltIn& rig : builtIns) {
        if (rig.name == name) {
            return rig.toml;
        }
    }
    return std::nullopt;
}

std::vector<std::string_view> builtInRigNames() {
    std::vector<std::string_view> names;
    for (const BuiltIn& rig : builtIns) {
        names.push_back(rig.name);
    }
    return names;
}

}  // namespace virtual_cameras
