// SPDX-License-Identifier: MIT
// Objects that live to the end of the process: settings and commands, which the
// tables of a channel point to but do not own.
#pragma once

#include <utility>
#include <vector>

// Everything that was ever stored. It is never destroyed, so at the end of the
// process nothing calls into a capture library that may be gone by then.
inline std::vector<const void*>& processStore() {
    // NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): the one store.
    static auto& objects = *new std::vector<const void*>;
    return objects;
}

// Makes an object that nothing deletes. Host thread.
template <class Object, class... Arguments>
Object* makeForProcess(Arguments&&... arguments) {
    auto& objects = processStore();
    // The place first: nothing can fail any more once the object is there.
    objects.push_back(nullptr);
    auto* object = new Object(std::forward<Arguments>(arguments)...);
    objects.back() = object;
    return object;
}
