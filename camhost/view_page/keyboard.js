// SPDX-License-Identifier: MIT
// Keys for the picture and the way to the settings; none of them while something is typed
// or a control uses the key itself.
import { byId } from "./dom.js";

const typing = new Set(["INPUT", "SELECT", "TEXTAREA"]);
const panStep = 60;

export function listenToKeys({ stage, pressSnapshot, pressLive, nextOrder, nextRaw }) {
    const panning = {
        ArrowLeft: () => stage.pan(panStep, 0),
        ArrowRight: () => stage.pan(-panStep, 0),
        ArrowUp: () => stage.pan(0, panStep),
        ArrowDown: () => stage.pan(0, -panStep),
    };
    const keys = {
        "+": () => stage.zoom(1.25),
        "=": () => stage.zoom(1.25),
        "-": () => stage.zoom(0.8),
        0: () => stage.fit(),
        1: () => stage.oneToOne(),
        s: pressSnapshot,
        p: pressLive,
        b: nextOrder,
        m: nextRaw,
        "/": () => byId("search").focus(),
        "?": () => byId("help").showModal(),
    };
    document.addEventListener("keydown", (event) => {
        const target = event.target;
        const isBusy =
            typing.has(target.tagName) ||
            event.ctrlKey ||
            event.altKey ||
            event.metaKey ||
            document.querySelector("dialog[open]");
        if (isBusy) {
            return;
        }
        // Arrows scroll the page elsewhere.
        const action = target.id === "stage" ? panning[event.key] || keys[event.key] : keys[event.key];
        if (action) {
            event.preventDefault();
            action();
        }
    });
}
