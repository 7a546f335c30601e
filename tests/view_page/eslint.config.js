// SPDX-License-Identifier: MIT
// The rules of the page's sources and of its tests. The packages lie in the build folder
// (set_up.sh).
import { createRequire } from "node:module";

const packages = createRequire(`${process.env.VIEW_PAGE_PACKAGES}/`);
const js = packages("@eslint/js");
const globals = packages("globals");

export default [
    {
        ...js.configs.recommended,
        languageOptions: { ecmaVersion: 2023, sourceType: "module", globals: globals.browser },
        rules: {
            ...js.configs.recommended.rules,
            curly: "error",
            eqeqeq: "error",
            "no-eval": "error",
            "no-implied-eval": "error",
            "no-shadow": "error",
            "no-var": "error",
            "prefer-const": "error",
            "max-lines": ["error", 400],
            "max-lines-per-function": ["error", 60],
            // What a camera says is text, never markup.
            "no-restricted-properties": [
                "error",
                ...["innerHTML", "outerHTML", "insertAdjacentHTML", "setHTMLUnsafe"].map((property) => ({
                    property,
                    message: "Use textContent.",
                })),
            ],
        },
    },
    {
        files: ["**/{tests,bench}/view_page/**"],
        languageOptions: { globals: { ...globals.node, ...globals.browser } },
        rules: { "max-lines-per-function": "off" },
    },
];
