// SPDX-License-Identifier: MIT
// Several pages at once, and how the page looks.
import assert from "node:assert/strict";
import { after, before, describe, test } from "node:test";

import {
    chooseCamera,
    closePage,
    openPage,
    row,
    screenshots,
    shownNumber,
    until,
    untilFramesBehind,
    untilText,
    View,
} from "./support.js";

describe("several pages", () => {
    let view;

    before(async () => {
        view = await View.start("tests/view_page/rigs/page.toml", "-c", "C3");
    });
    after(() => view?.stop());

    test("agree on every value", async () => {
        const pages = [await openPage(view), await openPage(view)];
        const fields = pages.map((page) => row(page, "gain value range").locator("input[type=number]"));
        await fields[0].fill("7");
        await fields[0].press("Enter");
        await untilText(fields[1], (text) => text === "7");
        await fields[1].fill("70");
        await fields[1].press("Enter");
        await untilText(fields[0], (text) => text === "70");
        await Promise.all(pages.map(closePage));
    });

    test("a slow one and a closed one do not delay another", async () => {
        const slow = await openPage(view);
        const quick = await openPage(view);
        let isBusy = true;
        const busy = slow
            .evaluate(() => {
                const end = performance.now() + 4000;
                while (performance.now() < end) {
                    // Busy.
                }
            })
            .then(() => (isBusy = false));
        await untilFramesBehind(quick, await shownNumber(quick), 20);
        assert.equal(isBusy, true);
        await busy;
        // The slow one is back at the newest frame.
        const newest = await shownNumber(quick);
        await until(async () => (await shownNumber(slow)) >= newest, "the slow page catches up");
        await slow.context().close();
        await untilFramesBehind(quick, await shownNumber(quick), 20);
        assert.equal((await view.get("api/state")).timeouts, 0);
        await closePage(quick);
    });

    test("dark where the system is dark", async () => {
        const background = (page) => page.evaluate(() => getComputedStyle(document.body).backgroundColor);
        const light = await openPage(view);
        assert.equal(await background(light), "rgb(244, 246, 248)");
        await chooseCamera(light, 2, "RGB24");
        await light.mouse.move(360, 240);
        await untilText(light.locator("#readout"), (text) => /R \d+ {2}G \d+ {2}B \d+$/.test(text));
        await untilText(light.locator("#shown"), (text) => /fps/.test(text));
        await untilText(
            light.locator("#rate"),
            (text) => text.endsWith(" of 30.0 fps") && !text.startsWith("–"),
        );
        await light.screenshot({ path: `${screenshots}/light.png` });
        await closePage(light);
        const dark = await openPage(view, { colorScheme: "dark" });
        assert.equal(await background(dark), "rgb(18, 24, 30)");
        await dark.screenshot({ path: `${screenshots}/dark.png` });
        await closePage(dark);
    });

    test("nothing is cut off at 360 pixels", async () => {
        const page = await openPage(view, { width: 360, height: 740 });
        assert.equal(await page.evaluate(() => document.documentElement.scrollWidth), 360);
        const cut = await page.evaluate(() =>
            Array.from(document.querySelectorAll("button, input, select"))
                .filter((found) => found.checkVisibility() && found.getBoundingClientRect().right > 360)
                .map((found) => found.id || found.className),
        );
        assert.deepEqual(cut, []);
        const gain = row(page, "gain value range").locator("input[type=number]");
        await gain.fill("99");
        await gain.press("Enter");
        await until(async () => (await view.settingText("gain value range")) === "99", "99 is written");
        await page.screenshot({ path: `${screenshots}/narrow.png`, fullPage: true });
        await closePage(page);
    });
});
