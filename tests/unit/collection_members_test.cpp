// SPDX-License-Identifier: MIT
// Collections of device properties, as odd as a library may hand them out.
#include "properties/collection_members.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace {

constexpr HRESULT failure = -2147467259;  // 0x80004005

// Lives on the stack; its count begins with the test's own reference.
class Member final : public IUnknown {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID /*identifier*/, void** object) override {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override { return --references; }

    ULONG references = 1;
};

// Hands out `members`, whatever it says of their count.
struct Collection {
    HRESULT getCount(LONG* place) const {
        *place = count;
        return countResult;
    }
    HRESULT getItem(LONG index, Member** place) {
        asked.push_back(index);
        *place = members.at(static_cast<std::size_t>(index - 1));
        if (*place == nullptr) {
            return itemResult;
        }
        (*place)->AddRef();
        return S_OK;
    }

    LONG count;
    std::vector<Member*> members;
    HRESULT countResult = S_OK;
    HRESULT itemResult = S_OK;  // for a member that is missing
    std::vector<LONG> asked = {};
};

std::vector<Member*> found(Collection& collection) {
    std::vector<Member*> pointers;
    for (const auto& member : membersOf<Member>(collection)) {
        pointers.push_back(member.get());
    }
    return pointers;
}

TEST(CollectionMembers, ComeInTheirOrderFromOneOn) {
    Member first;
    Member second;
    Collection collection{2, {&first, &second}};
    EXPECT_EQ((std::vector<Member*>{&first, &second}), found(collection));
    EXPECT_EQ((std::vector<LONG>{1, 2}), collection.asked);
    EXPECT_EQ(1U, first.references);
    EXPECT_EQ(1U, second.references);
}

TEST(CollectionMembers, OfANegativeCountAreNone) {
    Member only;
    for (const LONG count : {-1, -2147483647 - 1}) {
        Collection collection{count, {&only}};
        EXPECT_EQ(std::vector<Member*>{}, found(collection));
        EXPECT_EQ(std::vector<LONG>{}, collection.asked);
    }
}

TEST(CollectionMembers, ThatAreMissingAreLeftOut) {
    Member last;
    Collection collection{2, {nullptr, &last}};
    EXPECT_EQ(std::vector<Member*>{&last}, found(collection));
}

TEST(CollectionMembers, ThatFailThrowTheirCodeAndLeaveNoReference) {
    Member first;
    Collection collection{2, {&first, nullptr}, S_OK, failure};
    EXPECT_THROW(found(collection), std::int32_t);
    EXPECT_EQ(1U, first.references);
}

TEST(CollectionMembers, OfACountThatFailsAreNotAskedFor) {
    Member only;
    Collection collection{1, {&only}, failure};
    EXPECT_THROW(found(collection), std::int32_t);
    EXPECT_EQ(std::vector<LONG>{}, collection.asked);
}

}  // namespace
