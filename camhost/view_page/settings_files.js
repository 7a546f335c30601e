// SPDX-License-Identifier: MIT
// Save, load and diff of settings files, as on the command line.
import * as api from "./api.js";
import { byId, element, saveFile, setText } from "./dom.js";

function table(heads, rows) {
    const line = (cells, kind) => element("tr", {}, ...cells.map((cell) => element(kind, {}, String(cell))));
    return element("table", {}, line(heads, "th"), ...rows.map((cells) => line(cells, "td")));
}

export class SettingsFiles {
    #dialog = byId("files-dialog");
    #chosen = byId("file");
    #purpose = null;
    #list;
    #say;

    constructor(list, watch, say) {
        this.#list = list;
        this.#say = say;
        byId("save").addEventListener("click", () => this.#save());
        byId("load").addEventListener("click", () => this.#choose((text) => this.#load(text)));
        byId("diff").addEventListener("click", () => this.#choose((text) => this.#diff(text)));
        this.#chosen.addEventListener("change", () => this.#read());
        watch.onChange((state, isReachable) => {
            if (isReachable) {
                byId("load").disabled = state.readOnly;
            }
        });
    }

    async #save() {
        await this.#try("Not saved", async () => saveFile(await api.settingsFile()));
    }

    #choose(purpose) {
        this.#purpose = purpose;
        this.#chosen.value = "";
        this.#chosen.click();
    }

    async #read() {
        const file = this.#chosen.files[0];
        if (file) {
            await this.#try(`${file.name} was not read`, async () => this.#purpose(await file.text()));
        }
    }

    async #load(text) {
        const camera = this.#list.camera;
        const { changes, failed = [] } = await api.loadSettings(text);
        this.#list.take(camera, changes);
        const parts = [];
        if (changes.length > 0) {
            parts.push(
                table(
                    ["Setting", "Before", "Now"],
                    changes.map(({ key, before, after }) => [key, before, after]),
                ),
            );
        }
        if (failed.length > 0) {
            parts.push(element("h3", {}, "Refused"));
            parts.push(
                table(
                    ["Setting", "Why"],
                    failed.map(({ key, message }) => [key, message]),
                ),
            );
        }
        this.#show("Settings loaded", parts, "All settings were as in the file.");
    }

    async #diff(text) {
        const { differences } = await api.diffSettings(text);
        const rows = differences.map(({ key, saved, now }) => [key, saved ?? "–", now ?? "–"]);
        const parts = rows.length > 0 ? [table(["Setting", "In the file", "Now"], rows)] : [];
        this.#show("Settings compared", parts, "All settings are as in the file.");
    }

    #show(title, parts, otherwise) {
        setText(byId("files-title"), title);
        byId("files-result").replaceChildren(...(parts.length > 0 ? parts : [element("p", {}, otherwise)]));
        this.#dialog.showModal();
    }

    async #try(failure, work) {
        this.#say("");
        try {
            await work();
        } catch (error) {
            this.#say(`${failure}: ${error.text ?? error.message}`);
        }
    }
}
