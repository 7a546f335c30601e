// SPDX-License-Identifier: MIT
// What stands over the picture while no frames come: lost, waiting, trigger, stopped, or
// no answer of camhost at all. The seconds lie outside of what is read aloud.
import { byId, setText } from "./dom.js";

const cameraName = (state) => {
    const camera = state.cameras.find(({ index }) => index === state.camera);
    return camera ? camera.serial || camera.name : "The camera";
};

const words = {
    lost: (state) => `${cameraName(state)} is lost; it is being looked for`,
    waiting: () => "No frame",
    trigger: () => "Waiting for a trigger: trigger enable is on",
    stopped: () => "Live video is stopped",
};

export class Banner {
    #watch;
    #banner = byId("banner");
    #text = byId("banner-text");
    #seconds = byId("banner-seconds");

    constructor(watch) {
        this.#watch = watch;
        watch.onChange((state, isReachable) => this.#show(state, isReachable));
        setInterval(() => this.#count(), 100);
    }

    // The last word: nothing is shown after it.
    end(text) {
        this.#watch = null;
        this.#set("ended", text);
        setText(this.#seconds, "");
    }

    #show(state, isReachable) {
        if (!this.#watch) {
            return;
        }
        if (!isReachable) {
            this.#set("unreachable", "camhost does not answer; trying again");
        } else if (state.live === "live") {
            this.#set("live", "");
        } else {
            this.#set(state.live, words[state.live]?.(state) || state.live);
        }
        this.#count();
    }

    #set(kind, text) {
        document.body.dataset.live = kind;
        this.#banner.dataset.kind = kind;
        this.#banner.hidden = !text;
        setText(this.#text, text);
    }

    #count() {
        const counts = ["lost", "waiting", "trigger"].includes(this.#banner.dataset.kind);
        setText(this.#seconds, counts ? `${this.#watch.secondsWithoutFrame.toFixed(1)} s` : "");
    }
}
