// SPDX-License-Identifier: MIT
#include "camhost/grab/grab_options.h"

namespace camhost {

void takeFirstSettings(COptionList& list, FirstSettings& first) {
    list.text("--pixelformat", first.pixelFormat, "mono8|raw8|rgb24", "set before the first frame");
    list.texts("--set", first.assignments, "KEY=VALUE",
               "a setting to make first (may be repeated)");
    list.flag("--manual", first.manual, "switch the automatics of these off first");
}

void takeOnLoss(COptionList& list, std::string& onLoss) {
    list.text("--on-loss", onLoss, "wait|fail|SECONDS", "when the camera goes away (10)");
}

void takeGrabOptions(COptionList& list, GrabOptions& grab) {
    list.countAboveZero("-n,--frames", grab.frames, "N", "how many (1)");
    list.text("-o,--output", grab.output, "PATTERN",
              "file name, numbered by %04d (frame_%04d.png); - is the output");
    list.flag("--force", grab.force, "write over files that are there");
    list.choice("--format", grab.format, {"png", "raw", "pnm", "none"},
                "of the files (by their name, else png)");
    takeFirstSettings(list, grab.first);
    list.choice("--bayer", grab.bayer, {"auto", "rggb", "grbg", "gbrg", "bggr"},
                "mosaic of raw frames (auto)");
    list.choice("--demosaic", grab.demosaic, {"none", "fast"}, "make colours of raw frames (none)");
    list.count("--skip", grab.skip, "K", "frames to leave out first (0)");
    list.flag("--fresh", grab.fresh, "drop frames that lie ready when they are waited for");
    list.secondsAboveZero("--timeout", grab.timeout, "S",
                          "seconds without a frame that end it (5)");
    takeOnLoss(list, grab.onLoss);
    list.flag("--reapply", grab.reapply, "write the settings again when a lost camera is back");
}

}  // namespace camhost
