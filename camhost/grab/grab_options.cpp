// SPDX-License-Identifier: MIT
#include "camhost/grab/grab_options.h"

namespace camhost {

void takeGrabOptions(COptionList& list, GrabOptions& grab) {
    list.countAboveZero("-n,--frames", grab.frames, "N", "how many (1)");
    list.text("-o,--output", grab.output, "PATTERN",
              "file name, numbered by %04d (frame_%04d.png); - is the output");
    list.flag("--force", grab.force, "write over files that are there");
    list.choice("--format", grab.format, {"png", "raw", "pnm", "none"},
                "of the files (by their name, else png)");
    list.text("--pixelformat", grab.pixelFormat, "mono8|raw8|rgb24", "set before the first frame");
    list.texts("--set", grab.assignments, "KEY=VALUE", "a setting to make first (may be repeated)");
    list.flag("--manual", grab.manual, "switch the automatics of these off first");
    list.choice("--bayer", grab.bayer, {"auto", "rggb", "grbg", "gbrg", "bggr"},
                "mosaic of raw frames (auto)");
    list.choice("--demosaic", grab.demosaic, {"none", "fast"}, "make colours of raw frames (none)");
    list.count("--skip", grab.skip, "K", "frames to leave out first (0)");
    list.secondsAboveZero("--timeout", grab.timeout, "S",
                          "seconds without a frame that end it (5)");
    list.text("--on-loss", grab.onLoss, "wait|fail|SECONDS", "when the camera goes away (10)");
}

}  // namespace camhost
