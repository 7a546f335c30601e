// SPDX-License-Identifier: MIT
// Puts the parts of the page together.
import { Banner } from "./banner.js";
import { CameraBar } from "./camera_bar.js";
import { byId, setText } from "./dom.js";
import { EventLog } from "./event_log.js";
import { Histogram } from "./histogram.js";
import { listenToKeys } from "./keyboard.js";
import { Picture } from "./picture.js";
import { bayerOrders } from "./pixels.js";
import { Readout } from "./readout.js";
import { Recording } from "./recording.js";
import { SettingsFiles } from "./settings_files.js";
import { SettingsList } from "./settings_list.js";
import { Stage } from "./stage.js";
import { StateWatch } from "./state_watch.js";
import { StatusLine } from "./status_line.js";
import { Viewport } from "./viewport.js";

const watch = new StateWatch();
const viewport = new Viewport();
const banner = new Banner(watch);
const status = new StatusLine(watch);
const histogram = new Histogram();
const picture = new Picture(byId("picture"), viewport, { onFrame: showFrame, onSize: () => stage.show() });
const stage = new Stage(viewport, picture);
const readout = new Readout(byId("stage"), picture, viewport);
const bar = new CameraBar(watch, end);
const say = (text) => bar.say(text);
const recording = new Recording(picture, watch, say);
const settings = new SettingsList(watch);
new SettingsFiles(settings, watch, say);
new EventLog(watch);

function showFrame(frame) {
    const { order } = picture;
    byId("raw-tools").hidden = frame.pixelType !== "Raw8";
    setText(byId("order-auto"), frame.bayer ? `auto (${frame.bayer})` : "auto (none)");
    status.showFrame(frame, order);
    histogram.show(frame, order);
    readout.show();
    byId("stage").classList.toggle("lost-frame", frame.lost === true);
}

function chooseRaw() {
    picture.raw = byId("raw").value;
    picture.bayer = byId("order").value;
    histogram.renew();
    picture.repaint();
}

function next(select, values) {
    select.value = values[(values.indexOf(select.value) + 1) % values.length];
    chooseRaw();
}

function end() {
    watch.end();
    picture.end();
    banner.end("camhost has ended; this page can be closed");
}

byId("help-button").addEventListener("click", () => byId("help").showModal());
watch.onChange((state, isReachable) => {
    if (isReachable) {
        picture.rate = state.rate?.measured || 0;
    }
});
for (const id of ["raw", "order"]) {
    byId(id).addEventListener("change", chooseRaw);
}
byId("histogram-panel").addEventListener("toggle", () => histogram.renew());
for (const dialog of document.querySelectorAll("dialog")) {
    // A click beside a dialog closes it.
    dialog.addEventListener("click", (event) => event.target === dialog && dialog.close());
}
listenToKeys({
    stage,
    pressSnapshot: () => recording.snapshot(),
    pressLive: () => bar.pressLive(),
    nextOrder: () => next(byId("order"), ["auto", ...bayerOrders]),
    nextRaw: () => next(byId("raw"), ["colour", "grey", "mosaic"]),
});

chooseRaw();
watch.run();
picture.run();
