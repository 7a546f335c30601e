// SPDX-License-Identifier: MIT
// What is under the pointer: column, row, and values as delivered.
import { byId, setText } from "./dom.js";
import { valueAt } from "./pixels.js";

function words(found) {
    const place = `${found.column}, ${found.row}`;
    if (found.red !== undefined) {
        return `${place}: R ${found.red}  G ${found.green}  B ${found.blue}`;
    }
    return found.letter ? `${place}: ${found.letter} ${found.value}` : `${place}: ${found.value}`;
}

export class Readout {
    #picture;
    #viewport;
    #point = null;
    #output = byId("readout");

    constructor(stage, picture, viewport) {
        this.#picture = picture;
        this.#viewport = viewport;
        stage.addEventListener("pointermove", (event) => {
            const box = stage.getBoundingClientRect();
            this.#point = {
                x: event.clientX - box.left - stage.clientLeft,
                y: event.clientY - box.top - stage.clientTop,
            };
            this.show();
        });
        stage.addEventListener("pointerleave", () => {
            this.#point = null;
            this.show();
        });
    }

    // Also called with each new frame, since the values change under a resting pointer.
    show() {
        const { frame, order } = this.#picture;
        let found = null;
        if (frame && this.#point) {
            const { column, row } = this.#viewport.at(this.#point.x, this.#point.y);
            found = valueAt(frame, column, row, order);
        }
        setText(this.#output, found ? words(found) : "–");
    }
}
