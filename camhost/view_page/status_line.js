// SPDX-License-Identifier: MIT
// The line under the picture: counts of the view, and what the page itself shows of it.
import { byId, setText } from "./dom.js";

const liveWords = {
    live: "Live",
    waiting: "Waiting",
    trigger: "Trigger",
    lost: "Lost",
    stopped: "Stopped",
};

const rate = (value) => (value === undefined || value === null ? "–" : value.toFixed(1));

export class StatusLine {
    #painted = [];
    #ages = [];

    constructor(watch) {
        setInterval(() => this.#showPainting(), 500);
        watch.onChange((state, isReachable) => {
            const chip = byId("live-state");
            chip.dataset.kind = isReachable ? state.live : "unreachable";
            setText(chip, isReachable ? liveWords[state.live] || state.live : "No answer");
            if (isReachable) {
                this.#showCounts(state);
            }
        });
    }

    showFrame(frame, order) {
        const now = performance.now();
        this.#painted.push(now);
        this.#ages.push((frame.ageMs || 0) + now - frame.arrived);
        setText(byId("frame-number"), String(frame.number));
        const size = `${frame.fullWidth} × ${frame.fullHeight} ${frame.pixelType}${order ? ` ${order}` : ""}`;
        setText(byId("frame-size"), frame.step > 1 ? `${size}, 1 of ${frame.step} shown` : size);
    }

    #showCounts(state) {
        setText(byId("rate"), `${rate(state.rate?.measured)} of ${rate(state.rate?.asked)} fps`);
        for (const [id, count] of [
            ["timeouts", state.timeouts],
            ["losses", state.losses],
            ["refusals", state.refusals],
        ]) {
            setText(byId(id), String(count ?? 0));
            byId(id).classList.toggle("counted", count > 0);
        }
    }

    // Over the last two seconds.
    #showPainting() {
        const now = performance.now();
        while (this.#painted.length > 0 && this.#painted[0] < now - 2000) {
            this.#painted.shift();
            this.#ages.shift();
        }
        if (this.#painted.length < 2) {
            setText(byId("shown"), "–");
            return;
        }
        const shown = ((this.#painted.length - 1) * 1000) / (this.#painted.at(-1) - this.#painted[0]);
        const ages = [...this.#ages].sort((a, b) => a - b);
        const age = ages[ages.length >> 1];
        setText(byId("shown"), `${shown.toFixed(1)} fps, ${age.toFixed(0)} ms old`);
    }
}
