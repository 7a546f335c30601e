// SPDX-License-Identifier: MIT
// Zoom and pan by hand: wheel, drag, two fingers, and the buttons above the picture.
import { byId, setText } from "./dom.js";

export class Stage {
    #stage = byId("stage");
    #viewport;
    #picture;
    #fingers = new Map();

    constructor(viewport, picture) {
        this.#viewport = viewport;
        this.#picture = picture;
        const stage = this.#stage;
        new ResizeObserver(() => this.#resized()).observe(stage);
        stage.addEventListener("wheel", (event) => this.#wheel(event), { passive: false });
        stage.addEventListener("pointerdown", (event) => this.#press(event));
        stage.addEventListener("pointermove", (event) => this.#drag(event));
        for (const name of ["pointerup", "pointercancel"]) {
            stage.addEventListener(name, (event) => this.#fingers.delete(event.pointerId));
        }
        byId("zoom-fit").addEventListener("click", () => this.fit());
        byId("zoom-one").addEventListener("click", () => this.oneToOne());
        byId("zoom-in").addEventListener("click", () => this.zoom(1.25));
        byId("zoom-out").addEventListener("click", () => this.zoom(0.8));
        this.#resized();
    }

    fit() {
        this.#viewport.fit();
        this.show();
    }

    // One pixel of the camera on one of the screen.
    oneToOne() {
        this.#viewport.zoomTo(1 / devicePixelRatio);
        this.show();
    }

    zoom(factor, x, y) {
        this.#viewport.zoomBy(factor, x, y);
        this.show();
    }

    pan(dx, dy) {
        this.#viewport.pan(dx, dy);
        this.show();
    }

    show() {
        this.#picture.place();
        const { fits, scale } = this.#viewport;
        setText(byId("zoom"), `${Math.round(scale * devicePixelRatio * 100)} %`);
        byId("zoom-fit").setAttribute("aria-pressed", fits);
        byId("zoom-one").setAttribute("aria-pressed", !fits && Math.abs(scale * devicePixelRatio - 1) < 1e-6);
    }

    #resized() {
        this.#viewport.setStage(this.#stage.clientWidth, this.#stage.clientHeight);
        this.show();
    }

    #point(event) {
        const box = this.#stage.getBoundingClientRect();
        return {
            x: event.clientX - box.left - this.#stage.clientLeft,
            y: event.clientY - box.top - this.#stage.clientTop,
        };
    }

    #wheel(event) {
        event.preventDefault();
        const { x, y } = this.#point(event);
        const lines = event.deltaMode === WheelEvent.DOM_DELTA_LINE ? 16 : 1;
        this.zoom(Math.exp(-event.deltaY * lines * 0.0015), x, y);
    }

    #press(event) {
        if (event.button === 0) {
            this.#stage.setPointerCapture(event.pointerId);
            this.#fingers.set(event.pointerId, this.#point(event));
        }
    }

    #drag(event) {
        const before = this.#fingers.get(event.pointerId);
        if (!before) {
            return;
        }
        const now = this.#point(event);
        this.#fingers.set(event.pointerId, now);
        if (this.#fingers.size === 1) {
            this.pan(now.x - before.x, now.y - before.y);
            return;
        }
        const [other] = Array.from(this.#fingers)
            .filter(([finger]) => finger !== event.pointerId)
            .map(([, point]) => point);
        const distance = (point) => Math.max(1, Math.hypot(point.x - other.x, point.y - other.y));
        this.zoom(distance(now) / distance(before), (now.x + other.x) / 2, (now.y + other.y) / 2);
    }
}
