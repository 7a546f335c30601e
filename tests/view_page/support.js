// SPDX-License-Identifier: MIT
// camhost under Wine, the browser, and waiting for conditions with deadlines.
import assert from "node:assert/strict";
import { spawn } from "node:child_process";
import { mkdirSync } from "node:fs";
import { createRequire } from "node:module";
import path from "node:path";
import { fileURLToPath } from "node:url";

const root = path.resolve(path.dirname(fileURLToPath(import.meta.url)), "../..");
const packages = path.join(root, "build/view_page");
const { chromium } = createRequire(`${packages}/`)("playwright-core");

const program = process.env.CAMHOST || "build/windows/bin/camhost.exe";
const deadline = 30000;

export const screenshots = path.join(packages, "screenshots");
mkdirSync(screenshots, { recursive: true });

// One run of `camhost view`, with its address once it has said it.
export class View {
    output = "";

    static async start(rig, ...options) {
        const view = new View();
        const line = ["--rig", rig, "view", "--no-open", ...options];
        view.process = spawn("wine", [program, ...line], { cwd: root, stdio: ["ignore", "pipe", "pipe"] });
        view.ended = new Promise((resolve) => view.process.once("close", resolve));
        view.address = await new Promise((resolve, reject) => {
            const late = setTimeout(() => reject(new Error(`no address in time: ${view.output}`)), deadline);
            const read = (bytes) => {
                view.output += bytes;
                const found = /http:\/\/127\.0\.0\.1:\d+\/\w+\//.exec(view.output);
                if (found) {
                    clearTimeout(late);
                    resolve(found[0]);
                }
            };
            view.process.stdout.on("data", read);
            view.process.stderr.on("data", read);
            view.process.once("close", (code) => {
                clearTimeout(late);
                reject(new Error(`camhost ended with ${code}: ${view.output}`));
            });
        });
        return view;
    }

    async get(name) {
        const response = await fetch(this.address + name);
        assert.equal(response.status, 200, name);
        return response.json();
    }

    async settingText(key) {
        const { settings } = await this.get("api/settings");
        return settings.find((setting) => setting.key === key)?.text;
    }

    async put(key, text) {
        return this.#send("PUT", "api/settings", { key, text });
    }

    async stop() {
        if (this.process.exitCode === null) {
            const answer = await this.#send("POST", "api/end", {}).catch(() => null);
            if (!answer?.ok) {
                this.process.kill();
            }
        }
        return this.ended;
    }

    async #send(method, name, body) {
        return fetch(this.address + name, {
            method,
            headers: { "Content-Type": "application/json" },
            body: JSON.stringify(body),
        });
    }
}

let browser = null;

export async function openBrowser() {
    const options = { executablePath: process.env.CHROMIUM || "/usr/bin/chromium" };
    browser = await chromium.launch({ ...options, args: process.getuid() === 0 ? ["--no-sandbox"] : [] });
}

export async function closeBrowser() {
    await browser?.close();
}

// A page of the view in a window of its own; `problems` are exceptions and what the
// security policy refused. `beforeLoad` runs in the page before its own scripts.
export async function openPage(view, options = {}) {
    const { width = 1280, height = 800, colorScheme = "light", beforeLoad } = options;
    const context = await browser.newContext({ viewport: { width, height }, colorScheme });
    context.setDefaultTimeout(deadline);
    const page = await context.newPage();
    page.problems = [];
    page.on("pageerror", (error) => page.problems.push(error.stack));
    page.on("console", (message) => {
        if (/Content Security Policy/.test(message.text())) {
            page.problems.push(message.text());
        }
    });
    if (beforeLoad) {
        await page.addInitScript(beforeLoad);
    }
    await page.goto(view.address);
    await page.waitForSelector("#picture[data-number]");
    await page.waitForSelector("#groups .row");
    return page;
}

export async function closePage(page) {
    assert.deepEqual(page.problems, []);
    await page.context().close();
}

export const row = (page, key) => page.locator(`.row[data-key="${key}"]`);

// Waits until `wanted(text)` of an element's text (or value) holds.
export async function untilText(locator, wanted) {
    const end = Date.now() + deadline;
    let text = "";
    do {
        text = await locator.evaluate((found) => found.value || found.textContent);
        if (wanted(text)) {
            return text;
        }
        await new Promise((resolve) => setTimeout(resolve, 50));
    } while (Date.now() < end);
    throw new Error(`the text stays "${text}"`);
}

export async function until(condition, what) {
    const end = Date.now() + deadline;
    while (Date.now() < end) {
        const found = await condition();
        if (found) {
            return found;
        }
        await new Promise((resolve) => setTimeout(resolve, 50));
    }
    throw new Error(`not in time: ${what}`);
}

export const shownNumber = (page) =>
    page.evaluate(() => Number(document.getElementById("picture").dataset.number));

export async function untilFramesBehind(page, number, count) {
    return until(async () => (await shownNumber(page)) >= number + count, `${count} frames more`);
}

export async function chooseCamera(page, index, pixelType) {
    await page.selectOption("#camera", String(index));
    await page.waitForSelector(`#groups[data-camera="${index}"] .row`);
    await page.waitForSelector(`#picture[data-camera="${index}"]`);
    if (pixelType) {
        await row(page, "pixelformat").locator("select").selectOption(pixelType);
        await page.waitForSelector(`#picture[data-pixel-type="${pixelType}"]`);
    }
}

// One pixel of the camera on one of the screen, and nothing left out.
export async function showOneToOne(page) {
    await page.locator("#stage").press("1");
    await page.waitForSelector('#picture[data-step="1"]');
}

// Red, green, blue of a pixel of the camera, which the canvas shows.
export const pixel = (page, column, line) =>
    page.evaluate(
        ([x, y]) => {
            const canvas = document.getElementById("picture");
            const step = Number(canvas.dataset.step);
            return Array.from(canvas.getContext("2d").getImageData(x / step, y / step, 1, 1).data).slice(
                0,
                3,
            );
        },
        [column, line],
    );

// How many bytes of the canvas differ from those of the snapshot of the same frame; all do
// where that frame is kept no longer.
export const differencesFromSnapshot = (page, demosaic) =>
    page.evaluate(async (wanted) => {
        const canvas = document.getElementById("picture");
        const { number } = canvas.dataset;
        const response = await fetch(`api/frame.png?bayer=auto&demosaic=${wanted}&number=${number}`);
        if (!response.ok) {
            return Infinity;
        }
        const image = await createImageBitmap(await response.blob(), { colorSpaceConversion: "none" });
        const copy = new OffscreenCanvas(image.width, image.height).getContext("2d");
        copy.drawImage(image, 0, 0);
        const { width, height } = image;
        const saved = copy.getImageData(0, 0, width, height).data;
        const shown = canvas.getContext("2d").getImageData(0, 0, width, height).data;
        return saved.reduce((count, byte, at) => count + (byte === shown[at] ? 0 : 1), 0);
    }, demosaic);

// Puts the pointer on a pixel of the picture, and gives what the page says of it.
export async function pointAt(page, column, line) {
    const place = await page.evaluate(
        ([x, y]) => {
            const box = document.getElementById("picture").getBoundingClientRect();
            return { x: box.left + x + 0.5, y: box.top + y + 0.5 };
        },
        [column, line],
    );
    await page.mouse.move(place.x, place.y);
    return untilText(page.locator("#readout"), (text) => text.startsWith(`${column}, ${line}: `));
}
