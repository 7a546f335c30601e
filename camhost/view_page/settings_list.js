// SPDX-License-Identifier: MIT
// The settings of the camera that is shown: rows by key, grouped by item, found by search.
// A search hides rows and moves none, so that a value goes where it was typed.
import * as api from "./api.js";
import { byId, element, setText } from "./dom.js";
import { formatGroup, groupOf, isDetail, isFound } from "./setting_names.js";
import { makeRow } from "./setting_row.js";

class Group {
    rows = [];

    constructor(name) {
        this.list = element("ul");
        this.element = element(
            "details",
            { class: "group", open: true },
            element("summary", {}, name),
            this.list,
        );
    }

    get hasShown() {
        return this.rows.some((row) => !row.element.hidden);
    }
}

export class SettingsList {
    camera = undefined;
    isReadOnly = false;
    // Of the readings of all settings, the one that was asked for last.
    reading = 0;

    #version = -1;
    #rows = new Map();
    #groups = new Map();
    #place = byId("groups");
    #search = byId("search");
    #all = byId("show-all");
    #isAsking = false;
    #takenMeanwhile = false;

    constructor(watch) {
        watch.onChange((state, isReachable) => {
            if (isReachable) {
                this.#follow(state);
            }
        });
        this.#search.addEventListener("input", () => this.#filter());
        this.#search.addEventListener("keydown", (event) => {
            if (event.key === "Escape") {
                this.#search.value = "";
                this.#filter();
            }
        });
        this.#all.addEventListener("change", () => this.#filter());
    }

    // Writes a setting that another row names, such as the automatic that locks it.
    write(key, text) {
        return this.#rows.get(key)?.write(text);
    }

    // What came of a write. A reading that is under way may be older, or as new. Changes of a
    // camera that is no longer shown are left out.
    take(camera, changes) {
        if (camera !== this.camera) {
            return;
        }
        this.#takenMeanwhile = this.#isAsking;
        for (const { key, after } of changes) {
            this.#rows.get(key)?.take(after);
        }
    }

    #follow(state) {
        if (this.isReadOnly !== state.readOnly) {
            this.isReadOnly = state.readOnly;
            this.#rows.forEach((row) => row.show());
        }
        if (state.camera !== this.camera || state.version_settings > this.#version) {
            this.#ask(state.camera);
        }
    }

    async #ask(camera) {
        if (this.#isAsking) {
            return;
        }
        this.#isAsking = true;
        this.#takenMeanwhile = false;
        ++this.reading;
        try {
            const answer = await api.settings();
            this.#show(answer, answer.camera ?? camera);
        } catch {
            // The state tells when camhost does not answer; the next one asks again.
        }
        this.#isAsking = false;
    }

    #show({ version, settings }, camera) {
        if (camera !== this.camera) {
            this.#clear();
            this.camera = camera;
            this.#place.dataset.camera = camera;
        }
        // What a row left out of this reading has to be read again.
        this.#version = this.#takenMeanwhile ? -1 : version;
        const present = new Set();
        for (const setting of settings) {
            present.add(setting.key);
            this.#put(setting);
        }
        for (const [key, row] of this.#rows) {
            if (!present.has(key)) {
                this.#remove(key, row);
            }
        }
        this.#filter();
    }

    #put(setting) {
        const row = this.#rows.get(setting.key);
        if (row?.suits(setting)) {
            row.update(setting, this.reading);
            return;
        }
        const made = makeRow(setting, this);
        this.#rows.set(setting.key, made);
        const group = this.#group(groupOf(setting));
        if (row) {
            row.element.replaceWith(made.element);
            group.rows[group.rows.indexOf(row)] = made;
        } else {
            group.rows.push(made);
            group.list.append(made.element);
        }
    }

    #group(name) {
        if (!this.#groups.has(name)) {
            const group = new Group(name);
            this.#groups.set(name, group);
            // What decides about the picture as a whole stands first.
            this.#place[name === formatGroup ? "prepend" : "append"](group.element);
        }
        return this.#groups.get(name);
    }

    #remove(key, row) {
        this.#rows.delete(key);
        row.isClosed = true;
        row.element.remove();
        for (const group of this.#groups.values()) {
            group.rows = group.rows.filter((other) => other !== row);
        }
    }

    #clear() {
        this.#rows.forEach((row) => (row.isClosed = true));
        this.#rows.clear();
        this.#groups.clear();
        this.#place.replaceChildren();
    }

    #filter() {
        const search = this.#search.value.trim();
        let shown = 0;
        for (const [key, row] of this.#rows) {
            const isShown = isFound(key, search) && (this.#all.checked || !isDetail(row.setting));
            row.element.hidden = !isShown;
            shown += isShown ? 1 : 0;
        }
        for (const group of this.#groups.values()) {
            group.element.hidden = !group.hasShown;
            if (search && group.hasShown) {
                group.element.open = true;
            }
        }
        const count = search ? `${shown} of ${this.#rows.size} settings` : `${shown} settings`;
        setText(byId("found"), this.#rows.size > 0 ? count : "");
    }
}
