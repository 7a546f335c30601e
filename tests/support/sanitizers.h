// SPDX-License-Identifier: MIT
// A sanitizer that watches memory brings a `new` of its own, and keeps for a while what
// was freed.
#pragma once

#if defined(__has_feature)
#if __has_feature(thread_sanitizer) || __has_feature(address_sanitizer)
#define HAS_NEW_OF_A_SANITIZER
#endif
#elif defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
#define HAS_NEW_OF_A_SANITIZER
#endif
