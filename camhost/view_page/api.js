// SPDX-License-Identifier: MIT
// The requests to camhost, and what goes wrong with them. Knows no document.

// A request that camhost answered with an error, or (code "unreachable") did not answer.
export class ApiError extends Error {
    constructor(status, error) {
        super(error.message || "camhost gave no reason");
        this.status = status;
        this.code = error.code || "";
        this.adapterMessage = error.adapter_message || "";
        this.hint = error.hint || "";
    }

    // The adapter's own words where there are any.
    get text() {
        return this.adapterMessage || this.message;
    }
}

async function errorOf(response) {
    try {
        const body = await response.json();
        if (body && body.error) {
            return new ApiError(response.status, body.error);
        }
    } catch {
        // Not JSON: the status alone tells.
    }
    return new ApiError(response.status, {
        code: "http",
        message: `camhost answered ${response.status} ${response.statusText}`,
    });
}

async function request(path, options = {}) {
    let response;
    try {
        response = await fetch(path, { cache: "no-store", ...options });
    } catch (error) {
        if (error.name === "AbortError") {
            throw error;
        }
        throw new ApiError(0, { code: "unreachable", message: "camhost does not answer" });
    }
    if (!response.ok) {
        throw await errorOf(response);
    }
    return response;
}

async function json(path, options) {
    return (await request(path, options)).json();
}

function send(method, path, body) {
    const text = typeof body === "string" ? body : JSON.stringify(body);
    return json(path, { method, headers: { "Content-Type": "application/json" }, body: text });
}

function fileName(response, otherwise) {
    const match = /filename="?([^";]+)"?/.exec(response.headers.get("Content-Disposition") || "");
    return match ? match[1] : otherwise;
}

async function file(path, otherwise) {
    const response = await request(path);
    return { name: fileName(response, otherwise), blob: await response.blob() };
}

// A browser keeps six connections to a host, for all tabs together: nothing is waited for
// longer than a second, so that a change never waits longer than that for a connection.
const waitSeconds = 1;

export const state = (after, signal) =>
    json(after === undefined ? "api/state" : `api/state?after=${after}&wait=${waitSeconds}`, { signal });

// The newest frame behind number `after`, or null when there is none yet.
export async function frame(after, step, signal) {
    const response = await request(`api/frame?after=${after}&step=${step}&wait=${waitSeconds}`, { signal });
    if (response.status === 204) {
        return null;
    }
    const about = JSON.parse(response.headers.get("X-Frame"));
    return { ...about, bytes: new Uint8Array(await response.arrayBuffer()), arrived: performance.now() };
}

export const snapshot = (number, bayer, demosaic) =>
    file(
        `api/frame.png?bayer=${bayer}&demosaic=${demosaic}${number ? `&number=${number}` : ""}`,
        `frame_${number}.png`,
    );

export const settings = () => json("api/settings");
export const setSetting = (camera, key, text) =>
    send("PUT", "api/settings", { camera, key, text, manual: false });
export const execute = (camera, command) => send("POST", "api/commands", { camera, command });
export const chooseCamera = (camera) => send("POST", "api/camera", { camera });
export const setLive = (live) => send("POST", "api/live", { live });
export const record = (frames, bayer, demosaic) => send("POST", "api/recording", { frames, bayer, demosaic });
export const settingsFile = () => file("api/settings.json", "settings.json");
export const loadSettings = (text) => send("POST", "api/load", text);
export const diffSettings = (text) => send("POST", "api/diff", text);
export const events = (after) => json(`api/events?after=${after}&wait=0`);
export const end = () => send("POST", "api/end", {});
