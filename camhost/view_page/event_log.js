// SPDX-License-Identifier: MIT
// What happened since the start of the view, newest first.
import * as api from "./api.js";
import { byId, element, setText } from "./dom.js";

const kept = 200;

export class EventLog {
    #list = byId("events");
    // Numbers of events: the last one that is listed, and the last one that there is.
    #listed = 0;
    #known = -1;
    #isAsking = false;

    constructor(watch) {
        watch.onChange((state, isReachable) => {
            if (isReachable && state.events !== this.#known) {
                this.#ask(state.events);
            }
        });
    }

    async #ask(last) {
        if (this.#isAsking) {
            return;
        }
        this.#isAsking = true;
        try {
            const { next, events } = await api.events(this.#listed);
            this.#listed = next - 1;
            this.#known = last;
            for (const event of events) {
                this.#add(event);
            }
        } catch {
            // The next state asks again.
        }
        this.#isAsking = false;
    }

    #add({ time, kind, text }) {
        const made = element("li", { "data-kind": kind });
        made.append(
            element("time", {}, `${time.toFixed(1)} s`),
            element("b", {}, kind),
            element("span", {}, text),
        );
        this.#list.prepend(made);
        if (this.#list.children.length > kept) {
            this.#list.lastElementChild.remove();
        }
        setText(byId("last-event"), `${kind}: ${text}`);
    }
}
