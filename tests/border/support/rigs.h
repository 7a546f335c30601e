// SPDX-License-Identifier: MIT
// The cameras that the tests of the border ask for.
#pragma once

// Every row, column, frame and colour plane of a frame can be told from its bytes.
// One camera per way in which the adapter copies frames:
//   1A2B   grey formats alone; four device properties
//   C0102  a colour camera that delivers RGB, so that Raw8 comes from RGB32
//   C0304  a colour camera at a grey format among others, so that Raw8 is shifted
//   C0506  the same of a model whose Raw8 frames are aligned already
inline constexpr const char* fourCameras = R"toml(
[[camera]]
name = "Border Grey"
model = "BG 1"
serial = "1A2B"
formats = ["Y800 (64x48)", "Y800 (96x64)"]
framerates = [30.0, 15.0]
scene = "counter"
[[camera.item]]
name = "Contrast"
Value.range = { min = 0, max = 255, value = 51 }
[[camera.item]]
name = "Exposure"
Value.range = { min = 1, max = 10000, value = 333 }
Value.abs = { min = 0.001, max = 2.0, value = 0.25 }
Auto.switch = false
[[camera.item]]
name = "Trigger"
Enable.switch = false

[[camera]]
name = "Border Colour"
model = "BC 1"
serial = "C0102"
formats = ["RGB32 (64x48)"]
scene = "counter"

[[camera]]
name = "Border Shifted"
model = "BC 2"
serial = "C0304"
formats = ["BY8 (64x48)", "Y800 (64x48)"]
format = "Y800 (64x48)"
scene = "counter"

[[camera]]
name = "Border Aligned"
model = "QRM 52XAV07"
serial = "C0506"
formats = ["BY8 (64x48)", "Y800 (64x48)"]
format = "Y800 (64x48)"
scene = "counter"
)toml";

inline constexpr const char* greySerial = "1A2B";
inline constexpr const char* colourSerial = "C0102";
inline constexpr const char* shiftedSerial = "C0304";
inline constexpr const char* alignedSerial = "C0506";

// The second of three throws while it is opened. Its model has an umlaut, a sharp s
// and a character beyond the first 65536.
inline constexpr const char* oneThrows = R"toml(
[[camera]]
name = "First"
serial = "1"
formats = ["Y800 (64x48)"]
[[camera]]
name = "Second"
model = "Gr\u00FC\u00DFe \U0001F4F7"
serial = "2"
formats = ["Y800 (64x48)"]
open = "throw"
open_text = "The lens cap is on."
[[camera]]
name = "Third"
serial = "3"
formats = ["Y800 (64x48)"]
)toml";

inline constexpr const char* oneDoesNotOpen = R"toml(
[[camera]]
name = "Silent"
serial = "5117"
formats = ["Y800 (64x48)"]
open = "fail"
)toml";
