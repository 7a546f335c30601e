// SPDX-License-Identifier: MIT
// The head of the page: which camera, start and stop, and the end of the view.
import * as api from "./api.js";
import { byId, setOptions, setText } from "./dom.js";

const optionText = ({ serial, name }) => (serial ? `${serial}  ${name}` : name);

export class CameraBar {
    #camera = byId("camera");
    #live = byId("live");
    #message = byId("message");
    #state = null;

    constructor(watch, onEnd) {
        watch.onChange((state, isReachable) => isReachable && this.#show(state));
        this.#camera.addEventListener("change", () =>
            this.#try(() => api.chooseCamera(Number(this.#camera.value))),
        );
        this.#live.addEventListener("click", () => this.pressLive());
        byId("end").addEventListener("click", () => byId("end-dialog").showModal());
        byId("end-dialog").addEventListener("close", () => {
            if (byId("end-dialog").returnValue === "end") {
                this.#try(async () => {
                    await api.end();
                    onEnd();
                });
            }
        });
    }

    pressLive() {
        if (this.#state && !this.#live.disabled) {
            this.#try(() => api.setLive(this.#state.live === "stopped"));
        }
    }

    // What went wrong with a wish that has no row of its own.
    say(text) {
        setText(this.#message, text);
        this.#message.hidden = !text;
    }

    async #try(wish) {
        this.say("");
        try {
            await wish();
        } catch (error) {
            this.say([error.text, error.hint].filter(Boolean).join(" – "));
            if (this.#state) {
                this.#show(this.#state);
            }
        }
    }

    #show(state) {
        this.#state = state;
        const options = state.cameras.map((camera) => ({
            value: String(camera.index),
            text: optionText(camera),
        }));
        setOptions(this.#camera, options, String(state.camera));
        const shown = state.cameras.find((camera) => camera.index === state.camera);
        document.title = shown ? `${shown.serial || shown.name} – camhost view` : "camhost view";
        setText(this.#live, state.live === "stopped" ? "Start" : "Stop");
        this.#camera.disabled = this.#live.disabled = byId("end").disabled = state.readOnly;
        byId("read-only").hidden = !state.readOnly;
    }
}
