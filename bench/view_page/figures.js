// SPDX-License-Identifier: MIT
// What `camhost view` costs and how late its picture is: camhost under Wine, the page in
// Chromium. Times of the page are real; nothing is asserted. Run by scripts/view_figures.sh.
import { execFileSync, spawn } from "node:child_process";
import { once } from "node:events";
import { loadavg } from "node:os";
import { readFileSync, readdirSync } from "node:fs";

import { View, closeBrowser, openBrowser, openPage } from "../../tests/view_page/support.js";

const seconds = Number(process.env.FIGURES_SECONDS || 10);
const minutes = Number(process.argv[2] || 0);
const rig = "bench/view_page/rig.toml";
const ticksPerSecond = Number(execFileSync("getconf", ["CLK_TCK"]));
const pause = (time) => new Promise((resolve) => setTimeout(resolve, time));
const median = (values) => values.toSorted((a, b) => a - b)[Math.floor(values.length / 2)];
const upper = (values) => values.toSorted((a, b) => a - b)[Math.floor(values.length * 0.95)];

// Of this run: others have other rigs.
function camhostProcess() {
    const found = readdirSync("/proc").find((name) => {
        try {
            return (
                /^\d+$/.test(name) &&
                readFileSync(`/proc/${name}/cmdline`, "latin1").includes(`camhost.exe\0--rig\0${rig}\0`)
            );
        } catch {
            return false; // ended meanwhile
        }
    });
    if (!found) {
        throw new Error("camhost does not run");
    }
    return found;
}

// Processor seconds and resident MiB so far.
function usage(id) {
    const fields = readFileSync(`/proc/${id}/stat`, "latin1").split(") ").at(-1).split(" ");
    const status = readFileSync(`/proc/${id}/status`, "latin1");
    return {
        processor: (Number(fields[11]) + Number(fields[12])) / ticksPerSecond,
        memory: Number(/VmRSS:\s+(\d+)/.exec(status)[1]) / 1024,
    };
}

async function processorShare(time) {
    const id = camhostProcess();
    const before = usage(id).processor;
    await pause(time * 1000);
    return (usage(id).processor - before) / time;
}

// Notes when each frame's answer came and how old it was then, and when it was painted.
function watchFrames() {
    const came = new Map();
    const fetched = window.fetch;
    window.fetch = async (...given) => {
        const response = await fetched(...given);
        const header = response.headers.get("X-Frame");
        if (header) {
            const frame = JSON.parse(header);
            came.set(frame.number, performance.now() - frame.ageMs);
        }
        return response;
    };
    window.paintedAges = [];
    window.addEventListener("DOMContentLoaded", () => {
        const canvas = document.getElementById("picture");
        new MutationObserver(() => {
            const taken = came.get(Number(canvas.dataset.number));
            came.clear();
            if (taken !== undefined) {
                window.paintedAges.push(performance.now() - taken);
            }
        }).observe(canvas, { attributeFilter: ["data-number"] });
    });
}

async function figuresOf(serial) {
    const view = await View.start(rig, "-c", serial);
    const closed = await processorShare(seconds / 2);
    const begun = performance.now();
    const page = await openPage(view, { beforeLoad: watchFrames });
    const first = performance.now() - begun;
    await pause(2000);
    await page.evaluate(() => window.paintedAges.splice(0));
    const processor = await processorShare(seconds);
    const ages = await page.evaluate(() => window.paintedAges.splice(0));
    const step = await page.evaluate(() => document.getElementById("picture").dataset.step);
    await page.context().close();
    await view.stop();
    return { closed, first, processor, ages, step };
}

// The same frames, waited for and copied by `camhost grab`, which shows nothing.
async function grabbingShare(serial) {
    const line = ["--rig", rig, "-c", serial, "grab", "--format", "none", "-n", String(60 * (seconds + 4))];
    const program = process.env.CAMHOST || "build/windows/bin/camhost.exe";
    const grab = spawn("wine", [program, ...line], { stdio: "ignore" });
    await pause(2000);
    const share = await processorShare(seconds);
    await once(grab, "close");
    return share;
}

const percent = (share) => `${(share * 100).toFixed(0)} %`;

async function printFigures() {
    console.log(`Load average ${loadavg()[0].toFixed(1)}, ${seconds} s each, camera at 60 fps`);
    console.log(
        "| Picture | shown | age, median | age, 95 % | reduced | first picture | CPU, page open | page closed | grab |",
    );
    console.log("|---|---|---|---|---|---|---|---|---|");
    for (const [serial, name] of [
        ["A1", "640x480 grey"],
        ["A2", "640x480 colour"],
        ["A3", "1280x960 grey"],
        ["A4", "1280x960 colour"],
    ]) {
        const { closed, first, processor, ages, step } = await figuresOf(serial);
        const grab = await grabbingShare(serial);
        const cells = [
            name,
            `${(ages.length / seconds).toFixed(1)} fps`,
            `${median(ages).toFixed(0)} ms`,
            `${upper(ages).toFixed(0)} ms`,
            `1:${step}`,
            `${(first / 1000).toFixed(2)} s`,
            ...[processor, closed, grab].map(percent),
        ];
        console.log(`| ${cells.join(" | ")} |`);
    }
}

// One line a minute, with the page open on the fastest clock.
async function printMemory() {
    const view = await View.start(rig, "-c", "A1");
    const page = await openPage(view);
    const id = camhostProcess();
    for (let minute = 0; minute <= minutes; ++minute) {
        const { memory } = usage(id);
        const { frame } = await view.get("api/state");
        console.log(`minute ${minute}: ${memory.toFixed(1)} MiB, frame ${frame?.number}`);
        if (minute < minutes) {
            await pause(60000);
        }
    }
    await page.context().close();
    await view.stop();
    console.log(view.output.trim().split("\n").at(-1));
}

await openBrowser();
await (minutes ? printMemory() : printFigures());
await closeBrowser();
