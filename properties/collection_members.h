// SPDX-License-Identifier: MIT
// The members of the device properties' collections.
#pragma once

#include <utility>
#include <vector>

#include "capture/capture_library.h"
#include "capture/result_codes.h"

// Calls `visit` with each index of a collection, which has a count and 1-based items; never
// for a negative count. Throws a failing result code.
template <class Collection, class Visit>
void forEachIndex(Collection& collection, Visit visit) {
    LONG count = 0;
    throwIfFailed(collection.getCount(&count));
    for (LONG index = 0; index < count; ++index) {
        visit(index + 1);
    }
}

// All members of a collection, in its order. Throws a failing result code; a member that is
// missing is left out.
template <class Member, class Collection>
std::vector<DShowLib::smart_com<Member>> membersOf(Collection& collection) {
    std::vector<DShowLib::smart_com<Member>> members;
    forEachIndex(collection, [&](LONG index) {
        DShowLib::smart_com<Member> member;
        throwIfFailed(collection.getItem(index, member.put()));
        if (member) {
            members.push_back(std::move(member));
        }
    });
    return members;
}
