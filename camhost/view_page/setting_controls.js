// SPDX-License-Identifier: MIT
// The controls of a setting's value. Each has `element`, `show(setting)`, `isEdited()`,
// `setDisabled(flag)`, and calls `write(text)` on a user's change alone.
import { element, setOptions } from "./dom.js";

const notches = 1000;

// Numbers as the adapter writes them, without the zeros behind the point.
const plain = (text) => (text === "" || Number.isNaN(Number(text)) ? text : String(Number(text)));

// Where a value lies on a slider. Wide ranges of fractions, such as exposure times, go by
// factors.
class Scale {
    constructor(setting) {
        this.low = Math.min(setting.min, setting.max);
        this.high = Math.max(setting.min, setting.max);
        this.whole = setting.type === "int";
        this.byFactors = !this.whole && this.low > 0 && this.high / this.low >= 1000;
    }

    toNotch(value) {
        if (this.whole) {
            return value;
        }
        if (this.high === this.low) {
            return 0;
        }
        const share = this.byFactors
            ? Math.log(value / this.low) / Math.log(this.high / this.low)
            : (value - this.low) / (this.high - this.low);
        return Math.round(share * notches);
    }

    toText(notch) {
        if (this.whole) {
            return String(notch);
        }
        const share = notch / notches;
        const value = this.byFactors
            ? this.low * (this.high / this.low) ** share
            : this.low + share * (this.high - this.low);
        const inside = Math.min(this.high, Math.max(this.low, value));
        return plain(inside.toFixed(6));
    }
}

// A wheel over a control that does not have the focus scrolls the page and nothing else.
function onWheel(input, step) {
    input.addEventListener(
        "wheel",
        (event) => {
            if (document.activeElement !== input || input.disabled) {
                return;
            }
            event.preventDefault();
            step(event.deltaY < 0 ? 1 : -1);
        },
        { passive: false },
    );
}

// A text that a user types: written once it is done, and taken back by Escape.
class TypedField {
    #shown = "";

    constructor(attributes, write) {
        this.element = element("input", { autocomplete: "off", ...attributes });
        this.element.addEventListener("change", () => {
            // What is written is not being typed any more.
            this.#shown = this.element.value;
            write(this.element.value);
        });
        this.element.addEventListener("keydown", (event) => {
            if (event.key === "Escape") {
                this.element.value = this.#shown;
            }
        });
    }

    showText(text) {
        this.#shown = text;
        this.element.value = text;
    }

    isEdited() {
        return document.activeElement === this.element && this.element.value !== this.#shown;
    }
}

class NumberField extends TypedField {
    constructor(id, setting, label, write) {
        const step = setting.type === "int" ? "1" : "any";
        super({ type: "number", id, step, "aria-label": label }, write);
    }

    show(setting) {
        this.showText(plain(setting.text ?? ""));
    }
}

class NumberControl {
    #slider = null;
    #scale = null;
    #isHeld = false;
    #write;

    constructor(id, setting, label, write) {
        this.#write = write;
        this.number = new NumberField(id, setting, label, write);
        this.element = element("div", { class: "number" });
        if (setting.min !== undefined && setting.max !== undefined) {
            this.#makeSlider(label);
        }
        onWheel(this.number.element, (steps) => this.#step(steps));
        this.element.append(this.number.element);
    }

    show(setting) {
        this.number.show(setting);
        if (this.#slider && setting.min !== undefined && setting.max !== undefined) {
            this.#scale = new Scale(setting);
            const { low, high, whole } = this.#scale;
            this.#slider.min = whole ? low : 0;
            this.#slider.max = whole ? high : notches;
            this.#slider.value = this.#scale.toNotch(Number(setting.text));
            this.#slider.setAttribute("aria-valuetext", plain(setting.text ?? ""));
            this.number.element.min = low;
            this.number.element.max = high;
        }
    }

    isEdited() {
        return this.#isHeld || this.number.isEdited();
    }

    setDisabled(flag) {
        this.number.element.disabled = flag;
        if (this.#slider) {
            this.#slider.disabled = flag;
        }
    }

    // By whole numbers or notches of the slider; of what has no limits, by one.
    #step(steps) {
        if (this.#slider) {
            this.#slider.stepUp(steps);
            this.#slide();
        } else {
            this.#write(plain(String(Number(this.number.element.value) + steps)));
        }
    }

    #slide() {
        const text = this.#scale.toText(Number(this.#slider.value));
        this.number.element.value = text;
        this.#slider.setAttribute("aria-valuetext", text);
        this.#write(text);
    }

    #makeSlider(label) {
        const slider = element("input", { type: "range", step: "1", "aria-label": `${label}, slider` });
        slider.addEventListener("input", () => this.#slide());
        slider.addEventListener("pointerdown", () => (this.#isHeld = true));
        for (const name of ["pointerup", "pointercancel", "lostpointercapture", "blur"]) {
            slider.addEventListener(name, () => (this.#isHeld = false));
        }
        onWheel(slider, (steps) => this.#step(steps));
        this.#slider = slider;
        this.element.append(slider);
    }
}

class SwitchControl {
    constructor(id, setting, label, write) {
        this.element = element("input", { type: "checkbox", role: "switch", id, "aria-label": label });
        this.element.addEventListener("change", () => write(String(this.element.checked)));
    }

    show(setting) {
        this.element.checked = setting.text === "true";
    }

    isEdited() {
        return false;
    }

    setDisabled(flag) {
        this.element.disabled = flag;
    }
}

class ChoiceControl {
    constructor(id, setting, label, write) {
        this.element = element("select", { id, "aria-label": label });
        this.element.addEventListener("change", () => write(this.element.value));
    }

    show(setting) {
        const { text = "", choices } = setting;
        const offered = choices.includes(text) ? choices : [text, ...choices];
        setOptions(
            this.element,
            offered.map((choice) => ({ value: choice, text: choice })),
            text,
        );
    }

    isEdited() {
        return false;
    }

    setDisabled(flag) {
        this.element.disabled = flag;
    }
}

class TextControl extends TypedField {
    constructor(id, setting, label, write) {
        super({ type: "text", id, "aria-label": label, spellcheck: "false" }, write);
    }

    show(setting) {
        this.showText(setting.text ?? "");
    }

    setDisabled(flag) {
        this.element.disabled = flag;
    }
}

// What decides about the kind of control: with another one a row is made anew.
export function controlKind(setting) {
    if (setting.type === "int" || setting.type === "float") {
        return setting.min !== undefined && setting.max !== undefined ? "slider" : "number";
    }
    if (setting.type === "bool") {
        return "switch";
    }
    return setting.choices?.length > 0 ? "choice" : "text";
}

const kinds = {
    slider: NumberControl,
    number: NumberControl,
    switch: SwitchControl,
    choice: ChoiceControl,
    text: TextControl,
};

export function makeControl(id, setting, label, write) {
    return new kinds[controlKind(setting)](id, setting, label, write);
}

// "0 … 1023", or nothing.
export function limitsText(setting) {
    return setting.min === undefined || setting.max === undefined ? "" : `${setting.min} … ${setting.max}`;
}
