// SPDX-License-Identifier: MIT
// What is waited for.

export const pause = (milliseconds) => new Promise((resolve) => setTimeout(resolve, milliseconds));

export const animationFrame = () => new Promise((resolve) => requestAnimationFrame(resolve));

// Until the page is seen: one that is not takes no connection from those that are.
export function seen() {
    if (!document.hidden) {
        return Promise.resolve();
    }
    return new Promise((resolve) => {
        document.addEventListener("visibilitychange", resolve, { once: true });
    });
}
