// SPDX-License-Identifier: MIT
// Names for clang's thread-safety attributes; nothing for other compilers.
#pragma once

#if defined(__clang__)
#define VIRTUAL_CAMERAS_ATTRIBUTE(attribute) __attribute__((attribute))
#else
#define VIRTUAL_CAMERAS_ATTRIBUTE(attribute)
#endif

#define CAPABILITY(name) VIRTUAL_CAMERAS_ATTRIBUTE(capability(name))
#define SCOPED_CAPABILITY VIRTUAL_CAMERAS_ATTRIBUTE(scoped_lockable)
#define GUARDED_BY(monitor) VIRTUAL_CAMERAS_ATTRIBUTE(guarded_by(monitor))
#define REQUIRES(...) VIRTUAL_CAMERAS_ATTRIBUTE(requires_capability(__VA_ARGS__))
#define ACQUIRE(...) VIRTUAL_CAMERAS_ATTRIBUTE(acquire_capability(__VA_ARGS__))
#define RELEASE(...) VIRTUAL_CAMERAS_ATTRIBUTE(release_capability(__VA_ARGS__))
#define NO_THREAD_SAFETY_ANALYSIS VIRTUAL_CAMERAS_ATTRIBUTE(no_thread_safety_analysis)
