// SPDX-License-Identifier: MIT
// The histogram, with the share of pixels at either end of the scale marked as clipped.
import { byId, setText } from "./dom.js";
import { countValues } from "./pixels.js";

const interval = 200; // milliseconds between two countings
const names = { grey: "", red: "R ", green: "G ", blue: "B " };

function share(count, total) {
    const percent = (100 * count) / total;
    return percent > 0 && percent < 0.1 ? "<0.1 %" : `${percent.toFixed(1)} %`;
}

export class Histogram {
    #panel = byId("histogram-panel");
    #canvas = byId("histogram");
    #low = byId("clipped-low");
    #high = byId("clipped-high");
    #counted = -interval;

    show(frame, order) {
        const now = performance.now();
        if (!this.#panel.open || now - this.#counted < interval) {
            return;
        }
        this.#counted = now;
        const channels = countValues(frame, order);
        this.#draw(channels);
        this.#mark(this.#low, channels, 0, "black");
        this.#mark(this.#high, channels, 255, "white");
    }

    // Counts anew at the next frame, or now when the order of a mosaic was changed.
    renew() {
        this.#counted = -interval;
    }

    #draw(channels) {
        const { width, height } = this.#canvas;
        const context = this.#canvas.getContext("2d");
        const style = getComputedStyle(this.#canvas);
        // The ends are left out of the height: a clipped picture would hide all the rest.
        const inner = Object.values(channels).flatMap((counts) => Array.from(counts.subarray(1, 255)));
        // Roots of the counts: what is rare is seen beside what is frequent.
        const top = Math.max(1, ...inner);
        context.clearRect(0, 0, width, height);
        const bar = width / 256;
        for (const [name, counts] of Object.entries(channels)) {
            context.fillStyle = style.getPropertyValue(`--channel-${name}`);
            for (let value = 0; value < 256; ++value) {
                const length = Math.sqrt(Math.min(1, counts[value] / top)) * height;
                const shown = counts[value] > 0 ? Math.max(1, length) : 0;
                // A bar with a cap: a channel is seen behind the others, too.
                context.globalAlpha = 0.45;
                context.fillRect(value * bar, height - shown, bar, shown);
                context.globalAlpha = 1;
                context.fillRect(value * bar, height - shown, bar, Math.min(2, shown));
            }
        }
        context.fillStyle = style.getPropertyValue("--clipped");
        for (const value of [0, 255]) {
            if (Object.values(channels).some((counts) => counts[value] > 0)) {
                context.fillRect(value === 0 ? 0 : width - 3, 0, 3, height);
            }
        }
    }

    #mark(output, channels, value, word) {
        const clipped = Object.entries(channels).filter(([, counts]) => counts[value] > 0);
        output.classList.toggle("clipped", clipped.length > 0);
        const texts = clipped.map(([name, counts]) => {
            const total = counts.reduce((sum, count) => sum + count, 0);
            return `${names[name]}${share(counts[value], total)}`;
        });
        setText(
            output,
            texts.length > 0 ? `${value}: ${texts.join(", ")} clipped ${word}` : `${value}: none`,
        );
    }
}
