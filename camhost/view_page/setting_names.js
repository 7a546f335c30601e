// SPDX-License-Identifier: MIT
// How settings are named, grouped and found. Pure: knows no document.

export const formatGroup = "Format and rate";

// Limits, lists, entries of lists, and a window that a page cannot show: listed when all is
// asked for.
export function isDetail(setting) {
    const isReadOnly = (setting.flags || []).includes("read-only");
    return (
        setting.level === "internal" ||
        setting.key === "propertydialog" ||
        /^(videoformats|videonorms|inputchannels|videoformat_\d+)$/.test(setting.key) ||
        (isReadOnly && / (min|max)$/.test(setting.key))
    );
}

const capital = (text) => text.charAt(0).toUpperCase() + text.slice(1);

export const groupOf = (setting) => (setting.item ? capital(setting.item) : formatGroup);

// The key without the item, which stands above it.
export function labelOf(setting) {
    const { key, item } = setting;
    return item && key.startsWith(`${item} `) ? key.slice(item.length + 1) : key;
}

// Every word of the search is somewhere in the key.
export function isFound(key, search) {
    return search
        .toLowerCase()
        .split(/\s+/)
        .every((word) => key.includes(word));
}
