// SPDX-License-Identifier: MIT
// Which part of the picture is seen, and how large. Lengths are those of the page; one
// pixel of the screen is 1 / ratio of them. Pure: knows no document.

const largest = 64;
const smallest = 0.02;

export class Viewport {
    // `fits` while the picture follows the size of the stage.
    fits = true;
    scale = 1;
    centreX = 0.5;
    centreY = 0.5;
    stage = { width: 1, height: 1 };
    picture = { width: 1, height: 1 };

    setStage(width, height) {
        this.stage = { width: Math.max(1, width), height: Math.max(1, height) };
        this.#settle();
    }

    setPicture(width, height) {
        this.picture = { width, height };
        this.#settle();
    }

    fit() {
        this.fits = true;
        this.centreX = this.centreY = 0.5;
        this.#settle();
    }

    // Zooms to a scale; the point of the stage keeps showing what it shows.
    zoomTo(scale, x = this.stage.width / 2, y = this.stage.height / 2) {
        const before = this.place();
        const column = (x - before.left) / this.scale;
        const row = (y - before.top) / this.scale;
        this.fits = false;
        this.scale = Math.min(largest, Math.max(smallest, scale));
        this.centreX = (column + (this.stage.width / 2 - x) / this.scale) / this.picture.width;
        this.centreY = (row + (this.stage.height / 2 - y) / this.scale) / this.picture.height;
        this.#settle();
    }

    zoomBy(factor, x, y) {
        this.zoomTo(this.scale * factor, x, y);
    }

    // Moves what is seen: the picture goes along with the hand.
    pan(dx, dy) {
        this.centreX -= dx / (this.scale * this.picture.width);
        this.centreY -= dy / (this.scale * this.picture.height);
        this.#settle();
    }

    place() {
        const width = this.picture.width * this.scale;
        const height = this.picture.height * this.scale;
        return {
            left: this.stage.width / 2 - this.centreX * width,
            top: this.stage.height / 2 - this.centreY * height,
            width,
            height,
        };
    }

    // Column and row of the whole picture under a point of the stage, which may lie outside.
    at(x, y) {
        const { left, top } = this.place();
        return { column: Math.floor((x - left) / this.scale), row: Math.floor((y - top) / this.scale) };
    }

    // Of how many pixels of the camera one is enough, for a screen with `ratio` pixels to
    // a length of the page: 1, 2, 4 or 8. `rich` pictures rather lose detail than frames.
    step(ratio, rich) {
        const wanted = 1 / (this.scale * ratio);
        let step = 1;
        while (step < 8 && (rich ? step < wanted : step * 2 <= wanted)) {
            step *= 2;
        }
        return step;
    }

    #settle() {
        const { stage, picture } = this;
        if (this.fits) {
            this.scale = Math.min(stage.width / picture.width, stage.height / picture.height);
        }
        this.centreX = settled(this.centreX, stage.width, picture.width * this.scale);
        this.centreY = settled(this.centreY, stage.height, picture.height * this.scale);
    }
}

// A picture smaller than the stage lies in its middle; a larger one leaves no gap.
function settled(centre, stage, picture) {
    if (picture <= stage) {
        return 0.5;
    }
    const half = stage / 2 / picture;
    return Math.min(1 - half, Math.max(half, centre));
}
