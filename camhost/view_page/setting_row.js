// SPDX-License-Identifier: MIT
// One setting or action, known by its key wherever it stands in the page.
import * as api from "./api.js";
import { element, setText } from "./dom.js";
import { controlKind, limitsText, makeControl } from "./setting_controls.js";
import { labelOf } from "./setting_names.js";

let madeRows = 0;

function changeText({ key, before, after }) {
    return `${key}: ${before} → ${after}`;
}

class Row {
    setting;
    // Once another camera is shown, what is still typed or held here is written nowhere.
    isClosed = false;

    constructor(setting, list) {
        this.setting = setting;
        this.list = list;
        this.camera = list.camera;
        this.note = element("p", { class: "note", "aria-live": "polite" });
        this.element = element("li", { class: "row", "data-key": setting.key });
    }

    get key() {
        return this.setting.key;
    }

    say(text, isRefusal = false) {
        this.note.classList.toggle("refused", isRefusal);
        setText(this.note, text);
    }

    refuse(error) {
        this.say([error.text, error.hint].filter(Boolean).join(" – "), true);
    }
}

export class ValueRow extends Row {
    #kind;
    #control;
    #limits = element("span", { class: "limits" });
    #lock = element("div", { class: "lock", hidden: true });
    #free = element("button", { type: "button", class: "quiet" }, "Switch off");
    #wanted = null;
    #isBusy = false;
    #problem = "";
    // A reading that was asked for no later than this one may be older than the last write.
    #writtenAt = 0;

    constructor(setting, list) {
        super(setting, list);
        const id = `setting-${++madeRows}`;
        this.#kind = controlKind(setting);
        this.#control = makeControl(id, setting, setting.key, (text) => this.write(text));
        this.#free.addEventListener("click", () => this.list.write(this.setting.automatic, "false"));
        this.#lock.append(element("span", {}, "Locked by automatic"), this.#free);
        // What was typed and given up makes way for what came meanwhile.
        this.element.addEventListener("focusout", () => this.show());
        this.element.addEventListener("keydown", (event) => event.key === "Escape" && this.show());
        const head = element("div", { class: "head" });
        head.append(element("label", { for: id, title: setting.key }, labelOf(setting)), this.#limits);
        this.element.classList.add(`kind-${this.#kind}`);
        this.element.append(head, this.#control.element, this.#lock, this.note);
        this.show();
    }

    suits(setting) {
        return setting.type !== "command" && controlKind(setting) === this.#kind;
    }

    update(setting, reading) {
        if (reading <= this.#writtenAt) {
            return;
        }
        this.setting = setting;
        this.show();
    }

    // What came of a write, here or elsewhere.
    take(text) {
        this.setting = { ...this.setting, text };
        this.#writtenAt = this.list.reading;
        this.show();
    }

    // Shows what is known, but for a value that is being typed or written.
    show() {
        const flags = this.setting.flags || [];
        const isAutomatic = flags.includes("auto");
        const problem = this.setting.problem || "";
        const isFixed = flags.includes("read-only") || flags.includes("unavailable") || problem !== "";
        this.#control.setDisabled(isFixed || isAutomatic || this.list.isReadOnly);
        this.element.classList.toggle("fixed", isFixed);
        this.element.classList.toggle("automatic", isAutomatic);
        this.#lock.hidden = !isAutomatic;
        this.#free.hidden = !this.setting.automatic || this.list.isReadOnly;
        this.#free.setAttribute("aria-label", `Switch off ${this.setting.automatic}`);
        setText(this.#limits, limitsText(this.setting));
        if (problem !== this.#problem) {
            this.#problem = problem;
            this.say(problem);
        }
        if (!this.#isBusy && !this.#control.isEdited()) {
            this.#control.show(this.setting);
        }
    }

    // One write at a time; of values that come meanwhile the last one counts.
    async write(text) {
        this.#wanted = text;
        if (this.#isBusy || this.isClosed) {
            return;
        }
        this.#isBusy = true;
        this.say("");
        while (this.#wanted !== null && !this.isClosed) {
            const asked = this.#wanted;
            this.#wanted = null;
            await this.#send(asked);
        }
        this.#isBusy = false;
        this.show();
    }

    async #send(asked) {
        try {
            const { changes } = await api.setSetting(this.camera, this.key, asked);
            this.say("");
            this.list.take(this.camera, changes);
            const other = changes.find((change) => change.key === this.key && change.matches === false);
            if (other) {
                this.say(`asked for ${asked}, became ${other.after}`);
            }
        } catch (error) {
            this.refuse(error);
            if (this.#wanted === null) {
                this.#control.show(this.setting);
            }
        }
    }
}

export class CommandRow extends Row {
    #button;

    constructor(setting, list) {
        super(setting, list);
        this.#button = element("button", { type: "button", title: setting.key }, labelOf(setting));
        this.#button.addEventListener("click", () => this.#execute());
        this.element.classList.add("kind-command");
        this.element.append(this.#button, this.note);
        this.show();
    }

    suits(setting) {
        return setting.type === "command";
    }

    update(setting) {
        this.setting = setting;
        this.show();
    }

    take() {}

    show() {
        const isLocked = (this.setting.flags || []).includes("auto");
        this.#button.disabled = this.list.isReadOnly || isLocked;
        this.#button.setAttribute("aria-label", this.key);
        if (isLocked) {
            this.say(`Locked by ${this.setting.automatic || "automatic"}`);
        }
    }

    async #execute() {
        this.say("…");
        try {
            const { changes } = await api.execute(this.camera, this.key);
            this.list.take(this.camera, changes);
            this.say(changes.length > 0 ? changes.map(changeText).join("; ") : "done, no setting changed");
        } catch (error) {
            this.refuse(error);
        }
    }
}

export const makeRow = (setting, list) =>
    setting.type === "command" ? new CommandRow(setting, list) : new ValueRow(setting, list);
