// SPDX-License-Identifier: MIT
// Snapshots and recordings, both saved by the browser.
import * as api from "./api.js";
import { byId, element, saveFile, setText } from "./dom.js";

export class Recording {
    #picture;
    #say;
    #button = byId("record");
    #progress = byId("record-progress");
    // The number of the recording that this page asked for: it is saved when it is ready.
    #ours = null;
    #recording = null;

    constructor(picture, watch, say) {
        this.#picture = picture;
        this.#say = say;
        byId("snapshot").addEventListener("click", () => this.snapshot());
        this.#button.addEventListener("click", () => this.#press());
        byId("record-save").addEventListener("click", () => this.#save());
        watch.onChange((state, isReachable) => isReachable && this.#show(state));
    }

    async snapshot() {
        const { frame } = this.#picture;
        if (!frame) {
            return;
        }
        this.#say("");
        try {
            saveFile(await this.#png(frame.number));
        } catch (error) {
            this.#say(`No snapshot: ${error.text ?? error.message}`);
        }
    }

    // The frame that is seen, or the newest once that is gone.
    async #png(number) {
        const { bayer, demosaic } = this.#form();
        try {
            return await api.snapshot(number, bayer, demosaic);
        } catch (error) {
            if (error.status !== 404) {
                throw error;
            }
            return api.snapshot(0, bayer, demosaic);
        }
    }

    #form() {
        const { raw, bayer } = this.#picture;
        return { bayer: bayer.toLowerCase(), demosaic: raw === "colour" ? "fast" : "none" };
    }

    get #isRunning() {
        return this.#recording !== null && !this.#recording.ready;
    }

    async #press() {
        this.#say("");
        const frames = this.#isRunning ? 0 : Number(byId("record-frames").value);
        const { bayer, demosaic } = this.#form();
        try {
            const { number } = await api.record(frames, bayer, demosaic);
            this.#ours = frames > 0 ? number : null;
        } catch (error) {
            this.#say(`No recording: ${error.text ?? error.message}`);
        }
    }

    #show(state) {
        this.#recording = state.recording || null;
        setText(this.#button, this.#isRunning ? "Cancel" : "Record");
        byId("record-save").hidden = !this.#recording?.ready;
        if (!this.#recording) {
            setText(this.#progress, "");
            return;
        }
        const { number, asked, done, ready, problem } = this.#recording;
        setText(this.#progress, [`${done} of ${asked}`, problem].filter(Boolean).join(", "));
        if (ready && number === this.#ours) {
            this.#ours = null;
            this.#save();
        }
    }

    // By the address itself: the browser writes it to a file as it comes.
    #save() {
        element("a", { href: "api/recording.zip", download: "recording.zip" }).click();
    }
}
