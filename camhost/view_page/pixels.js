// SPDX-License-Identifier: MIT
// From the bytes of a frame as delivered to pixels of a canvas, and to the values of one
// pixel. RGB24 comes bottom row first as blue, green, red; Mono8 and Raw8 top row first.
// A frame may be reduced: of every `step` pixels (for Raw8: cells of two by two) it holds
// the first. Pure: knows no document.

export const bayerOrders = ["RGGB", "GRBG", "GBRG", "BGGR"];

const opaque = 0xff000000;
const colourIndex = { R: 0, G: 1, B: 2 };

// Places in the words of a canvas, red in the lowest byte.
const shifts = [0, 8, 16];

function cellColours(order) {
    return Array.from(order, (letter) => colourIndex[letter]);
}

function paintGrey(frame, words) {
    const { width, height, rowBytes, bytes } = frame;
    for (let y = 0, to = 0; y < height; ++y) {
        const end = y * rowBytes + width;
        for (let from = y * rowBytes; from < end; ++from) {
            words[to++] = opaque | (bytes[from] * 0x010101);
        }
    }
}

function paintColours(frame, words) {
    const { width, height, rowBytes, bytes } = frame;
    for (let y = 0, to = 0; y < height; ++y) {
        const row = (height - 1 - y) * rowBytes;
        for (let from = row; from < row + width * 3; from += 3) {
            words[to++] = opaque | (bytes[from] << 16) | (bytes[from + 1] << 8) | bytes[from + 2];
        }
    }
}

// Each pixel in the colour of its filter.
function paintMosaic(frame, words, order) {
    const { width, height, rowBytes, bytes } = frame;
    const cell = cellColours(order).map((colour) => shifts[colour]);
    for (let y = 0, to = 0; y < height; ++y) {
        const even = cell[(y & 1) * 2];
        const odd = cell[(y & 1) * 2 + 1];
        for (let x = 0; x < width; ++x) {
            words[to++] = opaque | (bytes[y * rowBytes + x] << (x & 1 ? odd : even));
        }
    }
}

// The same colours as in the pictures of `camhost grab --demosaic fast`: every pixel takes
// those of the two by two pixels that begin at it (at the far edges: that end at it).
function paintDemosaiced(frame, words, order) {
    const { width, height, rowBytes, bytes } = frame;
    if (width < 2 || height < 2) {
        paintGrey(frame, words);
        return;
    }
    const cell = cellColours(order);
    const sums = [0, 0, 0];
    for (let y = 0, to = 0; y < height; ++y) {
        const top = y + 1 < height ? y : y - 1;
        const near = (top & 1) * 2;
        const far = 2 - near;
        for (let x = 0; x < width; ++x) {
            const left = x + 1 < width ? x : x - 1;
            const at = top * rowBytes + left;
            const parity = left & 1;
            sums[0] = sums[1] = sums[2] = 0;
            sums[cell[near + parity]] += bytes[at];
            sums[cell[near + 1 - parity]] += bytes[at + 1];
            sums[cell[far + parity]] += bytes[at + rowBytes];
            sums[cell[far + 1 - parity]] += bytes[at + rowBytes + 1];
            words[to++] = opaque | (sums[2] << 16) | ((sums[1] >> 1) << 8) | sums[0];
        }
    }
}

// The mosaic that a frame is taken to have: the one chosen, else the one told with it.
export function orderOf(frame, chosen) {
    if (frame.pixelType !== "Raw8") {
        return null;
    }
    return chosen === "auto" ? frame.bayer || null : chosen;
}

// Fills the words of a canvas of the frame's size. `raw` is how a mosaic is shown:
// "mosaic", "grey" or "colour".
export function paint(frame, words, raw, order) {
    if (frame.pixelType === "RGB24") {
        paintColours(frame, words);
    } else if (!order || raw === "grey") {
        paintGrey(frame, words);
    } else if (raw === "mosaic") {
        paintMosaic(frame, words, order);
    } else {
        paintDemosaiced(frame, words, order);
    }
}

// Where in the whole picture a column (or row) of a reduced frame lies, and back.
export function sourceIndex(frame, index) {
    const { step } = frame;
    return frame.pixelType === "Raw8" ? (index >> 1) * 2 * step + (index & 1) : index * step;
}

export function reducedIndex(frame, index, count) {
    const { step } = frame;
    const found =
        frame.pixelType === "Raw8"
            ? Math.floor(index / (2 * step)) * 2 + (index & 1)
            : Math.floor(index / step);
    return Math.min(found, count - 1);
}

// What lies at a column and row of the whole picture. In a reduced frame that is its
// nearest pixel to the left and above, and its own column and row are told.
export function valueAt(frame, column, row, order) {
    if (column < 0 || row < 0 || column >= frame.fullWidth || row >= frame.fullHeight) {
        return null;
    }
    const x = reducedIndex(frame, column, frame.width);
    const y = reducedIndex(frame, row, frame.height);
    const place = { column: sourceIndex(frame, x), row: sourceIndex(frame, y) };
    if (frame.pixelType === "RGB24") {
        const at = (frame.height - 1 - y) * frame.rowBytes + x * 3;
        const [blue, green, red] = frame.bytes.subarray(at, at + 3);
        return { ...place, red, green, blue };
    }
    const value = frame.bytes[y * frame.rowBytes + x];
    return order ? { ...place, value, letter: order[(y & 1) * 2 + (x & 1)] } : { ...place, value };
}

// Counts of the 256 values by channel: { grey } or { red, green, blue }.
export function countValues(frame, order) {
    const { width, height, rowBytes, bytes } = frame;
    const channels = [0, 1, 2].map(() => new Uint32Array(256));
    if (frame.pixelType === "RGB24") {
        for (let y = 0; y < height; ++y) {
            for (let at = y * rowBytes; at < y * rowBytes + width * 3; at += 3) {
                ++channels[2][bytes[at]];
                ++channels[1][bytes[at + 1]];
                ++channels[0][bytes[at + 2]];
            }
        }
    } else {
        const cell = order ? cellColours(order) : [0, 0, 0, 0];
        for (let y = 0; y < height; ++y) {
            const even = channels[cell[(y & 1) * 2]];
            const odd = channels[cell[(y & 1) * 2 + 1]];
            for (let x = 0; x < width; ++x) {
                ++(x & 1 ? odd : even)[bytes[y * rowBytes + x]];
            }
        }
        if (!order) {
            return { grey: channels[0] };
        }
    }
    return { red: channels[0], green: channels[1], blue: channels[2] };
}
