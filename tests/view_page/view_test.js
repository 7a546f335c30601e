// SPDX-License-Identifier: MIT
// All tests of the page, in one browser and one after the other: camhost, the browser and
// Wine share the machine. Run by scripts/view_tests.sh.
import { after, before } from "node:test";

import { closeBrowser, openBrowser } from "./support.js";

before(openBrowser);
after(closeBrowser);

await import("./picture_tests.js");
await import("./settings_tests.js");
await import("./events_tests.js");
await import("./tabs_tests.js");
