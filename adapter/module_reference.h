// SPDX-License-Identifier: MIT
// The adapter's reference to its own module: held while any camera is open, so that a
// host that frees the adapter too early does not leave the delivery thread without code.
#pragma once

// Host thread. Does nothing where the reference is held already.
void holdOwnModule() noexcept;

// Host thread, as the last thing of a call or before an exception leaves it. Does nothing where no
// reference is held. Returns when the reference is given back, so that a host that frees the
// adapter next sees it go at once. Where this was the last reference, the module goes when the
// calling thread has left it.
void releaseOwnModule() noexcept;

// From the library's entry, when the module goes while the process goes on: waits for
// the thread that gave the last reference back to leave the module.
void letLastCallLeave() noexcept;
