// SPDX-License-Identifier: MIT
// Ends what otherwise lives to the end of the process, so that one input leaves nothing
// to the next.
#pragma once

namespace any_library {

// Deletes every setting and command that was ever made, and with them what they hold of
// the library. No channel may be left.
void endSettings();

}  // namespace any_library
