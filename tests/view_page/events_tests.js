// SPDX-License-Identifier: MIT
// What comes from the camera's side: losses, triggers, automatics; and the end of the view.
import assert from "node:assert/strict";
import { describe, test } from "node:test";

import {
    closePage,
    openPage,
    row,
    screenshots,
    shownNumber,
    untilFramesBehind,
    untilText,
    View,
} from "./support.js";

// Each has a camera and a camhost of its own, and waits more than it works.
describe("what happens to the camera", { concurrency: true }, () => {
    test("a loss is a banner over the grey last picture, and ends by itself", async (t) => {
        const view = await View.start("tests/view_page/rigs/events.toml");
        t.after(() => view.stop());
        const page = await openPage(view);
        await untilText(
            page.locator("#banner-text"),
            (text) => text === "D4 is lost; it is being looked for",
        );
        await untilText(page.locator("#banner-seconds"), (text) => /^\d+\.\d s$/.test(text));
        const filter = await page.locator("#picture").evaluate((found) => getComputedStyle(found).filter);
        assert.match(filter, /grayscale\(1\)/);
        await page.screenshot({ path: `${screenshots}/lost.png` });
        const number = await shownNumber(page);
        assert.ok(number > 0);
        await untilText(page.locator("#live-state"), (text) => text === "Live");
        await untilFramesBehind(page, number, 5);
        assert.equal(await page.locator("#banner").isHidden(), true);
        assert.equal(
            await page.locator("#picture").evaluate((found) => getComputedStyle(found).filter),
            "none",
        );
        await untilText(page.locator("#losses"), (text) => text !== "0");
        await closePage(page);
    });

    test("values that change by themselves are seen", async (t) => {
        const view = await View.start("tests/view_page/rigs/events.toml");
        t.after(() => view.stop());
        const page = await openPage(view);
        const exposure = row(page, "exposure value range").locator("input[type=number]");
        await untilText(exposure, (text) => text === "200");
        await untilText(exposure, (text) => text === "100");
        await closePage(page);
    });

    test("a trigger that is waited for says so", async (t) => {
        const view = await View.start("rigs/slow_trigger.toml");
        t.after(() => view.stop());
        const page = await openPage(view);
        await untilText(page.locator("#banner-text"), (text) => text.startsWith("Waiting for a trigger"));
        await page.screenshot({ path: `${screenshots}/trigger.png` });
        // A wait that no trigger ended is a time-out, and nothing else.
        await untilText(page.locator("#timeouts"), (text) => text !== "0");
        assert.equal(await page.locator("#losses").textContent(), "0");
        assert.equal(await page.locator("#refusals").textContent(), "0");
        const number = await shownNumber(page);
        await untilFramesBehind(page, number, 2);
        await closePage(page);
    });

    test("the page ends the view, after a question", async (t) => {
        const view = await View.start("tests/view_page/rigs/page.toml", "-c", "A1");
        t.after(() => view.stop());
        const page = await openPage(view);
        await page.click("#end");
        await page.click("#end-dialog button[value=end]");
        await untilText(page.locator("#banner-text"), (text) => text.startsWith("camhost has ended"));
        assert.equal(await view.ended, 0);
        assert.match(view.output, /\d+ frames/);
        await closePage(page);
    });

    test("a camhost that is gone is told, and not shown as live", async (t) => {
        const view = await View.start("tests/view_page/rigs/page.toml", "-c", "A1");
        t.after(() => view.stop());
        const page = await openPage(view);
        await view.stop();
        await untilText(page.locator("#banner-text"), (text) => text.startsWith("camhost does not answer"));
        assert.equal(await page.locator("#live-state").textContent(), "No answer");
        await closePage(page);
    });

    test("read-only, nothing can be changed", async (t) => {
        const view = await View.start("tests/view_page/rigs/page.toml", "-c", "A1", "--read-only");
        t.after(() => view.stop());
        const page = await openPage(view);
        assert.equal(await page.locator("#read-only").isVisible(), true);
        const gain = row(page, "gain value range");
        assert.equal(await gain.locator("input[type=number]").isDisabled(), true);
        assert.equal(await page.locator("#live").isDisabled(), true);
        assert.equal(await page.locator("#load").isDisabled(), true);
        await closePage(page);
    });
});
