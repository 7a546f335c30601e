// SPDX-License-Identifier: MIT
// The picture: asks for one frame at a time, and for the next one when it is painted, so
// that the newest wins and a slow page asks less often. Zoom and pan lie in the viewport.
import * as api from "./api.js";
import { orderOf, paint } from "./pixels.js";
import { animationFrame, pause, seen } from "./time.js";

// Above this many bytes a second a picture that is shown smaller is reduced first: about
// 25 frames of 1280x960 in colour.
const richBytesPerSecond = 25 * 1280 * 960 * 3;

export class Picture {
    // How a mosaic is shown ("colour", "grey", "mosaic"), and its order ("auto", "RGGB", ...).
    raw = "colour";
    bayer = "auto";
    rate = 0; // frames a second
    frame = null;

    #canvas;
    #context;
    #viewport;
    #after = 0;
    #image = null;
    #request = null;
    #asked = 1; // the step of the request
    #ended = false;

    // `onFrame(frame)` is called after each painting, `onSize()` before it when the size of
    // the whole picture is another one.
    constructor(canvas, viewport, { onFrame, onSize }) {
        this.#canvas = canvas;
        this.#context = canvas.getContext("2d", { alpha: false });
        this.#viewport = viewport;
        this.onFrame = onFrame;
        this.onSize = onSize;
    }

    get order() {
        return this.frame ? orderOf(this.frame, this.bayer) : null;
    }

    async run() {
        while (!this.#ended) {
            await seen();
            try {
                await this.#next();
            } catch (error) {
                if (error.name !== "AbortError") {
                    await pause(500);
                }
            }
        }
    }

    end() {
        this.#ended = true;
        this.#request?.abort();
    }

    // Places the canvas as the viewport says, and asks for another step when that changed.
    place() {
        const { left, top, width, height } = this.#viewport.place();
        const style = this.#canvas.style;
        style.width = `${width}px`;
        style.height = `${height}px`;
        style.transform = `translate(${left}px, ${top}px)`;
        this.#canvas.classList.toggle("pixels", this.#viewport.scale * devicePixelRatio >= 1);
        if (this.frame && this.#asked !== this.#step()) {
            this.#after = Math.min(this.#after, this.frame.number - 1);
            this.#request?.abort();
        }
    }

    // Paints the present frame once more, after another way to show it was chosen.
    repaint() {
        if (this.frame) {
            this.#paint(this.frame);
        }
    }

    async #next() {
        this.#request = new AbortController();
        this.#asked = this.#step();
        const frame = await api.frame(this.#after, this.#asked, this.#request.signal);
        if (!frame) {
            return;
        }
        this.#after = frame.number;
        await animationFrame();
        this.#paint(frame);
    }

    #step() {
        const frame = this.frame;
        const bytes = frame ? frame.fullWidth * frame.fullHeight * (frame.pixelType === "RGB24" ? 3 : 1) : 0;
        return this.#viewport.step(devicePixelRatio, bytes * this.rate > richBytesPerSecond);
    }

    #paint(frame) {
        const canvas = this.#canvas;
        if (!this.#image || this.#image.width !== frame.width || this.#image.height !== frame.height) {
            canvas.width = frame.width;
            canvas.height = frame.height;
            this.#image = this.#context.createImageData(frame.width, frame.height);
        }
        const isNewSize =
            !this.frame ||
            this.frame.fullWidth !== frame.fullWidth ||
            this.frame.fullHeight !== frame.fullHeight;
        this.frame = frame;
        paint(frame, new Uint32Array(this.#image.data.buffer), this.raw, this.order);
        this.#context.putImageData(this.#image, 0, 0);
        canvas.dataset.number = frame.number;
        canvas.dataset.camera = frame.camera;
        canvas.dataset.step = frame.step;
        canvas.dataset.pixelType = frame.pixelType;
        if (isNewSize) {
            this.#viewport.setPicture(frame.fullWidth, frame.fullHeight);
            this.onSize();
        }
        this.onFrame(frame);
    }
}
