// SPDX-License-Identifier: MIT
// Short ways to elements. Texts of cameras come into the page as text alone.

export const byId = (id) => document.getElementById(id);

// element("button", { type: "button", class: "quiet" }, "Text", child, ...)
export function element(name, attributes = {}, ...children) {
    const made = document.createElement(name);
    for (const [key, value] of Object.entries(attributes)) {
        if (value === true) {
            made.setAttribute(key, "");
        } else if (value !== false && value !== undefined && value !== null) {
            made.setAttribute(key, value);
        }
    }
    made.append(...children);
    return made;
}

// Sets a text only where it differs, so that nothing is read aloud twice.
export function setText(target, text) {
    if (target.textContent !== text) {
        target.textContent = text;
    }
}

export function setOptions(select, options, chosen) {
    const present = Array.from(select.options, (option) => `${option.value}\n${option.textContent}`);
    const wanted = options.map(({ value, text }) => `${value}\n${text}`);
    if (present.join("\f") !== wanted.join("\f")) {
        select.replaceChildren(...options.map(({ value, text }) => element("option", { value }, text)));
    }
    select.value = chosen;
}

// Hands a file to the browser to be saved.
export function saveFile({ name, blob }) {
    const address = URL.createObjectURL(blob);
    element("a", { href: address, download: name }).click();
    setTimeout(() => URL.revokeObjectURL(address), 60000);
}
