// SPDX-License-Identifier: MIT
// The members of the device properties' collections.
#pragma once

#include <utility>
#include <vector>

#include "capture/capture_library.h"
#include "capture/result_codes.h"

// All members of a collection with a count and 1-based items, in its order; none for a
// negative count. Throws a failing result code; a member that is missing is left out.
template <class Member, class Collection>
std::vector<DShowLib::smart_com<Member>> membersOf(Collection& collection) {
    LONG count = 0;
    throwIfFailed(collection.getCount(&count));
    std::vector<DShowLib::smart_com<Member>> members;
    for (LONG index = 1; index <= count; ++index) {
        DShowLib::smart_com<Member> member;
        throwIfFailed(collection.getItem(index, member.put()));
        if (member) {
            members.push_back(std::move(member));
        }
    }
    return members;
}
