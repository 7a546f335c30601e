// SPDX-License-Identifier: MIT
// The settings in the browser.
import assert from "node:assert/strict";
import { readFile } from "node:fs/promises";
import { after, before, describe, test } from "node:test";

import { chooseCamera, closePage, openPage, row, until, untilText, View } from "./support.js";

const gain = "gain value range";

// Run in the page: its readings of the settings can be held, before they go to camhost
// ("asked") or when they come back ("answered"), and so can the answers to its writes
// ("written").
function letRequestsWait() {
    const requests = { held: [], where: "" };
    const wait = (where) => requests.where === where && new Promise((resolve) => requests.held.push(resolve));
    const plainFetch = window.fetch;
    window.requests = requests;
    window.fetch = async (path, options = {}) => {
        const isReading = path === "api/settings" && !options.method;
        await (isReading && wait("asked"));
        const response = await plainFetch(path, options);
        await (isReading && wait("answered"));
        await (options.method === "PUT" && wait("written"));
        return response;
    };
}

describe("the settings", () => {
    let view;
    let page;
    const number = (key) => row(page, key).locator("input[type=number]");
    const slider = (key) => row(page, key).locator("input[type=range]");
    const note = (key) => row(page, key).locator(".note");

    const written = (key, text) =>
        until(async () => (await view.settingText(key)) === text, `${key}=${text}`);

    before(async () => {
        view = await View.start("tests/view_page/rigs/page.toml", "-c", "A1");
        page = await openPage(view, { beforeLoad: letRequestsWait });
    });
    after(async () => {
        await page?.context().close();
        await view?.stop();
    });

    test("nothing is written on opening", async () => {
        const { events } = await view.get("api/events");
        assert.deepEqual(
            events.filter(({ kind }) => kind === "setting" || kind === "refused"),
            [],
        );
    });

    test("are grouped by item, with their limits", async () => {
        const groups = await page.locator(".group:visible summary").allTextContents();
        assert.deepEqual(groups.slice(0, 5), [
            "Format and rate",
            "<img src=x>",
            "Contrast",
            "Exposure",
            "Gain",
        ]);
        assert.equal(await row(page, gain).locator(".limits").textContent(), "0 … 1023");
        assert.equal(await number(gain).inputValue(), "100");
    });

    test("what is read only is shown on demand, and greyed", async () => {
        const list = row(page, "videoformats");
        assert.equal(await list.isHidden(), true);
        await page.check("#show-all");
        assert.equal(await list.isVisible(), true);
        assert.equal(await list.locator("input, select, textarea").isDisabled(), true);
        assert.match(await list.getAttribute("class"), /\bfixed\b/);
        const color = (key) =>
            row(page, key)
                .locator("label")
                .first()
                .evaluate((found) => getComputedStyle(found).color);
        assert.notEqual(await color("videoformats"), await color(gain));
        await page.uncheck("#show-all");
        assert.equal(await list.isHidden(), true);
    });

    test("a slider writes while it moves", async () => {
        await slider(gain).focus();
        await page.keyboard.press("ArrowRight");
        await written(gain, "101");
        await page.keyboard.press("End");
        await written(gain, "1023");
        assert.equal(await number(gain).inputValue(), "1023");
    });

    const release = () => page.evaluate(() => window.requests.held.splice(0).forEach((go) => go()));
    const hold = (place) => page.evaluate((where) => (window.requests.where = where), place);
    const untilHeld = () =>
        until(() => page.evaluate(() => window.requests.held.length > 0), "the page waits for an answer");

    // Until the test ends.
    async function holdFromNowOn(t, place) {
        await hold(place);
        t.after(async () => {
            await hold("");
            await release();
        });
    }

    async function typeGain(text) {
        await number(gain).fill(text);
        await number(gain).press("Enter");
        // The slider follows once the write is answered.
        await untilText(slider(gain), (shown) => shown === text);
    }

    test("a reading from before a write brings no older value back", async (t) => {
        await holdFromNowOn(t, "asked");
        await view.put("contrast value range", "5");
        await untilHeld();
        await hold("answered");
        await release();
        await untilHeld();
        await typeGain("60");
        await release();
        await untilText(number("contrast value range"), (text) => text === "5");
        assert.equal(await slider(gain).inputValue(), "60");
        assert.equal(await number(gain).inputValue(), "60");
    });

    test("what was left out of a reading for a write is read once more", async (t) => {
        await holdFromNowOn(t, "asked");
        await view.put("contrast value range", "0");
        await untilHeld();
        await typeGain("70");
        await view.put(gain, "71");
        await release();
        await untilText(number("contrast value range"), (text) => text === "0");
        await untilHeld();
        await release();
        await untilText(number(gain), (text) => text === "71");
    });

    test("a write that is answered late changes nothing of the camera that is shown by then", async (t) => {
        await holdFromNowOn(t, "written");
        await number(gain).fill("72");
        await number(gain).press("Enter");
        await untilHeld();
        await chooseCamera(page, 2);
        await hold("asked");
        await release();
        // The answer to this one comes later.
        await number("brightness value range").fill("11");
        await number("brightness value range").press("Enter");
        await untilText(slider("brightness value range"), (text) => text === "11");
        assert.equal(await number(gain).inputValue(), "100");
        await hold("");
        await release();
        await chooseCamera(page, 0);
        assert.equal(await number(gain).inputValue(), "72");
    });

    test("a wheel changes the value of a focused control alone", async () => {
        await number(gain).fill("50");
        await number(gain).press("Enter");
        await written(gain, "50");
        await page.locator("#search").focus();
        await slider("contrast value range").hover();
        await page.mouse.wheel(0, -100);
        await number(gain).hover();
        await page.mouse.wheel(0, -100);
        await number(gain).focus();
        await number(gain).hover();
        await page.mouse.wheel(0, -100);
        await written(gain, "51");
        assert.equal(await view.settingText("contrast value range"), "0");
    });

    test("a refused value goes back, with the adapter's own text beside it", async () => {
        await number(gain).fill("5000");
        await number(gain).press("Enter");
        await untilText(note(gain), (text) => text.startsWith("gain value range must be within 0 and 1023"));
        assert.equal(await note(gain).getAttribute("aria-live"), "polite");
        assert.equal(await number(gain).inputValue(), "51");
        assert.equal(await view.settingText(gain), "51");
        // What camhost can't judge is refused by the adapter itself.
        await number("framerate").fill("1000");
        await number("framerate").press("Enter");
        await untilText(note("framerate"), (text) => text !== "");
        assert.equal(await number("framerate").inputValue(), "30");
        assert.equal(await view.settingText("framerate"), "30.000000");
    });

    test("a value under an automatic is locked, and freed where it stands", async () => {
        const exposure = "exposure value range";
        assert.equal(await number(exposure).isDisabled(), true);
        const free = row(page, exposure).locator(".lock button");
        assert.equal(await free.getAttribute("aria-label"), "Switch off exposure auto switch");
        await free.click();
        await until(() => number(exposure).isEnabled(), "the value is free");
        assert.equal(await row(page, "exposure auto switch").locator("input").isChecked(), false);
        await number(exposure).fill("500");
        await number(exposure).press("Enter");
        await written(exposure, "500");
    });

    test("a command is a button that tells what it did", async () => {
        await row(page, "gain one push").locator("button").click();
        await untilText(note("gain one push"), (text) => text === "gain value range: 51 → 260");
        await untilText(number(gain), (text) => text === "260");
    });

    test("a switch and a choice write what they show", async () => {
        await row(page, "trigger polarity switch").locator("input").click();
        await written("trigger polarity switch", "true");
        await row(page, "framerate").locator("input[type=number], select").first().waitFor();
        await row(page, "trigger mode strings").locator("input").fill("Level");
        await page.keyboard.press("Enter");
        await written("trigger mode strings", "Level");
    });

    test("changes made elsewhere are seen, but not over what is being typed", async () => {
        await number(gain).fill("77");
        await view.put("contrast value range", "12");
        await view.put(gain, "300");
        await untilText(number("contrast value range"), (text) => text === "12");
        assert.equal(await number(gain).inputValue(), "77");
        await page.keyboard.press("Escape");
        await page.locator("#search").focus();
        await untilText(number(gain), (text) => text === "300");
        assert.equal(await view.settingText(gain), "300");
    });

    test("a search while a value is typed writes it to its own row", async () => {
        await number(gain).fill("7");
        await page.locator("#search").fill("contrast");
        await written(gain, "7");
        assert.equal(await view.settingText("contrast value range"), "12");
        assert.equal(await row(page, gain).isHidden(), true);
        assert.equal(await row(page, "contrast value range").isVisible(), true);
        await untilText(page.locator("#found"), (text) => /^1 of \d+ settings$/.test(text));
        await page.locator("#search").press("Escape");
        assert.equal(await row(page, gain).isVisible(), true);
    });

    test("all of it goes by keyboard", async () => {
        await page.locator("#stage").focus();
        await page.keyboard.press("/");
        await page.keyboard.type("gain value");
        await until(async () => {
            await page.keyboard.press("Tab");
            return number(gain).evaluate((found) => found === document.activeElement);
        }, "the focus comes to the number");
        await page.keyboard.press("Control+A");
        await page.keyboard.type("42");
        await page.keyboard.press("Enter");
        await written(gain, "42");
        await page.locator("#search").focus();
        await page.keyboard.press("Escape");
        await page.keyboard.press("Tab");
        await page.locator("#stage").focus();
        await page.keyboard.press("?");
        assert.equal(await page.locator("#help").evaluate((found) => found.open), true);
        await page.keyboard.press("Escape");
    });

    test("every control has a name", async () => {
        const nameless = await page.evaluate(() =>
            Array.from(document.querySelectorAll("button, input, select"))
                .filter(
                    (found) =>
                        !found.hidden && !found.ariaLabel && !found.labels?.length && !found.textContent,
                )
                .map((found) => found.id || found.className),
        );
        assert.deepEqual(nameless, []);
    });

    test("are saved, compared and loaded as files", async () => {
        const [download] = await Promise.all([page.waitForEvent("download"), page.click("#save")]);
        const file = {
            name: "a.json",
            mimeType: "application/json",
            buffer: await readFile(await download.path()),
        };
        await view.put(gain, "9");
        const choose = async (button) => {
            const [chooser] = await Promise.all([page.waitForEvent("filechooser"), page.click(button)]);
            await chooser.setFiles(file);
            await page.waitForSelector("#files-dialog[open]");
            const cells = await page.locator("#files-result td").allTextContents();
            await page.click("#files-dialog button");
            return cells;
        };
        assert.deepEqual(await choose("#diff"), [gain, "42", "9"]);
        await untilText(number(gain), (text) => text === "9");
        await hold("asked");
        assert.deepEqual(await choose("#load"), [gain, "9", "42"]);
        assert.equal(await number(gain).inputValue(), "42");
        await hold("");
        await release();
        await written(gain, "42");
        await closePage(page);
        page = null;
    });
});
