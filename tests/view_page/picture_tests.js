// SPDX-License-Identifier: MIT
// The picture in the browser, against what the scenes are known to hold.
import assert from "node:assert/strict";
import { readFile } from "node:fs/promises";
import { after, before, describe, test } from "node:test";

import {
    chooseCamera,
    differencesFromSnapshot,
    openPage,
    pixel,
    pointAt,
    row,
    screenshots,
    showOneToOne,
    shownNumber,
    until,
    untilFramesBehind,
    untilText,
    View,
} from "./support.js";

async function saved(page, press) {
    const [download] = await Promise.all([page.waitForEvent("download"), press()]);
    return { name: download.suggestedFilename(), bytes: await readFile(await download.path()) };
}

describe("the picture", () => {
    let view;
    let page;

    before(async () => {
        view = await View.start("tests/view_page/rigs/page.toml", "-c", "A1");
        page = await openPage(view);
    });
    after(async () => {
        await page?.context().close();
        await view?.stop();
    });

    test("a grey picture is right side up, value for value", async () => {
        await chooseCamera(page, 0, "Mono8");
        await page.setViewportSize({ width: 1800, height: 1200 });
        await row(page, "videoformat").locator("select").selectOption("Y800 (320x240)");
        await untilText(page.locator("#frame-size"), (text) => text.startsWith("320 × 240"));
        await showOneToOne(page);
        assert.deepEqual(await pixel(page, 0, 0), [192, 192, 192]);
        assert.deepEqual(await pixel(page, 0, 5), [197, 197, 197]);
        assert.deepEqual(await pixel(page, 1, 200), [195, 195, 195]);
        assert.deepEqual(await pixel(page, 10, 7), [193, 193, 193]);
        assert.deepEqual(await pixel(page, 312, 239), [239, 239, 239]);
        await page.setViewportSize({ width: 1280, height: 800 });
    });

    test("a picture in colour is right side up, value for value", async () => {
        await chooseCamera(page, 1, "RGB24");
        await showOneToOne(page);
        assert.deepEqual(await pixel(page, 0, 0), [128, 64, 0]);
        assert.deepEqual(await pixel(page, 0, 5), [133, 69, 5]);
        assert.deepEqual(await pixel(page, 10, 7), [129, 65, 1]);
        assert.deepEqual(await pixel(page, 312, 239), [175, 111, 47]);
    });

    test("the colour chart has its red corner at the top left", async () => {
        await chooseCamera(page, 2, "RGB24");
        await showOneToOne(page);
        assert.deepEqual(await pixel(page, 2, 2), [255, 0, 0]);
    });

    test("a raw picture is shown as grey, as mosaic, and in colours of the order chosen", async () => {
        await chooseCamera(page, 1, "Raw8");
        await showOneToOne(page);
        await page.selectOption("#raw", "grey");
        // The camera's mosaic is GBRG; the adapter makes raw frames of colours as GRBG.
        const green = await pixel(page, 8, 8);
        assert.deepEqual(green, [green[0], green[0], green[0]]);
        await page.selectOption("#raw", "mosaic");
        assert.deepEqual(await pixel(page, 8, 8), [0, green[0], 0]);
        await page.selectOption("#order", "RGGB");
        assert.deepEqual(await pixel(page, 8, 8), [green[0], 0, 0]);
        await page.selectOption("#raw", "colour");
        await untilText(page.locator("#frame-size"), (text) => text.endsWith("Raw8 RGGB"));
        await page.locator("#stage").press("b");
        assert.equal(await page.locator("#order").inputValue(), "GRBG");
        await page.locator("#stage").press("m");
        assert.equal(await page.locator("#raw").inputValue(), "grey");
        await page.selectOption("#order", "auto");
        await page.selectOption("#raw", "colour");
    });

    test("what is under the pointer is told with column, row and values as delivered", async () => {
        await chooseCamera(page, 1, "RGB24");
        await showOneToOne(page);
        assert.equal(await pointAt(page, 160, 117), "160, 117: R 181  G 117  B 53");
        await chooseCamera(page, 0, "Mono8");
        await showOneToOne(page);
        assert.equal(await pointAt(page, 160, 117), "160, 117: 245");
        await chooseCamera(page, 1, "Raw8");
        await showOneToOne(page);
        assert.match(await pointAt(page, 160, 117), /^160, 117: B \d+$/);
        assert.match(await pointAt(page, 160, 118), /^160, 118: G \d+$/);
    });

    test("wheel, keys and hand zoom and pan", async () => {
        await chooseCamera(page, 0, "Mono8");
        const zoom = page.locator("#zoom");
        await page.locator("#stage").press("1");
        await untilText(zoom, (text) => text === "100 %");
        await page.locator("#stage").press("+");
        await untilText(zoom, (text) => text === "125 %");
        await page.locator("#stage").press("-");
        await untilText(zoom, (text) => text === "100 %");
        for (let i = 0; i < 8; ++i) {
            await page.locator("#stage").press("+");
        }
        const left = () =>
            page.evaluate(() => document.getElementById("picture").getBoundingClientRect().left);
        const start = await left();
        await page.locator("#stage").press("ArrowRight");
        assert.equal(await left(), start - 60);
        await page.mouse.move(300, 300);
        await page.mouse.down();
        await page.mouse.move(320, 300, { steps: 4 });
        await page.mouse.up();
        assert.equal(Math.round(await left()), Math.round(start - 40));
        const words = await zoom.textContent();
        await page.mouse.wheel(0, 300);
        await untilText(zoom, (text) => text !== words);
        await page.locator("#stage").press("0");
        assert.equal(await page.locator("#zoom-fit").getAttribute("aria-pressed"), "true");
    });

    test("a picture that is shown smaller comes reduced, with values of its own pixels", async () => {
        await chooseCamera(page, 0, "Mono8");
        await row(page, "videoformat").locator("select").selectOption("Y800 (1280x960)");
        await untilText(page.locator("#frame-size"), (text) => text.startsWith("1280 × 960"));
        await page.setViewportSize({ width: 860, height: 420 });
        await page.locator("#stage").press("0");
        await page.waitForSelector('#picture[data-step="4"], #picture[data-step="2"]');
        assert.deepEqual(await pixel(page, 0, 16), [208, 208, 208]);
        await page.setViewportSize({ width: 1280, height: 800 });
        await row(page, "videoformat").locator("select").selectOption("Y800 (320x240)");
        await untilText(page.locator("#frame-size"), (text) => text.startsWith("320 × 240"));
    });

    test("the histogram marks what is clipped", async () => {
        await chooseCamera(page, 2, "RGB24");
        await untilText(page.locator("#clipped-high"), (text) => /^255: .*R .*% clipped white$/.test(text));
        assert.equal(await page.locator("#clipped-high").evaluate((found) => found.className), "clipped");
        await untilText(page.locator("#clipped-low"), (text) => /^0: .*B .*% clipped black$/.test(text));
        // The counter of a grey camera begins at 192.
        await chooseCamera(page, 0, "Mono8");
        await untilText(page.locator("#clipped-low"), (text) => text === "0: none");
        assert.equal(await page.locator("#clipped-low").evaluate((found) => found.className), "");
    });

    test("the number of the frame is that of the picture", async () => {
        const [number, text] = await page.evaluate(() => [
            document.getElementById("picture").dataset.number,
            document.getElementById("frame-number").textContent,
        ]);
        assert.equal(text, number);
    });

    test("rates, time-outs, losses and refusals are told apart", async () => {
        await untilText(page.locator("#rate"), (text) => /^\d+\.\d of 30\.0 fps$/.test(text));
        for (const id of ["timeouts", "losses", "refusals"]) {
            assert.match(await page.locator(`#${id}`).textContent(), /^\d+$/);
        }
    });

    test("live video stops and starts", async () => {
        await page.click("#live");
        await untilText(page.locator("#banner-text"), (text) => text === "Live video is stopped");
        const number = await shownNumber(page);
        await untilText(page.locator("#live"), (text) => text === "Start");
        await page.click("#live");
        await untilText(page.locator("#live-state"), (text) => text === "Live");
        await untilFramesBehind(page, number, 5);
    });

    test("the picture is the one that a snapshot saves, pixel for pixel", async () => {
        for (const [camera, pixelType, demosaic] of [
            [0, "Mono8", "none"],
            [1, "RGB24", "none"],
            [1, "Raw8", "fast"],
            [2, "Raw8", "fast"],
        ]) {
            await chooseCamera(page, camera, pixelType);
            await showOneToOne(page);
            await page.click("#live");
            await untilText(page.locator("#banner-text"), (text) => text === "Live video is stopped");
            // The last frame may be painted after the state has come.
            await until(
                async () => (await differencesFromSnapshot(page, demosaic)) === 0,
                `${pixelType} of camera ${camera} is its snapshot`,
            );
            await page.click("#live");
            await untilText(page.locator("#live-state"), (text) => text === "Live");
        }
    });

    test("snapshot and recording are saved by the browser", async () => {
        await chooseCamera(page, 2, "RGB24");
        const picture = await saved(page, () => page.click("#snapshot"));
        assert.match(picture.name, /^C3_\d+\.png$/);
        assert.equal(picture.bytes.subarray(1, 4).toString(), "PNG");
        const texts = picture.bytes.toString("latin1");
        for (const text of ["Software\0camhost", "PixelType\0RGB24", "CameraSerial\0C3"]) {
            assert.ok(texts.includes(text), text);
        }
        await page.fill("#record-frames", "3");
        const film = await saved(page, () => page.click("#record"));
        assert.match(film.name, /\.zip$/);
        assert.equal(film.bytes.subarray(0, 2).toString(), "PK");
        const names = film.bytes.toString("latin1").match(/[\w-]+\.png/g);
        assert.equal(new Set(names).size, 3);
    });

    test("nothing was refused by the security policy, and no text became markup", async () => {
        assert.equal(await page.locator("#camera option").nth(1).textContent(), "B2  SIM <b>Bold</b>");
        await chooseCamera(page, 0);
        assert.equal(await row(page, "<img src=x> value range").count(), 1);
        assert.equal(await page.locator("img").count(), 0);
        await page.screenshot({ path: `${screenshots}/counter.png` });
        await chooseCamera(page, 2, "RGB24");
        await page.locator("#stage").press("0");
        await until(async () => (await page.locator("#picture").getAttribute("data-step")) === "1", "step 1");
        await page.screenshot({ path: `${screenshots}/chart.png` });
        assert.deepEqual(page.problems, []);
    });
});
