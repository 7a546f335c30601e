// SPDX-License-Identifier: MIT
// Follows the state of the view, and tells when camhost does not answer.
import * as api from "./api.js";
import { pause, seen } from "./time.js";

export class StateWatch {
    state = null;
    // When the state came, for seconds that go on until the next one.
    at = 0;

    #listeners = [];
    #ended = false;

    // `listener(state, isReachable)`; without an answer the last state is told again.
    onChange(listener) {
        this.#listeners.push(listener);
    }

    async run() {
        while (!this.#ended) {
            await seen();
            try {
                const state = await api.state(this.state?.version);
                this.at = performance.now();
                this.state = state;
                this.#tell(true);
                // The state moves twice a second; a faster one is not worth more requests.
                await pause(100);
            } catch {
                if (!this.#ended) {
                    this.#tell(false);
                    await pause(500);
                }
            }
        }
    }

    end() {
        this.#ended = true;
    }

    get secondsWithoutFrame() {
        return (this.state?.secondsWithoutFrame || 0) + (performance.now() - this.at) / 1000;
    }

    #tell(isReachable) {
        for (const listener of this.#listeners) {
            listener(this.state, isReachable);
        }
    }
}
